// How a mapping comes to the router: the additions of MappingKeeper, with everything that is tried when one
// is refused or doesn't last.

#include <algorithm>
#include <utility>

#include "rules/MappingKeeper.h"

namespace upnp {

namespace {

bool IsFinal(const Answer& refusal) {
  switch (refusal.Code()) {
    case error::kNotAuthorized:
    case error::kOwnedByAnother:
    case error::kTableFull:
    case error::kUsedByRouter:
      return true;
    default:
      return false;
  }
}

}  // namespace

/// `total` is told as the size of the work.
void MappingKeeper::AddInBatches(std::span<Addition> additions, std::size_t total) {
  readBack_ = {};
  for (std::size_t begin = 0; begin < additions.size() && finished_; begin += kBatch) {
    finished_ = progress_.GoOn(begin, total);
    if (finished_) AddBatch(additions.subspan(begin, std::min(kBatch, additions.size() - begin)));
  }
}

void MappingKeeper::AddBatch(std::span<Addition> batch) {
  std::vector<Addition*> open;
  for (Addition& addition : batch) {
    if (MayStillBeAdded(addition)) open.push_back(&addition);
  }
  while (!open.empty() && finished_) {
    std::vector<PortMapping> mappings;
    mappings.reserve(open.size());
    for (const Addition* addition : open) mappings.push_back(Request(wanted_.ports[addition->port]));
    const std::vector<Added> added =
        session_.AddAll(mappings, reader_.MayReadSingles(), [this] { return progress_.IsWanted(); });
    std::vector<Addition*> untried;
    for (std::size_t i = 0; i < open.size() && !silent_; ++i) {
      if (added[i].granted.answer.IsNotTried()) {
        untried.push_back(open[i]);
      } else {
        reader_.Take(added[i].readBack, readBack_);
        AddAgain(*open[i], added[i].granted);
      }
    }
    if (untried.size() == open.size() || !progress_.IsWanted()) finished_ = finished_ && untried.empty();
    std::erase_if(untried, [&](const Addition* addition) { return !MayStillBeAdded(*addition); });
    open = std::move(untried);
  }
}

/// What is left of a range that was refused isn't tried.
bool MappingKeeper::MayStillBeAdded(const Addition& addition) const {
  return addition.renewal || !refusals_.Has(wanted_.ports[addition.port].range);
}

PortMapping MappingKeeper::Request(const WantedPort& port) const {
  PortMapping mapping = port.mapping;
  mapping.lease = leases_.LeaseToAsk();
  return mapping;
}

Granted MappingKeeper::Ask(const WantedPort& port) {
  return session_.Add(Request(port));
}

/// Some routers refuse leases that end by other codes than the one that is meant for it.
Granted MappingKeeper::AskForPermanent(const WantedPort& port) {
  leases_.AskForPermanent(true);
  const Granted granted = Ask(port);
  if (!granted.answer.IsDone()) leases_.AskForPermanent(false);
  return granted;
}

/// Deletes a mapping of ours that is in the way of its own addition. True when that makes another try worth
/// it.
bool MappingKeeper::MakeRoom(const Addition& addition, const Answer& refusal) {
  const bool mayBeOurs = refusal.IsRefused(error::kOwnedByAnother) ||
                         (addition.renewal && (!IsFinal(refusal) || refusal.IsRefused(error::kTableFull)));
  if (!mayBeOurs) return false;
  const PortMapping& mapping = wanted_.ports[addition.port].mapping;
  const Lookup owner = session_.Entry(mapping.Key());
  if (owner.answer.IsNoAnswer()) FallSilent();
  if (owner.answer.IsDone()) return IsOurs(owner.mapping) && Remove(owner.mapping);
  return owner.answer.IsRefused() && addition.renewal && !reader_.IsMissing(owner.answer) && Remove(mapping);
}

/// Deals with the answer to an addition, and tries again what may go another way.
void MappingKeeper::AddAgain(Addition& addition, Granted granted) {
  const WantedPort& port = wanted_.ports[addition.port];
  const PortKey key = port.mapping.Key();
  if (granted.answer.IsRefused(error::kConnectionCut)) {
    // It may have been done all the same.
    const Lookup lookup = session_.Entry(key);
    if (lookup.answer.IsDone() && IsRight(lookup.mapping, port.mapping)) {
      granted.answer = Answer::Done();
      granted.lease = lookup.mapping.lease;
    }
  }
  if (granted.answer.IsRefused() && MakeRoom(addition, granted.answer)) {
    own_.Remember(router_, port.mapping);
    granted = Ask(port);
  }
  if (granted.answer.IsRefused() && !IsFinal(granted.answer) && granted.lease != 0 &&
      session_.Abilities().permanent) {
    const bool stillThere = addition.renewal && leases_.Holds(key) && !leases_.IsOver(key);
    // Another one under way at the same time may have shown by now that it must be so.
    if (!stillThere) granted = leases_.LeaseToAsk() == 0 ? Ask(port) : AskForPermanent(port);
  }
  if (granted.answer.IsDone() && granted.externalPort != key.first) {
    session_.Delete({granted.externalPort, key.second});
    granted.answer = Answer::Refused(error::kOwnedByAnother);
  }
  if (granted.answer.IsNoAnswer()) return FallSilent();
  if (!granted.answer.IsDone()) return GiveUp(addition, granted.answer);
  addition.made = true;
  addition.lease = granted.lease;
  leftovers_.erase(key);
}

void MappingKeeper::GiveUp(const Addition& addition, const Answer& refusal) {
  const WantedPort& port = wanted_.ports[addition.port];
  const PortKey key = port.mapping.Key();
  if (addition.renewal && leases_.Holds(key) && !leases_.IsOver(key)) {
    // It is still open, and is added anew when it is over.
    leftovers_.erase(key);
    return leases_.Postpone(key);
  }
  leases_.Drop(key);
  refusals_.Add(port.range, RefusalOf(port, refusal));
}

/// Learns what stands in the table of what was added.
void MappingKeeper::LookBack(std::span<Addition> additions) {
  std::vector<PortKey> keys;
  for (const Addition& addition : additions) {
    const PortKey key = wanted_.ports[addition.port].mapping.Key();
    if (addition.made && !readBack_.Find(key)) keys.push_back(key);
  }
  if (!keys.empty()) Continue(reader_.Look(keys, readBack_, 0));
}

/// Some routers say yes to a lease that ends, and keep only those without an end.
void MappingKeeper::KeepWithoutEnd(std::span<Addition> additions) {
  const auto isLost = [this](const Addition& addition) {
    const PortKey key = wanted_.ports[addition.port].mapping.Key();
    return addition.made && readBack_.StateOf(key) == KnownPorts::State::kFree;
  };
  if (leases_.LeaseToAsk() == 0 || !session_.Abilities().permanent) return;
  bool first = true;
  for (Addition& addition : additions) {
    if (!isLost(addition) || !finished_ || !progress_.IsWanted()) continue;
    const Granted granted =
        first ? AskForPermanent(wanted_.ports[addition.port]) : Ask(wanted_.ports[addition.port]);
    if (granted.answer.IsNoAnswer()) return FallSilent();
    addition.lease = granted.lease;
    if (!std::exchange(first, false)) continue;
    LookBack(std::span(&addition, 1));
    if (!isLost(addition)) continue;
    leases_.AskForPermanent(false);
    return;
  }
  LookBack(additions);
}

void MappingKeeper::ReadBack(std::span<Addition> additions) {
  LookBack(additions);
  if (finished_) KeepWithoutEnd(additions);
  const bool any =
      std::any_of(additions.begin(), additions.end(), [](const Addition& addition) { return addition.made; });
  if (any && !silent_) Continue(reader_.LookAtFirstEntry());
  if (silent_) return;
  for (const Addition& addition : additions) {
    if (!addition.made) continue;
    const WantedPort& port = wanted_.ports[addition.port];
    const PortKey key = port.mapping.Key();
    const auto found = readBack_.Find(key);
    if (found && IsRight(*found, port.mapping)) {
      own_.Remember(router_, *found);
      leases_.Hold(key, found->lease, addition.lease);
    } else if (found && found->enabled) {
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

void MappingKeeper::RenewDue(const KnownPorts& known) {
  std::vector<Addition> additions;
  for (std::size_t i = 0; i < wanted_.ports.size(); ++i) {
    const WantedPort& port = wanted_.ports[i];
    const PortKey key = port.mapping.Key();
    if (!leases_.IsDue(key)) continue;
    const auto found = known.Find(key);
    const bool isThere = found ? Confirm(port, *found) : known.StateOf(key) == KnownPorts::State::kUnknown;
    if (isThere) {
      additions.push_back({i, true});
    } else {
      leases_.Drop(key);
    }
  }
  AddInBatches(additions, 0);
  if (!silent_) ReadBack(additions);
}

}  // namespace upnp
