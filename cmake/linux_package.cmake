# What is handed out for Linux, as build/native/pmddb832-VERSION-linux-MACHINE.tar.gz:
#
#   cmake --workflow --preset package-native

set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
install(TARGETS pmscan Pmddb832 RUNTIME DESTINATION . LIBRARY DESTINATION .)
include(package_documents)
install_documents(cmake/linux_package/README.md)
set(terms /usr/share/doc)
install_licences(
  cli11 ${terms}/libcli11-dev/copyright
  nlohmann-json ${terms}/nlohmann-json3-dev/copyright
  zlib ${terms}/zlib1g-dev/copyright)

set(package_name "pmddb832-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR}")
add_custom_target(package_archive
  COMMAND "${CMAKE_COMMAND}" "-DBUILD=${CMAKE_BINARY_DIR}" "-DNAME=${package_name}"
    -DFORMAT=tar.gz -DINSTALL_OPTIONS=--strip -P "${PROJECT_SOURCE_DIR}/cmake/pack.cmake"
  VERBATIM)
add_dependencies(package_archive Pmddb832 pmscan)
