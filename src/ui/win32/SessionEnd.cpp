#include "ui/win32/SessionEnd.h"

#include <string>
#include <utility>

#include "ui/EventGuard.h"
#include "ui/Form.h"

namespace ui::win32 {
namespace {

struct Session {
  std::string Path() const { return "Session"; }
};

}  // namespace

std::optional<LRESULT> SessionEnd::Answer(HWND window, UINT message, WPARAM wParam) {
  switch (message) {
    case WM_QUERYENDSESSION:
      return ending_ || Query(window) ? TRUE : FALSE;
    case WM_ENDSESSION:
      if (wParam != FALSE) End();
      answer_.reset();
      asked_.clear();
      return 0;
    default:
      return std::nullopt;
  }
}

bool SessionEnd::Query(HWND window) {
  // A window that is asked again belongs to a new round: one that is called off isn't always told.
  if (!asked_.insert(window).second) {
    asked_ = {window};
    answer_.reset();
  }
  if (!answer_) {
    // Windows that are asked while the answer is being found don't ask again.
    answer_ = true;
    answer_ = Form::QuerySessionEnd();
  }
  return *answer_;
}

void SessionEnd::End() {
  if (std::exchange(ending_, true)) return;
  if (!answer_) Form::QuerySessionEnd();
  const EventGuard::Unattended nobodyAnswers;
  bool mayExit = true;
  EventGuard::Run(Session{}, "End", EventGuard::Repeats::kNo, [&] {
    if (onEnd_) mayExit = onEnd_();
  });
  if (mayExit) ExitProcess(0);
}

}  // namespace ui::win32
