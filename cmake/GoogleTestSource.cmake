# GoogleTest, built from its source so that it has our compiler, width and sanitizers. Debian's package googletest
# brings the source; elsewhere say -DHARBOURLINE_GOOGLETEST=<folder of the source>.
set(HARBOURLINE_GOOGLETEST "/usr/src/googletest" CACHE PATH "Folder of GoogleTest's source")
if(NOT EXISTS "${HARBOURLINE_GOOGLETEST}/CMakeLists.txt")
  message(FATAL_ERROR "GoogleTest's source isn't in ${HARBOURLINE_GOOGLETEST}: set HARBOURLINE_GOOGLETEST, or build "
                      "without tests by -DHARBOURLINE_TESTS=OFF")
endif()
set(INSTALL_GTEST OFF)
set(gtest_force_shared_crt ON)
# GoogleTest asks for rules of an older CMake, by which its options would ignore the two lines above.
set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
add_subdirectory("${HARBOURLINE_GOOGLETEST}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
