# What the built files offer, need and declare, read from their tables.
function(add_table_tests target)
  foreach(table IN LISTS ARGN)
    add_test(NAME ${target}_${table}
      COMMAND "${CMAKE_COMMAND}" "-DFILE=$<TARGET_FILE:${target}>" "-DTABLE=${table}"
        "-DVERSION=${PROJECT_VERSION}" -P "${CMAKE_CURRENT_SOURCE_DIR}/check_binary.cmake")
  endforeach()
endfunction()

add_table_tests(Pmddb832 exports module_imports version flags)
add_table_tests(Pmsim exports version flags)
add_table_tests(pmscan version flags)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  return()
endif()

add_table_tests(Pmddb832 imports sections guard call_targets symbols)
add_table_tests(Pmsim libraries sections guard guarded_exports symbols)
add_table_tests(pmscan libraries sections guard symbols)

add_test(NAME checked_calls
  COMMAND "${CMAKE_COMMAND}"
    "-DARCHIVES=$<TARGET_FILE:interface>;$<TARGET_FILE:extended>;$<TARGET_FILE:standard>;$<TARGET_FILE:imaging>;$<TARGET_FILE:transport>;$<TARGET_FILE:platform_windows>"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/checked_calls_test.cmake")

add_test(NAME paths_in_files
  COMMAND "${CMAKE_COMMAND}"
    "-DFILES=Pmddb832.dll;Pmddb832.lib;Pmddb832.pdb;Pmsim.dll;Pmsim.lib;Pmsim.pdb;pmscan.exe;pmscan.pdb"
    "-DFOLDERS=${PROJECT_SOURCE_DIR};${CMAKE_BINARY_DIR}"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/paths_test.cmake")
set_tests_properties(paths_in_files PROPERTIES WORKING_DIRECTORY "${CMAKE_BINARY_DIR}")
