#include "support/MemoryMachine.h"

#include <algorithm>

namespace bench {
namespace {

std::int32_t CopyText(const std::string& text, char* buffer, std::int32_t size) {
  const auto length = static_cast<std::int32_t>(text.copy(buffer, static_cast<std::size_t>(size - 1)));
  buffer[length] = '\0';
  return length;
}

}  // namespace

std::string MemorySettings::GetSetting(std::string_view, std::string_view, std::string_view key,
                                       std::string_view defaultValue) {
  const auto found = values_.find(key);
  return found == values_.end() ? std::string(defaultValue) : found->second;
}

void MemorySettings::SaveSetting(std::string_view, std::string_view, std::string_view key,
                                 std::string_view value) {
  if (!keeps) return;
  values_.insert_or_assign(std::string(key), std::string(value));
}

void MemorySettings::DeleteSetting(std::string_view, std::string_view) {
  if (keeps) values_.clear();
}

void MemorySettings::DeleteSetting(std::string_view, std::string_view, std::string_view key) {
  if (keeps) values_.erase(std::string(key));
}

platform::WindowHandle MemoryWindows::FindWindow(const char* className, const char* title) {
  const auto found = std::find_if(windows.begin(), windows.end(), [&](const Window& window) {
    return (!className || window.className == className) && (!title || window.title == title);
  });
  return found == windows.end() ? 0 : found - windows.begin() + 1;
}

void MemoryWindows::EnumWindows(const std::function<bool(platform::WindowHandle)>& callback) {
  for (std::size_t i = 1; i <= windows.size(); ++i) {
    if (!callback(static_cast<platform::WindowHandle>(i))) return;
  }
}

std::int32_t MemoryWindows::GetWindowTextLength(platform::WindowHandle window) {
  return static_cast<std::int32_t>(windows[static_cast<std::size_t>(window) - 1].title.size());
}

std::int32_t MemoryWindows::GetWindowText(platform::WindowHandle window, char* buffer, std::int32_t size) {
  return CopyText(windows[static_cast<std::size_t>(window) - 1].title, buffer, size);
}

std::int32_t MemoryWindows::GetClassName(platform::WindowHandle window, char* buffer, std::int32_t size) {
  return CopyText(windows[static_cast<std::size_t>(window) - 1].className, buffer, size);
}

bool MemoryNetwork::ConnectedState(std::int32_t& flags) {
  flags = 0;
  return true;
}

void MemoryNetwork::GetTcpStatistics(platform::TcpStatistics& statistics) {
  traffic_.inSegments += 5;
  traffic_.outSegments += 3;
  statistics = traffic_;
}

base::Variant MemoryRouter::Get(std::string_view member) {
  if (member == "IServer_ServerTitle") return "Router";
  if (member == "IServer_ClassName") return "Memory.Router";
  if (member == "IServer_WANIP") return "203.0.113.5";
  if (member == "IServer_EventHandler") return {};
  return member == "IServer_Functional";
}

MemoryMachine::MemoryMachine() : before_(platform::TheMachine()) {
  platform::Machine& machine = platform::TheMachine();
  machine.settings = &settings;
  machine.objects = &objects_;
  machine.systemHelper = &systemHelper_;
  machine.process = &process_;
  machine.network = &network;
  machine.notificationArea = &notificationArea_;
  machine.windows = &windows;
  machine.clock = &clock_;
  machine.codePage = &codePage_;
  machine.debug = &debug_;
  machine.files = &files_;
}

MemoryMachine::~MemoryMachine() {
  platform::TheMachine() = before_;
}

}  // namespace bench
