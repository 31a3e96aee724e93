#pragma once

#include <chrono>

namespace upnp {

/// Time since some fixed moment; it never goes back.
using Moment = std::chrono::milliseconds;

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Moment Now() const = 0;
};

}  // namespace upnp
