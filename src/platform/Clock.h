#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// Local date and time.
struct DateTime {
  std::int32_t year = 0;
  std::int32_t month = 0;  ///< 1 to 12
  std::int32_t day = 0;    ///< 1 to 31
  std::int32_t hour = 0;   ///< 0 to 23
  std::int32_t minute = 0;
  std::int32_t second = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual DateTime Now() = 0;
  /// The time of day as the user wants to read it.
  virtual std::string TimeText(const DateTime& moment) = 0;
};

}  // namespace platform
