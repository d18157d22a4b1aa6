# What hosts are given: the headers, read as C and linked, the small host of the document, and the
# package.
enable_language(C)
set(CMAKE_C_STANDARD 17)
set(CMAKE_C_EXTENSIONS OFF)

function(add_c_host name source)
  add_executable(${name} "${source}")
  target_compile_options(${name} PRIVATE -Wall -Wextra -Werror)
  target_include_directories(${name} PRIVATE
    "${PROJECT_SOURCE_DIR}/interface" "${PROJECT_SOURCE_DIR}/pmsim")
  target_link_libraries(${name} PRIVATE Pmddb832)
endfunction()

add_c_host(c_header_test c_header_test.c)
add_test(NAME c_header COMMAND c_header_test)

# The code block of the document, as it stands there.
set(document "${PROJECT_SOURCE_DIR}/docs/hosting.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${document}")
file(READ "${document}" text)
string(REGEX MATCH "\n```c\n(.*)\n}\n```" block "${text}")
if(block STREQUAL "")
  message(FATAL_ERROR "${document} holds no host")
endif()
file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/small_host.c" CONTENT "${CMAKE_MATCH_1}\n}\n"
  @ONLY)
add_c_host(small_host "${CMAKE_CURRENT_BINARY_DIR}/small_host.c")
target_link_libraries(small_host PRIVATE Pmsim sti ole32)
target_link_options(small_host PRIVATE -municode)
set(still_image_folder "${CMAKE_BINARY_DIR}/still_image_test")
set_target_properties(small_host PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${still_image_folder}")
add_dependencies(small_host still_image_programs)
add_custom_command(TARGET small_host POST_BUILD
  COMMAND "${CMAKE_COMMAND}" -E copy_if_different "$<TARGET_FILE:Pmsim>" "${still_image_folder}")
add_test(NAME small_host
  COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:small_host>"
    "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}" "-DDEVICE={fake}\\0000"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/small_host_test.cmake")
set_tests_properties(small_host PROPERTIES
  WORKING_DIRECTORY "${still_image_folder}" ENVIRONMENT "WINEDLLOVERRIDES=sti=n" TIMEOUT 300)

if(NOT TARGET package_archive)
  return()
endif()

# The package: once packed, two tests look at it.
set(archive "pmddb832-${PROJECT_VERSION}")
add_test(NAME package_archive
  COMMAND "${CMAKE_COMMAND}" --build "${CMAKE_BINARY_DIR}" --target package_archive)
set_tests_properties(package_archive PROPERTIES FIXTURES_SETUP package TIMEOUT 300)

# The same sources make the same package, wherever they lie.
add_test(NAME package
  COMMAND "${CMAKE_COMMAND}" "-DSOURCE=${PROJECT_SOURCE_DIR}" "-DBUILD=${CMAKE_BINARY_DIR}"
    "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/package" "-DNAME=${archive}"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/package_test.cmake")
set_tests_properties(package PROPERTIES FIXTURES_REQUIRED package TIMEOUT 1500)

# In an empty folder, without the sources: what is there, and the host of the document with
# simulated scanners.
add_executable(noise_page noise_page.cpp)
target_link_libraries(noise_page PRIVATE pmddb832_options)
add_test(NAME package_user
  COMMAND "${CMAKE_COMMAND}" "-DARCHIVE=${CMAKE_BINARY_DIR}/${archive}.zip" "-DNAME=${archive}"
    "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/package_user"
    "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}" "-DNOISE=$<TARGET_FILE:noise_page>"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/package_user_test.cmake")
set_tests_properties(package_user PROPERTIES FIXTURES_REQUIRED package TIMEOUT 300)
