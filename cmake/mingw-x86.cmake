# MinGW-w64 in its posix flavour: the win32 flavour lacks std::thread, which GoogleTest needs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(HARBOURLINE_WIDL i686-w64-mingw32-widl)
# The x87 unit keeps more digits than a float has, so that a quotient which is exact as a float isn't exact in it.
add_compile_options(-msse2 -mfpmath=sse)
