#include "rules/OwnMappings.h"

#include <charconv>
#include <string_view>

#include "rules/Addresses.h"

namespace upnp {

namespace {

// One mapping a line: protocol, port, client, router. The router's identifier comes last, since it may hold
// blanks.
constexpr char kTcp[] = "TCP";
constexpr char kUdp[] = "UDP";

std::string_view NextWord(std::string_view& line) {
  const std::size_t end = line.find(' ');
  const std::string_view word = line.substr(0, end);
  line = end == std::string_view::npos ? std::string_view() : line.substr(end + 1);
  return word;
}

}  // namespace

OwnMappings::OwnMappings(MappingStore& store) : store_(store) {
  const std::string text = store.LoadMappings();
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    const std::string_view protocol = NextWord(line);
    const std::string_view portText = NextWord(line);
    const std::string_view client = NextWord(line);
    std::uint16_t port = 0;
    const auto [stop, failure] = std::from_chars(portText.data(), portText.data() + portText.size(), port);
    const bool isPort = failure == std::errc() && stop == portText.data() + portText.size() && port > 0;
    if ((protocol != kTcp && protocol != kUdp) || !isPort || !ParseAddress(client) || line.empty()) continue;
    clients_[std::string(line)][{port, protocol == kTcp ? Protocol::kTcp : Protocol::kUdp}] = client;
  }
}

void OwnMappings::Remember(const std::string& router, const PortMapping& mapping) {
  std::string& client = clients_[router][mapping.Key()];
  changed_ = changed_ || client != mapping.client;
  client = mapping.client;
}

void OwnMappings::Forget(const std::string& router, const PortKey& key) {
  const auto found = clients_.find(router);
  if (found == clients_.end() || found->second.erase(key) == 0) return;
  if (found->second.empty()) clients_.erase(found);
  changed_ = true;
}

void OwnMappings::Save() {
  if (!changed_) return;
  std::string text;
  for (const auto& [router, mappings] : clients_) {
    for (const auto& [key, client] : mappings) {
      text += key.second == Protocol::kTcp ? kTcp : kUdp;
      for (const std::string& word : {std::to_string(key.first), client, router}) (text += ' ') += word;
      text += '\n';
    }
  }
  store_.SaveMappings(text);
  changed_ = false;
}

bool OwnMappings::Has(const std::string& router, const PortMapping& mapping) const {
  const auto found = clients_.find(router);
  if (found == clients_.end()) return false;
  const auto client = found->second.find(mapping.Key());
  return client != found->second.end() && client->second == mapping.client;
}

std::vector<PortMapping> OwnMappings::On(const std::string& router) const {
  std::vector<PortMapping> mappings;
  const auto found = clients_.find(router);
  if (found == clients_.end()) return mappings;
  for (const auto& [key, client] : found->second) {
    PortMapping& mapping = mappings.emplace_back();
    mapping.externalPort = mapping.internalPort = key.first;
    mapping.protocol = key.second;
    mapping.client = client;
  }
  return mappings;
}

}  // namespace upnp
