#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// The services that the program can name by itself. The table knows nothing of protocols.
struct WellKnownPort {
  std::int32_t lPort;
  std::string_view sDescription;
};

/// In the order of their ports.
std::span<const WellKnownPort> WellKnownPorts();

/// Empty for a port that isn't in the table.
std::string_view WellKnownPortDescription(std::int32_t lPort);
