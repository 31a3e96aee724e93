#pragma once

#include <span>

#include "rules/Clock.h"
#include "rules/GatewaySession.h"
#include "rules/Progress.h"
#include "rules/RouterTable.h"

namespace upnp {

/// Reads the table of one router by the way that it allows: as a whole, port by port, or not at all.
class TableReader {
 public:
  enum class End { kRead, kSilent, kCalledOff };

  TableReader(GatewaySession& session, const Clock& clock, Progress& progress)
      : session_(session), clock_(clock), progress_(progress) {}

  /// Tries the ways anew which the router didn't allow before.
  void StartAnew();
  /// Learns what it can: the whole table, or at least `keys`. `total` is told as the size of the work.
  End ReadAll(std::span<const PortKey> keys, KnownPorts& known, std::size_t total);
  /// Learns about `keys`.
  End Look(std::span<const PortKey> keys, KnownPorts& known, std::size_t total);
  /// Learns from an entry that was read back behind an addition. False when the router is silent.
  bool Take(const Lookup& readBack, KnownPorts& known);

  /// Single entries can be asked for, as far as is known.
  bool ReadsSingles() const { return !singlesUnread_ && !unreadable_; }
  /// The router tells no entries at all.
  bool IsUnreadable() const { return unreadable_; }

 private:
  End LookByTable(KnownPorts& known, std::size_t total);

  GatewaySession& session_;
  const Clock& clock_;
  Progress& progress_;
  bool singlesUnread_ = false;
  bool unreadable_ = false;
  bool endless_ = false;  ///< the table took too long to read, or has no end
};

}  // namespace upnp
