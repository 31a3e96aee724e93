#pragma once

#include <cstddef>
#include <mutex>
#include <string_view>
#include <vector>

#include "log/LineReader.h"
#include "log/RepeatFilter.h"
#include "log/Time.h"

namespace upnp::log {

/// What has arrived so far.
struct Arrivals {
  std::size_t datagrams = 0;
  /// Packets that were found in them, repeats included.
  std::size_t packets = 0;
  /// When the last datagram came; the start of the clock without any.
  Time last{};
};

/// Takes the router's datagrams on one thread, and hands the packets in them to another. It holds a bounded
/// number, whatever comes.
class Intake {
 public:
  static constexpr std::size_t kMostPackets = 512;

  struct Content {
    std::vector<Packet> packets;
    /// How many came while it was full.
    std::size_t dropped = 0;
  };

  /// From the receiving thread only. Repeats within two seconds go no further. True when the other thread has
  /// something to take that it hadn't before.
  bool Take(std::string_view datagram, const Sides& sides, Time now);

  /// What has come since the last time.
  Content TakeContent();
  Arrivals GetArrivals() const;

 private:
  LineReader reader_;
  RepeatFilter repeats_;
  mutable std::mutex mutex_;
  Arrivals arrivals_;
  Content content_;
};

}  // namespace upnp::log
