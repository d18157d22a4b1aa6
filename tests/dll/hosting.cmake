# What hosts are given: the header, read as C and linked, the small host of the document, and the
# package.
enable_language(C)
set(CMAKE_C_STANDARD 17)
set(CMAKE_C_EXTENSIONS OFF)

function(add_c_host name source)
  add_executable(${name} "${source}")
  target_compile_options(${name} PRIVATE -Wall -Wextra -Werror)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/interface")
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
target_link_libraries(small_host PRIVATE sti ole32)
target_link_options(small_host PRIVATE -municode)
set(still_image_folder "${CMAKE_BINARY_DIR}/still_image_test")
set_target_properties(small_host PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${still_image_folder}")
add_dependencies(small_host still_image_programs)
add_test(NAME small_host
  COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:small_host>"
    "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}" "-DDEVICE={fake}\\0000"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/small_host_test.cmake")
set_tests_properties(small_host PROPERTIES
  WORKING_DIRECTORY "${still_image_folder}" ENVIRONMENT "WINEDLLOVERRIDES=sti=n" TIMEOUT 300)

# The same sources make the same package, wherever they lie.
add_test(NAME package
  COMMAND "${CMAKE_COMMAND}" "-DSOURCE=${PROJECT_SOURCE_DIR}" "-DBUILD=${CMAKE_BINARY_DIR}"
    "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/package" "-DNAME=pmddb832-${PROJECT_VERSION}"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/package_test.cmake")
set_tests_properties(package PROPERTIES TIMEOUT 1500)
