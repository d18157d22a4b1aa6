# The built DLL with a log to write to. The program lies in a folder of its own, beside a stand-in of
# the service's library that would get in the way of every other program.
set(log_test_folder "${CMAKE_BINARY_DIR}/log_test")

add_library(fake_wiaservc SHARED fake_wiaservc.cpp)
target_link_libraries(fake_wiaservc PRIVATE pmddb832_options oleaut32)
set_target_properties(fake_wiaservc PROPERTIES
  PREFIX "" OUTPUT_NAME wiaservc RUNTIME_OUTPUT_DIRECTORY "${log_test_folder}")

add_unit_tests(dll_log_tests
  SOURCES ../scans/call_guard.cpp ../scans/dll_module.cpp ../scans/whole_scan.cpp dll_log_test.cpp
  LIBRARIES simulator ole32)
target_compile_definitions(dll_log_tests PRIVATE "PMDDB832_DLL=\"..\\\\Pmddb832.dll\"")
set_target_properties(dll_log_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${log_test_folder}")
add_dependencies(dll_log_tests fake_wiaservc Pmddb832)
set_tests_properties(dll_log PROPERTIES
  WORKING_DIRECTORY "${log_test_folder}" ENVIRONMENT "WINEDLLOVERRIDES=wiaservc=n")
