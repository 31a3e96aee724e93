#include "automatic/modWhatsRunning.h"

#include <algorithm>
#include <cstddef>

#include "platform/Machine.h"

namespace modWhatsRunning {
namespace {

constexpr std::string_view kSeparator = "::";
constexpr std::int32_t kClassNameRoom = 255;

platform::WindowList& Windows() {
  return *platform::TheMachine().windows;
}

const char* AnyWhenEmpty(const std::string& text) {
  return text.empty() ? nullptr : text.c_str();
}

}  // namespace

bool IsProgramRunning(const std::string& sWindowClass, const std::string& sWindowTitle) {
  if (sWindowClass.empty() && sWindowTitle.empty()) return false;
  return Windows().FindWindow(AnyWhenEmpty(sWindowClass), AnyWhenEmpty(sWindowTitle)) != 0;
}

std::string GetWindowClassName(platform::WindowHandle window) {
  char buffer[kClassNameRoom] = {};
  const std::int32_t length = Windows().GetClassName(window, buffer, kClassNameRoom);
  return std::string(buffer, static_cast<std::size_t>(std::clamp(length, 0, kClassNameRoom)));
}

std::int32_t EnumWindowCallback(platform::WindowHandle window, ui::ListBox& list) {
  const std::int32_t room = Windows().GetWindowTextLength(window) + 1;
  if (room > 1) {
    std::string title(static_cast<std::size_t>(room), '\0');
    const std::int32_t length = Windows().GetWindowText(window, title.data(), room);
    title.resize(static_cast<std::size_t>(std::clamp(length, 0, room - 1)));
    list.AddItem(title + std::string(kSeparator) + GetWindowClassName(window));
  }
  return 1;
}

void EnumAvailableWindows(ui::ListBox& list) {
  list.Clear();
  Windows().EnumWindows(
      [&list](platform::WindowHandle window) { return EnumWindowCallback(window, list) != 0; });
}

std::string WindowTitleFromEntry(const std::string& sEntry) {
  const std::size_t separator = sEntry.find(kSeparator);
  return separator == sEntry.npos ? std::string() : sEntry.substr(0, separator);
}

std::string WindowClassFromEntry(const std::string& sEntry) {
  const std::size_t separator = sEntry.find(kSeparator);
  if (separator == sEntry.npos) return sEntry.empty() ? sEntry : sEntry.substr(1);
  return sEntry.substr(separator + kSeparator.size());
}

}  // namespace modWhatsRunning
