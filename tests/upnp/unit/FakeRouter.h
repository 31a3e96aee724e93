#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
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

  Traits Abilities() const override { return abilities; }

  Granted Add(const PortMapping& mapping) override {
    const Answer answer = Serve("Add", [&] { return Take(mapping); });
    return {answer, mapping.lease, grantsPort ? grantsPort : mapping.externalPort};
  }

  Answer Delete(const PortKey& key) override {
    return Serve("Delete", [&] {
      ++deletes;
      if (refuseDelete != 0) return Answer::Refused(refuseDelete);
      if (slowness != Moment{}) clock.Turn(slowness);
      deleted.push_back(key);
      open.erase(key);
      return table.erase(key) != 0 ? Answer::Done() : Answer::Refused(error::kNoSuchEntry);
    });
  }

  Answer EntryAt(std::uint32_t index, PortMapping& mapping) override {
    return Serve("EntryAt", [&] {
      ++tableReads;
      clock.Turn(slowness);
      if (refuseTable != 0) return Answer::Refused(refuseTable);
      if (endless) {
        mapping.externalPort = static_cast<std::uint16_t>(index % 50000 + 10000);
        mapping.internalPort = static_cast<std::uint16_t>(index);
        mapping.client = "192.168.1.77";
        return Answer::Done();
      }
      if (repeatsFirstEntry) index = 0;
      if (index >= table.size()) return Answer::Refused(index == 0 ? emptyCode : int{error::kEndOfTable});
      mapping = Told(std::next(table.begin(), static_cast<std::ptrdiff_t>(index))->second);
      return Answer::Done();
    });
  }

  Answer Entry(const PortKey& key, PortMapping& mapping) override {
    return Serve("Entry", [&] {
      ++lookups;
      if (refuseLookup != 0) return Answer::Refused(refuseLookup);
      const auto found = table.find(key);
      if (found != table.end()) {
        mapping = Told(found->second);
        return Answer::Done();
      }
      if (!tellsPlaceholders) return Answer::Refused(missingCode);
      mapping = {};
      mapping.externalPort = key.first;
      mapping.protocol = key.second;
      mapping.enabled = false;
      return Answer::Done();
    });
  }

  Answer ExternalAddress(std::string& address) override {
    return Serve("ExternalAddress", [&] {
      address = wanAddress;
      return Answer::Done();
    });
  }

  Answer Status(ConnectionStatus& status) override {
    return Serve("Status", [&] {
      ++statuses;
      status = {connected, connected ? "Connected" : "Disconnected", upTime};
      return Answer::Done();
    });
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
  void ResetCounters() { adds = deletes = tableReads = lookups = statuses = 0; }
  /// It really forwards the port at this moment.
  bool IsOpen(std::uint16_t port) {
    EndLeases();
    return open.contains({port, Protocol::kTcp});
  }
  /// It restarts without its mappings.
  void Restart() {
    table.clear();
    open.clear();
  }

  HandClock& clock;
  Traits abilities;
  std::set<PortKey> open;        ///< what it really forwards
  std::vector<PortKey> deleted;  ///< in their order
  std::set<std::string> resets;  ///< calls at which it ends the connection
  bool oneConnection = false;    ///< two calls at once fare badly
  bool leasesEnd = false;        ///< by the clock, as on a real router
  bool tellsNoLease = false;     ///< entries are read with a lease of 0
  bool tellsPlaceholders = false;
  bool addsAnewOnly = false;                ///< refuses an addition that it has already, with 501
  bool keepsPermanentOnly = false;          ///< takes the others and doesn't keep them
  std::optional<std::string> descriptions;  ///< in the place of what was asked for
  std::size_t longestDescription = 1000;
  int refuseFinite = 0;
  int emptyCode = error::kEndOfTable;
  int missingCode = error::kNoSuchEntry;
  std::uint16_t grantsPort = 0;
  int statuses = 0;
  int unanswered = 0;
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

 private:
  bool IsSilent() const { return silent || (silentAfterAdds >= 0 && adds > silentAfterAdds); }

  template <class Work>
  Answer Serve(const char* call, const Work& work) {
    if (resets.contains(call)) return Answer::NoAnswer();
    if (IsSilent()) {
      ++unanswered;
      return Answer::NoAnswer();
    }
    if (!oneConnection) {
      const std::lock_guard lock(mutex_);
      EndLeases();
      return work();
    }
    const bool alone = ++busy_ == 1;
    if (alone) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    const Answer answer = alone ? work() : Answer::NoAnswer();
    --busy_;
    return answer;
  }

  Answer Take(const PortMapping& mapping) {
    ++adds;
    if (IsSilent()) return Answer::NoAnswer();
    if (refuseAdd) {
      if (const int code = refuseAdd(mapping)) return Answer::Refused(code);
    }
    if (mapping.lease != 0 && permanentOnly) return Answer::Refused(error::kOnlyPermanentLeases);
    if (mapping.lease != 0 && refuseFinite != 0) return Answer::Refused(refuseFinite);
    const auto owner = table.find(mapping.Key());
    if (owner != table.end() && owner->second.client != mapping.client) {
      return Answer::Refused(error::kOwnedByAnother);
    }
    if (owner != table.end() && addsAnewOnly) return Answer::Refused(error::kActionFailed);
    if (table.size() >= room) return Answer::Refused(error::kTableFull);
    leases.push_back(mapping.lease);
    if (keepsNothing || (keepsPermanentOnly && mapping.lease != 0)) return Answer::Done();
    PortMapping kept = mapping;
    if (grantsPort != 0) kept.externalPort = grantsPort;
    if (longestLease != 0) kept.lease = std::min(kept.lease, longestLease);
    kept.description = descriptions.value_or(kept.description.substr(0, longestDescription));
    table[kept.Key()] = kept;
    open.insert(kept.Key());
    ends_[kept.Key()] = clock.Now() + std::chrono::seconds(kept.lease);
    return Answer::Done();
  }

  void EndLeases() {
    if (!leasesEnd) return;
    std::erase_if(table, [&](const auto& entry) {
      const bool over = entry.second.lease != 0 && ends_[entry.first] <= clock.Now();
      if (over) open.erase(entry.first);
      return over;
    });
  }

  PortMapping Told(PortMapping mapping) {
    if (tellsNoLease) mapping.lease = 0;
    return mapping;
  }

  std::map<PortKey, Moment> ends_;
  std::mutex mutex_;
  std::atomic<int> busy_{0};
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
