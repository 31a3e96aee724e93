#pragma once

#include <windows.h>

#include <functional>
#include <map>

#include "ui/win32/OwnWindow.h"

namespace ui::win32 {

class SessionEnd;

/// A window that is never shown: timers tick through it, pop-up menus hang on it, the clipboard takes it as
/// its owner, and windows that are kept out of the task bar belong to it.
class UtilityWindow : public OwnWindow {
 public:
  explicit UtilityWindow(SessionEnd& sessionEnd);

  /// Runs `tick` every `milliseconds` until StopTimer. A number is never given twice, so a tick that waits
  /// when its timer is stopped reaches nobody.
  UINT_PTR StartTimer(UINT milliseconds, std::function<void()> tick);
  void StopTimer(UINT_PTR timer);

 protected:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  SessionEnd& sessionEnd_;
  std::map<UINT_PTR, std::function<void()>> timers_;
  UINT_PTR lastTimer_ = 0;
};

}  // namespace ui::win32
