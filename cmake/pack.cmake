# Collects what a build hands out and packs it into BUILD/NAME.zip, with the sums of all files. The
# same files make the same archive byte for byte: they are in the order of their names, and all have
# one time.
#
#   cmake -DBUILD=FOLDER -DNAME=NAME -P pack.cmake
cmake_minimum_required(VERSION 3.25)

set(stage "${BUILD}/package")
set(folder "${stage}/${NAME}")
file(REMOVE_RECURSE "${stage}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${folder}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE files RELATIVE "${folder}" LIST_DIRECTORIES FALSE "${folder}/*")
list(SORT files)
foreach(file IN LISTS files)
  file(SHA256 "${folder}/${file}" sum)
  file(APPEND "${folder}/SHA256SUMS" "${sum}  ${file}\n")
endforeach()

list(APPEND files SHA256SUMS)
list(TRANSFORM files PREPEND "${NAME}/")
list(JOIN files "\n" lines)
file(WRITE "${stage}/files.txt" "${lines}\n")
file(REMOVE "${BUILD}/${NAME}.zip")
# An archive holds local times; -X leaves out all else that depends on the machine.
execute_process(COMMAND find . -exec touch -d "2000-01-01 00:00:00 UTC" {} +
  WORKING_DIRECTORY "${stage}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env TZ=UTC zip -q -X -@ "${BUILD}/${NAME}.zip"
  INPUT_FILE "${stage}/files.txt" WORKING_DIRECTORY "${stage}" COMMAND_ERROR_IS_FATAL ANY)
message(STATUS "Packed ${BUILD}/${NAME}.zip")
