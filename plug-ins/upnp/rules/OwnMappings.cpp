#include "rules/OwnMappings.h"

#include <algorithm>
#include <charconv>

#include "rules/Addresses.h"

namespace upnp {

namespace {

// One mapping a line: protocol, port, client, router, and behind tabs what is left to do and the description
// as the router shows it. The router's identifier may hold blanks.
constexpr char kTcp[] = "TCP";
constexpr char kUdp[] = "UDP";
constexpr char kOwed[] = "owed";

std::string_view Cut(std::string_view& line, char sign) {
  const std::size_t end = line.find(sign);
  const std::string_view word = line.substr(0, end);
  line = end == std::string_view::npos ? std::string_view() : line.substr(end + 1);
  return word;
}

/// A router's text must not break the lines of the list.
std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char sign) { return sign < ' '; }, ' ');
  return text;
}

}  // namespace

OwnMappings::OwnMappings(MappingStore& store) : store_(store) {
  const std::string text = store.LoadMappings();
  std::string_view rest = text;
  while (!rest.empty()) ReadLine(Cut(rest, '\n'));
}

void OwnMappings::ReadLine(std::string_view line) {
  const std::string_view protocol = Cut(line, ' ');
  const std::string_view portText = Cut(line, ' ');
  const std::string_view client = Cut(line, ' ');
  const std::string_view router = Cut(line, '\t');
  const std::string_view state = Cut(line, '\t');
  std::uint16_t port = 0;
  const auto [stop, failure] = std::from_chars(portText.data(), portText.data() + portText.size(), port);
  const bool isPort = failure == std::errc() && stop == portText.data() + portText.size() && port > 0;
  if ((protocol != kTcp && protocol != kUdp) || !isPort || !ParseAddress(client) || router.empty()) return;
  mappings_[std::string(router)][{port, protocol == kTcp ? Protocol::kTcp : Protocol::kUdp}] = {
      std::string(client), std::string(line), state == kOwed};
}

void OwnMappings::Remember(const std::string& router, const PortMapping& mapping) {
  Own& own = mappings_[router][mapping.Key()];
  const Own now = {mapping.client, OneLine(mapping.description), false};
  changed_ = changed_ || own != now;
  own = now;
}

void OwnMappings::Forget(const std::string& router, const PortKey& key) {
  const auto found = mappings_.find(router);
  if (found == mappings_.end() || found->second.erase(key) == 0) return;
  if (found->second.empty()) mappings_.erase(found);
  changed_ = true;
}

void OwnMappings::OweAll(const std::string& router) {
  const auto found = mappings_.find(router);
  if (found == mappings_.end()) return;
  for (auto& [key, own] : found->second) {
    changed_ = changed_ || !own.owed;
    own.owed = true;
  }
}

void OwnMappings::Save() {
  if (!changed_) return;
  std::string text;
  for (const auto& [router, mappings] : mappings_) {
    for (const auto& [key, own] : mappings) {
      text += key.second == Protocol::kTcp ? kTcp : kUdp;
      for (const std::string& word : {std::to_string(key.first), own.client, router}) (text += ' ') += word;
      ((text += '\t') += own.owed ? kOwed : "") += '\t';
      (text += own.description) += '\n';
    }
  }
  store_.SaveMappings(text);
  changed_ = false;
}

const OwnMappings::Own* OwnMappings::Find(const std::string& router, const PortMapping& mapping) const {
  const auto found = mappings_.find(router);
  if (found == mappings_.end()) return nullptr;
  const auto own = found->second.find(mapping.Key());
  return own != found->second.end() && own->second.client == mapping.client ? &own->second : nullptr;
}

bool OwnMappings::Has(const std::string& router, const PortMapping& mapping) const {
  return Find(router, mapping) != nullptr;
}

bool OwnMappings::IsShownAs(const std::string& router, const PortMapping& mapping) const {
  const Own* own = Find(router, mapping);
  return own && !mapping.description.empty() && own->description.starts_with(OneLine(mapping.description));
}

std::vector<PortMapping> OwnMappings::On(const std::string& router) const {
  std::vector<PortMapping> mappings;
  const auto found = mappings_.find(router);
  if (found == mappings_.end()) return mappings;
  for (const auto& [key, own] : found->second) {
    PortMapping& mapping = mappings.emplace_back();
    mapping.externalPort = mapping.internalPort = key.first;
    mapping.protocol = key.second;
    mapping.client = own.client;
    mapping.description = own.description;
  }
  return mappings;
}

std::vector<PortMapping> OwnMappings::Owed(const std::string& router) const {
  std::vector<PortMapping> owed = On(router);
  std::erase_if(owed,
                [&](const PortMapping& mapping) { return !mappings_.at(router).at(mapping.Key()).owed; });
  return owed;
}

}  // namespace upnp
