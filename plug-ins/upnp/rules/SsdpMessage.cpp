#include "rules/SsdpMessage.h"

#include <charconv>

#include "log/Characters.h"
#include "rules/Trim.h"
#include "rules/WebAddress.h"

namespace upnp {

namespace {

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
  if (log::EqualsIgnoringCase(name, "ST") || log::EqualsIgnoringCase(name, "NT")) message.type = value;
  if (log::EqualsIgnoringCase(name, "NTS")) state = value;
  if (log::EqualsIgnoringCase(name, "USN")) message.device = value.substr(0, value.find("::"));
  if (log::EqualsIgnoringCase(name, "LOCATION")) message.location = value;
  if (log::EqualsIgnoringCase(name, "BOOTID.UPNP.ORG")) message.bootId = ReadNumber<std::uint32_t>(value);
}

}  // namespace

std::string SearchRequest(std::string_view type, int seconds) {
  return std::string("M-SEARCH * HTTP/1.1\r\nHOST: ") + kSsdpGroup + ":" + std::to_string(kSsdpPort) +
         "\r\nMAN: \"ssdp:discover\"\r\nMX: " + std::to_string(seconds) + "\r\nST: " + std::string(type) +
         "\r\n\r\n";
}

std::optional<SsdpMessage> ReadSsdpMessage(std::string_view datagram, const std::string& sender) {
  const std::string_view first = NextLine(datagram);
  const bool answer = first.starts_with("HTTP/1.") && first.find(" 200") != std::string_view::npos;
  const bool notice = first.starts_with("NOTIFY ");
  if (!answer && !notice) return std::nullopt;
  SsdpMessage message;
  message.sender = sender;
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
    const bool gone = log::EqualsIgnoringCase(state, "ssdp:byebye");
    if (!gone && !log::EqualsIgnoringCase(state, "ssdp:alive") &&
        !log::EqualsIgnoringCase(state, "ssdp:update"))
      return std::nullopt;
    message.kind = gone ? SsdpMessage::Kind::kGone : SsdpMessage::Kind::kAlive;
  }
  message.location = WithHost(message.location, sender);
  if (message.kind != SsdpMessage::Kind::kGone && message.location.empty()) return std::nullopt;
  return message;
}

}  // namespace upnp
