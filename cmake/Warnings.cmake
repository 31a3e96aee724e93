# Warnings are errors in our own code, on every compiler that we build with.
add_library(harbourline_warnings INTERFACE)
if(MSVC)
  target_compile_options(harbourline_warnings INTERFACE /W4 /WX /permissive- /utf-8)
else()
  target_compile_options(harbourline_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlapping copies where a text literal is joined with a std::string.
    target_compile_options(harbourline_warnings INTERFACE -Wno-restrict)
  endif()
endif()
