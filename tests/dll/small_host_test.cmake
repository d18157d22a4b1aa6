# Runs the small host of the document and looks at the picture that it writes:
#
#   cmake -DPROGRAM=PROGRAM -DEMULATOR=PROGRAM -DDEVICE=NAME -P small_host_test.cmake
cmake_minimum_required(VERSION 3.25)

function(expect subject found expected)
  if(NOT found STREQUAL expected)
    message(FATAL_ERROR "${subject}: expected ${expected}, found ${found}")
  endif()
endfunction()

file(REMOVE page.pgm)
execute_process(COMMAND "${CMAKE_COMMAND}" -E env FAKE_STI_FAULT=open ${EMULATOR} "${PROGRAM}" "${DEVICE}"
  RESULT_VARIABLE result ERROR_VARIABLE errors)
expect("Exit code without a device" "${result}" 1)
if(NOT errors MATCHES "Opening the device failed: code 7")
  message(FATAL_ERROR "Without a device it says: ${errors}")
endif()

execute_process(COMMAND ${EMULATOR} "${PROGRAM}" "${DEVICE}" RESULT_VARIABLE result)
expect("Exit code" "${result}" 0)
file(READ page.pgm header LIMIT 15)
expect("Header" "${header}" "P5 400 300 255\n")
file(SIZE page.pgm bytes)
math(EXPR pixels "${bytes} - 15")
expect("Bytes of pixels" "${pixels}" 120000)
# The page has a white margin, and a title in dark letters.
file(READ page.pgm hex OFFSET 15 HEX)
string(REGEX REPLACE "(..)" "\\1 " pixels "${hex}")
foreach(tone "ff ff ff" "[01][0-9a-f] [01][0-9a-f] [01][0-9a-f] ")
  if(NOT pixels MATCHES "${tone}")
    message(FATAL_ERROR "The picture shows nothing like ${tone}")
  endif()
endforeach()
