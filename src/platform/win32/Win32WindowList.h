#pragma once

#include "platform/WindowList.h"

namespace platform::win32 {

class Win32WindowList : public WindowList {
 public:
  WindowHandle FindWindow(const char* className, const char* title) override;
  void EnumWindows(const std::function<bool(WindowHandle)>& callback) override;
  std::int32_t GetWindowTextLength(WindowHandle window) override;
  std::int32_t GetWindowText(WindowHandle window, char* buffer, std::int32_t size) override;
  std::int32_t GetClassName(WindowHandle window, char* buffer, std::int32_t size) override;
};

}  // namespace platform::win32
