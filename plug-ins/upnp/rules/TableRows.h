#pragma once

#include <string>
#include <vector>

#include "rules/Gateway.h"

namespace upnp {

/// One entry of a router's table in words.
struct TableRow {
  std::string port;  ///< "TCP 80"
  std::string whose;
  std::string target;  ///< address and port of the computer that receives
  std::string description;
  std::uint32_t lease = 0;  ///< seconds that are left; 0 for ever
};

/// The rows in the order of their ports. `localAddress` is this computer's.
std::vector<TableRow> DescribeTable(std::vector<PortMapping> entries, const std::string& localAddress);

}  // namespace upnp
