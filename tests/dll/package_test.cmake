# Packs the build that is there, builds and packs the same sources in another folder, and compares
# the two archives and their contents with what they should be:
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

function(check_contents archive)
  file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${WORK}/contents")
  set(top "${WORK}/contents/${NAME}")
  foreach(file Pmddb832.dll pmscan.exe include/pmddb832.h lib/Pmddb832.lib lib/pmddb832.def
          symbols/Pmddb832.debug symbols/pmscan.debug profiles/schema.json
          wireshark/pmddb832.lua docs/hosting.md)
    if(NOT EXISTS "${top}/${file}")
      message(FATAL_ERROR "The package holds no ${file}")
    endif()
  endforeach()
  run("${top}" sha256sum --check --strict SHA256SUMS)
  file(GLOB_RECURSE files RELATIVE "${top}" "${top}/*")
  file(STRINGS "${top}/SHA256SUMS" sums)
  list(LENGTH files files_count)
  list(LENGTH sums sums_count)
  math(EXPR sums_count "${sums_count} + 1")
  if(NOT files_count EQUAL sums_count)
    message(FATAL_ERROR "SHA256SUMS leaves out one of the ${files_count} files")
  endif()
endfunction()

file(REMOVE_RECURSE "${WORK}")
set(elsewhere "${WORK}/another folder")
copy_sources("${elsewhere}")
run("${elsewhere}" "${CMAKE_COMMAND}" --workflow --preset package)
run("${SOURCE}" "${CMAKE_COMMAND}" --build "${BUILD}" --target package_archive)

set(here "${BUILD}/${NAME}.zip")
set(there "${elsewhere}/build/windows/${NAME}.zip")
file(SHA256 "${here}" here_sum)
file(SHA256 "${there}" there_sum)
if(NOT here_sum STREQUAL there_sum)
  message(FATAL_ERROR "The same sources made two packages, ${here} and ${there}")
endif()
check_contents("${here}")
