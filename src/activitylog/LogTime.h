#pragma once

#include <string>

#include "platform/Clock.h"

/// How the log and the error report write moments. The forms are the same on every machine: stored rows are
/// sorted by reading them again.
namespace LogTime {

/// "mm/dd/yy hh:mm", with the hours 00 to 23.
std::string RowTime(const platform::DateTime& moment);
/// "h:mm:ss AM" or "h:mm:ss PM", with the hours 1 to 12.
std::string TimeOfDay(const platform::DateTime& moment);

}  // namespace LogTime
