#pragma once

#include <cstdint>
#include <string>

#include "ui/Control.h"

namespace ui {

/// Raises Tick every Interval milliseconds while it is enabled; an interval of 0 never ticks. A tick that
/// comes while the handler of the one before it still runs is dropped; the box that shows a failure of a tick
/// drops none.
class Timer : public Control {
 public:
  Timer(Control* parent, std::string name);

  /// Milliseconds. Writing it starts the interval anew.
  std::int32_t Interval() const { return interval_; }
  void Interval(std::int32_t milliseconds);
  bool Enabled() const { return running_; }
  void Enabled(bool enabled);

  base::Event<> Tick;

  void UserTick();

 private:
  std::int32_t interval_ = 0;
  bool running_ = false;
  bool ticking_ = false;
};

}  // namespace ui
