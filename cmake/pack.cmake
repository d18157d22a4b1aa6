# Collects what a build hands out and packs it into BUILD/NAME.FORMAT, with the sums of all files.
# FORMAT is zip or tar.gz. The same files make the same archive byte for byte: they are in the order
# of their names, and all have one time.
#
#   cmake -DBUILD=FOLDER -DNAME=NAME -DFORMAT=FORMAT [-DINSTALL_OPTIONS=OPTION] -P pack.cmake
cmake_minimum_required(VERSION 3.25)

set(stage "${BUILD}/package")
set(folder "${stage}/${NAME}")
file(REMOVE_RECURSE "${stage}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${folder}"
    ${INSTALL_OPTIONS}
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
set(archive "${BUILD}/${NAME}.${FORMAT}")
file(REMOVE "${archive}")
# An archive holds local times; -X leaves out all else that depends on the machine.
execute_process(COMMAND find . -exec touch -d "2000-01-01 00:00:00 UTC" {} +
  WORKING_DIRECTORY "${stage}" COMMAND_ERROR_IS_FATAL ANY)
if(FORMAT STREQUAL "zip")
  set(pack "${CMAKE_COMMAND}" -E env TZ=UTC zip -q -X -@ "${archive}")
else()
  set(pack tar --create "--file=${archive}" "--use-compress-program=gzip --no-name" --format=ustar
    --owner=0 --group=0 --numeric-owner "--mode=u=rwX,go=rX" --files-from=-)
endif()
execute_process(COMMAND ${pack}
  INPUT_FILE "${stage}/files.txt" WORKING_DIRECTORY "${stage}" COMMAND_ERROR_IS_FATAL ANY)
message(STATUS "Packed ${archive}")
