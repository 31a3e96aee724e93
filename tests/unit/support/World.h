#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/Error.h"
#include "platform/Machine.h"
#include "support/MemoryRegistry.h"
#include "support/MemorySettings.h"
#include "support/ScriptedObjects.h"
#include "support/TemporaryFolder.h"
#include "ui/HeadlessToolkit.h"

namespace support {

class ManualClock : public platform::Clock {
 public:
  platform::DateTime now{2026, 7, 9, 8, 5, 3};
  platform::DateTime Now() override { return now; }
  /// "18.05.03": no code of the program's own writes a time like that.
  std::string TimeText(const platform::DateTime& moment) override;
};

/// One of the code pages for Western Europe; a test may give it characters of two bytes.
class FakeCodePage : public platform::CodePage {
 public:
  /// The bytes that begin a character of two.
  std::string leadBytes;
  std::string ellipsis = "\x85";
  std::string FoldCase(std::string_view text) override;
  bool IsLeadByte(char byte) override { return leadBytes.find(byte) != leadBytes.npos; }
  std::string FromUtf16(std::u16string_view text) override;
};

/// The programs that start at logon.
class MemorySystemHelper : public platform::SystemHelper {
 public:
  explicit MemorySystemHelper(std::vector<std::string>& journal) : journal_(journal) {}
  /// Command by name.
  std::map<std::string, std::string> entries;
  void SetAutoStart(bool enable, std::string_view name, std::string_view command) override {
    journal_.push_back(std::string(enable ? "autostart " : "no autostart ") + std::string(name) + " " +
                       std::string(command));
    entries.erase(std::string(name));
    if (enable) entries[std::string(name)] = command;
  }

 private:
  std::vector<std::string>& journal_;
};

class FakeProcess : public platform::Process {
 public:
  std::string path = "C:\\Programs\\Harbourline\\Harbourline.exe";
  bool earlierInstance = false;
  std::string currentFolder = "C:\\Users\\Somebody";
  std::string ExecutablePath() override { return path; }
  bool EarlierInstanceRuns() override { return earlierInstance; }
  std::string CurrentFolder() override { return currentFolder; }
};

class FakeNetwork : public platform::Network {
 public:
  std::string localIP = "192.168.1.7";
  bool connected = true;
  std::int32_t flags = 2;
  platform::TcpStatistics statistics;
  /// How often the local address was asked for.
  int asked = 0;
  std::string LocalIP() override {
    ++asked;
    return localIP;
  }
  bool ConnectedState(std::int32_t& connectionFlags) override {
    connectionFlags = flags;
    return connected;
  }
  void GetTcpStatistics(platform::TcpStatistics& current) override { current = statistics; }
};

class RecordingNotificationArea : public platform::NotificationArea {
 public:
  struct Call {
    platform::NotifyIconMessage message;
    platform::NotifyIconData data;
  };
  std::vector<Call> calls;
  bool answer = true;
  /// Runs inside each call: what is delivered while the program waits for the shell.
  std::function<void()> whileAsked;
  bool ShellNotifyIcon(platform::NotifyIconMessage message, const platform::NotifyIconData& data) override {
    calls.push_back({message, data});
    if (whileAsked) whileAsked();
    return answer;
  }
};

class FakeWindowList : public platform::WindowList {
 public:
  struct Window {
    platform::WindowHandle handle = 0;
    std::string className;
    std::string title;
  };
  std::vector<Window> windows;

  platform::WindowHandle FindWindow(const char* className, const char* title) override {
    for (const Window& window : windows) {
      if ((!className || window.className == className) && (!title || window.title == title))
        return window.handle;
    }
    return 0;
  }
  void EnumWindows(const std::function<bool(platform::WindowHandle)>& callback) override {
    for (const Window& window : windows) {
      if (!callback(window.handle)) return;
    }
  }
  std::int32_t GetWindowTextLength(platform::WindowHandle window) override {
    return static_cast<std::int32_t>(At(window).title.size());
  }
  std::int32_t GetWindowText(platform::WindowHandle window, char* buffer, std::int32_t size) override {
    return Copy(At(window).title, buffer, size);
  }
  std::int32_t GetClassName(platform::WindowHandle window, char* buffer, std::int32_t size) override {
    return Copy(At(window).className, buffer, size);
  }

 private:
  const Window& At(platform::WindowHandle handle) const {
    static const Window none;
    const auto found = std::ranges::find(windows, handle, &Window::handle);
    return found == windows.end() ? none : *found;
  }
  static std::int32_t Copy(const std::string& text, char* buffer, std::int32_t size) {
    if (size <= 0) return 0;
    const std::size_t count = text.copy(buffer, static_cast<std::size_t>(size) - 1);
    buffer[count] = '\0';
    return static_cast<std::int32_t>(count);
  }
};

class RecordingShell : public platform::Shell {
 public:
  std::vector<std::string> opened;
  std::intptr_t answer = 33;
  std::intptr_t Open(const std::string& target) override {
    opened.push_back(target);
    return answer;
  }
  /// Files that were shown, and the windows that they were shown in front of.
  std::vector<std::string> shown;
  std::vector<std::uintptr_t> inFrontOf;
  bool Show(std::uintptr_t window, const std::string& file) override {
    shown.push_back(file);
    inFrontOf.push_back(window);
    return answer > 32;
  }
};

class RecordingDebugOutput : public platform::DebugOutput {
 public:
  std::vector<std::string> lines;
  void Trace(std::string_view line) override { lines.emplace_back(line); }
};

/// The operating system's own files. Only a plain file is replaced.
class RealFiles : public platform::Files {
 public:
  /// The next replacements fail, as for a file that another program holds.
  bool refuses = false;
  void Replace(const std::string& from, const std::string& to) override {
    const auto status = std::filesystem::status(to);
    const bool plain = !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
    if (refuses || !plain) throw base::Error(base::ErrorNumber::kPathAccess, "Unable to write file " + to);
    std::filesystem::rename(from, to);
  }
};

/// Everything that the program asks of the machine, in memory. It puts itself, and an interface without a
/// screen, in place while it lives.
class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// Writes of settings, logon entries and calls of plug-ins, in the order in which they happened.
  std::vector<std::string> journal;
  MemorySettings settings{journal};
  MemoryRegistry registry;
  ScriptedObjects objects{journal};
  MemorySystemHelper systemHelper{journal};
  FakeProcess process;
  FakeNetwork network;
  RecordingNotificationArea notificationArea;
  FakeWindowList windows;
  RecordingShell shell;
  ManualClock clock;
  FakeCodePage codePage;
  RecordingDebugOutput debug;
  RealFiles files;
  TemporaryFolder folder;
  ui::HeadlessToolkit toolkit;

 private:
  platform::Machine before_;
};

}  // namespace support
