# Packs the build twice, unpacks what came into an empty folder, and scans a page with it there:
#
#   cmake -DBUILD=FOLDER -DNAME=ARCHIVE -DWORK=FOLDER -P native_package_test.cmake
cmake_minimum_required(VERSION 3.25)

function(run folder)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${folder}" OUTPUT_VARIABLE output
    ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "In ${folder}: ${ARGN}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

set(archive "${BUILD}/${NAME}.tar.gz")
run("${BUILD}" "${CMAKE_COMMAND}" --build "${BUILD}" --target package_archive)
file(SHA256 "${archive}" first)
run("${BUILD}" "${CMAKE_COMMAND}" --build "${BUILD}" --target package_archive)
file(SHA256 "${archive}" second)
if(NOT first STREQUAL second)
  message(FATAL_ERROR "The same build made two packages")
endif()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
run("${WORK}" tar --extract "--file=${archive}")
set(top "${WORK}/${NAME}")
run("${top}" sha256sum --check --strict SHA256SUMS)
foreach(file README.md LICENCE licences/zlib.txt docs/pmscan.md docs/wireshark/pmddb832.lua profiles/schema.json)
  if(NOT EXISTS "${top}/${file}")
    message(FATAL_ERROR "The package holds no ${file}")
  endif()
endforeach()
run("${WORK}" "${top}/pmscan" scan -o page.png --resolution 50 --device sim:office_feeder.json)
if(NOT output MATCHES "\nFile         page.png, PNG, ")
  message(FATAL_ERROR "The page was not scanned:\n${output}")
endif()
