#include "log/Address.h"

#include <algorithm>
#include <cstddef>

#include "rules/Addresses.h"

namespace upnp::log {

namespace {

constexpr std::size_t kIPv4Start = 12;
constexpr std::size_t kGroups = 8;

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// Reads the hexadecimal digits at `position` and goes behind them; nothing without digits, or with more than
/// four.
std::optional<unsigned> ReadGroup(std::string_view text, std::size_t& position) {
  constexpr std::size_t kMostDigits = 4;
  const std::size_t start = position;
  unsigned value = 0;
  while (position < text.size()) {
    const int digit = HexDigit(text[position]);
    if (digit < 0) break;
    if (position - start == kMostDigits) return std::nullopt;
    value = value * 16 + static_cast<unsigned>(digit);
    ++position;
  }
  if (position == start) return std::nullopt;
  return value;
}

std::optional<Address> ReadIPv4(std::string_view text) {
  const std::optional<std::uint32_t> number = ParseAddress(text);
  if (!number) return std::nullopt;
  Address address;
  address.bytes[10] = address.bytes[11] = 0xFF;
  for (std::size_t i = 0; i < 4; ++i) {
    address.bytes[kIPv4Start + i] = static_cast<std::uint8_t>(*number >> (24 - 8 * i));
  }
  return address;
}

/// The groups of one side of "::", or of all the text; nothing when a group is empty or too long.
std::optional<std::vector<std::uint16_t>> ReadGroups(std::string_view text) {
  std::vector<std::uint16_t> groups;
  std::size_t position = 0;
  while (!text.empty()) {
    const std::optional<unsigned> group = ReadGroup(text, position);
    if (!group || groups.size() == kGroups) return std::nullopt;
    groups.push_back(static_cast<std::uint16_t>(*group));
    if (position == text.size()) break;
    if (text[position++] != ':') return std::nullopt;
  }
  return groups;
}

std::optional<Address> ReadIPv6(std::string_view text) {
  constexpr std::size_t kLongest = 39;
  if (text.size() > kLongest) return std::nullopt;
  const std::size_t gap = text.find("::");
  const auto left = ReadGroups(text.substr(0, gap));
  const auto right = ReadGroups(gap == std::string_view::npos ? std::string_view() : text.substr(gap + 2));
  if (!left || !right) return std::nullopt;
  const std::size_t count = left->size() + right->size();
  if (gap == std::string_view::npos ? count != kGroups : count >= kGroups) return std::nullopt;

  std::array<std::uint16_t, kGroups> groups{};
  std::copy(left->begin(), left->end(), groups.begin());
  std::copy_backward(right->begin(), right->end(), groups.end());
  Address address;
  for (std::size_t i = 0; i < kGroups; ++i) {
    address.bytes[2 * i] = static_cast<std::uint8_t>(groups[i] >> 8);
    address.bytes[2 * i + 1] = static_cast<std::uint8_t>(groups[i] & 0xFF);
  }
  return address;
}

bool ShareBits(const Address& a, const Address& b, int bits) {
  const auto whole = static_cast<std::ptrdiff_t>(bits / 8);
  if (!std::equal(a.bytes.begin(), a.bytes.begin() + whole, b.bytes.begin())) return false;
  const int rest = bits % 8;
  const auto next = static_cast<std::size_t>(whole);
  return rest == 0 || (a.bytes[next] ^ b.bytes[next]) >> (8 - rest) == 0;
}

}  // namespace

bool Address::IsIPv4() const {
  static const Address prefix = *ReadAddress("0.0.0.0");
  return ShareBits(*this, prefix, 8 * static_cast<int>(kIPv4Start));
}

bool Address::IsPrivate() const {
  if (IsIPv4()) {
    std::uint32_t number = 0;
    for (std::size_t i = kIPv4Start; i < bytes.size(); ++i) number = number << 8U | bytes[i];
    return IsPrivateAddress(number);
  }
  static const std::vector<Network> ranges = {
      {*ReadAddress("fc00::"), 7}, {*ReadAddress("fe80::"), 10}, {*ReadAddress("::1"), 128}};
  return std::any_of(ranges.begin(), ranges.end(),
                     [this](const Network& range) { return range.Contains(*this); });
}

std::optional<Address> ReadAddress(std::string_view text) {
  return text.find(':') == std::string_view::npos ? ReadIPv4(text) : ReadIPv6(text);
}

bool Network::Contains(const Address& member) const {
  if (address.IsIPv4() != member.IsIPv4()) return false;
  const int before = address.IsIPv4() ? 8 * static_cast<int>(kIPv4Start) : 0;
  return ShareBits(address, member, std::clamp(before + prefixLength, 0, 128));
}

}  // namespace upnp::log
