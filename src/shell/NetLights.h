#pragma once

#include <cstdint>

#include "platform/Network.h"

/// What the icon shows of the computer's traffic: from the counters of each tick it chooses the position of a
/// picture in the list of the monitor's pictures, which counts from 1.
class NetLights {
 public:
  /// Each tick first of all; true every other time, so that a warning flashes.
  bool Flip() { return flash_ = !flash_; }
  bool Flash() const { return flash_; }

  /// Takes the counters of this tick; false on the very first, which has nothing to compare with.
  bool Compare(const platform::TcpStatistics& statistics);
  /// The counters of this tick become those of the last one.
  void Store() { last_ = current_; }

  /// Two computers, lit by sending and receiving: position 1 to 4, with a warning 5 to 8.
  std::int32_t ActivityLights(bool warn) const;
  /// A column that fills with traffic: position 10 to 14, with a warning 15 to 20. Full scale is the peak of
  /// the last minute; after a minute without a new peak the scale shrinks at every tick until traffic beats
  /// it.
  std::int32_t SpeedBar(bool warn);

 private:
  platform::TcpStatistics current_;
  platform::TcpStatistics last_;
  bool haveLast_ = false;
  bool flash_ = false;
  std::int32_t peak_ = 0;
  std::int32_t peakAge_ = 0;
};
