#include "rules/RouterTable.h"

namespace upnp {

namespace {

bool IsSameEntry(const PortMapping& a, const PortMapping& b) {
  return a.Key() == b.Key() && a.client == b.client && a.remoteHost == b.remoteHost &&
         a.internalPort == b.internalPort;
}

}  // namespace

TableReading ReadTable(GatewaySession& session, const Clock& clock, Moment deadline,
                       const std::function<bool()>& goOn) {
  TableReading reading;
  while (reading.entries.size() < kMostTableEntries && clock.Now() < deadline && goOn()) {
    PortMapping mapping;
    const Answer answer = session.EntryAt(static_cast<std::uint32_t>(reading.entries.size()), mapping);
    if (reading.entries.empty()) reading.firstAnswer = answer;
    if (!answer.IsDone()) {
      reading.noAnswer = answer.IsNoAnswer();
      // Routers end their table by 713, by 714, or by "invalid arguments".
      reading.complete =
          IsMissing(answer) || (answer.IsRefused(error::kInvalidArguments) && !reading.entries.empty());
      break;
    }
    // A router that overlooks the position answers with one entry for ever.
    if (!reading.entries.empty() && IsSameEntry(reading.entries.back(), mapping)) break;
    reading.entries.push_back(mapping);
  }
  return reading;
}

void KnownPorts::Learn(const PortMapping& mapping) {
  if (mapping.externalPort == 0 || !mapping.remoteHost.empty()) return;
  if (mapping.client.empty()) return LearnFree(mapping.Key());
  if (mapping.lastExternalPort > mapping.externalPort) {
    ranges_.push_back(mapping);
  } else {
    ports_[mapping.Key()] = mapping;
  }
}

void KnownPorts::Learn(const TableReading& reading) {
  for (const PortMapping& entry : reading.entries) Learn(entry);
  complete_ = complete_ || reading.complete;
}

void KnownPorts::LearnFree(const PortKey& key) {
  ports_.erase(key);
  free_.insert(key);
}

KnownPorts::State KnownPorts::StateOf(const PortKey& key) const {
  if (Find(key)) return State::kTaken;
  return complete_ || free_.contains(key) ? State::kFree : State::kUnknown;
}

std::optional<PortMapping> KnownPorts::Find(const PortKey& key) const {
  const auto found = ports_.find(key);
  if (found != ports_.end()) return found->second;
  for (PortMapping range : ranges_) {
    if (range.protocol != key.second || key.first < range.externalPort || key.first > range.lastExternalPort)
      continue;
    range.internalPort = static_cast<std::uint16_t>(range.internalPort + (key.first - range.externalPort));
    range.externalPort = key.first;
    return range;
  }
  return std::nullopt;
}

}  // namespace upnp
