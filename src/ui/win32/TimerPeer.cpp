#include "ui/win32/TimerPeer.h"

#include "ui/Timer.h"
#include "ui/win32/UtilityWindow.h"

namespace ui::win32 {

TimerPeer::TimerPeer(Timer& timer, UtilityWindow& utility) : timer_(timer), utility_(utility) {
  Changed(Aspect::kValue);
}

TimerPeer::~TimerPeer() {
  if (running_) utility_.StopTimer(running_);
}

void TimerPeer::Changed(Aspect) {
  if (running_) utility_.StopTimer(running_);
  running_ = 0;
  if (!timer_.Enabled() || timer_.Interval() <= 0) return;
  running_ = utility_.StartTimer(static_cast<UINT>(timer_.Interval()), [this] { timer_.UserTick(); });
}

}  // namespace ui::win32
