#include "rules/MappingKeeper.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace upnp {

MappingKeeper::MappingKeeper(Gateway& gateway, std::string router, std::string localAddress, OwnMappings& own,
                             const Clock& clock, Progress& progress, std::uint32_t lease)
    : session_(gateway),
      router_(std::move(router)),
      localAddress_(std::move(localAddress)),
      own_(own),
      clock_(clock),
      progress_(progress),
      reader_(session_, clock, progress),
      leases_(clock, lease),
      refusals_(clock) {}

void MappingKeeper::Apply(WantedState wanted, Manner manner) {
  Begin();
  wanted_ = std::move(wanted);
  refusals_.Clear();
  leftovers_.clear();
  if (manner == Manner::kAnew) {
    leases_.Clear();
    reader_.Reset();
  }
  reader_.StartAnew();
  std::set<PortKey> keys;
  for (const WantedPort& port : wanted_.ports) keys.insert(port.mapping.Key());
  leases_.DropAllBut(keys);
  KnownPorts known;
  if (Continue(reader_.ReadAll(KeysThatMatter(), known, wanted_.ports.size()))) {
    compared_ = true;
    ForgetWhatIsGone(known);
    RemoveUnwanted(known);
    std::vector<std::size_t> all(wanted_.ports.size());
    std::iota(all.begin(), all.end(), 0);
    if (finished_) AddMissing(all, known, manner, true);
  }
  End();
}

void MappingKeeper::Check() {
  Begin();
  std::vector<std::size_t> ports = NextSample();
  KnownPorts known;
  if (LookAt(ports, known)) {
    const bool gone = std::any_of(ports.begin(), ports.end(), [&](std::size_t i) {
      const WantedPort& port = wanted_.ports[i];
      return known.StateOf(port.mapping.Key()) == KnownPorts::State::kFree && !refusals_.Has(port.range);
    });
    const bool again = refusals_.ForgetDue();
    if ((gone || again) && ports.size() < wanted_.ports.size()) {
      ports.resize(wanted_.ports.size());
      std::iota(ports.begin(), ports.end(), 0);
      LookAt(ports, known);
    }
    if (finished_) RenewDue(known);
    if (finished_) AddMissing(ports, known, Manner::kCompare, reader_.IsUnreadable());
  }
  End();
}

void MappingKeeper::Renew() {
  Begin();
  RenewDue({});
  End();
}

void MappingKeeper::RemoveAll(Moment deadline) {
  Begin();
  wanted_ = {};
  refusals_.Clear();
  leftovers_.clear();
  own_.OweAll(router_);
  own_.Save();
  if (!compared_) {
    // The list is of an earlier run, and some of it may belong to others by now.
    KnownPorts known;
    if (Continue(reader_.Look(KeysThatMatter(), known, 0))) ForgetWhatIsGone(known);
  }
  std::vector<PortMapping> ours = own_.On(router_);
  std::stable_sort(ours.begin(), ours.end(), [this](const PortMapping& a, const PortMapping& b) {
    return leases_.Outlasts(a.Key(), b.Key());
  });
  for (std::size_t begin = 0; begin < ours.size() && finished_; begin += kBatch) {
    finished_ = progress_.GoOn(begin, ours.size()) && clock_.Now() < deadline;
    if (!finished_) break;
    const auto batch = std::span(ours).subspan(begin, std::min(kBatch, ours.size() - begin));
    std::vector<PortKey> keys;
    for (const PortMapping& mapping : batch) keys.push_back(mapping.Key());
    const std::vector<Answer> answers =
        session_.DeleteAll(keys, [&] { return progress_.IsWanted() && clock_.Now() < deadline; });
    for (std::size_t i = 0; i < batch.size(); ++i) TakeDeletion(batch[i], answers[i]);
  }
  own_.OweAll(router_);
  leases_.DropAllBut({});
  End();
}

