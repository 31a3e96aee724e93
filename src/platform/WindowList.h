#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace platform {

using WindowHandle = std::intptr_t;

/// The top-level windows of all programs. Text is 8-bit.
class WindowList {
 public:
  virtual ~WindowList() = default;
  /// The first window whose class and title both equal the given text as a whole; null matches anything. 0
  /// for none.
  virtual WindowHandle FindWindow(const char* className, const char* title) = 0;
  /// Calls back for each window, hidden ones too, until the callback returns false.
  virtual void EnumWindows(const std::function<bool(WindowHandle)>& callback) = 0;
  virtual std::int32_t GetWindowTextLength(WindowHandle window) = 0;
  /// Copies at most size - 1 characters and a terminator; returns the characters copied.
  virtual std::int32_t GetWindowText(WindowHandle window, char* buffer, std::int32_t size) = 0;
  virtual std::int32_t GetClassName(WindowHandle window, char* buffer, std::int32_t size) = 0;
};

}  // namespace platform
