# The second compiler for Windows.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
include("${CMAKE_CURRENT_LIST_DIR}/mingw_w64.cmake")
