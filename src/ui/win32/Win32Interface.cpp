#include "ui/win32/Win32Interface.h"

#include <windows.h>

#include <commctrl.h>
#include <objbase.h>

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

/// Pictures are read by the machine's codecs, which are COM objects.
class Apartment {
 public:
  Apartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
  ~Apartment() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  HRESULT result_;
};

}  // namespace

struct Win32Interface::Parts {
  explicit Parts(const std::function<bool()>& onSessionEnd) : surroundings(onSessionEnd) {}

  Apartment apartment;
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
  TheInterface() = {&parts_->toolkit, &parts_->dialogs, &parts_->clipboard, &parts_->surroundings.screen, {}};
}

Win32Interface::~Win32Interface() {
  TheInterface() = parts_->before;
}

}  // namespace ui::win32
