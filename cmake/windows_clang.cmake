# The compiler and the linker of what is handed out.
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-windows-gnu)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-windows-gnu)
# Threads are a library of their own, which the C++ library needs.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fuse-ld=lld -pthread")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-fuse-ld=lld -pthread")
# As CMake has it, but for an option that this linker does not know.
set(CMAKE_CXX_LINK_LIBRARY_USING_WHOLE_ARCHIVE
  "LINKER:--whole-archive" "<LINK_ITEM>" "LINKER:--no-whole-archive")
set(CMAKE_CXX_LINK_LIBRARY_USING_WHOLE_ARCHIVE_SUPPORTED TRUE)
include("${CMAKE_CURRENT_LIST_DIR}/mingw_w64.cmake")
