# What our libraries and programs for Windows share: flags, and what a file that is handed out has
# besides.

target_link_options(pmddb832_options INTERFACE
  -static -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)

if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
  # Symbols name files. The linker finds those of the toolchain in the build folder, and that is named
  # by where debuggers are told to look for it, so that the same sources make the same symbols wherever
  # they lie.
  file(CREATE_LINK /usr "${CMAKE_BINARY_DIR}/toolchain" SYMBOLIC)
  set(sources_of_debugger "C:/pmddb832")
  set(build_of_debugger "${sources_of_debugger}/build/windows")
  # Folders that the machine names for all its programs would stand in the symbols too.
  set(CMAKE_CXX_LINKER_LAUNCHER "${CMAKE_COMMAND}" -E env --unset=LIBRARY_PATH)
  # Calls through pointers are checked, and so is the stack where arrays lie on it.
  set(protection -mguard=cf -fstack-protector-strong)
  target_compile_options(pmddb832_options INTERFACE
    ${protection} -gcodeview -gno-codeview-command-line -fdebug-compilation-dir=.
    "-fdebug-prefix-map=/usr=${build_of_debugger}/toolchain"
    "-fdebug-prefix-map=${PROJECT_SOURCE_DIR}=${sources_of_debugger}"
    "-fdebug-prefix-map=${CMAKE_BINARY_DIR}=${build_of_debugger}"
    # The second names of constructors would be among the functions that may be called through
    # pointers.
    "SHELL:-Xclang -mno-constructor-aliases")
  target_link_options(pmddb832_options INTERFACE
    --sysroot=toolchain --ld-path=toolchain/lib/llvm-19/bin/ld.lld ${protection}
    -Wl,--gc-sections -Wl,--undefined=_load_config_used
    -Wl,-Xlink=-pdbsourcepath:${build_of_debugger}
    # A shadow stack may hold copies of the return addresses. Sums of the contents stand in the place
    # of the time and of no sum at all.
    -Wl,-Xlink=-cetcompat -Wl,-Xlink=-Brepro -Wl,-Xlink=-release)
  target_link_libraries(pmddb832_options INTERFACE load_configuration)
else()
  target_link_options(pmddb832_options INTERFACE -Wl,--no-insert-timestamp)
endif()

# What is handed out holds no symbols: clang's linker writes those of `target` into a file beside it,
# TARGET.pdb. With a second argument, the build fails when the target has more bytes than that.
function(hand_out target)
  target_link_options(${target} PRIVATE -s)
  if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    target_link_options(${target} PRIVATE
      -Wl,--pdb=${target}.pdb -Wl,-Xlink=-pdbaltpath:%_PDB%)
  endif()
  if(ARGN)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND "${CMAKE_COMMAND}" "-DFILE=$<TARGET_FILE:${target}>" "-DMOST_BYTES=${ARGN}"
        -P "${PROJECT_SOURCE_DIR}/cmake/limit_size.cmake"
      VERBATIM)
  endif()
endfunction()
