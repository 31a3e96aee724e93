#include "rules/SsdpMessage.h"

#include <algorithm>
#include <charconv>

namespace upnp {

namespace {

char Lower(char sign) {
  return sign >= 'A' && sign <= 'Z' ? static_cast<char>(sign - 'A' + 'a') : sign;
}

bool SameWord(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return Lower(left) == Lower(right); });
}

std::string_view Trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

std::string_view NextLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  const std::string_view line = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return Trim(line);
}

bool IsGatewayType(std::string_view type) {
  return type.find(":InternetGatewayDevice:") != std::string_view::npos ||
         type.find(":WANIPConnection:") != std::string_view::npos ||
         type.find(":WANPPPConnection:") != std::string_view::npos;
}

template <class Number>
std::optional<Number> ReadNumber(std::string_view text) {
  Number number = 0;
  const auto [stop, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failure != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  return number;
}

void TakeHeader(SsdpMessage& message, std::string_view name, std::string_view value,
                std::string_view& state) {
  if (SameWord(name, "ST") || SameWord(name, "NT")) message.type = value;
  if (SameWord(name, "NTS")) state = value;
  if (SameWord(name, "USN")) message.device = value.substr(0, value.find("::"));
  if (SameWord(name, "LOCATION")) message.location = value;
  if (SameWord(name, "BOOTID.UPNP.ORG")) message.bootId = ReadNumber<std::uint32_t>(value);
}

/// "host:port" of an address.
std::string_view Authority(std::string_view url) {
  constexpr std::string_view kScheme = "http://";
  if (!SameWord(url.substr(0, kScheme.size()), kScheme)) return {};
  url.remove_prefix(kScheme.size());
  return url.substr(0, url.find('/'));
}

}  // namespace

std::string SearchRequest(std::string_view type, int seconds) {
  return std::string("M-SEARCH * HTTP/1.1\r\nHOST: ") + kSsdpGroup + ":" + std::to_string(kSsdpPort) +
         "\r\nMAN: \"ssdp:discover\"\r\nMX: " + std::to_string(seconds) + "\r\nST: " + std::string(type) +
         "\r\n\r\n";
}

std::optional<SsdpMessage> ReadSsdpMessage(std::string_view datagram) {
  const std::string_view first = NextLine(datagram);
  const bool answer = first.starts_with("HTTP/1.") && first.find(" 200") != std::string_view::npos;
  const bool notice = first.starts_with("NOTIFY ");
  if (!answer && !notice) return std::nullopt;
  SsdpMessage message;
  std::string_view state;
  while (!datagram.empty()) {
    const std::string_view line = NextLine(datagram);
    if (line.empty()) break;
    const std::size_t colon = line.find(':');
    if (colon != std::string_view::npos) {
      TakeHeader(message, Trim(line.substr(0, colon)), Trim(line.substr(colon + 1)), state);
    }
  }
  if (!IsGatewayType(message.type) || message.device.empty()) return std::nullopt;
  if (notice) {
    const bool gone = SameWord(state, "ssdp:byebye");
    if (!gone && !SameWord(state, "ssdp:alive") && !SameWord(state, "ssdp:update")) return std::nullopt;
    message.kind = gone ? SsdpMessage::Kind::kGone : SsdpMessage::Kind::kAlive;
  }
  if (message.kind != SsdpMessage::Kind::kGone && HostOf(message.location).empty()) return std::nullopt;
  return message;
}

std::string HostOf(std::string_view url) {
  const std::string_view authority = Authority(url);
  return std::string(authority.substr(0, authority.find(':')));
}

std::uint16_t PortOf(std::string_view url) {
  const std::string_view authority = Authority(url);
  if (authority.empty()) return 0;
  const std::size_t colon = authority.find(':');
  constexpr std::uint16_t kWeb = 80;
  if (colon == std::string_view::npos) return kWeb;
  return ReadNumber<std::uint16_t>(authority.substr(colon + 1)).value_or(0);
}

}  // namespace upnp
