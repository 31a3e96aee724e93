#pragma once

#include <array>
#include <cstdint>

namespace platform {

/// The record that the notification area takes, in its first published form. `cbSize` is the size of that
/// form in a 32-bit program; the machine's answer puts its own in place where pointers are wider.
struct NotifyIconData {
  std::uint32_t cbSize = 0;
  std::uintptr_t hWnd = 0;
  std::uint32_t uID = 0;
  std::uint32_t uFlags = 0;
  std::uint32_t uCallbackMessage = 0;
  std::uintptr_t hIcon = 0;
  /// 8-bit text; not terminated when it fills the field.
  std::array<char, 64> szTip{};
};

enum class NotifyIconMessage : std::uint32_t { kAdd = 0, kModify = 1, kDelete = 2 };

class NotificationArea {
 public:
  virtual ~NotificationArea() = default;
  virtual bool ShellNotifyIcon(NotifyIconMessage message, const NotifyIconData& data) = 0;
};

}  // namespace platform
