#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "activitylog/ctlRouterLog.h"
#include "platform/Machine.h"
#include "support/MemoryMachine.h"
#include "ui/Form.h"
#include "ui/ListView.h"
#include "ui/Menu.h"

namespace bench {

/// A router's plug-in that knows no port and hands out its event source, and what makes and connects it.
class LogRouter : public platform::LateBoundObject, public platform::ObjectFactory {
 public:
  base::Variant Get(std::string_view member) override;
  void Put(std::string_view, const base::Variant&) override {}
  base::Variant Call(std::string_view, std::span<platform::Argument>) override { return std::string(); }

  platform::LateBoundRef Create(std::string_view) override;
  std::unique_ptr<platform::EventConnection> Connect(platform::LateBoundObject&,
                                                     const platform::EventInterface&,
                                                     platform::EventSink& sink) override;

  std::string IdentifyPort(std::int32_t port);
  void Log(std::int32_t sourcePort);

 private:
  struct Source : platform::LateBoundObject {
    base::Variant Get(std::string_view) override { return {}; }
    void Put(std::string_view, const base::Variant&) override {}
    base::Variant Call(std::string_view, std::span<platform::Argument>) override { return {}; }
  };

  Source source_;
  platform::EventSink* sink_ = nullptr;
};

/// The page of the activity log in a window, over the program's state with a folder of its own.
class LogPage {
 public:
  LogPage();
  ~LogPage();
  LogPage(const LogPage&) = delete;
  LogPage& operator=(const LogPage&) = delete;

  void OpenPage() { page = std::make_unique<ctlRouterLog>(&window_, "ctlRouterLog"); }
  ui::ListView& Rows() const;
  /// The menu's entry that removes the selected rows.
  ui::Menu& RemoveEntry() const;
  std::string Database() const { return Folder() + "\\RouterLog.dat"; }

  LogRouter router;
  std::unique_ptr<ctlRouterLog> page;

 private:
  struct Process : platform::Process {
    std::string path;
    std::string ExecutablePath() override { return path; }
    bool EarlierInstanceRuns() override { return false; }
    std::string CurrentFolder() override { return {}; }
  };

  /// The program joins by "\\", which outside Windows is a plain character of a name in folder_.
  std::string Folder() const { return (folder_ / "files").string(); }

  std::filesystem::path folder_;
  Process process_;
  MemoryMachine machine_;
  ui::Form window_{"frmBench", "Bench", {}, 8000, 6000};
};

/// A log as a busy month leaves it; the bytes of its file. Every time is written "11/dd/26 hh:mm".
std::string LogFile(std::int64_t rows);

void WriteFile(const std::string& path, const std::string& bytes);

}  // namespace bench
