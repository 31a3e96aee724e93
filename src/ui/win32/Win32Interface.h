#pragma once

#include <functional>
#include <memory>

namespace ui::win32 {

/// Windows' answers to all that ui::Interface asks: native peers and message loop, message boxes and pop-up
/// menus, clipboard, screen. It puts itself into ui::TheInterface() while it lives, and must outlive every
/// loaded window. All of it belongs to the thread that made it.
class Win32Interface {
 public:
  Win32Interface();
  ~Win32Interface();
  Win32Interface(const Win32Interface&) = delete;
  Win32Interface& operator=(const Win32Interface&) = delete;

  /// Runs when the session ends, before the process does: the machine ends the program as soon as its windows
  /// have heard of the end, so all that is to be kept must be kept here. Nothing of the calls below runs any
  /// more, unless it returns false: the program is ending by itself already.
  std::function<bool()> onSessionEnd;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace ui::win32
