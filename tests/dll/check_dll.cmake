# Compares one table of a DLL with what its hosts rely on:
#
#   cmake -DDLL=FILE -DOBJDUMP=PROGRAM -DVERSION=x.y.z -DTABLE=NAME -P check_dll.cmake
#
# TABLE is exports, imports, flags or version.
cmake_minimum_required(VERSION 3.25)

set(Pmddb832_exports
  "1 PMAbortScan"
  "2 PMAcquireImage"
  "3 PMCloseScanner"
  "4 PMEject"
  "5 PMEnableOption"
  "6 PMFeed"
  "7 PMGetOptionStatus"
  "8 PMGetScanError"
  "9 PMGetScanPaperSize"
  "10 PMInitAcquire"
  "11 PMOpenScanner"
  "12 PMReset"
  "13 PMSetFocus"
  "14 PMSetScannerHardware"
  "15 DllMain")
set(Pmddb832_libraries KERNEL32.dll OLEAUT32.dll USER32.dll msvcrt.dll ole32.dll wiaservc.dll)
set(Pmsim_exports "1 PmsimCreateDevice")
set(Pmsim_libraries KERNEL32.dll SHELL32.dll msvcrt.dll ole32.dll)
cmake_path(GET DLL STEM name)

function(expect subject found expected)
  if(NOT found STREQUAL expected)
    message(FATAL_ERROR "${subject}\n  expected: ${expected}\n  found:    ${found}")
  endif()
endfunction()

function(expect_match subject regex)
  if(NOT headers MATCHES "${regex}")
    message(FATAL_ERROR "${subject}: nothing in the DLL's headers matches ${regex}")
  endif()
endfunction()

# Names by ordinal. Each address has a name, so that nothing is exported by ordinal alone.
function(check_exports)
  expect_match("First ordinal" "\nOrdinal Base[ \t]+1\n")
  list(LENGTH ${name}_exports count)
  math(EXPR count "${count}" OUTPUT_FORMAT HEXADECIMAL)
  string(SUBSTRING "${count}" 2 -1 count)
  expect_match("Count of addresses" "\tExport Address Table[ \t]+0*${count}\n")
  string(REGEX MATCHALL "\t\\[ *[0-9]+\\] [^+\n][^\n]*" rows "${headers}")
  set(found "")
  foreach(row IN LISTS rows)
    string(REGEX MATCH "([0-9]+)\\] (.+)" row "${row}")
    math(EXPR ordinal "${CMAKE_MATCH_1} + 1")
    list(APPEND found "${ordinal} ${CMAKE_MATCH_2}")
  endforeach()
  list(SORT found COMPARE NATURAL)
  expect("Exports" "${found}" "${${name}_exports}")
endfunction()

function(check_imports)
  expect_match("Delayed imports" "\nEntry d 0+ 0+ Delay Import Directory")
  string(REGEX MATCHALL "DLL Name: [^\n]+" found "${headers}")
  list(TRANSFORM found REPLACE "DLL Name: " "")
  list(SORT found)
  expect("Libraries" "${found}" "${${name}_libraries}")
  if(NOT wiaservc.dll IN_LIST found)
    return()
  endif()
  expect_match("Imports of the image service"
    "DLL Name: wiaservc.dll\n[^\n]+\n\t[0-9a-f]+[ \t]+[0-9]+[ \t]+wiasFormatArgs[ \t]*\n\n")
endfunction()

function(check_flags)
  expect_match("Machine" "file format pei-x86-64\n")
  expect_match("Addresses over 4 GB" "\tHIGH_ENTROPY_VA\n")
  expect_match("Random base address" "\tDYNAMIC_BASE\n")
  expect_match("Data is no code" "\tNX_COMPAT\n")
  # Without relocations the base address stays where it was.
  expect_match("Relocations" "\nEntry 5 [0-9a-f]+ 0*[1-9a-f][0-9a-f]* Base Relocation Directory")
endfunction()

function(check_version)
  expect_match("Resources" "\nEntry 2 [0-9a-f]+ 0*[1-9a-f][0-9a-f]* Resource Directory")
  file(STRINGS "${DLL}" texts ENCODING UTF-16LE LENGTH_MINIMUM 5)
  foreach(entry VS_VERSION_INFO "FileVersion;${VERSION}" "ProductVersion;${VERSION}"
                "OriginalFilename;${name}.dll")
    string(FIND ";${texts};" ";${entry};" place)
    if(place EQUAL -1)
      message(FATAL_ERROR "The version resource does not hold ${entry}")
    endif()
  endforeach()
endfunction()

execute_process(COMMAND "${OBJDUMP}" --private-headers "${DLL}"
  OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
cmake_language(CALL check_${TABLE})
