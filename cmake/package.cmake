# What is handed out, as build/windows/pmddb832-VERSION.zip:
#
#   cmake --workflow --preset package

set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
install(TARGETS Pmddb832 RUNTIME DESTINATION . ARCHIVE DESTINATION lib)
install(TARGETS pmscan RUNTIME DESTINATION .)
install(FILES interface/pmddb832.def DESTINATION lib)
install(FILES interface/pmddb832.h DESTINATION include)
install(FILES "${CMAKE_BINARY_DIR}/Pmddb832.debug" "${CMAKE_BINARY_DIR}/pmscan.debug"
  DESTINATION symbols)
install(DIRECTORY simulator/profiles DESTINATION .)
install(DIRECTORY docs/wireshark DESTINATION .)
install(DIRECTORY docs/ DESTINATION docs PATTERN wireshark EXCLUDE)

add_custom_target(package_archive
  COMMAND "${CMAKE_COMMAND}" "-DBUILD=${CMAKE_BINARY_DIR}" "-DNAME=pmddb832-${PROJECT_VERSION}"
    -P "${PROJECT_SOURCE_DIR}/cmake/pack.cmake"
  VERBATIM)
add_dependencies(package_archive Pmddb832 host_header pmscan)
