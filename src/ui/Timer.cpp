#include "ui/Timer.h"

#include "base/Failures.h"

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
  base::Failures failures;
  {
    struct Ticking {
      bool& flag;
      explicit Ticking(bool& f) : flag(f) { flag = true; }
      ~Ticking() { flag = false; }
    } ticking(ticking_);
    failures.Run([this] { Tick.Raise(); });
  }
  // Shown when the tick is over: a box that nobody closes must not end the ticks.
  EventGuard::Run(*this, "Tick", EventGuard::Repeats::kYes, [&failures] { failures.Rethrow(); });
}

}  // namespace ui
