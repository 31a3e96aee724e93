#pragma once

#include <optional>
#include <string>

#include "rules/Gateway.h"

namespace upnp {

/// An entry of a router's table in the router's own words.
struct EntryText {
  std::string externalPort;
  std::string protocol;
  std::string client;
  std::string internalPort;
  std::string description;
  std::string enabled;
  std::string remoteHost;
  std::string lease;
};

/// Reads an entry as it was meant: with blanks around the words, numbers and names in any case, a range of
/// ports in the place of one. "Anybody" as a remote host is an empty text afterwards, and so is the client of
/// an entry that leads nowhere. Nothing when there is no port that it is about.
std::optional<PortMapping> ReadEntry(const EntryText& text);

}  // namespace upnp
