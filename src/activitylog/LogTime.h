#pragma once

#include <string>

#include "platform/Clock.h"

/// How the log writes moments. The form is the same on every system: stored rows are sorted by reading them
/// again.
namespace LogTime {

/// "mm/dd/yy hh:mm", with the hours 00 to 23.
std::string RowTime(const platform::DateTime& moment);

}  // namespace LogTime
