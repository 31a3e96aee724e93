#pragma once

#include <cstddef>

namespace upnp {

/// Told while a long work goes on.
class Progress {
 public:
  virtual ~Progress() = default;
  /// `done` of `total` ports; a total of 0 tells nothing. False asks for an end as soon as possible.
  virtual bool GoOn(std::size_t done, std::size_t total) = 0;
  /// Asked before each call of the router, from any thread: false asks for an end as soon as possible.
  virtual bool IsWanted() const = 0;
};

}  // namespace upnp
