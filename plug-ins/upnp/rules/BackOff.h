#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "rules/Clock.h"

namespace upnp {

/// How long to wait before a router that doesn't answer is looked for again.
class BackOff {
 public:
  Moment Wait() const {
    return kSteps[std::min(failures_ - std::min<std::size_t>(failures_, 1), kSteps.size() - 1)];
  }
  void Failed() { ++failures_; }
  void Reset() { failures_ = 0; }

 private:
  static constexpr std::array<std::chrono::seconds, 4> kSteps = {
      std::chrono::seconds(7), std::chrono::seconds(15), std::chrono::seconds(30), std::chrono::seconds(60)};
  std::size_t failures_ = 0;
};

}  // namespace upnp
