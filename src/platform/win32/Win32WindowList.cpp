#include "platform/win32/Win32WindowList.h"

#include <windows.h>

#include <exception>

// The system's header makes macros of these names, which are those of the members.
#undef FindWindow
#undef GetClassName
#undef GetWindowText
#undef GetWindowTextLength

namespace platform::win32 {
namespace {

HWND Native(WindowHandle window) {
  return reinterpret_cast<HWND>(window);
}

/// No exception may pass through the system's enumeration, so it waits here for the end.
struct Enumeration {
  const std::function<bool(WindowHandle)>& callback;
  std::exception_ptr failure;
};

BOOL CALLBACK OnWindow(HWND window, LPARAM parameter) {
  auto& enumeration = *reinterpret_cast<Enumeration*>(parameter);
  try {
    return enumeration.callback(reinterpret_cast<WindowHandle>(window));
  } catch (...) {
    enumeration.failure = std::current_exception();
    return FALSE;
  }
}

}  // namespace

WindowHandle Win32WindowList::FindWindow(const char* className, const char* title) {
  return reinterpret_cast<WindowHandle>(FindWindowA(className, title));
}

void Win32WindowList::EnumWindows(const std::function<bool(WindowHandle)>& callback) {
  Enumeration enumeration{callback, nullptr};
  ::EnumWindows(&OnWindow, reinterpret_cast<LPARAM>(&enumeration));
  if (enumeration.failure) std::rethrow_exception(enumeration.failure);
}

std::int32_t Win32WindowList::GetWindowTextLength(WindowHandle window) {
  return GetWindowTextLengthA(Native(window));
}

std::int32_t Win32WindowList::GetWindowText(WindowHandle window, char* buffer, std::int32_t size) {
  return GetWindowTextA(Native(window), buffer, size);
}

std::int32_t Win32WindowList::GetClassName(WindowHandle window, char* buffer, std::int32_t size) {
  return GetClassNameA(Native(window), buffer, size);
}

}  // namespace platform::win32
