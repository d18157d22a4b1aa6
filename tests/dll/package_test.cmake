# Builds and packs the same sources in another folder, and compares the archive with the one that is
# there:
#
#   cmake -DSOURCE=FOLDER -DBUILD=FOLDER -DWORK=FOLDER -DNAME=ARCHIVE -P package_test.cmake
cmake_minimum_required(VERSION 3.25)

function(run folder)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${folder}" OUTPUT_VARIABLE output
    ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "In ${folder}: ${ARGN}\n${output}")
  endif()
endfunction()

function(copy_sources to)
  file(GLOB sources RELATIVE "${SOURCE}" "${SOURCE}/*")
  list(REMOVE_ITEM sources build out)
  foreach(source IN LISTS sources)
    file(COPY "${SOURCE}/${source}" DESTINATION "${to}")
  endforeach()
endfunction()

file(REMOVE_RECURSE "${WORK}")
set(elsewhere "${WORK}/another folder")
copy_sources("${elsewhere}")
run("${elsewhere}" "${CMAKE_COMMAND}" --workflow --preset package)

set(here "${BUILD}/${NAME}.zip")
set(there "${elsewhere}/build/windows/${NAME}.zip")
file(SHA256 "${here}" here_sum)
file(SHA256 "${there}" there_sum)
if(NOT here_sum STREQUAL there_sum)
  message(FATAL_ERROR "The same sources made two packages, ${here} and ${there}")
endif()
