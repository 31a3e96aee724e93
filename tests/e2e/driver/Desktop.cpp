#include "driver/Desktop.h"

#include <array>

namespace desktop {
namespace {

constexpr UINT kPatience = 2000;

BOOL CALLBACK Collect(HWND handle, LPARAM windows) {
  if (IsWindowVisible(handle)) reinterpret_cast<std::vector<HWND>*>(windows)->push_back(handle);
  return TRUE;
}

std::vector<Window> DescribeAll(const std::vector<HWND>& handles) {
  std::vector<Window> windows;
  windows.reserve(handles.size());
  for (const HWND handle : handles) windows.push_back(Describe(handle));
  return windows;
}

}  // namespace

std::string ProgramOf(HWND window) {
  DWORD id = 0;
  GetWindowThreadProcessId(window, &id);
  const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
  if (process == nullptr) return {};
  std::array<char, 1024> path{};
  DWORD length = static_cast<DWORD>(path.size());
  if (!QueryFullProcessImageNameA(process, 0, path.data(), &length)) length = 0;
  CloseHandle(process);
  const std::string whole(path.data(), length);
  return whole.substr(whole.find_last_of('\\') + 1);
}

Window Describe(HWND handle) {
  Window window;
  window.handle = handle;
  window.program = ProgramOf(handle);
  std::array<char, 257> name{};
  GetClassNameA(handle, name.data(), static_cast<int>(name.size()));
  window.className = name.data();
  window.text = TextOf(handle);
  GetWindowRect(handle, &window.place);
  return window;
}

std::vector<Window> TopLevelWindows() {
  std::vector<HWND> handles;
  EnumWindows(&Collect, reinterpret_cast<LPARAM>(&handles));
  return DescribeAll(handles);
}

std::vector<Window> Inside(HWND parent) {
  std::vector<HWND> handles;
  EnumChildWindows(parent, &Collect, reinterpret_cast<LPARAM>(&handles));
  return DescribeAll(handles);
}

std::string TextOf(HWND window) {
  DWORD_PTR length = 0;
  if (!SendMessageTimeoutA(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, kPatience, &length)) return {};
  std::string text(length + 1, '\0');
  DWORD_PTR copied = 0;
  if (!SendMessageTimeoutA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                           SMTO_ABORTIFHUNG, kPatience, &copied)) {
    return {};
  }
  text.resize(copied);
  return text;
}

}  // namespace desktop
