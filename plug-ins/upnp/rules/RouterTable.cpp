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

void KnownPorts::Learn(const TableReading& reading) {
  for (const PortMapping& entry : reading.entries) {
    if (entry.remoteHost.empty()) Learn(entry);
  }
  complete_ = complete_ || reading.complete;
}

void KnownPorts::LearnFree(const PortKey& key) {
  ports_.erase(key);
  free_.insert(key);
}

KnownPorts::State KnownPorts::StateOf(const PortKey& key) const {
  if (ports_.contains(key)) return State::kTaken;
  return complete_ || free_.contains(key) ? State::kFree : State::kUnknown;
}

const PortMapping* KnownPorts::Find(const PortKey& key) const {
  const auto found = ports_.find(key);
  return found == ports_.end() ? nullptr : &found->second;
}

}  // namespace upnp
