# Runs the commands of a document that call pmscan, as they stand there, in their order:
#
#   cmake -DDOCUMENT=FILE -DPROGRAM=FILE -DEMULATOR=PROGRAM -DFOLDER=FOLDER -P run_commands.cmake
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")
file(READ "${DOCUMENT}" text)
# A list ends at semicolons and takes brackets for quotes.
string(REGEX REPLACE "[][;]" " " text "${text}")
string(REPLACE "\n" ";" lines "${text}")

set(run 0)
set(is_code FALSE)
foreach(line IN LISTS lines)
  if(line MATCHES "^```")
    if(is_code)
      set(is_code FALSE)
    else()
      set(is_code TRUE)
    endif()
  endif()
  if(NOT is_code OR NOT line MATCHES "^pmscan (.*)$")
    continue()
  endif()
  # A remark stands behind two blanks.
  string(REGEX REPLACE "  .*" "" arguments "${CMAKE_MATCH_1}")
  separate_arguments(arguments UNIX_COMMAND "${arguments}")
  # What a command writes may be there from the one before.
  foreach(option IN ITEMS -o --output --capture)
    list(FIND arguments ${option} place)
    if(place GREATER_EQUAL 0 AND "scan" IN_LIST arguments)
      math(EXPR place "${place} + 1")
      list(GET arguments ${place} written)
      file(REMOVE "${FOLDER}/${written}")
    endif()
  endforeach()
  execute_process(COMMAND ${EMULATOR} "${PROGRAM}" ${arguments}
    WORKING_DIRECTORY "${FOLDER}" RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${line}\nends with ${result}:\n${said}")
  endif()
  math(EXPR run "${run} + 1")
endforeach()
if(run EQUAL 0)
  message(FATAL_ERROR "${DOCUMENT} has no command of pmscan")
endif()
message(STATUS "${run} commands run as they stand")
