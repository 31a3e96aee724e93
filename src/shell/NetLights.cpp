#include "shell/NetLights.h"

#include "base/Conversions.h"

namespace {

constexpr std::int32_t kWarningLights = 4;
constexpr std::int32_t kWarningLevel = 5;
constexpr std::int32_t kFirstBar = 10;
constexpr std::int32_t kLevels = 4;
constexpr std::int32_t kTicksOfAMinute = 180;
constexpr double kPeakDivisor = 4;

/// The counters are compared as signed numbers, and a wrap is taken as it comes.
std::int32_t Signed(std::uint32_t counter) {
  return static_cast<std::int32_t>(counter);
}

}  // namespace

bool NetLights::Compare(const platform::TcpStatistics& statistics) {
  current_ = statistics;
  if (haveLast_) return true;
  haveLast_ = true;
  Store();
  return false;
}

std::int32_t NetLights::ActivityLights(bool warn) const {
  const bool receiving = Signed(current_.inSegments) > Signed(last_.inSegments);
  const bool sending = Signed(current_.outSegments) > Signed(last_.outSegments);
  return (warn ? kWarningLights : 0) + 1 + (sending ? 1 : 0) + (receiving ? 2 : 0);
}

std::int32_t NetLights::SpeedBar(bool warn) {
  const std::int32_t base = warn ? kWarningLevel : 0;
  const auto delta =
      Signed((current_.outSegments - last_.outSegments) + (current_.inSegments - last_.inSegments));
  ++peakAge_;
  if (peakAge_ > kTicksOfAMinute) peak_ = base::ToInt32(peak_ / kPeakDivisor);
  if (delta > peak_) {
    peak_ = delta;
    peakAge_ = 0;
  }
  std::int32_t level = base;
  // Counters that start anew go backwards, and the bar is empty for that tick.
  if (peak_ != 0 && delta >= 0) {
    level = base::ToInt32(static_cast<double>(delta) * kLevels / peak_ + base + 0.5);
  }
  if (delta > 0 && level == 0) level = 1;
  return level + kFirstBar;
}
