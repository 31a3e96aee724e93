#include "rules/EntryText.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

namespace upnp {

namespace {

constexpr char kNoAddress[] = "0.0.0.0";

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::string Lower(std::string_view text) {
  std::string lower(Trimmed(text));
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char sign) {
    return sign >= 'A' && sign <= 'Z' ? static_cast<char>(sign - 'A' + 'a') : sign;
  });
  return lower;
}

template <class Number>
std::optional<Number> ReadNumber(std::string_view text) {
  text = Trimmed(text);
  Number number = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// The first and the last port of "80" or "80-90"; the sign between them is each maker's own.
std::optional<std::pair<std::uint16_t, std::uint16_t>> ReadPorts(std::string_view text) {
  const std::size_t sign = text.find_first_of("-:,");
  const auto first = ReadNumber<std::uint16_t>(text.substr(0, sign));
  const auto last = sign == std::string_view::npos ? first : ReadNumber<std::uint16_t>(text.substr(sign + 1));
  if (!first || !last || *first == 0 || *last < *first) return std::nullopt;
  return std::pair(*first, *last);
}

}  // namespace

std::optional<PortMapping> ReadEntry(const EntryText& text) {
  const auto external = ReadPorts(text.externalPort);
  if (!external) return std::nullopt;
  PortMapping mapping;
  mapping.externalPort = external->first;
  if (external->second != external->first) mapping.lastExternalPort = external->second;
  if (const auto internal = ReadPorts(text.internalPort)) mapping.internalPort = internal->first;
  mapping.protocol = Lower(text.protocol) == "udp" ? Protocol::kUdp : Protocol::kTcp;
  mapping.client = Trimmed(text.client);
  if (mapping.client == kNoAddress) mapping.client.clear();
  mapping.description = Trimmed(text.description);
  // A router that leaves it out means an entry like any other.
  const std::string enabled = Lower(text.enabled);
  mapping.enabled = enabled.empty() || enabled == "1" || enabled == "true" || enabled == "yes" ||
                    enabled == "on" || enabled == "enabled";
  mapping.remoteHost = Trimmed(text.remoteHost);
  if (mapping.remoteHost == kNoAddress || mapping.remoteHost == "*") mapping.remoteHost.clear();
  mapping.lease = ReadNumber<std::uint32_t>(text.lease).value_or(0);
  return mapping;
}

}  // namespace upnp