void MappingKeeper::RemoveOwed() {
  const std::vector<PortMapping> owed = own_.Owed(router_);
  if (owed.empty()) return;
  Begin();
  std::vector<PortKey> keys;
  keys.reserve(owed.size());
  for (const PortMapping& mapping : owed) keys.push_back(mapping.Key());
  KnownPorts known;
  if (Continue(reader_.Look(keys, known, 0))) {
    for (const PortMapping& mapping : owed) {
      const auto found = known.Find(mapping.Key());
      if (known.StateOf(mapping.Key()) != KnownPorts::State::kUnknown && !(found && IsOurs(*found))) {
        own_.Forget(router_, mapping.Key());
      } else if (finished_ && progress_.IsWanted()) {
        Remove(mapping);
      }
    }
  }
  own_.OweAll(router_);
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
/// of this network may run the program, too. Some routers drop the description, cut it, or have one of their
/// own, which was read back behind the addition.
bool MappingKeeper::IsOurs(const PortMapping& mapping) const {
  if (mapping.lastExternalPort != 0) return false;
  const bool marked = BearsOurMark(mapping.description);
  if (!own_.Has(router_, mapping)) return marked && mapping.client == localAddress_;
  return marked || mapping.description.empty() || own_.IsShownAs(router_, mapping);
}

bool MappingKeeper::IsRight(const PortMapping& found, const PortMapping& wanted) const {
  return found.enabled && found.client == wanted.client && found.internalPort == wanted.internalPort;
}

/// Some kinds of gateways map ports to the computer that asks, and to no other.
bool MappingKeeper::IsHopeless(const WantedPort& port) const {
  return port.mapping.client != localAddress_ && !session_.Abilities().forOthers;
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

/// The next ports to look at, in turn.
std::vector<std::size_t> MappingKeeper::NextSample() {
  std::vector<std::size_t> ports;
  const std::size_t count = wanted_.ports.size();
  while (ports.size() < std::min(kSample, count)) {
    nextToSee_ = nextToSee_ < count ? nextToSee_ : 0;
    ports.push_back(nextToSee_++);
  }
  return ports;
}

bool MappingKeeper::LookAt(std::span<const std::size_t> ports, KnownPorts& known) {
  std::vector<PortKey> keys;
  for (const std::size_t port : ports) {
    const PortKey key = wanted_.ports[port].mapping.Key();
    if (known.StateOf(key) == KnownPorts::State::kUnknown) keys.push_back(key);
  }
  return Continue(reader_.LookInTurn(keys, known, kSample, kCheckInterval));
}

void MappingKeeper::ForgetWhatIsGone(const KnownPorts& known) {
  for (const PortMapping& mapping : own_.On(router_)) {
    const KnownPorts::State state = known.StateOf(mapping.Key());
    const auto found = known.Find(mapping.Key());
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
    finished_ = finished_ && progress_.IsWanted() && (i % kBatch != 0 || progress_.GoOn(i, unwanted.size()));
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
  return TakeDeletion(mapping, session_.Delete(mapping.Key()));
}

/// True when the port is free after that answer to its deletion.
bool MappingKeeper::TakeDeletion(const PortMapping& mapping, const Answer& answer) {
  if (answer.IsNoAnswer()) FallSilent();
  if (answer.IsNotTried()) finished_ = false;
  if (answer.IsNoAnswer() || answer.IsNotTried()) return false;
  if (answer.IsDone() || reader_.IsMissing(answer)) {
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

/// True when the mapping that was found is ours and as it is wanted.
bool MappingKeeper::Confirm(const WantedPort& port, const PortMapping& found) {
  if (!IsRight(found, port.mapping) || !IsOurs(found)) return false;
  own_.Remember(router_, found);
  if (!leases_.Holds(found.Key())) leases_.Hold(found.Key(), found.lease, leases_.LeaseToAsk());
  return true;
}

/// `blindly`: ports that the table doesn't tell about are asked for, too.
void MappingKeeper::AddMissing(std::span<const std::size_t> ports, const KnownPorts& known, Manner manner,
                               bool blindly) {
  std::vector<Addition> additions;
  for (const std::size_t i : ports) {
    const WantedPort& port = wanted_.ports[i];
    const PortKey key = port.mapping.Key();
    const auto found = known.Find(key);
    Addition addition{i};
    if (!found && known.StateOf(key) == KnownPorts::State::kUnknown) {
      // What was added once is taken to be there until its time is over.
      const bool mayBeMissing = leases_.Holds(key) ? leases_.IsOver(key) : blindly;
      if (!mayBeMissing) continue;
    } else if (found && IsRight(*found, port.mapping)) {
      addition.renewal = Confirm(port, *found);
      if (!addition.renewal) own_.Forget(router_, key);
      if (!addition.renewal || manner == Manner::kCompare) continue;
    } else if (found) {
      const bool removed = IsOurs(*found) && Remove(*found);
      if (silent_) return;
      // A rule that is switched off forwards nothing: whether it may be replaced is the router's business.
      if (!removed && found->enabled) {
        refusals_.Add(port.range,
                      ProblemOf(port, Trouble::kOwnedByAnother, found->client, error::kOwnedByAnother));
        continue;
      }
    }
    if (IsHopeless(port)) {
      refusals_.Add(port.range, RefusalOf(port, Answer::Refused(error::kNotAuthorized)));
    } else {
      additions.push_back(addition);
    }
  }
  std::erase_if(additions,
                [&](const Addition& addition) { return refusals_.Has(wanted_.ports[addition.port].range); });
  if (additions.empty()) return;
  for (const Addition& addition : additions) {
    if (!addition.renewal) own_.Remember(router_, wanted_.ports[addition.port].mapping);
  }
  own_.Save();
  AddInBatches(additions, additions.size());
  if (!silent_) ReadBack(additions);
  if (!silent_) SetBack(additions);
}

}  // namespace upnp
