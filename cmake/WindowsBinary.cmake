enable_language(RC)

# What every binary that we hand out has in common: no run-time library beside it, addresses that the system may
# choose, and the project's version in its version information.
function(harbourline_windows_binary target)
  if(MINGW)
    target_link_options(${target} PRIVATE -static -Wl,--dynamicbase -Wl,--nxcompat -Wl,--no-insert-timestamp
                        $<$<CONFIG:Release>:-s>)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
      target_link_options(${target} PRIVATE -Wl,--high-entropy-va)
    endif()
  endif()
  target_compile_definitions(
    ${target}
    PRIVATE HARBOURLINE_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} HARBOURLINE_VERSION_MINOR=${PROJECT_VERSION_MINOR}
            HARBOURLINE_VERSION_REVISION=${PROJECT_VERSION_PATCH})
endfunction()
