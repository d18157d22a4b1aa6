# The module for Linux offers what the definition file lists and no more, and pmscan has nothing of it:
#
#   cmake -DMODULE=FILE -DPROGRAM=FILE -DDEFINITION=FILE -DNM=PROGRAM -P native_module_test.cmake
cmake_minimum_required(VERSION 3.25)

# names RESULT FILE OPTION ...: the names that a file defines, sorted.
function(names result file)
  execute_process(COMMAND "${NM}" --defined-only --format=just-symbols ${ARGN} "${file}"
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")
  list(SORT symbols)
  set(${result} "${symbols}" PARENT_SCOPE)
endfunction()

file(STRINGS "${DEFINITION}" expected REGEX "@[0-9]+")
list(TRANSFORM expected REPLACE "^ *([A-Za-z]+) .*" "\\1")
list(SORT expected)
list(LENGTH expected count)
names(offered "${MODULE}" --dynamic)
if(NOT count EQUAL 15 OR NOT offered STREQUAL expected)
  message(FATAL_ERROR "The module offers\n  ${offered}\nin place of\n  ${expected}")
endif()

names(linked "${PROGRAM}" --demangle)
foreach(export IN LISTS expected)
  if(export IN_LIST linked)
    message(FATAL_ERROR "${export} is part of the program")
  endif()
endforeach()
foreach(part "pmddb832::PMInit(" "pmddb832::DeviceDriver::" "pmddb832::GeneralCmd::")
  string(FIND "${linked}" "${part}" place)
  if(NOT place EQUAL -1)
    message(FATAL_ERROR "${part} is part of the program")
  endif()
endforeach()
