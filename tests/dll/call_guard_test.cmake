# What Windows enforces in the built DLL, and Wine does not.
add_unit_tests(call_guard_tests
  SOURCES ../scans/call_guard.cpp ../scans/dll_module.cpp ../scans/faulty_device.cpp
    ../scans/whole_scan.cpp call_guard_test.cpp
  LIBRARIES simulator)
target_compile_definitions(call_guard_tests PRIVATE "PMDDB832_DLL=\"Pmddb832.dll\"")
add_dependencies(call_guard_tests Pmddb832)

# A program of ours that writes beyond an array ends as Windows wants it.
add_executable(overwritten_stack overwritten_stack.cpp)
target_link_libraries(overwritten_stack PRIVATE pmddb832_options)
add_test(NAME overwritten_stack
  COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:overwritten_stack>"
    "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/overwritten_stack_test.cmake")
