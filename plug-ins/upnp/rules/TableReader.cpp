#include "rules/TableReader.h"

#include <algorithm>
#include <vector>

namespace upnp {

namespace {

constexpr Moment kTableTime = std::chrono::seconds(5);
/// Ports that are asked for between two looks at the progress.
constexpr std::size_t kBatch = 64;

}  // namespace

void TableReader::StartAnew() {
  singlesUnread_ = false;
  unreadable_ = !session_.Abilities().readsTable;
}

TableReader::End TableReader::ReadAll(std::span<const PortKey> keys, KnownPorts& known, std::size_t total) {
  if (!session_.Abilities().readsTable) return End::kRead;
  if (!endless_) {
    const TableReading reading =
        ReadTable(session_, clock_, clock_.Now() + kTableTime, [&] { return progress_.GoOn(0, total); });
    if (reading.noAnswer) return End::kSilent;
    known.Learn(reading);
    if (reading.complete) return End::kRead;
    endless_ = !reading.entries.empty();
  }
  // A table without an end isn't read to it: only the ports that matter are asked for.
  std::vector<PortKey> unknown(keys.begin(), keys.end());
  std::erase_if(unknown, [&](const PortKey& key) { return known.Find(key) != nullptr; });
  return Look(unknown, known, total);
}

TableReader::End TableReader::Look(std::span<const PortKey> keys, KnownPorts& known, std::size_t total) {
  for (std::size_t begin = 0; begin < keys.size() && !unreadable_; begin += kBatch) {
    if (!progress_.GoOn(0, total)) return End::kCalledOff;
    const auto batch = keys.subspan(begin, std::min(kBatch, keys.size() - begin));
    const std::vector<Lookup> lookups = session_.Entries(batch, [this] { return progress_.IsWanted(); });
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
      }
    }
    if (refused) return LookByTable(known, total);
    if (left) return End::kCalledOff;
  }
  return End::kRead;
}

/// For routers that can't tell a single entry.
TableReader::End TableReader::LookByTable(KnownPorts& known, std::size_t total) {
  const TableReading reading =
      ReadTable(session_, clock_, clock_.Now() + kTableTime, [&] { return progress_.GoOn(0, total); });
  if (reading.noAnswer) return End::kSilent;
  known.Learn(reading);
  unreadable_ = reading.entries.empty() && !reading.complete;
  return End::kRead;
}

/// An entry that isn't there yet is asked for once more when all are added: a router may take its time.
bool TableReader::Take(const Lookup& readBack, KnownPorts& known) {
  const Answer& answer = readBack.answer;
  if (answer.IsDone()) known.Learn(readBack.mapping);
  if (answer.IsRefused() && !IsMissing(answer)) singlesUnread_ = true;
  return !answer.IsNoAnswer();
}

}  // namespace upnp
