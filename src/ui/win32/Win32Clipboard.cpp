#include "ui/win32/Win32Clipboard.h"

#include <windows.h>

#include <cstring>

#include "platform/win32/SystemError.h"
#include "ui/win32/UtilityWindow.h"

namespace ui::win32 {
namespace {

constexpr int kAttempts = 20;
constexpr DWORD kPauseMilliseconds = 50;

base::Error Failure() {
  return platform::win32::WindowsError("The clipboard can't be changed",
                                       static_cast<LSTATUS>(GetLastError()));
}

/// The clipboard, open and emptied.
class EmptiedClipboard {
 public:
  explicit EmptiedClipboard(HWND owner) {
    for (int attempt = 1; !OpenClipboard(owner); ++attempt) {
      if (attempt == kAttempts) throw Failure();
      Sleep(kPauseMilliseconds);
    }
    if (EmptyClipboard()) return;
    const base::Error failure = Failure();
    CloseClipboard();
    throw failure;
  }
  ~EmptiedClipboard() { CloseClipboard(); }
  EmptiedClipboard(const EmptiedClipboard&) = delete;
  EmptiedClipboard& operator=(const EmptiedClipboard&) = delete;

  void Put(UINT format, const void* data, std::size_t size) {
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    if (!memory) throw Failure();
    std::memcpy(GlobalLock(memory), data, size);
    GlobalUnlock(memory);
    if (SetClipboardData(format, memory)) return;
    const base::Error failure = Failure();
    GlobalFree(memory);
    throw failure;
  }
};

}  // namespace

void Win32Clipboard::Clear() {
  const EmptiedClipboard clipboard(owner_.Window());
}

void Win32Clipboard::SetText(const std::string& text) {
  EmptiedClipboard clipboard(owner_.Window());
  clipboard.Put(CF_TEXT, text.c_str(), text.size() + 1);
  // Without it the text would be read in the code page of the keyboard's language.
  const LCID locale = GetSystemDefaultLCID();
  clipboard.Put(CF_LOCALE, &locale, sizeof locale);
}

}  // namespace ui::win32
