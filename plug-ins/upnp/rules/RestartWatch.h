#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace upnp {

/// What a router says of itself from which a restart can be seen. What it doesn't say stays empty.
struct Signs {
  std::optional<std::uint32_t> bootId;
  std::optional<std::uint32_t> upTime;  ///< seconds
  std::optional<std::string> wanAddress;
};

/// Sees from its signs that a router restarted, or got a new connection, so that its mappings may be gone.
class RestartWatch {
 public:
  /// True when these signs and those before don't fit one run of the router. The first signs are always new
  /// to us and tell nothing.
  bool Notice(const Signs& signs);
  /// Another router is watched from now on.
  void Reset() { last_ = {}; }

 private:
  Signs last_;
};

}  // namespace upnp
