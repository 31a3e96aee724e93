#include "rules/MappingKeeper.h"

#include <algorithm>
#include <utility>

namespace upnp {

namespace {

constexpr Moment kTableTime = std::chrono::seconds(5);
constexpr Moment kTryAgain = std::chrono::minutes(5);

}  // namespace

MappingKeeper::MappingKeeper(Gateway& gateway, std::string router, std::string localAddress, OwnMappings& own,
                             const Clock& clock, Progress& progress)
    : gateway_(gateway),
      router_(std::move(router)),
      localAddress_(std::move(localAddress)),
      own_(own),
      clock_(clock),
      progress_(progress) {}

void MappingKeeper::Apply(WantedState wanted) {
  wanted_ = std::move(wanted);
  refusals_.clear();
  leftovers_.clear();
  finished_ = true;
  silent_ = false;
  unreadable_ = false;
  singlesUnread_ = false;
  KnownPorts known = ReadWholeTable();
  if (finished_) {
    ForgetWhatIsGone(known);
    RemoveUnwanted(known);
    if (finished_) AddMissing(known);
  }
  own_.Save();
  Publish();
}

void MappingKeeper::Check() {
  finished_ = true;
  silent_ = false;
  std::vector<PortKey> keys;
  keys.reserve(wanted_.ports.size());
  for (const WantedPort& port : wanted_.ports) keys.push_back(port.mapping.Key());
  KnownPorts known;
  if (Look(keys, known)) {
    std::vector<std::size_t> due;
    for (std::size_t i = 0; i < wanted_.ports.size(); ++i) {
      const PortMapping* found = known.Find(keys[i]);
      if (!found || !IsRight(*found, wanted_.ports[i].mapping) || !IsOurs(*found)) continue;
      const auto held = held_.find(keys[i]);
      if (held == held_.end()) {
        Hold(*found, kLease);
      } else if (!held->second.permanent && clock_.Now() >= held->second.renewAt) {
        due.push_back(i);
      }
    }
    Renew(due);
    if (finished_) AddMissing(known);
  }
  own_.Save();
  Publish();
}

void MappingKeeper::RemoveAll() {
  finished_ = true;
  silent_ = false;
  wanted_ = {};
  refusals_.clear();
  leftovers_.clear();
  const std::vector<PortMapping> ours = own_.On(router_);
  std::vector<PortKey> keys;
  keys.reserve(ours.size());
  for (const PortMapping& mapping : ours) keys.push_back(mapping.Key());
  KnownPorts known;
  if (Look(keys, known)) {
    ForgetWhatIsGone(known);
    RemoveUnwanted(known);
  }
  own_.Save();
  Publish();
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
      PortMapping owner;
      const bool known = gateway_.Entry(port.mapping.Key(), owner).IsDone();
      return ProblemOf(port, Trouble::kOwnedByAnother, known ? owner.client : std::string(), answer.Code());
    }
    default:
      return ProblemOf(port, Trouble::kRefused, {}, answer.Code());
  }
}

void MappingKeeper::Refuse(std::size_t range, const Problem& problem) {
  refusals_.try_emplace(range, Refusal{problem, clock_.Now() + kTryAgain});
}

void MappingKeeper::FallSilent() {
  silent_ = true;
  finished_ = false;
}

KnownPorts MappingKeeper::ReadWholeTable() {
  KnownPorts known;
  if (!endlessTable_) {
    const TableReading reading = ReadTable(gateway_, clock_, clock_.Now() + kTableTime,
                                           [this] { return progress_.GoOn(0, wanted_.ports.size()); });
    if (reading.noAnswer) {
      FallSilent();
      return known;
    }
    for (const PortMapping& entry : reading.entries) {
      if (entry.remoteHost.empty()) known.Learn(entry);
    }
    if (reading.complete) {
      known.LearnAll();
      return known;
    }
    endlessTable_ = !reading.entries.empty();
  }
  // A table without an end isn't read to it: only the ports that matter are asked for.
  std::set<PortKey> keys;
  for (const WantedPort& port : wanted_.ports) keys.insert(port.mapping.Key());
  for (const PortMapping& mapping : own_.On(router_)) keys.insert(mapping.Key());
  std::erase_if(keys, [&](const PortKey& key) { return known.Find(key) != nullptr; });
  Look(std::vector<PortKey>(keys.begin(), keys.end()), known);
  return known;
}

/// Asks for single ports. False when the router fell silent or the run is to end.
bool MappingKeeper::Look(std::span<const PortKey> keys, KnownPorts& known) {
  for (std::size_t begin = 0; begin < keys.size() && !unreadable_; begin += kBatch) {
    if (!progress_.GoOn(0, keys.size())) {
      finished_ = false;
      return false;
    }
    const auto batch = keys.subspan(begin, std::min(kBatch, keys.size() - begin));
    const std::vector<Lookup> lookups = gateway_.Entries(batch);
    for (std::size_t i = 0; i < batch.size(); ++i) {
      const Answer& answer = lookups[i].answer;
      if (answer.IsDone()) {
        known.Learn(lookups[i].mapping);
      } else if (IsMissing(answer)) {
        known.LearnFree(batch[i]);
      } else if (answer.IsRefused()) {
        LookByTable(keys, known);
        return !silent_;
      } else {
        FallSilent();
        return false;
      }
    }
  }
  return true;
}

