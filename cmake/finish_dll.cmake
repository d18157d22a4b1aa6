# Moves the DLL's symbols into a file of their own, which debuggers find by its name, and prints the
# size of what is left. Fails when that is more than hosts are promised:
#
#   cmake -DDLL=FILE -DSYMBOLS=FILE -DOBJCOPY=PROGRAM -DSTRIP=PROGRAM -P finish_dll.cmake
cmake_minimum_required(VERSION 3.25)

set(most_bytes 100000)

cmake_path(GET DLL PARENT_PATH folder)
cmake_path(GET SYMBOLS FILENAME symbols_name)
execute_process(COMMAND "${OBJCOPY}" --only-keep-debug "${DLL}" "${SYMBOLS}"
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${STRIP}" --strip-all "${DLL}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${OBJCOPY}" "--add-gnu-debuglink=${symbols_name}" "${DLL}"
  WORKING_DIRECTORY "${folder}" COMMAND_ERROR_IS_FATAL ANY)

file(SIZE "${DLL}" bytes)
cmake_path(GET DLL FILENAME name)
message(STATUS "${name} has ${bytes} bytes, of at most ${most_bytes}")
if(bytes GREATER most_bytes)
  message(FATAL_ERROR "${name} is too large: find what grew, as with nm --size-sort ${SYMBOLS}")
endif()
