#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>

#include "rules/Clock.h"
#include "rules/Gateway.h"

namespace upnp {

/// How long each of our mappings lasts by our own clock, and which lease the router is asked for.
class LeaseBook {
 public:
  /// `lease` in seconds.
  LeaseBook(const Clock& clock, std::uint32_t lease) : clock_(clock), lease_(lease) {}

  /// Seconds to ask for; 0 for ever.
  std::uint32_t LeaseToAsk() const { return permanentOnly_ ? 0 : lease_; }
  /// Whether the router takes leases without an end only.
  void AskForPermanent(bool permanent) { permanentOnly_ = permanent; }

  /// Takes a mapping down that lasts from now. `asked` is the lease that was asked for, `told` what the
  /// router says of it: what is left of it, perhaps less than was asked. Routers that tell nothing of a lease
  /// that ends are taken at what was asked.
  void Hold(const PortKey& key, std::uint32_t told, std::uint32_t asked);
  void Drop(const PortKey& key) { held_.erase(key); }
  void DropAllBut(const std::set<PortKey>& keys);
  /// Forgets everything, since the router may have forgotten it too.
  void Clear();

  bool Holds(const PortKey& key) const { return held_.contains(key); }
  /// True when half of its time is over.
  bool IsDue(const PortKey& key) const;
  bool IsOver(const PortKey& key) const;
  /// A renewal failed: it is due again after a while, and before its end.
  void Postpone(const PortKey& key);
  /// When something is due again; nothing while nothing ends.
  std::optional<Moment> NextRenewal() const;
  /// True when `a` would stay longer on the router than `b`.
  bool Outlasts(const PortKey& a, const PortKey& b) const { return EndOf(a) > EndOf(b); }

 private:
  struct Held {
    Moment renewAt = Moment::max();
    Moment endsAt = Moment::max();
  };

  Moment EndOf(const PortKey& key) const;

  const Clock& clock_;
  std::uint32_t lease_;
  bool permanentOnly_ = false;
  std::map<PortKey, Held> held_;
};

}  // namespace upnp