/// For routers that can't tell a single entry.
void MappingKeeper::LookByTable(std::span<const PortKey> keys, KnownPorts& known) {
  const TableReading reading =
      ReadTable(gateway_, clock_, clock_.Now() + kTableTime, [&] { return progress_.GoOn(0, keys.size()); });
  if (reading.noAnswer) return FallSilent();
  for (const PortMapping& entry : reading.entries) {
    if (entry.remoteHost.empty()) known.Learn(entry);
  }
  if (reading.complete) known.LearnAll();
  unreadable_ = reading.entries.empty() && !reading.complete;
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
  if (!unreadable_) return;
  for (const PortMapping& mapping : own_.On(router_)) {
    if (wanted.contains(mapping.Key())) continue;
    Remove(mapping);
    if (silent_) return;
  }
}

/// True when the port is free afterwards.
bool MappingKeeper::Remove(const PortMapping& mapping) {
  const Answer answer = gateway_.Delete(mapping.Key());
  if (answer.IsNoAnswer()) {
    FallSilent();
    return false;
  }
  if (answer.IsDone() || answer.Code() == error::kNoSuchEntry) {
    own_.Forget(router_, mapping.Key());
    held_.erase(mapping.Key());
    leftovers_.erase(mapping.Key());
    return true;
  }
  own_.Remember(router_, mapping);
  leftovers_[mapping.Key()] = {Trouble::kOldLeft, mapping.externalPort, mapping.externalPort,
                               mapping.protocol,  mapping.client,       answer.Code()};
  return false;
}

void MappingKeeper::AddMissing(const KnownPorts& known) {
  std::erase_if(refusals_, [&](const auto& refusal) { return clock_.Now() >= refusal.second.tryAgainAt; });
  std::vector<Addition> additions;
  for (std::size_t i = 0; i < wanted_.ports.size(); ++i) {
    const WantedPort& port = wanted_.ports[i];
    const PortMapping* found = known.Find(port.mapping.Key());
    if (found && IsRight(*found, port.mapping)) {
      if (IsOurs(*found)) {
        own_.Remember(router_, *found);
        if (!held_.contains(found->Key())) Hold(*found, kLease);
      }
      continue;
    }
    // A router without a readable table: what was added once is taken to be there.
    if (unreadable_ && held_.contains(port.mapping.Key())) continue;
    const bool inTheWay = found && !(IsOurs(*found) && Remove(*found));
    if (silent_) return;
    if (inTheWay) {
      Refuse(port.range, ProblemOf(port, Trouble::kOwnedByAnother, found->client, error::kOwnedByAnother));
    } else {
      additions.push_back({i});
    }
  }
  std::erase_if(additions, [&](const Addition& addition) {
    return refusals_.contains(wanted_.ports[addition.port].range);
  });
  if (additions.empty()) return;
  for (const Addition& addition : additions) own_.Remember(router_, wanted_.ports[addition.port].mapping);
  own_.Save();
  readBack_ = {};
  for (std::size_t begin = 0; begin < additions.size() && !silent_; begin += kBatch) {
    if (!progress_.GoOn(begin, additions.size())) {
      finished_ = false;
      break;
    }
    AddBatch(std::span(additions).subspan(begin, std::min(kBatch, additions.size() - begin)));
  }
  if (!silent_) ReadBack(additions);
  if (!silent_) SetBack(additions);
}

void MappingKeeper::AddBatch(std::span<Addition> batch) {
  std::vector<Addition*> open;
  for (Addition& addition : batch) open.push_back(&addition);
  while (!silent_) {
    std::erase_if(open, [&](const Addition* addition) {
      return addition->made || refusals_.contains(wanted_.ports[addition->port].range);
    });
    if (open.empty()) return;
    std::vector<PortMapping> mappings;
    for (const Addition* addition : open) {
      mappings.push_back(wanted_.ports[addition->port].mapping);
      mappings.back().lease = permanentOnly_ ? 0 : kLease;
    }
    const std::vector<Added> added = gateway_.AddAll(mappings, !singlesUnread_);
    for (std::size_t i = 0; i < open.size() && !silent_; ++i) {
      if (added[i].answer.IsNotTried()) continue;
      TakeReadBack(added[i].readBack);
      AddAgain(*open[i], added[i].answer);
    }
  }
}

/// An entry that isn't there yet is asked for once more when all are added: a router may take its time.
void MappingKeeper::TakeReadBack(const Lookup& readBack) {
  if (readBack.answer.IsDone()) {
    readBack_.Learn(readBack.mapping);
  } else if (readBack.answer.IsNoAnswer()) {
    FallSilent();
  } else if (readBack.answer.IsRefused() && !IsMissing(readBack.answer)) {
    singlesUnread_ = true;
  }
}

