#include "ui/win32/Win32Interface.h"

#include <windows.h>

#include <commctrl.h>

#include "ui/win32/Surroundings.h"
#include "ui/win32/Win32Clipboard.h"
#include "ui/win32/Win32Dialogs.h"
#include "ui/win32/Win32Toolkit.h"

namespace ui::win32 {
namespace {

/// A program with more rights than the shell hears of a new task bar only when it lets the message in.
void LetThrough(UINT message) {
  using Filter = BOOL(WINAPI*)(UINT, DWORD);
  const HMODULE user = GetModuleHandleA("user32.dll");
  const auto filter =
      reinterpret_cast<Filter>(reinterpret_cast<void*>(GetProcAddress(user, "ChangeWindowMessageFilter")));
  if (filter) filter(message, MSGFLT_ADD);
}

}  // namespace

struct Win32Interface::Parts {
  explicit Parts(const std::function<void()>& onSessionEnd) : surroundings(onSessionEnd) {}

  Surroundings surroundings;
  Win32Toolkit toolkit{surroundings};
  Win32Dialogs dialogs{surroundings};
  Win32Clipboard clipboard{surroundings.utility};
  Interface before = TheInterface();
};

Win32Interface::Win32Interface() {
  const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&classes);
  parts_ = std::make_unique<Parts>(onSessionEnd);
  LetThrough(parts_->surroundings.taskBarCreated);
  TheInterface() = {&parts_->toolkit, &parts_->dialogs, &parts_->clipboard, &parts_->surroundings.screen};
}

Win32Interface::~Win32Interface() {
  TheInterface() = parts_->before;
}

}  // namespace ui::win32
