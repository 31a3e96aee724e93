#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "log/Address.h"
#include "log/Packet.h"

namespace upnp::log {

/// The pieces of a line that tell of a packet, before anybody has asked whether they are enough for one. The
/// texts are parts of the line.
struct LineFields {
  struct End {
    std::string_view text;
    std::optional<Address> address;
    std::optional<std::uint16_t> port;
  };

  End source;
  End destination;
  std::string_view protocol;
  /// The router's interfaces. One that is told and empty is the router itself.
  std::optional<std::string_view> inInterface;
  std::optional<std::string_view> outInterface;
  /// A word for the direction, as "inbound" or "Outgoing".
  std::string_view direction;

  /// Nothing without two addresses, or with neither a protocol nor a port to go to.
  std::optional<Packet> ToPacket(const Sides& sides) const;
};

/// Reads an address at `position` of the text, in square brackets or not, and goes behind it; false when
/// there is none.
bool TakeAddress(std::string_view text, std::size_t& position, LineFields::End& end);
/// Reads a decimal number up to 65535 at `position` and goes behind it.
bool TakePort(std::string_view text, std::size_t& position, LineFields::End& end);

}  // namespace upnp::log
