#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "activitylog/ctlRouterLog.h"
#include "model/CMapProfile.h"
#include "settings/CRegistry.h"
#include "shell/frmErrors.h"
#include "support/FindControl.h"
#include "support/RecordingToolkit.h"
#include "support/World.h"
#include "ui/Form.h"

namespace support {

/// Peers for a window and its controls while it lives; they keep what they are told.
class WatchedPeers {
 public:
  explicit WatchedPeers(ui::Form& window) : window_(window) { window_.Load(); }
  ~WatchedPeers() { window_.DetachPeers(); }
  WatchedPeers(const WatchedPeers&) = delete;
  WatchedPeers& operator=(const WatchedPeers&) = delete;

  RecordingToolkit toolkit;

 private:
  ui::Form& window_;
};

/// The Activity Log page on a window of its own, with the program's state in memory and its files in a
/// folder.
class RouterLogTest : public testing::Test {
 protected:
  RouterLogTest() {
    world.process.path = world.folder.PathOf("Harbourline.exe");
    world.clock.now = {2026, 7, 9, 18, 5, 3};
    g_Registry = std::make_unique<CRegistry>();
  }
  ~RouterLogTest() override {
    page.reset();
    frmErrors::Shared().Unload();
    g_Registry.reset();
  }

  void OpenPage() { page = std::make_unique<ctlRouterLog>(&window, "ctlRouterLog"); }
  /// Opens the page with this file in place.
  void OpenPage(std::string_view database) {
    world.folder.Write("RouterLog.dat", database);
    OpenPage();
  }
  /// What the page saves.
  std::string Saved() {
    page->SaveContentsToDatabase();
    return world.folder.Read("RouterLog.dat");
  }

  template <typename Kind>
  Kind& Find(std::string_view name) {
    return FindControl<Kind>(*page, name);
  }
  ui::ListView& List() { return Find<ui::ListView>("lvRouterLog"); }
  ui::CheckBox& Enable() { return Find<ui::CheckBox>("chkEnable"); }
  ui::Button& Clear() { return Find<ui::Button>("cmdClear"); }

  /// The cells of a row.
  std::vector<std::string> Row(std::size_t row) {
    std::vector<std::string> cells;
    for (std::size_t cell = 0; cell < List().Rows().CellCount(row); ++cell)
      cells.emplace_back(List().Text(row, cell));
    return cells;
  }
  /// One cell of each row.
  std::vector<std::string> Column(std::size_t cell) {
    std::vector<std::string> texts;
    for (std::size_t row = 0; row < List().RowCount(); ++row) texts.emplace_back(List().Text(row, cell));
    return texts;
  }
  std::vector<std::string> Keys() {
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < List().RowCount(); ++row) keys.emplace_back(List().Key(row));
    return keys;
  }

  /// A router with an event source, selected.
  std::shared_ptr<Script> SelectRouter(const std::string& title = "Test router") {
    const auto router = world.objects.AddPlugIn(title, title);
    router->Answer("IServer_EventHandler", std::make_shared<ScriptedObject>(source));
    g_Registry->AddRouter(title);
    g_Registry->RouterTitle(title);
    return router;
  }
  void RaiseLog(const std::string& type, const std::string& sourceIP, std::int32_t sourcePort,
                const std::string& destination, std::int32_t destinationPort,
                const std::string& miscellaneous) {
    std::vector<base::Variant> arguments{type,        sourceIP,        sourcePort,
                                         destination, destinationPort, miscellaneous};
    world.objects.Raise(3, arguments);
  }
  void RaiseError(const std::string& message, std::int16_t number) {
    std::vector<base::Variant> arguments{message, number};
    world.objects.Raise(1, arguments);
  }
  /// What the source is told about the port: its description and whether it is filtered out.
  std::pair<std::string, bool> Identify(std::int32_t port) {
    std::vector<base::Variant> arguments{port, "left from before", true};
    world.objects.Raise(2, arguments);
    return {base::ToText(arguments[1]), base::ToBoolean(arguments[2])};
  }

  std::shared_ptr<CMapProfile> AddProfile(const std::string& name, bool enabled,
                                          const std::vector<std::pair<std::int32_t, std::int32_t>>& ranges) {
    auto profile = std::make_shared<CMapProfile>();
    profile->sName = name;
    profile->bEnabled = enabled;
    for (const auto& [begin, end] : ranges) AddMapping(*profile, begin, end);
    g_Registry->AddMapProfile(profile, nullptr);
    return profile;
  }
  static std::shared_ptr<CMapping> AddMapping(CMapProfile& profile, std::int32_t begin, std::int32_t end) {
    auto mapping = std::make_shared<CMapping>();
    mapping->lBeginPort(begin);
    mapping->lEndPort(end);
    profile.AddMapping(mapping);
    return mapping;
  }

  World world;
  std::shared_ptr<Script> source = std::make_shared<Script>();
  ui::Form window{"frmTest", "Test", {}, 9000, 7000};
  std::unique_ptr<ctlRouterLog> page;
};

}  // namespace support
