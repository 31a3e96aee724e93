#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace upnp {

/// A WAN connection that a gateway offers.
struct ConnectionService {
  std::string type;        ///< "urn:schemas-upnp-org:service:WANIPConnection:1" for instance
  std::string controlUrl;  ///< absolute
};

/// What a gateway's description says.
struct DeviceDescription {
  std::string device;  ///< the identifier of the whole device, "uuid:..."
  std::string type;
  std::string name;
  std::string maker;
  std::string model;
  std::string page;  ///< the router's own page, by RouterPage
  std::vector<ConnectionService> connections;
};

/// What a description may hold at most. What is longer is no description.
inline constexpr std::size_t kLongestDescription = 64 * 1024;

/// Reads a description that came from `location`, whose host is the address that answered the search. What
/// the text lacks stays empty; a text that is no description gives no connections. Control addresses lead to
/// the host of `location`, whatever host the text names: a router speaks for itself, and often by a name or
/// an address that only it knows.
DeviceDescription ReadDescription(std::string_view xml, const std::string& location);

}  // namespace upnp
