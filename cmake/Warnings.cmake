# Warnings are errors in our own code. Somebody with a compiler that we haven't met may want to go on all the same.
option(HARBOURLINE_WARNINGS_ARE_ERRORS "Stop at the first warning" ON)
add_library(harbourline_warnings INTERFACE)
if(MSVC)
  target_compile_options(harbourline_warnings INTERFACE /W4 /permissive- /utf-8
                                                       $<$<BOOL:${HARBOURLINE_WARNINGS_ARE_ERRORS}>:/WX>)
else()
  target_compile_options(harbourline_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                                       $<$<BOOL:${HARBOURLINE_WARNINGS_ARE_ERRORS}>:-Werror>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlapping copies where a text literal is joined with a std::string.
    target_compile_options(harbourline_warnings INTERFACE -Wno-restrict)
  endif()
endif()
