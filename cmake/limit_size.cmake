# Prints the size of a file, and fails when it has more bytes than it may have:
#
#   cmake -DFILE=FILE -DMOST_BYTES=N -P limit_size.cmake
cmake_minimum_required(VERSION 3.25)

cmake_path(GET FILE FILENAME name)
file(SIZE "${FILE}" bytes)
message(STATUS "${name} has ${bytes} bytes")
if(bytes GREATER MOST_BYTES)
  message(FATAL_ERROR "${name} may have ${MOST_BYTES} bytes at most. What grew? "
    "llvm-pdbutil pretty -symbols tells, or nm --size-sort of the objects.")
endif()
