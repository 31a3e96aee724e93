#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <unordered_map>

#include "log/Packet.h"
#include "log/Time.h"

namespace upnp::log {

/// Knows packets that were told lately, so that a knock that a router logs three times makes one row.
class RepeatFilter {
 public:
  static constexpr Time kMemory{2000};
  /// Of more packets in so short a time, the oldest are forgotten.
  static constexpr std::size_t kMostPackets = 1024;

  /// True when the same packet has come within the last two seconds and wasn't a repeat itself then.
  bool IsRepeat(const Packet& packet, Time now);

 private:
  struct Seen {
    Time when;
    std::string key;
  };
  void ForgetOld(Time now);

  std::deque<Seen> order_;
  std::unordered_map<std::string, Time> times_;
};

}  // namespace upnp::log
