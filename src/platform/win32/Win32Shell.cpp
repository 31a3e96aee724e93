#include "platform/win32/Win32Shell.h"

#include <windows.h>

#include <shellapi.h>

namespace platform::win32 {

std::intptr_t Win32Shell::Open(const std::string& target) {
  // The program that opens the target shows its window as it likes.
  constexpr int kShowCommand = 0;
  return reinterpret_cast<std::intptr_t>(
      ShellExecuteA(nullptr, nullptr, target.c_str(), nullptr, nullptr, kShowCommand));
}

bool Win32Shell::Show(std::uintptr_t window, const std::string& file) {
  SHELLEXECUTEINFOA request{};
  request.cbSize = sizeof request;
  request.hwnd = reinterpret_cast<HWND>(window);
  request.lpFile = file.c_str();
  request.nShow = SW_SHOWNORMAL;
  return ShellExecuteExA(&request) != FALSE;
}

}  // namespace platform::win32
