#include "log/LineFields.h"

#include <algorithm>
#include <array>
#include <string>

#include "log/Characters.h"

namespace upnp::log {

namespace {

constexpr std::size_t kLongestAddress = 39;

/// Behind the characters of one kind, at most one more than an address has.
template <class Kind>
std::size_t EndOfRun(std::string_view text, std::size_t start, Kind isOfKind) {
  const std::size_t most = std::min(text.size(), start + kLongestAddress + 1);
  std::size_t end = start;
  while (end < most && isOfKind(text[end])) ++end;
  return end;
}

bool TakeText(std::string_view text, std::size_t start, std::size_t end, LineFields::End& target) {
  const std::string_view piece = text.substr(start, end - start);
  target.address = ReadAddress(piece);
  target.text = piece;
  return target.address.has_value();
}

/// In capitals, and by its name where the line has one of the common numbers.
std::string ProtocolName(std::string_view text) {
  struct Numbered {
    std::string_view number;
    const char* name;
  };
  static constexpr std::array<Numbered, 4> kNumbered = {
      {{"1", "ICMP"}, {"6", "TCP"}, {"17", "UDP"}, {"58", "ICMPV6"}}};
  for (const Numbered& numbered : kNumbered) {
    if (numbered.number == text) return numbered.name;
  }
  std::string name(text);
  std::transform(name.begin(), name.end(), name.begin(), ToUpper);
  return name;
}

bool NamesWan(std::string_view interface) {
  return ContainsIgnoringCase(interface, "wan") || StartsIgnoringCase(interface, "ppp");
}

bool NamesLan(std::string_view interface) {
  return StartsIgnoringCase(interface, "br") || StartsIgnoringCase(interface, "lan") ||
         StartsIgnoringCase(interface, "wlan");
}

std::optional<Direction> DirectionByInterfaces(const LineFields& fields) {
  const bool hasIn = fields.inInterface.has_value();
  const bool hasOut = fields.outInterface.has_value();
  if (hasIn && NamesWan(*fields.inInterface)) return Direction::kIn;
  if (hasOut && NamesWan(*fields.outInterface)) return Direction::kOut;
  if (hasIn && NamesLan(*fields.inInterface)) return Direction::kOut;
  const bool fromRouter = hasIn && fields.inInterface->empty();
  if (fromRouter && hasOut && !fields.outInterface->empty()) return Direction::kOut;
  return std::nullopt;
}

bool IsOnLan(const Address& address, const Sides& sides) {
  if (sides.lan.empty()) return address.IsPrivate();
  return std::any_of(sides.lan.begin(), sides.lan.end(),
                     [&address](const Network& network) { return network.Contains(address); });
}

Direction DirectionByAddresses(const Address& source, const Address& destination, const Sides& sides) {
  if (IsOnLan(source, sides) || source == sides.wanAddress) return Direction::kOut;
  // Another network of the router, for its guests for instance.
  const bool leaves = !destination.IsPrivate() && destination != sides.wanAddress;
  return source.IsPrivate() && leaves ? Direction::kOut : Direction::kIn;
}

}  // namespace

std::optional<Packet> LineFields::ToPacket(const Sides& sides) const {
  if (!source.address || !destination.address) return std::nullopt;
  if (protocol.empty() && !destination.port) return std::nullopt;
  Packet packet;
  if (StartsIgnoringCase(direction, "in")) {
    packet.direction = Direction::kIn;
  } else if (StartsIgnoringCase(direction, "out")) {
    packet.direction = Direction::kOut;
  } else {
    packet.direction = DirectionByInterfaces(*this).value_or(
        DirectionByAddresses(*source.address, *destination.address, sides));
  }
  packet.protocol = ProtocolName(protocol);
  packet.sourceAddress = source.text;
  packet.sourcePort = source.port.value_or(0);
  packet.destinationAddress = destination.text;
  packet.destinationPort = destination.port.value_or(0);
  return packet;
}

bool TakeAddress(std::string_view text, std::size_t& position, LineFields::End& end) {
  const auto isIPv6 = [](char c) { return IsHexDigit(c) || c == ':'; };
  if (position < text.size() && text[position] == '[') {
    const std::size_t close = EndOfRun(text, position + 1, isIPv6);
    if (close == text.size() || text[close] != ']' || !TakeText(text, position + 1, close, end)) return false;
    position = close + 1;
    return true;
  }
  std::size_t stop = EndOfRun(text, position, [](char c) { return IsDigit(c) || c == '.'; });
  // A point behind it ends the sentence.
  if (stop > position && text[stop - 1] == '.') --stop;
  if (!TakeText(text, position, stop, end)) {
    stop = EndOfRun(text, position, isIPv6);
    if (!TakeText(text, position, stop, end)) return false;
  }
  position = stop;
  return true;
}

bool TakePort(std::string_view text, std::size_t& position, LineFields::End& end) {
  constexpr unsigned kGreatestPort = 65535;
  unsigned number = 0;
  const std::size_t start = position;
  while (position < text.size() && IsDigit(text[position])) {
    number = number * 10 + static_cast<unsigned>(text[position] - '0');
    if (number > kGreatestPort) return false;
    ++position;
  }
  if (position == start) return false;
  end.port = static_cast<std::uint16_t>(number);
  return true;
}

}  // namespace upnp::log
