#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// The counters of this computer's TCP segments. They count up and wrap.
struct TcpStatistics {
  std::uint32_t inSegments = 0;
  std::uint32_t outSegments = 0;
};

class Network {
 public:
  virtual ~Network() = default;
  /// Dotted decimal address of the adapter that holds the default route; with no route the first address that
  /// isn't loopback; with none "127.0.0.1". Opens no connection.
  virtual std::string LocalIP() = 0;
  /// True when the machine says that it is connected to the Internet. `flags` receives the kind of
  /// connection.
  virtual bool ConnectedState(std::int32_t& flags) = 0;
  /// Leaves `statistics` as it is when the machine has none.
  virtual void GetTcpStatistics(TcpStatistics& statistics) = 0;
};

}  // namespace platform
