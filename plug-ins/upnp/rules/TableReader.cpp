#include "rules/TableReader.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace upnp {

namespace {

constexpr Moment kTableTime = std::chrono::seconds(5);
/// Ports that are asked for between two looks at the progress.
constexpr std::size_t kBatch = 64;

/// Codes that routers give for one thing and another.
bool IsDoubtful(const Answer& answer) {
  return answer.IsRefused(error::kInvalidArguments) || answer.IsRefused(error::kActionFailed);
}

}  // namespace

TableReader::TableReader(GatewaySession& session, const Clock& clock, Progress& progress)
    : session_(session), clock_(clock), progress_(progress) {
  StartAnew();
}

void TableReader::StartAnew() {
  unreadable_ = singlesUnread_ = !session_.Abilities().readsTable;
  readBackFailed_ = false;
  doubtfulEmpty_ = doubtfulMissing_ = 0;
}

void TableReader::Reset() {
  emptyCodes_.clear();
  missingCodes_.clear();
  endless_ = false;
  StartAnew();
}

bool TableReader::IsMissing(const Answer& answer) const {
  return upnp::IsMissing(answer) || (answer.IsRefused() && missingCodes_.contains(answer.Code()));
}

TableReading TableReader::Read(std::size_t total) {
  TableReading reading = ReadTable(session_, clock_, clock_.Now() + kTableTime,
                                   [&] { return progress_.IsWanted() && progress_.GoOn(0, total); });
  const Answer& first = reading.firstAnswer;
  if (first.IsRefused() && emptyCodes_.contains(first.Code())) reading.complete = true;
  if (IsDoubtful(first) && !reading.complete) doubtfulEmpty_ = first.Code();
  return reading;
}

TableReader::End TableReader::ReadAll(std::span<const PortKey> keys, KnownPorts& known, std::size_t total) {
  if (unreadable_) return End::kRead;
  if (!endless_) {
    const TableReading reading = Read(total);
    if (reading.noAnswer) return End::kSilent;
    known.Learn(reading);
    if (reading.complete) return End::kRead;
    if (!progress_.IsWanted()) return End::kCalledOff;
    endless_ = !reading.entries.empty();
  }
  // A table without an end isn't read to it: only the ports that matter are asked for.
  std::vector<PortKey> unknown(keys.begin(), keys.end());
  std::erase_if(unknown, [&](const PortKey& key) { return known.Find(key).has_value(); });
  return Look(unknown, known, total);
}

TableReader::End TableReader::Look(std::span<const PortKey> keys, KnownPorts& known, std::size_t total) {
  if (unreadable_ || keys.empty()) return End::kRead;
  if (singlesUnread_) return LookByTable(known, total);
  for (std::size_t begin = 0; begin < keys.size(); begin += kBatch) {
    if (!progress_.GoOn(0, total)) return End::kCalledOff;
    const auto batch = keys.subspan(begin, std::min(kBatch, keys.size() - begin));
    const std::vector<Lookup> lookups = session_.Entries(
        batch, [this](const Answer& answer) { return IsMissing(answer); },
        [this] { return progress_.IsWanted(); });
    bool refused = false;
    bool left = false;
    for (std::size_t i = 0; i < batch.size(); ++i) {
      const Answer& answer = lookups[i].answer;
      if (answer.IsNoAnswer()) return End::kSilent;
      if (answer.IsDone()) {
        known.Learn(lookups[i].mapping);
      } else if (IsMissing(answer)) {
        known.LearnFree(batch[i]);
      } else {
        refused = refused || answer.IsRefused();
        left = left || answer.IsNotTried();
        if (IsDoubtful(answer)) doubtfulMissing_ = answer.Code();
      }
    }
    if (refused) {
      singlesUnread_ = true;
      return LookByTable(known, total);
    }
    if (left) return End::kCalledOff;
  }
  return End::kRead;
}

TableReader::End TableReader::LookInTurn(std::span<const PortKey> keys, KnownPorts& known, std::size_t calls,
                                         Moment interval) {
  if (!singlesUnread_) return Look(keys, known, 0);
  if (unreadable_ || clock_.Now() < nextTable_) return End::kRead;
  const End end = LookByTable(known, 0);
  nextTable_ = clock_.Now() + interval * (known.Taken().size() + 1) / calls;
  return end;
}

/// For routers that can't tell a single entry.
TableReader::End TableReader::LookByTable(KnownPorts& known, std::size_t total) {
  const TableReading reading = Read(total);
  if (reading.noAnswer) return End::kSilent;
  known.Learn(reading);
  unreadable_ = reading.entries.empty() && !reading.complete;
  return End::kRead;
}

/// An entry that isn't there yet is asked for once more when all are added: a router may take its time.
void TableReader::Take(const Lookup& readBack, KnownPorts& known) {
  const Answer& answer = readBack.answer;
  if (answer.IsDone()) {
    known.Learn(readBack.mapping);
    if (doubtfulMissing_ != 0) missingCodes_.insert(std::exchange(doubtfulMissing_, 0));
    singlesUnread_ = unreadable_ = false;
  } else if (answer.IsNoAnswer()) {
    readBackFailed_ = true;
  } else if (answer.IsRefused() && !IsMissing(answer)) {
    singlesUnread_ = true;
    doubtfulMissing_ = 0;
  }
}

TableReader::End TableReader::LookAtFirstEntry() {
  if (doubtfulEmpty_ == 0) return End::kRead;
  PortMapping first;
  const Answer answer = session_.EntryAt(0, first);
  if (answer.IsDone()) {
    emptyCodes_.insert(doubtfulEmpty_);
    unreadable_ = false;
  }
  doubtfulEmpty_ = 0;
  return answer.IsNoAnswer() ? End::kSilent : End::kRead;
}

}  // namespace upnp
