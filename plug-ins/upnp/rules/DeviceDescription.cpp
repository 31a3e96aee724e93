#include "rules/DeviceDescription.h"

#include <array>
#include <optional>
#include <utility>

#include "rules/TagReader.h"
#include "rules/WebAddress.h"

namespace upnp {

namespace {

constexpr std::size_t kMostConnections = 8;

std::string Decoded(std::string_view raw) {
  constexpr std::size_t kLongest = 256;
  std::string text(raw.substr(0, kLongest));
  constexpr std::array<std::pair<std::string_view, char>, 5> kSigns = {
      {{"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}}};
  for (const auto& [code, sign] : kSigns) {
    for (std::size_t at = 0; (at = text.find(code, at)) != std::string::npos; ++at)
      text.replace(at, code.size(), 1, sign);
  }
  return text;
}

/// `url` as seen from `base`, always on the host of `base`.
std::string Absolute(const std::string& url, const std::string& base) {
  if (url.empty()) return {};
  const std::string host = HostOf(base);
  if (!HostOf(url).empty()) return WithHost(url, host);
  if (url.find("://") != std::string::npos) return {};
  const std::string path = PathOf(base);
  const std::string inFolder = url.front() == '/' ? url : path.substr(0, path.rfind('/') + 1) + url;
  return "http://" + host + ":" + std::to_string(PortOf(base)) + inFolder;
}

bool IsConnection(std::string_view type) {
  return type.find(":WANIPConnection:") != std::string_view::npos ||
         type.find(":WANPPPConnection:") != std::string_view::npos;
}

/// What one pass over the text collects. The elements of the root device come first in the standard's order,
/// but not in every router's: its own count more than those of the devices within it.
class Collector {
 public:
  void Take(const Tag& tag) {
    if (tag.kind == Tag::Kind::kEnd) TakeText(tag);
    if (tag.name == "device") {
      if (tag.kind == Tag::Kind::kBegin) ++depth_;
      if (tag.kind == Tag::Kind::kEnd) --depth_;
    }
    if (tag.name == "service") TakeService(tag.kind);
  }

  std::string Text(std::string_view name) const {
    for (const Field& field : fields_) {
      if (field.name == name) return Decoded(field.text);
    }
    return {};
  }

  std::vector<std::pair<std::string, std::string>> services;  ///< type and control URL, as they stand there

 private:
  struct Field {
    std::string_view name;
    std::string_view text;
    int depth = -1;  ///< of the device that it belongs to; -1 while there is none
  };

  void TakeText(const Tag& tag) {
    if (inService_ && tag.name == "serviceType" && type_.empty()) type_ = tag.text;
    if (inService_ && tag.name == "controlURL" && control_.empty()) control_ = tag.text;
    for (Field& field : fields_) {
      if (field.name == tag.name && (field.depth < 0 || depth_ < field.depth)) {
        field.text = tag.text;
        field.depth = depth_;
      }
    }
  }

  void TakeService(Tag::Kind kind) {
    if (inService_ && kind == Tag::Kind::kEnd && IsConnection(type_) && services.size() < kMostConnections)
      services.emplace_back(Decoded(type_), Decoded(control_));
    inService_ = kind == Tag::Kind::kBegin;
    type_ = control_ = {};
  }

  int depth_ = 0;
  bool inService_ = false;
  std::string_view type_;
  std::string_view control_;
  std::array<Field, 7> fields_ = {{{"UDN", {}},
                                   {"deviceType", {}},
                                   {"friendlyName", {}},
                                   {"manufacturer", {}},
                                   {"modelName", {}},
                                   {"presentationURL", {}},
                                   {"URLBase", {}}}};
};

}  // namespace

DeviceDescription ReadDescription(std::string_view xml, const std::string& location) {
  DeviceDescription description;
  if (xml.size() > kLongestDescription || HostOf(location).empty()) return description;
  Collector collected;
  TagReader reader(xml);
  while (const std::optional<Tag> tag = reader.Next()) collected.Take(*tag);
  description.device = collected.Text("UDN");
  description.type = collected.Text("deviceType");
  description.name = collected.Text("friendlyName");
  description.maker = collected.Text("manufacturer");
  description.model = collected.Text("modelName");
  const std::string host = HostOf(location);
  std::string base = WithHost(collected.Text("URLBase"), host);
  if (base.empty()) base = location;
  const std::string page = collected.Text("presentationURL");
  const bool whole = page.find("://") != std::string::npos;
  description.page = RouterPage(whole || page.empty() ? page : Absolute(page, base), host);
  for (const auto& [type, control] : collected.services) {
    ConnectionService connection{type, Absolute(control, base)};
    if (!connection.controlUrl.empty()) description.connections.push_back(std::move(connection));
  }
  return description;
}

}  // namespace upnp
