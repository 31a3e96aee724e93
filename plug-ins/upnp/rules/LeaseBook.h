#pragma once

#include <cstdint>
#include <map>
#include <optional>

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
  /// The router takes leases without an end only.
  void AskForPermanent() { permanentOnly_ = true; }

  /// Takes a mapping down that lasts from now. `asked` is the lease that was asked for, `told` what the
  /// router says of it: what is left of it, perhaps less than was asked.
  void Hold(const PortKey& key, std::uint32_t told, std::uint32_t asked);
  void Drop(const PortKey& key) { held_.erase(key); }
  /// Forgets everything.
  void Clear();

  bool Holds(const PortKey& key) const { return held_.contains(key); }
  /// True when half of its time is over.
  bool IsDue(const PortKey& key) const;
  bool IsPermanent(const PortKey& key) const;

 private:
  struct Held {
    Moment renewAt{};
    bool permanent = false;
  };

  const Clock& clock_;
  std::uint32_t lease_;
  bool permanentOnly_ = false;
  std::map<PortKey, Held> held_;
};

}  // namespace upnp
