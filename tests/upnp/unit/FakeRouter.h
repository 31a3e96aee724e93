#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "rules/Engine.h"

namespace upnp {

/// A clock that is turned by hand.
class HandClock : public Clock {
 public:
  Moment Now() const override { return now; }
  void Turn(Moment by) { now += by; }
  Moment now{1000};
};

/// A router in memory. Its faults are switched on by a test.
class FakeRouter : public Gateway {
 public:
  explicit FakeRouter(HandClock& theClock) : clock(theClock) {}

  Granted Add(const PortMapping& mapping) override {
    return {Take(mapping), mapping.lease, mapping.externalPort};
  }

  Answer Take(const PortMapping& mapping) {
    ++adds;
    if (silent || (silentAfterAdds >= 0 && adds > silentAfterAdds)) return Answer::NoAnswer();
    if (refuseAdd) {
      if (const int code = refuseAdd(mapping)) return Answer::Refused(code);
    }
    if (permanentOnly && mapping.lease != 0) return Answer::Refused(error::kOnlyPermanentLeases);
    const auto owner = table.find(mapping.Key());
    if (owner != table.end() && owner->second.client != mapping.client) {
      return Answer::Refused(error::kOwnedByAnother);
    }
    if (table.size() >= room) return Answer::Refused(error::kTableFull);
    leases.push_back(mapping.lease);
    if (keepsNothing) return Answer::Done();
    PortMapping kept = mapping;
    if (longestLease != 0) kept.lease = std::min(kept.lease, longestLease);
    table[mapping.Key()] = kept;
    return Answer::Done();
  }

  Answer Delete(const PortKey& key) override {
    ++deletes;
    if (silent) return Answer::NoAnswer();
    if (refuseDelete != 0) return Answer::Refused(refuseDelete);
    return table.erase(key) != 0 ? Answer::Done() : Answer::Refused(error::kNoSuchEntry);
  }

  Answer EntryAt(std::uint32_t index, PortMapping& mapping) override {
    ++tableReads;
    if (silent) return Answer::NoAnswer();
    clock.Turn(slowness);
    if (refuseTable != 0) return Answer::Refused(refuseTable);
    if (endless) {
      mapping.externalPort = static_cast<std::uint16_t>(index % 50000 + 10000);
      mapping.internalPort = static_cast<std::uint16_t>(index);
      mapping.client = "192.168.1.77";
      return Answer::Done();
    }
    if (repeatsFirstEntry) index = 0;
    if (index >= table.size()) return Answer::Refused(error::kEndOfTable);
    mapping = std::next(table.begin(), static_cast<std::ptrdiff_t>(index))->second;
    return Answer::Done();
  }

  Answer Entry(const PortKey& key, PortMapping& mapping) override {
    ++lookups;
    if (silent) return Answer::NoAnswer();
    if (refuseLookup != 0) return Answer::Refused(refuseLookup);
    const auto found = table.find(key);
    if (found == table.end()) return Answer::Refused(error::kNoSuchEntry);
    mapping = found->second;
    return Answer::Done();
  }

  Answer ExternalAddress(std::string& address) override {
    if (silent) return Answer::NoAnswer();
    address = wanAddress;
    return Answer::Done();
  }

  Answer Status(ConnectionStatus& status) override {
    if (silent) return Answer::NoAnswer();
    status = {connected, connected ? "Connected" : "Disconnected", upTime};
    return Answer::Done();
  }

  /// An entry that somebody else made.
  void Put(std::uint16_t port, Protocol protocol, const std::string& client, const std::string& description) {
    PortMapping mapping;
    mapping.externalPort = mapping.internalPort = port;
    mapping.protocol = protocol;
    mapping.client = client;
    mapping.description = description;
    table[mapping.Key()] = mapping;
  }
  bool Has(std::uint16_t port, Protocol protocol = Protocol::kTcp) const {
    return table.contains({port, protocol});
  }
  void ResetCounters() { adds = deletes = tableReads = lookups = 0; }

  HandClock& clock;
  std::map<PortKey, PortMapping> table;
  std::vector<std::uint32_t> leases;  ///< of the additions that were taken
  int adds = 0;
  int deletes = 0;
  int tableReads = 0;  ///< entries asked for by position
  int lookups = 0;     ///< entries asked for by port
  bool silent = false;
  int silentAfterAdds = -1;
  bool permanentOnly = false;
  bool keepsNothing = false;
  bool endless = false;
  bool repeatsFirstEntry = false;
  bool connected = true;
  std::size_t room = 100000;
  std::uint32_t longestLease = 0;
  std::uint32_t upTime = 1000;
  std::string wanAddress = "1.2.3.4";
  int refuseTable = 0;
  int refuseLookup = 0;
  int refuseDelete = 0;
  Moment slowness{};
  std::function<int(const PortMapping&)> refuseAdd;
};

class MemoryStore : public MappingStore {
 public:
  std::string LoadMappings() override { return text; }
  void SaveMappings(const std::string& saved) override {
    text = saved;
    if (onSave) onSave();
  }
  std::string text;
  std::function<void()> onSave;
};

class MemoryRouters : public RouterStore {
 public:
  std::string LoadRouters() override { return text; }
  void SaveRouters(const std::string& saved) override { text = saved; }
  std::string text;
};

class CountingProgress : public Progress {
 public:
  bool GoOn(std::size_t done, std::size_t total) override {
    steps.emplace_back(done, total);
    return IsWanted();
  }
  bool IsWanted() const override { return steps.size() <= patience; }
  std::vector<std::pair<std::size_t, std::size_t>> steps;
  std::size_t patience = static_cast<std::size_t>(-1);
};

/// Hands a router of the test's out as a gateway, and leaves it with the test.
class BorrowedRouter : public Gateway {
 public:
  explicit BorrowedRouter(FakeRouter& router) : router_(router) {}
  Traits Abilities() const override { return router_.Abilities(); }
  Granted Add(const PortMapping& mapping) override { return router_.Add(mapping); }
  Answer Delete(const PortKey& key) override { return router_.Delete(key); }
  Answer EntryAt(std::uint32_t index, PortMapping& mapping) override {
    return router_.EntryAt(index, mapping);
  }
  Answer Entry(const PortKey& key, PortMapping& mapping) override { return router_.Entry(key, mapping); }
  Answer ExternalAddress(std::string& address) override { return router_.ExternalAddress(address); }
  Answer Status(ConnectionStatus& status) override { return router_.Status(status); }

 private:
  FakeRouter& router_;
};

inline WishedMapping Wished(int begin, int end, bool tcp, bool udp, int octet,
                            const std::string& text = "Game") {
  return {text, begin, end, tcp, udp, octet, false};
}

}  // namespace upnp
