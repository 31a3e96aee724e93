#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>

namespace upnp {

/// While one lives, the calls of miniupnpc on this thread keep within it.
class CallBounds {
 public:
  /// What an answer may hold at most.
  static constexpr std::size_t kLongestAnswer = 512 * 1024;

  /// The calls end when `time` is over, or soon after `calledOff` has become true.
  CallBounds(std::chrono::milliseconds time, const std::atomic<bool>& calledOff);
  ~CallBounds();
  CallBounds(const CallBounds&) = delete;
  CallBounds& operator=(const CallBounds&) = delete;

  /// True when something was cut off: what came back isn't the whole answer.
  bool WereReached() const { return reached_; }

  // For the socket functions.
  static CallBounds* Current();
  /// Milliseconds that are left; 0 when the call is to end.
  int Left();
  bool Count(std::size_t bytes);

 private:
  CallBounds* outer_;
  std::chrono::steady_clock::time_point end_;
  const std::atomic<bool>& calledOff_;
  std::size_t bytes_ = 0;
  bool reached_ = false;
};

}  // namespace upnp
