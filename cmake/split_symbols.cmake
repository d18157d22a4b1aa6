# Moves the symbols of a program or library into a file of their own, which debuggers find by its
# name, and prints the size of what is left. Fails when that is more than MOST_BYTES, if given:
#
#   cmake -DFILE=FILE -DSYMBOLS=FILE -DMOST_BYTES=N -DOBJCOPY=PROGRAM -DSTRIP=PROGRAM
#     -P split_symbols.cmake
cmake_minimum_required(VERSION 3.25)

cmake_path(GET FILE PARENT_PATH folder)
cmake_path(GET FILE FILENAME name)
cmake_path(GET SYMBOLS FILENAME symbols_name)
# Without --preserve-dates the time of the build would stand in each file.
execute_process(COMMAND "${OBJCOPY}" --preserve-dates --only-keep-debug "${FILE}" "${SYMBOLS}"
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${STRIP}" --preserve-dates --strip-all "${FILE}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${OBJCOPY}" --preserve-dates
    "--add-gnu-debuglink=${symbols_name}" "${FILE}"
  WORKING_DIRECTORY "${folder}" COMMAND_ERROR_IS_FATAL ANY)

file(SIZE "${FILE}" bytes)
message(STATUS "${name} has ${bytes} bytes")
if(MOST_BYTES AND bytes GREATER MOST_BYTES)
  message(FATAL_ERROR "${name} may have ${MOST_BYTES} bytes at most. What grew? nm --size-sort "
    "${SYMBOLS} tells.")
endif()