/// Deals with the answer to an addition, and tries again what may go another way.
void MappingKeeper::AddAgain(Addition& addition, Answer answer) {
  const WantedPort& port = wanted_.ports[addition.port];
  if (answer.Code() == error::kOnlyPermanentLeases) {
    permanentOnly_ = true;
    answer = gateway_.Add(port.mapping);
  }
  if (answer.Code() == error::kOwnedByAnother) {
    PortMapping owner;
    if (gateway_.Entry(port.mapping.Key(), owner).IsDone() && IsOurs(owner) && Remove(owner)) {
      own_.Remember(router_, port.mapping);
      PortMapping mapping = port.mapping;
      mapping.lease = permanentOnly_ ? 0 : kLease;
      answer = gateway_.Add(mapping);
    }
  }
  if (answer.IsNoAnswer()) return FallSilent();
  if (answer.IsDone()) {
    addition.made = true;
    return;
  }
  Refuse(port.range, RefusalOf(port, answer));
}

void MappingKeeper::ReadBack(std::span<Addition> additions) {
  std::vector<PortKey> keys;
  for (const Addition& addition : additions) {
    const PortKey key = wanted_.ports[addition.port].mapping.Key();
    if (addition.made && !readBack_.Find(key)) keys.push_back(key);
  }
  if (!Look(keys, readBack_)) return;
  for (const Addition& addition : additions) {
    if (!addition.made) continue;
    const WantedPort& port = wanted_.ports[addition.port];
    PortMapping assumed = port.mapping;
    const PortMapping* found = readBack_.Find(port.mapping.Key());
    if (found && IsRight(*found, port.mapping)) {
      assumed.lease = found->lease;
      Hold(assumed, permanentOnly_ ? 0 : kLease);
    } else if (found) {
      Refuse(port.range, ProblemOf(port, Trouble::kOwnedByAnother, found->client, error::kOwnedByAnother));
    } else if (readBack_.StateOf(port.mapping.Key()) == KnownPorts::State::kUnknown) {
      assumed.lease = permanentOnly_ ? 0 : kLease;
      Hold(assumed, assumed.lease);
    } else {
      Refuse(port.range, ProblemOf(port, Trouble::kNotKept, {}, 0));
    }
  }
}

/// A range is whole or isn't there: what was added of one that failed goes again.
void MappingKeeper::SetBack(std::span<const Addition> additions) {
  for (const Addition& addition : additions) {
    const WantedPort& port = wanted_.ports[addition.port];
    const auto refusal = refusals_.find(port.range);
    if (refusal == refusals_.end()) continue;
    if (addition.made && refusal->second.problem.trouble != Trouble::kNotKept) {
      Remove(port.mapping);
      if (silent_) return;
    }
    own_.Forget(router_, port.mapping.Key());
    held_.erase(port.mapping.Key());
  }
}

/// `asked` is the lease that we asked for; the router may have given a shorter one, or tells what is left of
/// it.
void MappingKeeper::Hold(const PortMapping& found, std::uint32_t asked) {
  Held held;
  held.permanent = found.lease == 0;
  const std::uint32_t left = std::min(found.lease, asked == 0 ? found.lease : asked);
  held.renewAt = clock_.Now() + std::chrono::milliseconds(std::int64_t{left} * 1000 / 2);
  held_[found.Key()] = held;
}

void MappingKeeper::Renew(const std::vector<std::size_t>& due) {
  std::vector<Addition> additions;
  additions.reserve(due.size());
  readBack_ = {};
  for (const std::size_t port : due) additions.push_back({port});
  for (std::size_t begin = 0; begin < additions.size() && !silent_; begin += kBatch) {
    if (!progress_.GoOn(begin, additions.size())) {
      finished_ = false;
      return;
    }
    AddBatch(std::span(additions).subspan(begin, std::min(kBatch, additions.size() - begin)));
  }
  if (!silent_) ReadBack(additions);
}

void MappingKeeper::Publish() {
  problems_ = wanted_.problems;
  for (const auto& [range, refusal] : refusals_) {
    Problem problem = refusal.problem;
    const Range& whole = wanted_.ranges[range];
    // A router that stops in the middle of a range tells about one port, and the user about the range.
    if (problem.trouble == Trouble::kTableFull || problem.trouble == Trouble::kNotKept) {
      problem.firstPort = whole.firstPort;
      problem.lastPort = whole.lastPort;
    }
    problems_.push_back(problem);
  }
  for (const auto& [key, problem] : leftovers_) problems_.push_back(problem);
  if (silent_) {
    problems_.push_back({Trouble::kNoAnswer, 0, 0, Protocol::kTcp, {}, 0});
  } else if (!finished_) {
    problems_.push_back({Trouble::kBusy, 0, 0, Protocol::kTcp, {}, 0});
  }
}

}  // namespace upnp
