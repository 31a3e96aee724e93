#pragma once

#include <chrono>

namespace upnp::log {

/// A time of a clock that never goes back, from any start.
using Time = std::chrono::milliseconds;

}  // namespace upnp::log
