# Warnings, language limits and link flags that our own targets share.

set(PMDDB832_SANITIZE "" CACHE STRING "Sanitizers to build with, as in address,undefined")
option(PMDDB832_FUZZ "Build the fuzz targets (clang only)" OFF)
option(PMDDB832_COVERAGE "Record which lines and branches run (clang only)" OFF)
option(PMDDB832_UNIT_TESTS "Build the tests that link the sources, not only those of the built files" ON)
option(PMDDB832_BENCHMARKS "Build the benchmarks" OFF)

add_library(pmddb832_options INTERFACE)
target_include_directories(pmddb832_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(pmddb832_options INTERFACE
  -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow -Werror
  # GCC 12 takes the assignment of a literal to a std::string for an overlapping copy at -O3.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=." "-ffile-prefix-map=${CMAKE_BINARY_DIR}=build")
if(PMDDB832_SANITIZE)
  # The check of dynamic types needs the type information that the module is built without.
  set(sanitizers -fsanitize=${PMDDB832_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_compile_options(pmddb832_options INTERFACE ${sanitizers})
  target_link_options(pmddb832_options INTERFACE ${sanitizers})
  if(PMDDB832_SANITIZE MATCHES memory)
    target_compile_options(pmddb832_options INTERFACE
      "-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/memory_sanitizer.ignore")
  endif()
endif()
if(PMDDB832_COVERAGE)
  set(coverage -fprofile-instr-generate -fcoverage-mapping -fcoverage-mcdc)
  target_compile_options(pmddb832_options INTERFACE ${coverage})
  target_link_options(pmddb832_options INTERFACE ${coverage})
endif()
if(PMDDB832_FUZZ)
  target_compile_options(pmddb832_options INTERFACE -fsanitize=fuzzer-no-link)
  # Programs that are no fuzz targets take what the instrumented code calls from a sanitizer's runtime.
  target_link_options(pmddb832_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
# A room of the module: built without exceptions and run-time type information.
function(add_module_room name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC pmddb832_options)
  target_compile_options(${name} PRIVATE -fno-exceptions -fno-rtti)
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

# The version resource of a program or DLL for Windows: its file, type and what Windows says it is.
function(add_version_resource name file type description)
  set(resource "${CMAKE_CURRENT_BINARY_DIR}/${name}.rc")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${resource}" @ONLY)
  target_sources(${name} PRIVATE "${resource}")
endfunction()

# A DLL for hosts, NAME.dll, with its version resource; hosts link with NAME.lib.
function(add_host_library name description definition)
  add_library(${name} SHARED ${ARGN})
  add_version_resource(${name} ${name}.dll VFT_DLL "${description}")
  # The linker's command stands in the symbols, so the module definition is named without a folder
  # of this machine.
  set(exports "${CMAKE_CURRENT_BINARY_DIR}/${definition}")
  configure_file("${definition}" "${exports}" COPYONLY)
  file(RELATIVE_PATH exports_of_linker "${CMAKE_BINARY_DIR}" "${exports}")
  target_link_options(${name} PRIVATE "${exports_of_linker}")
  set_target_properties(${name} PROPERTIES
    PREFIX "" LINKER_LANGUAGE CXX LINK_DEPENDS "${exports}" IMPORT_PREFIX "" IMPORT_SUFFIX ".lib"
    ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
endfunction()

# Header-only libraries of the distribution, also for the cross build: linked into a folder of
# their own, so that no other header of the build machine is found.
function(add_header_library name folder)
  find_path(${name}_HEADERS "${folder}" PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(isolated "${CMAKE_BINARY_DIR}/headers/${name}")
  file(MAKE_DIRECTORY "${isolated}")
  file(CREATE_LINK "${${name}_HEADERS}/${folder}" "${isolated}/${folder}" SYMBOLIC)
  add_library(${name} INTERFACE)
  target_include_directories(${name} SYSTEM INTERFACE "${isolated}")
endfunction()
