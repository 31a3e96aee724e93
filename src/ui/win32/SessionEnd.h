#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <set>

namespace ui::win32 {

/// The end of the session as all our windows hear of it. Each of them is asked; the program answers once, and
/// the answer holds for the others. When the end is certain, the first window that is told of it ends the
/// process; the others are told while it still saves, and must let it.
class SessionEnd {
 public:
  /// `onEnd` returns false when the program is ending by itself already: the process isn't ended then.
  explicit SessionEnd(const std::function<bool()>& onEnd) : onEnd_(onEnd) {}

  /// The result of WM_QUERYENDSESSION or WM_ENDSESSION for the window; none for any other message.
  std::optional<LRESULT> Answer(HWND window, UINT message, WPARAM wParam);

 private:
  bool Query(HWND window);
  void End();

  const std::function<bool()>& onEnd_;
  bool ending_ = false;
  std::optional<bool> answer_;
  /// The windows that were asked in this round.
  std::set<HWND> asked_;
};

}  // namespace ui::win32
