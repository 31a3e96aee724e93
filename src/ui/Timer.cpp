#include "ui/Timer.h"

namespace ui {

Timer::Timer(Control* parent, std::string name) : Control(Kind::kTimer, parent, std::move(name)) {}

void Timer::Interval(std::int32_t milliseconds) {
  interval_ = milliseconds;
  Notify(Aspect::kValue);
}

void Timer::Enabled(bool enabled) {
  if (enabled == running_) return;
  running_ = enabled;
  Notify(Aspect::kEnabled);
}

void Timer::UserTick() {
  if (ticking_ || !running_) return;
  struct Ticking {
    bool& flag;
    explicit Ticking(bool& f) : flag(f) { flag = true; }
    ~Ticking() { flag = false; }
  } ticking(ticking_);
  EventGuard::Run(*this, "Tick", EventGuard::Repeats::kYes, [this] { Tick.Raise(); });
}

}  // namespace ui
