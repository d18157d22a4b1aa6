# What is handed out, as build/windows/pmddb832-VERSION.zip:
#
#   cmake --workflow --preset package

set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
include(package_documents)
install_documents(cmake/package/README.md)
set(terms /usr/share/doc)
install_licences(
  cli11 ${terms}/libcli11-dev/copyright
  gcc-runtime ${terms}/gcc-mingw-w64-x86-64-posix-runtime/copyright
  gpl-3 /usr/share/common-licenses/GPL-3
  mingw-w64 ${terms}/mingw-w64-x86-64-dev/copyright
  nlohmann-json ${terms}/nlohmann-json3-dev/copyright
  zlib ${terms}/libz-mingw-w64-dev/copyright)
install(TARGETS Pmddb832 Pmsim RUNTIME DESTINATION . ARCHIVE DESTINATION lib)
install(TARGETS pmscan RUNTIME DESTINATION .)
install(FILES interface/pmddb832.def pmsim/pmsim.def DESTINATION lib)
install(FILES interface/pmddb832.h pmsim/pmsim.h DESTINATION include)
install(FILES "${CMAKE_BINARY_DIR}/Pmddb832.pdb" "${CMAKE_BINARY_DIR}/Pmsim.pdb"
    "${CMAKE_BINARY_DIR}/pmscan.pdb"
  DESTINATION symbols)

add_custom_target(package_archive
  COMMAND "${CMAKE_COMMAND}" "-DBUILD=${CMAKE_BINARY_DIR}" "-DNAME=pmddb832-${PROJECT_VERSION}"
    -DFORMAT=zip -P "${PROJECT_SOURCE_DIR}/cmake/pack.cmake"
  VERBATIM)
add_dependencies(package_archive Pmddb832 Pmsim host_header pmscan)
