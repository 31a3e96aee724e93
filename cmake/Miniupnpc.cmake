# miniupnpc, built from its source so that it has our compiler and width. ./run and ./test bring Debian's source package
# into build/miniupnpc; elsewhere say -DHARBOURLINE_MINIUPNPC=<folder of the source>, or do without the UPnP plug-in by
# -DHARBOURLINE_UPNP=OFF.
set(HARBOURLINE_MINIUPNPC "${PROJECT_SOURCE_DIR}/build/miniupnpc" CACHE PATH "Folder of miniupnpc's source")
if(NOT EXISTS "${HARBOURLINE_MINIUPNPC}/CMakeLists.txt")
  message(FATAL_ERROR "miniupnpc's source isn't in ${HARBOURLINE_MINIUPNPC}: set HARBOURLINE_MINIUPNPC, run ./test once, "
                      "or build without the UPnP plug-in by -DHARBOURLINE_UPNP=OFF")
endif()
enable_language(C)

# Only what talks to a gateway whose address is known; releases before 2.2 have all files in one folder.
set(miniupnpc_folder "${HARBOURLINE_MINIUPNPC}")
if(EXISTS "${HARBOURLINE_MINIUPNPC}/src/upnpcommands.c")
  set(miniupnpc_folder "${HARBOURLINE_MINIUPNPC}/src")
endif()
set(miniupnpc_sources)
foreach(name addr_is_reserved connecthostport igd_desc_parse minisoap minissdpc miniupnpc miniwget minixml
             portlistingparse receivedata upnpcommands upnpdev upnperrors upnpreplyparse)
  list(APPEND miniupnpc_sources "${miniupnpc_folder}/${name}.c")
endforeach()
add_library(harbourline_miniupnpc STATIC EXCLUDE_FROM_ALL ${miniupnpc_sources})
# Its build writes this header.
file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/miniupnpc/miniupnpcstrings.h"
     "#define OS_STRING \"Windows\"\n#define MINIUPNPC_VERSION_STRING \"2\"\n"
     "#define UPNP_VERSION_MAJOR 1\n#define UPNP_VERSION_MINOR 1\n#define UPNP_VERSION_STRING \"UPnP/1.1\"\n")
target_include_directories(harbourline_miniupnpc PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/miniupnpc")
target_include_directories(harbourline_miniupnpc SYSTEM PUBLIC "${HARBOURLINE_MINIUPNPC}/include")
target_compile_definitions(harbourline_miniupnpc PUBLIC MINIUPNP_STATICLIB PRIVATE WINVER=0x0601 _WIN32_WINNT=0x0601)
# It waits for routers as long as they please; see the header.
set(bounds "${PROJECT_SOURCE_DIR}/plug-ins/upnp/BoundedSockets.h")
if(MSVC)
  target_compile_options(harbourline_miniupnpc PRIVATE /W0 "/FI${bounds}")
else()
  target_compile_options(harbourline_miniupnpc PRIVATE -w -include "${bounds}")
endif()
set_source_files_properties(${miniupnpc_sources} PROPERTIES OBJECT_DEPENDS "${bounds}")
target_link_libraries(harbourline_miniupnpc PUBLIC ws2_32 iphlpapi)
