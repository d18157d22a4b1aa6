# Fails when one of the files names a folder of the machine that built it:
#
#   cmake "-DFILES=FILE;FILE" "-DFOLDERS=FOLDER;FOLDER" -P paths_test.cmake
cmake_minimum_required(VERSION 3.25)

set(patterns "")
foreach(folder /usr/ /tmp/ /home/ /root/ ${FOLDERS})
  list(APPEND patterns -e "${folder}")
endforeach()
execute_process(COMMAND grep --text --only-matching --fixed-strings --with-filename ${patterns} ${FILES}
  OUTPUT_VARIABLE found RESULT_VARIABLE result)
if(NOT result EQUAL 1)
  message(FATAL_ERROR "Expected no folder of this machine, found (${result}):\n${found}")
endif()
