#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "plugins/ctlRouterConfig.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "support/FindControl.h"
#include "support/World.h"
#include "ui/Form.h"

namespace support {

/// The page on a window of its own. The world's journal holds its events among the calls of the plug-ins.
class RouterConfigTest : public testing::Test {
 protected:
  static constexpr const char* kNoPlugIns =
      "No plug-ins have been installed. You need to install a plug-in for your router. Run Harbourline's "
      "Setup executable and select Modify or download a new plug-in from our website. Then rerun Setup "
      "Wizard.";

  ~RouterConfigTest() override {
    page.reset();
    g_Registry.reset();
  }

  /// A plug-in that the program knows from its last run.
  std::shared_ptr<Script> Know(const std::string& className, const std::string& title) {
    Store("Router_" + std::to_string(++known_), className);
    Store("RouterCount", std::to_string(known_));
    return world.objects.AddPlugIn(className, title);
  }
  void Select(const std::string& className) {
    Store("Version", modCommon::GetVersionString());
    Store("RouterClass", className);
  }
  /// Two plug-ins, of which the first is selected.
  void KnowTwo() {
    first = Know("First.Router", "First");
    second = Know("Second.Router", "Second");
    Select("First.Router");
  }
  void Open() {
    g_Registry = std::make_unique<CRegistry>();
    page = std::make_unique<ctlRouterConfig>(&window, "ctlRouterConfig");
    page->ChangedRouterSlected.Connect([this](const std::string& sStatus, bool bOperational) {
      world.journal.push_back("changed \"" + sStatus + (bOperational ? "\" True" : "\" False"));
      seenInEvent = Caption("lblVersion") + "/" + Caption("lblStatus");
    });
    page->SelectionSuccessful.Connect([this] { world.journal.emplace_back("successful"); });
    world.journal.clear();
  }
  void OpenFilled() {
    Open();
    page->Populate();
    world.journal.clear();
  }
  void Store(const std::string& key, const std::string& value) { world.settings.Values()[key] = value; }

  template <typename Kind>
  Kind& Get(const std::string& name) {
    return FindControl<Kind>(*page, name);
  }
  std::string Caption(const std::string& name) { return Get<ui::Label>(name).Caption(); }
  ui::ComboBox& List() { return Get<ui::ComboBox>("cbRouterSelection"); }
  ui::Button& Configure() { return Get<ui::Button>("cmdConfigureRouter"); }
  std::vector<std::string> Titles() {
    std::vector<std::string> titles;
    for (std::int32_t row = 0; row < List().ListCount(); ++row) titles.push_back(List().List(row));
    return titles;
  }
  /// What stands in the journal since the last call.
  std::vector<std::string> Happened() { return std::exchange(world.journal, {}); }
  void ExpectSelectionShown(bool shown) {
    EXPECT_EQ(Get<ui::Label>("lblError").Visible(), !shown);
    for (const char* name : {"lblRouterSelection", "lblStatus", "lblStatusLabel", "lblVersion",
                             "lblVersionLabel", "cmdConfigureRouter", "cbRouterSelection"}) {
      EXPECT_EQ(Get<ui::Control>(name).Visible(), shown) << name;
    }
    EXPECT_TRUE(Get<ui::Label>("lblTitle").Visible());
    EXPECT_TRUE(Get<ui::Label>("lblHelp").Visible());
  }
  void ExpectStatus(const std::string& version, const std::string& status) {
    EXPECT_EQ(Caption("lblVersion"), version);
    EXPECT_EQ(Caption("lblStatus"), status);
  }

  World world;
  ui::Form window{"frmTest", "Test", {}, 8000, 6000};
  std::shared_ptr<Script> first;
  std::shared_ptr<Script> second;
  std::unique_ptr<ctlRouterConfig> page;
  /// Version and status as the page showed them while it raised ChangedRouterSlected.
  std::string seenInEvent;

 private:
  int known_ = 0;
};

/// The calls and the event of one look at a router that works.
inline const std::vector<std::string> kLook = {
    "get IServer_Version",    "get IServer_WANIP",
    "get IServer_Functional", "changed \"WAN 203.0.113.9\" True",
    "get IServer_Functional", "call IServer_SetLogging(&\"192.168.1.7\")",
};

inline std::vector<std::string> Join(std::vector<std::string> calls, const std::vector<std::string>& more) {
  calls.insert(calls.end(), more.begin(), more.end());
  return calls;
}

}  // namespace support
