#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace upnp {

/// The host of "http://host:port/path". Empty for any other text.
std::string HostOf(std::string_view url);
/// The port of such an address; 80 when it has none, 0 when the text is no such address.
std::uint16_t PortOf(std::string_view url);
/// The path of such an address with everything behind it, from its "/"; "/" when it has none.
std::string PathOf(std::string_view url);
/// Such an address with `host` in the place of its own; port and path stay. Empty for any other text.
std::string WithHost(std::string_view url, std::string_view host);

/// The router's own page, as it may be handed to the shell: `url` when it is a http or https address on
/// `router` of plain characters, otherwise "http://<router>/". Empty when `router` is no dotted address.
std::string RouterPage(std::string_view url, std::string_view router);

}  // namespace upnp
