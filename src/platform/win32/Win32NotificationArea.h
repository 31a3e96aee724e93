#pragma once

#include <windows.h>

#include "platform/NotificationArea.h"

namespace platform::win32 {

class Win32NotificationArea : public NotificationArea {
 public:
  bool ShellNotifyIcon(NotifyIconMessage message, const NotifyIconData& data) override;
};

/// The record in the first published form of the shell, at this program's pointer width.
struct NativeNotifyIconData {
  DWORD cbSize = 0;
  HWND hWnd = nullptr;
  UINT uID = 0;
  UINT uFlags = 0;
  UINT uCallbackMessage = 0;
  HICON hIcon = nullptr;
  char szTip[64] = {};
};
static_assert(sizeof(NativeNotifyIconData) == (sizeof(void*) == 4 ? 88 : 104));

NativeNotifyIconData ToNative(const NotifyIconData& data);

}  // namespace platform::win32
