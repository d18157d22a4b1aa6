# Writes pmddb832.h, the header for hosts in C and C++, out of the module's own headers, so that
# there is one description of the record and of the exports:
#
#   cmake -DOUTPUT=FILE -P make_c_header.cmake
cmake_minimum_required(VERSION 3.25)
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH top)

# The text from the first line that begins with `from` to the last one before `to`.
function(read_part variable file from to)
  file(READ "${top}/${file}" text)
  # Brackets and semicolons have a meaning of their own in lists.
  string(FIND "${text}" "\n${from}" start)
  string(SUBSTRING "${text}" ${start} -1 text)
  string(FIND "${text}" "\n${to}" end)
  if(start EQUAL -1 OR end EQUAL -1)
    message(FATAL_ERROR "${file} has no part from '${from}' to '${to}'")
  endif()
  string(SUBSTRING "${text}" 0 ${end} text)
  set(${variable} "${text}\n" PARENT_SCOPE)
endfunction()

# C++ as C: types, names with the module's prefix, and typedefs.
function(turn_into_c variable)
  set(text "${${variable}}")
  string(REGEX REPLACE "std::(u?int[0-9]+_t)" "\\1" text "${text}")
  string(REPLACE "pmddb832::" "" text "${text}")
  string(REGEX REPLACE "enum ([A-Za-z]+) : uint32_t {" "enum \\1 {" text "${text}")
  string(REGEX REPLACE "using ([A-Za-z]+) = void \\(\\*\\)" "typedef void (*\\1)" text "${text}")
  string(REGEX REPLACE "\nstruct ([A-Za-z]+) {([^}]*)};" "\ntypedef struct \\1 {\\2} \\1;" text
    "${text}")
  string(REGEX REPLACE "\nstatic_assert[^\n]*" "" text "${text}")
  string(REPLACE "StillImageDevice*" "struct IStiDevice*" text "${text}")
  string(REPLACE "()" "(void)" text "${text}")
  string(REGEX REPLACE "([^A-Za-z])(ScannerSettings|Acquisition[A-Z][a-z]+|ProgressCallback)"
    "\\1PM\\2" text "${text}")
  string(REGEX REPLACE "([^A-Za-z])k(Acquisition[A-Z][A-Za-z]+)" "\\1PM\\2" text "${text}")
  string(REGEX REPLACE ",\n +" ", " text "${text}")
  string(REGEX REPLACE "; +// " ";  // " text "${text}")
  string(REGEX REPLACE "\n\n\n+" "\n\n" text "${text}")
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

read_part(record interface/scanner_settings.h "// The record through which" "struct SettingsField")
read_part(acquisition transport/acquisition_records.h "// The host's records" "}  // namespace")
read_part(exports interface/exports.h "// Initialises the module" "// Entry point of the library")
turn_into_c(record)
turn_into_c(acquisition)
turn_into_c(exports)

file(WRITE "${OUTPUT}" "// What Pmddb832.dll exports and shares with its host, for C and C++. x64 only, for the module's
// pointers are 64 bits wide. hosting.md shows a small host.

#ifndef PMDDB832_H
#define PMDDB832_H

#include <stdint.h>

#ifdef __cplusplus
extern \"C\" {
#endif

// Windows' still-image device (sti.h).
struct IStiDevice;
${record}
// PMScannerSettings.thresholdT: the scanner's own threshold.
#define PM_THRESHOLD_UNSET 0xFFFF
${acquisition}
// The host calls the functions one at a time, from any one thread. Before a successful
// PMOpenScanner they do nothing and return 0, except PMGetScanError.
${exports}
#ifdef __cplusplus
}
#endif

#endif
")
