#include "ui/win32/UtilityWindow.h"

#include <optional>
#include <utility>

#include "ui/win32/SessionEnd.h"

namespace ui::win32 {

UtilityWindow::UtilityWindow(SessionEnd& sessionEnd) : sessionEnd_(sessionEnd) {
  Create({.className = "HarbourlineUtility",
          .style = WS_POPUP,
          .extendedStyle = WS_EX_TOOLWINDOW,
          .title = {},
          .controlName = {}});
}

UINT_PTR UtilityWindow::StartTimer(UINT milliseconds, std::function<void()> tick) {
  const UINT_PTR timer = ++lastTimer_;
  timers_.emplace(timer, std::move(tick));
  SetTimer(Window(), timer, milliseconds, nullptr);
  return timer;
}

void UtilityWindow::StopTimer(UINT_PTR timer) {
  KillTimer(Window(), timer);
  timers_.erase(timer);
}

LRESULT UtilityWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_TIMER) {
    if (const auto found = timers_.find(wParam); found != timers_.end()) {
      // A copy, since the tick may stop its own timer.
      const std::function<void()> tick = found->second;
      tick();
      return 0;
    }
  }
  if (const auto answer = sessionEnd_.Answer(Window(), message, wParam)) return *answer;
  return OwnWindow::OnMessage(message, wParam, lParam);
}

}  // namespace ui::win32
