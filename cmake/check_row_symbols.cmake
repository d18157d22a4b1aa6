# Checks that what is compiled for vectors which not every processor has is not shared: each of
# these objects defines its table, and no function that another one can see. An inline function of a
# header would be seen, and the linker might take this copy of it for all.
#
#   cmake -DNM=PROGRAM "-DOBJECTS=FILE;FILE..." -P cmake/check_row_symbols.cmake
cmake_minimum_required(VERSION 3.25)

set(checked 0)
foreach(object IN LISTS OBJECTS)
  if(NOT object MATCHES "row_kernels_(ssse3|avx2|avx512)\\.")
    continue()
  endif()
  execute_process(COMMAND "${NM}" --extern-only --defined-only "${object}"
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  if(NOT symbols MATCHES "(Ssse3|Avx2|Avx512)RowKernels")
    message(FATAL_ERROR "${object}\n  expected: a table of kernels\n${symbols}")
  endif()
  # Code, common or its own; not the functions of sanitizers, of which names begin like that.
  string(REGEX MATCHALL "[^\n]* [TWtw] [^\n]*" functions "${symbols}")
  list(FILTER functions EXCLUDE REGEX " __[^ ]*$")
  if(functions)
    string(REPLACE ";" "\n  " functions "${functions}")
    message(FATAL_ERROR "${object}\n  expected: no function that others see\n  ${functions}")
  endif()
  math(EXPR checked "${checked} + 1")
endforeach()
if(NOT checked EQUAL 3)
  message(FATAL_ERROR "expected three objects of rows, found ${checked}")
endif()
