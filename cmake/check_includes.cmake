# Checks that every include goes down a floor, prints each one that does not, and fails then:
#
#   cmake -P cmake/check_includes.cmake
#
# Tests, fuzz targets and benchmarks may know everything and are not checked.
cmake_minimum_required(VERSION 3.25)
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH top)

# Rooms below each room of the module, and what the programs outside may know of it.
set(platform_knows)
set(wire_knows platform)
set(transport_knows wire platform)
set(imaging_knows transport wire platform)
set(extended_knows imaging transport wire platform)
set(standard_knows imaging transport wire platform)
set(interface_knows extended standard imaging transport wire platform)
set(device_headers transport/raw_device.h transport/still_image_device.h)
set(simulator_knows ${device_headers})
set(capture_knows ${device_headers} wire interface/scanner_settings.h
  transport/acquisition_records.h)
set(pmscan_knows ${device_headers} capture simulator wire interface/exports.h
  interface/scanner_settings.h transport/acquisition_records.h)
set(pmsim_knows ${device_headers} capture simulator pmscan/pictures/picture_reader.h)
# The scanner's side keeps words of its own; what happens on the cable is told as captures tell it.
set(simulator_faults_knows wire capture/conversation/conversation.h)
set(module_rooms platform wire transport imaging extended standard interface)
set(rooms ${module_rooms} capture simulator pmscan pmsim)

# May be read from every floor of the module.
set(settings_record interface/scanner_settings.h)

# What outsiders include must bring no other headers of ours along but one another.
set(leaves ${device_headers} interface/scanner_settings.h transport/acquisition_records.h)

function(check_include room file included)
  string(REGEX MATCH "^[^/]*" included_room "${included}")
  if(file IN_LIST leaves AND included IN_LIST leaves)
    set(allowed TRUE)
  elseif(file IN_LIST leaves)
    set(allowed FALSE)
  elseif(included STREQUAL settings_record AND room IN_LIST module_rooms)
    set(allowed TRUE)
  elseif(included_room STREQUAL room OR included_room IN_LIST ${room}_knows)
    set(allowed TRUE)
  elseif(included IN_LIST ${room}_knows)
    set(allowed TRUE)
  elseif(file MATCHES "^simulator/faults/" AND (included IN_LIST simulator_faults_knows
      OR included_room IN_LIST simulator_faults_knows))
    set(allowed TRUE)
  else()
    set(allowed FALSE)
  endif()
  if(NOT allowed)
    set(wrong "${wrong}  ${file} includes ${included}\n" PARENT_SCOPE)
  endif()
endfunction()

# Headers of one system, and of the libraries that stand for another's: for one room of the module
# and one folder of pmscan alone.
set(windows_headers windows.h)
set(native_headers dlfcn.h jpeglib.h png.h poll.h sys/ioctl.h tiffio.h unistd.h)

function(check_system_include room file included)
  foreach(system windows native)
    if(included IN_LIST ${system}_headers AND NOT file MATCHES "^(platform|pmsim|pmscan/${system})/")
      set(wrong "${wrong}  ${file} includes ${included}\n" PARENT_SCOPE)
    endif()
  endforeach()
endfunction()

# What pmscan does for one system is reached by the headers that all have in common.
function(check_system_folder file included)
  string(REGEX MATCH "^pmscan/(windows|native)/" folder "${included}")
  if(folder AND file MATCHES "^pmscan/" AND NOT file MATCHES "^${folder}")
    set(wrong "${wrong}  ${file} includes ${included}\n" PARENT_SCOPE)
  endif()
endfunction()

set(wrong "")
set(checked 0)
foreach(room IN LISTS rooms)
  file(GLOB_RECURSE files RELATIVE "${top}" "${top}/${room}/*.h" "${top}/${room}/*.cpp")
  foreach(file IN LISTS files)
    file(STRINGS "${top}/${file}" lines REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE ".*[<\"]([^>\"]*)[>\"].*" "\\1" included "${line}")
      string(REGEX MATCH "^[^/]*" first "${included}")
      if(line MATCHES "<" AND NOT first IN_LIST rooms)
        check_system_include(${room} ${file} "${included}")
      else()
        check_include(${room} ${file} "${included}")
        check_system_folder(${file} "${included}")
        math(EXPR checked "${checked} + 1")
      endif()
    endforeach()
  endforeach()
endforeach()

if(checked EQUAL 0)
  message(FATAL_ERROR "found no includes to check")
endif()
if(NOT wrong STREQUAL "")
  message(FATAL_ERROR "includes of rooms that theirs must not know:\n${wrong}")
endif()
message(STATUS "${checked} includes go down the floors")
