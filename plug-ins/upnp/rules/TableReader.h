#pragma once

#include <cstddef>
#include <set>
#include <span>

#include "rules/Clock.h"
#include "rules/GatewaySession.h"
#include "rules/Progress.h"
#include "rules/RouterTable.h"

namespace upnp {

/// Reads the table of one router by the way that it allows: as a whole, port by port, or not at all.
///
/// Some routers have one code for an empty table, or for a missing entry, and for an action that they lack.
/// What they mean shows when something is in the table.
class TableReader {
 public:
  enum class End { kRead, kSilent, kCalledOff };

  TableReader(GatewaySession& session, const Clock& clock, Progress& progress);

  /// Tries the ways anew which the router didn't allow before.
  void StartAnew();
  /// Forgets what was learned of the router, since it may be another by now.
  void Reset();
  /// Learns what it can: the whole table, or at least `keys`. `total` is told as the size of the work.
  End ReadAll(std::span<const PortKey> keys, KnownPorts& known, std::size_t total);
  /// Learns about `keys`.
  End Look(std::span<const PortKey> keys, KnownPorts& known, std::size_t total);
  /// As Look, but where only the whole table can be read, it takes turns at a rate of `calls` in each
  /// `interval`.
  End LookInTurn(std::span<const PortKey> keys, KnownPorts& known, std::size_t calls, Moment interval);
  /// Learns from an entry that was read back behind an addition.
  void Take(const Lookup& readBack, KnownPorts& known);
  /// Learns, after an addition, whether the first entry can be told after all.
  End LookAtFirstEntry();

  bool IsMissing(const Answer& answer) const;
  /// Asking for a single entry may be of use.
  bool MayReadSingles() const { return !readBackFailed_ && (!singlesUnread_ || doubtfulMissing_ != 0); }
  /// The router tells no entries at all.
  bool IsUnreadable() const { return unreadable_; }

 private:
  TableReading Read(std::size_t total);
  End LookByTable(KnownPorts& known, std::size_t total);

  GatewaySession& session_;
  const Clock& clock_;
  Progress& progress_;
  bool singlesUnread_ = false;
  bool readBackFailed_ = false;  ///< by silence; whether the router is there shows elsewhere
  bool unreadable_ = false;
  bool endless_ = false;        ///< the table took too long to read, or has no end
  std::set<int> emptyCodes_;    ///< with which it says that its table is empty
  std::set<int> missingCodes_;  ///< with which it says that it has no such entry
  int doubtfulEmpty_ = 0;       ///< a code that may be one of them
  int doubtfulMissing_ = 0;
  Moment nextTable_{};
};

}  // namespace upnp
