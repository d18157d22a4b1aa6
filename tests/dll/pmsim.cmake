# Pmsim.dll as hosts have it: loaded from C++, linked with from C.
add_unit_tests(pmsim_dll_tests
  SOURCES pmsim_device_entries_test.cpp pmsim_factory_test.cpp
  LIBRARIES ole32)
target_compile_definitions(pmsim_dll_tests PRIVATE ${profiles_definition})
add_dependencies(pmsim_dll_tests Pmsim)

add_c_host(pmsim_c_test pmsim_c_test.c)
target_link_libraries(pmsim_c_test PRIVATE Pmsim)
add_test(NAME pmsim_c COMMAND pmsim_c_test)
