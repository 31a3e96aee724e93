#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <set>

namespace ui::win32 {

/// The end of the session as all our windows hear of it. Each of them is asked; the program answers once, and
/// the answer holds for the others. When the end is certain, the first window that is told of it ends the
/// process.
class SessionEnd {
 public:
  explicit SessionEnd(const std::function<void()>& onEnd) : onEnd_(onEnd) {}

  /// The result of WM_QUERYENDSESSION or WM_ENDSESSION for the window; none for any other message.
  std::optional<LRESULT> Answer(HWND window, UINT message, WPARAM wParam);

 private:
  bool Query(HWND window);
  [[noreturn]] void End();

  const std::function<void()>& onEnd_;
  std::optional<bool> answer_;
  /// The windows that were asked in this round.
  std::set<HWND> asked_;
};

}  // namespace ui::win32
