# Runs a program that overwrites its stack with its argument:
#
#   cmake -DPROGRAM=PROGRAM -DEMULATOR=PROGRAM -P overwritten_stack_test.cmake
cmake_minimum_required(VERSION 3.25)

# The exit code is the lowest byte of Windows': 0, and 0xC0000409, an overrun stack buffer.
foreach(run "fits 0" "doesnotfitatallnotbyfar 9")
  separate_arguments(run)
  list(GET run 0 text)
  list(GET run 1 expected)
  execute_process(COMMAND ${EMULATOR} "${PROGRAM}" "${text}" RESULT_VARIABLE result OUTPUT_QUIET)
  if(NOT result EQUAL expected)
    message(FATAL_ERROR "With '${text}' it ended with ${result}, expected ${expected}")
  endif()
endforeach()
