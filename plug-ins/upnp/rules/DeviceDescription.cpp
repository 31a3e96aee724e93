#include "rules/DeviceDescription.h"

#include <array>
#include <utility>

#include "rules/SsdpMessage.h"

namespace upnp {

namespace {

/// The text between the first <tag> and its </tag>, trimmed; a name space before the tag's name doesn't
/// matter.
std::string_view Element(std::string_view xml, std::string_view tag, std::size_t* after = nullptr) {
  std::size_t at = 0;
  while ((at = xml.find('<', at)) != std::string_view::npos) {
    const std::size_t close = xml.find('>', at);
    if (close == std::string_view::npos) break;
    std::string_view name = xml.substr(at + 1, close - at - 1);
    name = name.substr(0, name.find_first_of(" \t\r\n"));
    if (const std::size_t colon = name.find(':'); colon != std::string_view::npos && name.front() != '/') {
      name.remove_prefix(colon + 1);
    }
    at = close + 1;
    if (name != tag || xml[close - 1] == '/') continue;
    // An element that holds others ends at an end tag of its own name.
    std::size_t end = at;
    while ((end = xml.find("</", end)) != std::string_view::npos) {
      std::string_view rest = xml.substr(end + 2, xml.find('>', end) - end - 2);
      if (const std::size_t colon = rest.find(':'); colon != std::string_view::npos)
        rest.remove_prefix(colon + 1);
      if (rest.substr(0, rest.find_first_of(" \t\r\n")) == tag) break;
      end += 2;
    }
    if (end == std::string_view::npos) break;
    if (after) *after = end;
    const std::string_view inner = xml.substr(at, end - at);
    const std::size_t begin = inner.find_first_not_of(" \t\r\n");
    if (begin == std::string_view::npos) return {};
    return inner.substr(begin, inner.find_last_not_of(" \t\r\n") - begin + 1);
  }
  if (after) *after = std::string_view::npos;
  return {};
}

std::string Text(std::string_view xml, std::string_view tag) {
  constexpr std::size_t kLongest = 256;
  std::string text(Element(xml, tag).substr(0, kLongest));
  constexpr std::array<std::pair<std::string_view, char>, 5> kSigns = {
      {{"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}}};
  for (const auto& [code, sign] : kSigns) {
    for (std::size_t at = 0; (at = text.find(code, at)) != std::string::npos; ++at)
      text.replace(at, code.size(), 1, sign);
  }
  return text;
}

/// `url` as seen from `base`.
std::string Absolute(const std::string& url, const std::string& base) {
  if (url.empty() || !HostOf(url).empty()) return url;
  constexpr std::size_t kBehindScheme = 7;
  const std::size_t path = base.find('/', kBehindScheme);
  if (url.front() == '/') return base.substr(0, path) + url;
  if (path == std::string::npos) return base + "/" + url;
  return base.substr(0, base.rfind('/') + 1) + url;
}

bool IsConnection(std::string_view type) {
  return type.find(":WANIPConnection:") != std::string_view::npos ||
         type.find(":WANPPPConnection:") != std::string_view::npos;
}

}  // namespace

DeviceDescription ReadDescription(std::string_view xml, const std::string& location) {
  DeviceDescription description;
  description.device = Text(xml, "UDN");
  description.type = Text(xml, "deviceType");
  description.name = Text(xml, "friendlyName");
  description.maker = Text(xml, "manufacturer");
  description.model = Text(xml, "modelName");
  std::string base = Text(xml, "URLBase");
  // A base on another host is a mistake of the router's, or a trap.
  if (HostOf(base) != HostOf(location)) base = location;
  description.page = Absolute(Text(xml, "presentationURL"), base);
  constexpr std::size_t kMostConnections = 16;
  std::string_view rest = xml;
  while (description.connections.size() < kMostConnections) {
    std::size_t after = 0;
    const std::string_view service = Element(rest, "service", &after);
    if (after == std::string_view::npos) break;
    rest.remove_prefix(after);
    ConnectionService connection{Text(service, "serviceType"), Absolute(Text(service, "controlURL"), base)};
    if (!IsConnection(connection.type) || connection.controlUrl.empty()) continue;
    if (HostOf(connection.controlUrl) == HostOf(location))
      description.connections.push_back(std::move(connection));
  }
  return description;
}

}  // namespace upnp
