#include "platform/win32/Win32NotificationArea.h"

#include <shellapi.h>

#include <algorithm>

namespace platform::win32 {

static_assert(sizeof(NativeNotifyIconData) == NOTIFYICONDATAA_V1_SIZE);

NativeNotifyIconData ToNative(const NotifyIconData& data) {
  NativeNotifyIconData native;
  native.cbSize = sizeof native;
  native.hWnd = reinterpret_cast<HWND>(data.hWnd);
  native.uID = data.uID;
  native.uFlags = data.uFlags;
  native.uCallbackMessage = data.uCallbackMessage;
  native.hIcon = reinterpret_cast<HICON>(data.hIcon);
  std::copy(data.szTip.begin(), data.szTip.end(), native.szTip);
  return native;
}

bool Win32NotificationArea::ShellNotifyIcon(NotifyIconMessage message, const NotifyIconData& data) {
  // A shell that looks for the end of a tip that fills its field finds it behind the record.
  struct {
    NativeNotifyIconData record;
    char terminator = '\0';
  } passed{ToNative(data)};
  return Shell_NotifyIconA(static_cast<DWORD>(message), reinterpret_cast<NOTIFYICONDATAA*>(&passed)) != FALSE;
}

}  // namespace platform::win32
