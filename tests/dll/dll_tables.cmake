# What the built DLL offers, needs and declares, read from its tables.
foreach(table exports imports flags version)
  add_test(NAME dll_${table}
    COMMAND "${CMAKE_COMMAND}"
      "-DDLL=$<TARGET_FILE:Pmddb832>" "-DOBJDUMP=${CMAKE_OBJDUMP}"
      "-DVERSION=${PROJECT_VERSION}" "-DTABLE=${table}"
      -P "${CMAKE_CURRENT_SOURCE_DIR}/check_dll.cmake")
endforeach()
