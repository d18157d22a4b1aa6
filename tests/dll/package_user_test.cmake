# Unpacks the package into an empty folder, looks at what is there, and follows docs/hosting.md:
# builds the small host with the command that stands there, runs it as it stands there, and compares
# its pictures with the truth:
#
#   cmake -DARCHIVE=FILE -DNAME=ARCHIVE -DWORK=FOLDER -DEMULATOR=PROGRAM -DNOISE=PROGRAM
#     -P package_user_test.cmake
cmake_minimum_required(VERSION 3.25)

set(top "${WORK}/unpacked here/${NAME}")
set(files
  Pmddb832.dll Pmsim.dll pmscan.exe README.md LICENCE
  include/pmddb832.h include/pmsim.h
  lib/Pmddb832.lib lib/pmddb832.def lib/Pmsim.lib lib/pmsim.def
  licences/cli11.txt licences/gcc-runtime.txt licences/gpl-3.txt licences/mingw-w64.txt
  licences/nlohmann-json.txt licences/zlib.txt
  profiles/schema.json profiles/office_feeder.json profiles/pictures/sheet_1.png
  symbols/Pmddb832.pdb symbols/Pmsim.pdb symbols/pmscan.pdb
  docs/hosting.md docs/pmscan.md docs/wireshark/pmddb832.lua)

function(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${top}" OUTPUT_VARIABLE output
    ERROR_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nexpected exit code 0, came ${result}:\n${output}")
  endif()
endfunction()

function(check_files)
  foreach(file IN LISTS files)
    if(NOT EXISTS "${top}/${file}")
      message(FATAL_ERROR "The package holds no ${file}")
    endif()
  endforeach()
  run(sha256sum --check --strict SHA256SUMS)
  file(GLOB_RECURSE found RELATIVE "${top}" "${top}/*")
  file(STRINGS "${top}/SHA256SUMS" sums)
  list(LENGTH found found_count)
  list(LENGTH sums sums_count)
  math(EXPR sums_count "${sums_count} + 1")
  if(NOT found_count EQUAL sums_count)
    message(FATAL_ERROR "SHA256SUMS leaves out one of the ${found_count} files")
  endif()
endfunction()

# What each licence is there for, in its own words.
function(check_licence name words)
  file(READ "${top}/licences/${name}.txt" text)
  string(FIND "${text}" "${words}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "licences/${name}.txt says nothing of ${words}")
  endif()
endfunction()

# A link is a text in brackets with its target in parentheses behind it.
function(check_links document)
  cmake_path(GET document PARENT_PATH folder)
  file(READ "${document}" text)
  string(REPLACE "](" "@link(" text "${text}")
  string(REGEX MATCHALL "@link\\([^)#\n]*" links "${text}")
  foreach(link IN LISTS links)
    string(SUBSTRING "${link}" 6 -1 target)
    if(target MATCHES "://" OR target STREQUAL "")
      continue()
    endif()
    if(NOT EXISTS "${folder}/${target}")
      message(SEND_ERROR "${document}: the link to ${target} leads nowhere")
    endif()
    set_property(GLOBAL APPEND PROPERTY links "${target}")
  endforeach()
endfunction()

function(check_documents)
  file(GLOB_RECURSE documents "${top}/*.md")
  foreach(document IN LISTS documents)
    check_links("${document}")
    file(STRINGS "${document}" lines REGEX "simulator/profiles")
    if(lines)
      message(SEND_ERROR "${document} names a folder that is another one here: ${lines}")
    endif()
  endforeach()
  get_property(links GLOBAL PROPERTY links)
  list(LENGTH links count)
  if(count LESS 60)
    message(FATAL_ERROR "Expected at least 60 links in the documents, found ${count}")
  endif()
endfunction()

# The lines of hosting.md that are commands of `program`.
function(commands_of program variable)
  file(STRINGS "${top}/docs/hosting.md" lines REGEX "^${program} ")
  if(lines STREQUAL "")
    message(FATAL_ERROR "docs/hosting.md holds no command of ${program}")
  endif()
  set(${variable} "${lines}" PARENT_SCOPE)
endfunction()

function(build_host)
  file(READ "${top}/docs/hosting.md" text)
  string(REGEX MATCH "\n```c\n(.*)\n}\n```" block "${text}")
  file(CONFIGURE OUTPUT "${top}/host.c" CONTENT "${CMAKE_MATCH_1}\n}\n" @ONLY)
  commands_of(x86_64-w64-mingw32-gcc commands)
  foreach(command IN LISTS commands)
    separate_arguments(words UNIX_COMMAND "${command}")
    run(${words})
  endforeach()
endfunction()

function(scan)
  file(REMOVE "${top}/page.pgm")
  run(${EMULATOR} host.exe ${ARGN})
endfunction()

function(run_documented_scans)
  commands_of(host.exe commands)
  foreach(command IN LISTS commands)
    separate_arguments(words UNIX_COMMAND "${command}")
    list(POP_FRONT words)
    scan(${words})
    file(READ "${top}/page.pgm" header LIMIT 15)
    if(NOT header STREQUAL "P5 400 300 255\n")
      message(FATAL_ERROR "${command}: the picture begins with ${header}")
    endif()
  endforeach()
endfunction()

# From a scanner file of the user's own, recorded, and again from what was recorded.
function(compare_with_truth family)
  run(${EMULATOR} "${NOISE}" write noise.bmp)
  file(WRITE "${top}/own.json" "{\"base\": \"${family}\", \"original\": \"noise.bmp\"}\n")
  scan(sim:own.json own.capture)
  run(${EMULATOR} "${NOISE}" compare page.pgm)
  scan(capture:own.capture)
  run(${EMULATOR} "${NOISE}" compare page.pgm)
  run(${EMULATOR} pmscan.exe decode own.capture)
endfunction()

function(check_refusal)
  execute_process(COMMAND ${EMULATOR} host.exe sim:office_feder.json WORKING_DIRECTORY "${top}"
    ERROR_VARIABLE words RESULT_VARIABLE result)
  if(NOT result EQUAL 1 OR NOT words MATCHES "office_feder.json: ")
    message(FATAL_ERROR "A scanner file that is not there: exit code ${result}, ${words}")
  endif()
endfunction()

file(REMOVE_RECURSE "${WORK}")
file(ARCHIVE_EXTRACT INPUT "${ARCHIVE}" DESTINATION "${WORK}/unpacked here")
check_files()
check_licence(cli11 "CLI11")
check_licence(gcc-runtime "GCC RUNTIME LIBRARY EXCEPTION")
check_licence(gpl-3 "Version 3, 29 June 2007")
check_licence(mingw-w64 "winpthreads")
check_licence(nlohmann-json "Niels Lohmann")
check_licence(zlib "Jean-loup Gailly")
check_documents()
build_host()
check_refusal()
run_documented_scans()
compare_with_truth(extended)
compare_with_truth(standard)
