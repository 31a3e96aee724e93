#include "rules/MappingKeeper.h"

#include <algorithm>
#include <set>
#include <utility>

namespace upnp {

MappingKeeper::MappingKeeper(Gateway& gateway, std::string router, std::string localAddress, OwnMappings& own,
                             const Clock& clock, Progress& progress)
    : session_(gateway),
      router_(std::move(router)),
      localAddress_(std::move(localAddress)),
      own_(own),
      progress_(progress),
      reader_(session_, clock, progress),
      leases_(clock, kLease),
      refusals_(clock) {}

void MappingKeeper::Apply(WantedState wanted) {
  Begin();
  wanted_ = std::move(wanted);
  refusals_.Clear();
  leftovers_.clear();
  reader_.StartAnew();
  KnownPorts known;
  if (Continue(reader_.ReadAll(KeysThatMatter(), known, wanted_.ports.size()))) {
    ForgetWhatIsGone(known);
    RemoveUnwanted(known);
    if (finished_) AddMissing(known);
  }
  End();
}

void MappingKeeper::Check() {
  Begin();
  std::vector<PortKey> keys;
  keys.reserve(wanted_.ports.size());
  for (const WantedPort& port : wanted_.ports) keys.push_back(port.mapping.Key());
  KnownPorts known;
  if (Continue(reader_.Look(keys, known, keys.size()))) {
    std::vector<std::size_t> due;
    for (std::size_t i = 0; i < wanted_.ports.size(); ++i) {
      const PortMapping* found = known.Find(keys[i]);
      if (!found || !IsRight(*found, wanted_.ports[i].mapping) || !IsOurs(*found)) continue;
      if (!leases_.Holds(keys[i])) {
        leases_.Hold(keys[i], found->lease, kLease);
      } else if (leases_.IsDue(keys[i])) {
        due.push_back(i);
      }
    }
    Renew(due);
    if (finished_) AddMissing(known);
  }
  End();
}

void MappingKeeper::RemoveAll() {
  Begin();
  wanted_ = {};
  refusals_.Clear();
  leftovers_.clear();
  const std::vector<PortKey> keys = KeysThatMatter();
  KnownPorts known;
  if (Continue(reader_.Look(keys, known, keys.size()))) {
    ForgetWhatIsGone(known);
    RemoveUnwanted(known);
  }
  End();
}

void MappingKeeper::Begin() {
  finished_ = true;
  silent_ = false;
}

void MappingKeeper::End() {
  own_.Save();
  problems_ = wanted_.problems;
  for (const Problem& problem : refusals_.Problems(wanted_.ranges)) problems_.push_back(problem);
  for (const auto& [key, problem] : leftovers_) problems_.push_back(problem);
  if (silent_) {
    problems_.push_back({Trouble::kNoAnswer, 0, 0, Protocol::kTcp, {}, 0});
  } else if (!finished_) {
    problems_.push_back({Trouble::kBusy, 0, 0, Protocol::kTcp, {}, 0});
  }
}

void MappingKeeper::FallSilent() {
  silent_ = true;
  finished_ = false;
}

bool MappingKeeper::Continue(TableReader::End end) {
  if (end == TableReader::End::kSilent) FallSilent();
  if (end == TableReader::End::kCalledOff) finished_ = false;
  return end == TableReader::End::kRead;
}

/// The bare list isn't enough: the port may belong to somebody else by now. Nor is the mark: another computer
/// of this network may run the program, too. Some routers drop the description.
bool MappingKeeper::IsOurs(const PortMapping& mapping) const {
  const bool marked = BearsOurMark(mapping.description);
  return own_.Has(router_, mapping) ? marked || mapping.description.empty()
                                    : marked && mapping.client == localAddress_;
}

bool MappingKeeper::IsRight(const PortMapping& found, const PortMapping& wanted) const {
  return found.enabled && found.client == wanted.client && found.internalPort == wanted.internalPort;
}

Problem MappingKeeper::ProblemOf(const WantedPort& port, Trouble trouble, const std::string& who,
                                 int code) const {
  Problem problem;
  problem.trouble = trouble;
  problem.firstPort = problem.lastPort = port.mapping.externalPort;
  problem.protocol = port.mapping.protocol;
  problem.who = who;
  problem.code = code;
  return problem;
}

Problem MappingKeeper::RefusalOf(const WantedPort& port, const Answer& answer) {
  switch (answer.Code()) {
    case error::kNotAuthorized:
      return ProblemOf(port, Trouble::kNotAuthorized, port.mapping.client, answer.Code());
    case error::kUsedByRouter:
      return ProblemOf(port, Trouble::kUsedByRouter, {}, answer.Code());
    case error::kTableFull:
      return ProblemOf(port, Trouble::kTableFull, {}, answer.Code());
    case error::kOwnedByAnother: {
      const Lookup owner = session_.Entry(port.mapping.Key());
      return ProblemOf(port, Trouble::kOwnedByAnother,
                       owner.answer.IsDone() ? owner.mapping.client : std::string(), answer.Code());
    }
    default:
      return ProblemOf(port, Trouble::kRefused, {}, answer.Code());
  }
}

/// The ports that are wanted, and those that we may have to take off.
std::vector<PortKey> MappingKeeper::KeysThatMatter() const {
  std::set<PortKey> keys;
  for (const WantedPort& port : wanted_.ports) keys.insert(port.mapping.Key());
  for (const PortMapping& mapping : own_.On(router_)) keys.insert(mapping.Key());
  return {keys.begin(), keys.end()};
}

void MappingKeeper::ForgetWhatIsGone(const KnownPorts& known) {
  for (const PortMapping& mapping : own_.On(router_)) {
    const KnownPorts::State state = known.StateOf(mapping.Key());
    const PortMapping* found = known.Find(mapping.Key());
    const bool another = found && found->client != mapping.client;
    if (state == KnownPorts::State::kFree || another) own_.Forget(router_, mapping.Key());
  }
}

void MappingKeeper::RemoveUnwanted(KnownPorts& known) {
  std::map<PortKey, const PortMapping*> wanted;
  for (const WantedPort& port : wanted_.ports) wanted.emplace(port.mapping.Key(), &port.mapping);
  std::vector<PortMapping> unwanted;
  for (const auto& [key, mapping] : known.Taken()) {
    const auto found = wanted.find(key);
    const bool right = found != wanted.end() && IsRight(mapping, *found->second);
    if (!right && IsOurs(mapping)) unwanted.push_back(mapping);
  }
  for (std::size_t i = 0; i < unwanted.size(); ++i) {
    finished_ = finished_ && (i % kBatch != 0 || progress_.GoOn(i, unwanted.size()));
    if (!finished_) return;
    if (Remove(unwanted[i])) known.LearnFree(unwanted[i].Key());
  }
  // Of a router that tells nothing, our own list is all that is known.
  if (!reader_.IsUnreadable()) return;
  for (const PortMapping& mapping : own_.On(router_)) {
    if (wanted.contains(mapping.Key())) continue;
    Remove(mapping);
    if (silent_) return;
  }
}

/// True when the port is free afterwards.
bool MappingKeeper::Remove(const PortMapping& mapping) {
  const Answer answer = session_.Delete(mapping.Key());
  if (answer.IsNoAnswer()) {
    FallSilent();
    return false;
  }
  if (answer.IsDone() || answer.IsRefused(error::kNoSuchEntry)) {
    own_.Forget(router_, mapping.Key());
    leases_.Drop(mapping.Key());
    leftovers_.erase(mapping.Key());
    return true;
  }
  own_.Remember(router_, mapping);
  leftovers_[mapping.Key()] = {Trouble::kOldLeft, mapping.externalPort, mapping.externalPort,
                               mapping.protocol,  mapping.client,       answer.Code()};
  return false;
}

void MappingKeeper::AddMissing(const KnownPorts& known) {
  refusals_.ForgetDue();
  std::vector<Addition> additions;
  for (std::size_t i = 0; i < wanted_.ports.size(); ++i) {
    const WantedPort& port = wanted_.ports[i];
    const PortMapping* found = known.Find(port.mapping.Key());
    if (found && IsRight(*found, port.mapping)) {
      if (IsOurs(*found)) {
        own_.Remember(router_, *found);
        if (!leases_.Holds(found->Key())) leases_.Hold(found->Key(), found->lease, kLease);
      }
      continue;
    }
    // A router without a readable table: what was added once is taken to be there.
    if (reader_.IsUnreadable() && leases_.Holds(port.mapping.Key())) continue;
    const bool inTheWay = found && !(IsOurs(*found) && Remove(*found));
    if (silent_) return;
    if (inTheWay) {
      refusals_.Add(port.range,
                    ProblemOf(port, Trouble::kOwnedByAnother, found->client, error::kOwnedByAnother));
    } else {
      additions.push_back({i});
    }
  }
  std::erase_if(additions,
                [&](const Addition& addition) { return refusals_.Has(wanted_.ports[addition.port].range); });
  if (additions.empty()) return;
  for (const Addition& addition : additions) own_.Remember(router_, wanted_.ports[addition.port].mapping);
  own_.Save();
  AddInBatches(additions);
  if (!silent_) ReadBack(additions);
  if (!silent_) SetBack(additions);
}

/// False when the run ended before all were tried.
bool MappingKeeper::AddInBatches(std::span<Addition> additions) {
  readBack_ = {};
  for (std::size_t begin = 0; begin < additions.size() && !silent_; begin += kBatch) {
    if (!progress_.GoOn(begin, additions.size())) {
      finished_ = false;
      return false;
    }
    AddBatch(additions.subspan(begin, std::min(kBatch, additions.size() - begin)));
  }
  return true;
}

void MappingKeeper::AddBatch(std::span<Addition> batch) {
  std::vector<Addition*> open;
  for (Addition& addition : batch) open.push_back(&addition);
  while (!silent_) {
    std::erase_if(open, [&](const Addition* addition) {
      return addition->made || refusals_.Has(wanted_.ports[addition->port].range);
    });
    if (open.empty()) return;
    std::vector<PortMapping> mappings;
    for (const Addition* addition : open) mappings.push_back(Request(wanted_.ports[addition->port]));
    const std::vector<Added> added =
        session_.AddAll(mappings, reader_.ReadsSingles(), [this] { return progress_.IsWanted(); });
    for (std::size_t i = 0; i < open.size() && !silent_; ++i) {
      if (added[i].granted.answer.IsNotTried()) continue;
      if (!reader_.Take(added[i].readBack, readBack_)) FallSilent();
      AddAgain(*open[i], added[i].granted);
    }
    if (!progress_.IsWanted()) {
      finished_ = false;
      return;
    }
  }
}

PortMapping MappingKeeper::Request(const WantedPort& port) const {
  PortMapping mapping = port.mapping;
  mapping.lease = leases_.LeaseToAsk();
  return mapping;
}

/// Deals with the answer to an addition, and tries again what may go another way.
void MappingKeeper::AddAgain(Addition& addition, Granted granted) {
  const WantedPort& port = wanted_.ports[addition.port];
  if (granted.answer.IsRefused(error::kOnlyPermanentLeases)) {
    leases_.AskForPermanent();
    granted = session_.Add(Request(port));
  }
  if (granted.answer.IsRefused(error::kOwnedByAnother)) {
    const Lookup owner = session_.Entry(port.mapping.Key());
    if (owner.answer.IsDone() && IsOurs(owner.mapping) && Remove(owner.mapping)) {
      own_.Remember(router_, port.mapping);
      granted = session_.Add(Request(port));
    }
  }
  if (granted.answer.IsNoAnswer()) return FallSilent();
  if (granted.answer.IsDone()) {
    addition.made = true;
    addition.lease = granted.lease;
    return;
  }
  refusals_.Add(port.range, RefusalOf(port, granted.answer));
}

void MappingKeeper::ReadBack(std::span<Addition> additions) {
  std::vector<PortKey> keys;
  for (const Addition& addition : additions) {
    const PortKey key = wanted_.ports[addition.port].mapping.Key();
    if (addition.made && !readBack_.Find(key)) keys.push_back(key);
  }
  if (!Continue(reader_.Look(keys, readBack_, keys.size()))) return;
  for (const Addition& addition : additions) {
    if (!addition.made) continue;
    const WantedPort& port = wanted_.ports[addition.port];
    const PortKey key = port.mapping.Key();
    const PortMapping* found = readBack_.Find(key);
    if (found && IsRight(*found, port.mapping)) {
      leases_.Hold(key, found->lease, addition.lease);
    } else if (found) {
      refusals_.Add(port.range,
                    ProblemOf(port, Trouble::kOwnedByAnother, found->client, error::kOwnedByAnother));
    } else if (readBack_.StateOf(key) == KnownPorts::State::kUnknown) {
      leases_.Hold(key, addition.lease, addition.lease);
    } else {
      refusals_.Add(port.range, ProblemOf(port, Trouble::kNotKept, {}, 0));
    }
  }
}

/// A range is whole or isn't there: what was added of one that failed goes again.
void MappingKeeper::SetBack(std::span<const Addition> additions) {
  for (const Addition& addition : additions) {
    const WantedPort& port = wanted_.ports[addition.port];
    if (!refusals_.Has(port.range)) continue;
    if (addition.made && refusals_.Of(port.range).trouble != Trouble::kNotKept) {
      Remove(port.mapping);
      if (silent_) return;
    }
    own_.Forget(router_, port.mapping.Key());
    leases_.Drop(port.mapping.Key());
  }
}

void MappingKeeper::Renew(const std::vector<std::size_t>& due) {
  std::vector<Addition> additions;
  additions.reserve(due.size());
  for (const std::size_t port : due) additions.push_back({port});
  if (AddInBatches(additions) && !silent_) ReadBack(additions);
}

}  // namespace upnp
