#pragma once

#include <cstdint>
#include <string>

namespace upnp::log {

enum class Direction {
  kIn,  ///< from the router's WAN side
  kOut,
};

/// What a line of the router's log says of a packet.
struct Packet {
  Direction direction = Direction::kIn;
  /// In capitals, as "TCP"; empty when the line doesn't tell.
  std::string protocol;
  /// As the line writes it.
  std::string sourceAddress;
  /// 0 where the line tells none, as with ICMP.
  std::uint16_t sourcePort = 0;
  std::string destinationAddress;
  std::uint16_t destinationPort = 0;

  bool operator==(const Packet&) const = default;
};

}  // namespace upnp::log
