#pragma once

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
  std::string page;  ///< absolute address of the router's own page; empty when it tells none
  std::vector<ConnectionService> connections;
};

/// Reads a description that came from `location`. What the text lacks stays empty; a text that is no
/// description gives no connections. Control addresses on another host than the description's are left out: a
/// router speaks for itself.
DeviceDescription ReadDescription(std::string_view xml, const std::string& location);

}  // namespace upnp
