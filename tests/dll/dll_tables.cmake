# What the built DLLs offer, need and declare, read from their tables.
foreach(library Pmddb832 Pmsim)
  string(REPLACE Pmddb832 dll test "${library}")
  string(TOLOWER "${test}" test)
  foreach(table exports imports flags version)
    add_test(NAME ${test}_${table}
      COMMAND "${CMAKE_COMMAND}"
        "-DDLL=$<TARGET_FILE:${library}>" "-DOBJDUMP=${CMAKE_OBJDUMP}"
        "-DVERSION=${PROJECT_VERSION}" "-DTABLE=${table}"
        -P "${CMAKE_CURRENT_SOURCE_DIR}/check_dll.cmake")
  endforeach()
endforeach()
