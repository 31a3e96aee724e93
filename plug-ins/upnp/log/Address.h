#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace upnp::log {

/// An IPv4 or IPv6 address. One of IPv4 stands in the last four bytes, behind the prefix ::ffff:0:0/96.
struct Address {
  std::array<std::uint8_t, 16> bytes{};

  bool IsIPv4() const;
  /// From the ranges that no router forwards into the Internet: private, shared, link-local, loopback.
  bool IsPrivate() const;
  bool operator==(const Address&) const = default;
};

/// The whole text must be the address: four numbers up to 255 with points between them, or groups of
/// hexadecimal digits with colons between them, of which one run of zeros may be left out.
std::optional<Address> ReadAddress(std::string_view text);

struct Network {
  Address address;
  /// Leading bits that its members share, as in "192.168.1.0/24": 0 to 32 with IPv4, else 0 to 128.
  int prefixLength = 0;

  bool Contains(const Address& member) const;
};

/// What is known of the router's two sides.
struct Sides {
  /// The networks on the side of this computer.
  std::vector<Network> lan;
  std::optional<Address> wanAddress;
};

}  // namespace upnp::log
