#include "rules/Addresses.h"

#include <algorithm>
#include <array>

namespace upnp {

namespace {

struct Block {
  std::uint32_t address;
  int bits;
  bool isPrivate = false;  ///< used inside of networks, so that it is seen as a sender there

  bool Contains(std::uint32_t other) const { return (other ^ address) >> (32 - bits) == 0; }
};

constexpr std::uint32_t Octets(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
  return a << 24U | b << 16U | c << 8U;
}

/// The blocks of the registry of special-purpose IPv4 addresses that aren't reached from the Internet.
constexpr std::array<Block, 15> kNotPublic = {{
    {Octets(0, 0, 0), 8},
    {Octets(10, 0, 0), 8, true},
    {Octets(100, 64, 0), 10, true},  // between a provider and its customers
    {Octets(127, 0, 0), 8, true},
    {Octets(169, 254, 0), 16, true},
    {Octets(172, 16, 0), 12, true},
    {Octets(192, 0, 0), 24},
    {Octets(192, 0, 2), 24},
    {Octets(192, 88, 99), 24},
    {Octets(192, 168, 0), 16, true},
    {Octets(198, 18, 0), 15},
    {Octets(198, 51, 100), 24},
    {Octets(203, 0, 113), 24},
    {Octets(224, 0, 0), 4},
    {Octets(240, 0, 0), 4},
}};

}  // namespace

std::optional<std::uint32_t> ParseAddress(std::string_view text) {
  std::uint32_t address = 0;
  int octets = 0;
  std::size_t at = 0;
  while (octets < 4) {
    std::uint32_t octet = 0;
    const std::size_t begin = at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9' && at - begin < 3) {
      octet = octet * 10 + static_cast<std::uint32_t>(text[at++] - '0');
    }
    if (at == begin || octet > 255) return std::nullopt;
    address = address << 8U | octet;
    if (++octets == 4) break;
    if (at == text.size() || text[at] != '.') return std::nullopt;
    ++at;
  }
  if (at != text.size()) return std::nullopt;
  return address;
}

bool IsPublicAddress(std::string_view text) {
  const std::optional<std::uint32_t> address = ParseAddress(text);
  if (!address) return false;
  for (const Block& block : kNotPublic) {
    if (block.Contains(*address)) return false;
  }
  return true;
}

bool IsPrivateAddress(std::uint32_t address) {
  return std::any_of(kNotPublic.begin(), kNotPublic.end(),
                     [=](const Block& block) { return block.isPrivate && block.Contains(address); });
}

std::string NeighbourAddress(std::string_view address, int lastOctet) {
  if (!ParseAddress(address) || lastOctet < 1 || lastOctet > 254) return {};
  return std::string(address.substr(0, address.rfind('.') + 1)) + std::to_string(lastOctet);
}

}  // namespace upnp
