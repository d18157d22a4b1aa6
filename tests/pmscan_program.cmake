# pmscan.exe as a whole: its exit codes, its files, and what it prints.
add_unit_tests(pmscan_program_tests
  SOURCES pmscan_capture_program_test.cpp pmscan_program.cpp pmscan_program_test.cpp)
add_dependencies(pmscan_program_tests pmscan)

# Wine makes Ctrl+C of the signal, also where there is no console.
if(CMAKE_CROSSCOMPILING)
  add_test(NAME pmscan_interrupt
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/pmscan_interrupt_test.sh"
      "${CMAKE_CROSSCOMPILING_EMULATOR}" "$<TARGET_FILE:pmscan>")
  set_tests_properties(pmscan_interrupt PROPERTIES TIMEOUT 300)
endif()

# The same with a stand-in for the still-image service, which lies beside a program of its own: in
# the build folder it would get in the way of every other one.
set(still_image_folder "${CMAKE_BINARY_DIR}/still_image_test")

add_library(fake_sti SHARED fake_sti.cpp)
target_link_libraries(fake_sti PRIVATE simulator)
set_target_properties(fake_sti PROPERTIES
  PREFIX "" OUTPUT_NAME sti RUNTIME_OUTPUT_DIRECTORY "${still_image_folder}")

add_custom_target(still_image_programs
  COMMAND "${CMAKE_COMMAND}" -E copy_if_different
    "$<TARGET_FILE:pmscan>" "$<TARGET_FILE:Pmddb832>" "${still_image_folder}"
  DEPENDS pmscan Pmddb832 fake_sti)
add_unit_tests(still_image_tests SOURCES still_image_test.cpp pmscan_program.cpp)
set_target_properties(still_image_tests PROPERTIES
  RUNTIME_OUTPUT_DIRECTORY "${still_image_folder}")
add_dependencies(still_image_tests still_image_programs)
set_tests_properties(still_image PROPERTIES
  WORKING_DIRECTORY "${still_image_folder}" ENVIRONMENT "WINEDLLOVERRIDES=sti=n")
