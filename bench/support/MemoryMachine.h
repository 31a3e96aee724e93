#pragma once

#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Machine.h"

namespace bench {

/// Settings in a hash table, for one section: which one is asked for doesn't count.
class MemorySettings : public platform::SettingsStore {
 public:
  /// False: the values stay as they are, whatever is saved. For a benchmark that ends with a save which isn't
  /// measured.
  bool keeps = true;

  std::string GetSetting(std::string_view, std::string_view, std::string_view key,
                         std::string_view defaultValue) override;
  void SaveSetting(std::string_view, std::string_view, std::string_view key, std::string_view value) override;
  void DeleteSetting(std::string_view, std::string_view) override;
  void DeleteSetting(std::string_view, std::string_view, std::string_view key) override;
  std::string PathOf(std::string_view, std::string_view) const override { return {}; }

  std::size_t Count() const { return values_.size(); }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const { return std::hash<std::string_view>()(key); }
  };
  std::unordered_map<std::string, std::string, Hash, std::equal_to<>> values_;
};

/// Windows that are compared one by one, as many as stand on an ordinary desktop.
class MemoryWindows : public platform::WindowList {
 public:
  struct Window {
    std::string className;
    std::string title;
  };
  std::vector<Window> windows;

  platform::WindowHandle FindWindow(const char* className, const char* title) override;
  void EnumWindows(const std::function<bool(platform::WindowHandle)>& callback) override;
  std::int32_t GetWindowTextLength(platform::WindowHandle window) override;
  std::int32_t GetWindowText(platform::WindowHandle window, char* buffer, std::int32_t size) override;
  std::int32_t GetClassName(platform::WindowHandle window, char* buffer, std::int32_t size) override;
};

/// A connected computer with traffic.
class MemoryNetwork : public platform::Network {
 public:
  std::string LocalIP() override { return "192.168.1.20"; }
  bool ConnectedState(std::int32_t& flags) override;
  void GetTcpStatistics(platform::TcpStatistics& statistics) override;

 private:
  platform::TcpStatistics traffic_;
};

/// A plug-in that answers at once, of whatever class it is asked for: online, without a warning, a feature or
/// events.
class MemoryRouter : public platform::LateBoundObject {
 public:
  base::Variant Get(std::string_view member) override;
  void Put(std::string_view, const base::Variant&) override {}
  base::Variant Call(std::string_view, std::span<platform::Argument>) override { return false; }
};

/// The machine as far as the benchmarks need one, so that they measure the program and not Windows. It
/// answers by the least that can be done, is in place while it lives, and puts back what was there before.
class MemoryMachine {
 public:
  MemoryMachine();
  ~MemoryMachine();
  MemoryMachine(const MemoryMachine&) = delete;
  MemoryMachine& operator=(const MemoryMachine&) = delete;

  MemorySettings settings;
  MemoryWindows windows;
  MemoryNetwork network;

 private:
  struct SystemHelper : platform::SystemHelper {
    void SetAutoStart(bool, std::string_view, std::string_view) override {}
  };
  struct Process : platform::Process {
    /// In a folder that isn't there, so that nobody's log is read or written.
    std::string ExecutablePath() override { return "/nowhere/nothing\\Harbourline.exe"; }
    bool EarlierInstanceRuns() override { return false; }
    std::string CurrentFolder() override { return "/nowhere"; }
  };
  struct NotificationArea : platform::NotificationArea {
    bool ShellNotifyIcon(platform::NotifyIconMessage, const platform::NotifyIconData&) override {
      return true;
    }
  };
  struct DebugOutput : platform::DebugOutput {
    void Trace(std::string_view) override {}
  };
  struct Clock : platform::Clock {
    platform::DateTime Now() override { return {2026, 11, 20, 23, 22, 22}; }
    std::string TimeText(const platform::DateTime&) override { return "23:22:22"; }
  };
  struct CodePage : platform::CodePage {
    std::string FoldCase(std::string_view text) override { return std::string(text); }
    bool IsLeadByte(char) override { return false; }
    std::string FromUtf16(std::u16string_view text) override { return {text.begin(), text.end()}; }
  };
  struct Files : platform::Files {
    void Replace(const std::string& from, const std::string& to) override {
      std::filesystem::rename(from, to);
    }
  };
  struct ObjectFactory : platform::ObjectFactory {
    platform::LateBoundRef Create(std::string_view) override { return std::make_shared<MemoryRouter>(); }
    std::unique_ptr<platform::EventConnection> Connect(platform::LateBoundObject&,
                                                       const platform::EventInterface&,
                                                       platform::EventSink&) override {
      return std::make_unique<platform::EventConnection>();
    }
  };

  platform::Machine before_;
  SystemHelper systemHelper_;
  Process process_;
  NotificationArea notificationArea_;
  Files files_;
  DebugOutput debug_;
  Clock clock_;
  CodePage codePage_;
  ObjectFactory objects_;
};

}  // namespace bench
