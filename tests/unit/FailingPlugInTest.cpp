// Every member of a plug-in, failing in every way, in the whole program: the plug-in is selected and first in
// the list, and one that works is behind it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "base/Error.h"
#include "support/FindControl.h"
#include "support/Shell.h"

namespace {

using testing::Contains;
using testing::IsSupersetOf;

struct Fault {
  const char* name;
  std::function<void(support::Script&, const std::string&)> inject;
};

const std::vector<Fault>& Faults() {
  static const std::vector<Fault> faults{
      {"Missing", [](support::Script& script, const std::string& member) { script.Lack(member); }},
      {"Raising",
       [](support::Script& script, const std::string& member) { script.Fail(member, 7, "out of order"); }},
      {"OfAWrongKind",
       [](support::Script& script, const std::string& member) {
         script.Answer(member, base::MakeArray(base::ElementType::kText, 3, {std::string("odd")}));
       }},
      {"Empty",
       [](support::Script& script, const std::string& member) { script.Answer(member, base::Variant()); }},
  };
  return faults;
}

class FailingPlugInTest : public testing::TestWithParam<std::tuple<const char*, std::size_t>>,
                          protected support::Shell {
 protected:
  static constexpr const char* kHealthy = "Healthy.Router";

  FailingPlugInTest() {
    SelectRouter();
    Store("RouterCount", "2");
    Store("Router_2", kHealthy);
    StoreProfile(1, "Game", true, 100);
    StoreProfile(2, "Web", false, 200);
    world.folder.Write("RouterLog.dat", kLog);
  }
  const Fault& InjectedFault() const { return Faults()[std::get<1>(GetParam())]; }
  void StartWith(const std::string& member) {
    // A plug-in comes into the list with its title, which fails from the second call on.
    const bool bTitle = member == "IServer_ServerTitle";
    if (!bTitle) InjectedFault().inject(*router, member);
    world.process.path = world.folder.PathOf("Harbourline.exe");
    main = std::make_unique<frmMain>();
    if (bTitle) InjectedFault().inject(*router, member);
    main->Initialize();
    main->Load();
  }
  std::vector<std::string> MenuCaptions() {
    std::vector<std::string> captions;
    OpenMenu([&](ui::Menu& menu) -> ui::Menu* {
      for (const ui::Control* child : menu.Children()) {
        if (child->Visible()) captions.push_back(static_cast<const ui::Menu*>(child)->Caption());
      }
      return nullptr;
    });
    return captions;
  }
  template <typename Kind>
  Kind& Get(const std::string& name) {
    return support::FindControl<Kind>(*main, name);
  }
  void ShowPage(const std::string& key) { Get<ui::TreeView>("tvCategories").UserSelect(key); }
  ui::Control& Page(const std::string& name) { return Get<ui::Control>(name); }

  static constexpr const char* kLog =
      " 3\r\n07/09/26 08:05\r\nin\r\nd\r\n80\r\ns\r\n1\r\nweb\r\n07/09/26 "
      "08:06\r\nout\r\nd\r\n6000\r\ns\r\n2\r\n\r\n"
      "07/09/26 08:07\r\nin\r\nd\r\n21\r\ns\r\n3\r\nftp\r\n";

  std::shared_ptr<support::Script> healthy = world.objects.AddPlugIn(kHealthy, "Healthy");
};

TEST_P(FailingPlugInTest, LocksNobodyOutAndLosesNothing) {
  const std::string member = std::get<0>(GetParam());
  Store("LastMenuLocation", "RouterConfiguration");
  StartWith(member);
  ASSERT_TRUE(main->IsLoaded());
  EXPECT_TRUE(g_Registry->RouterValid() || member == "IServer_ClassName");

  main->Show();
  EXPECT_TRUE(Get<ui::TreeView>("tvCategories").IsSeen());
  EXPECT_TRUE(Page("ctlRouter").IsSeen());
  EXPECT_EQ(support::FindControl<ui::ComboBox>(Page("ctlRouter"), "cbRouterSelection").ListCount(), 2);

  EXPECT_THAT(MenuCaptions(), IsSupersetOf({"&Setup...", "&Help...", "&Exit", "&Cancel"}));
  world.toolkit.messages.clear();
  EXPECT_THAT(MenuCaptions(), Contains("&Exit"));
  EXPECT_TRUE(world.toolkit.messages.empty()) << "told once: " << world.toolkit.messages[0].text;

  for (const char* key :
       {"WindowsConfiguration", "PortForwardingProfiles", "PortForwardingExport", "PortForwardingImport",
        "PortForwardingAuto", "LogConfiguration", "Wizard", "About"}) {
    ShowPage(key);
    EXPECT_TRUE(Get<ui::TreeView>("tvCategories").IsSeen()) << key;
  }
  EXPECT_TRUE(Page("ctlAbout").IsSeen());

  world.toolkit.messages.clear();
  world.toolkit.Advance(20 * 333);
  EXPECT_LE(world.toolkit.messages.size(), 1u) << "a timer tells a failure once";
  EXPECT_EQ(Tray().Icon()->resource, "NETLIGHT01");

  ShowPage("RouterConfiguration");
  support::FindControl<ui::ComboBox>(Page("ctlRouter"), "cbRouterSelection").UserSelect(1);
  EXPECT_EQ(g_Registry->Router, g_Registry->GetRouterByTitle("Healthy"));
  healthy->calls.clear();
  world.toolkit.messages.clear();
  Choose("mnuProfiles(4)");
  EXPECT_TRUE(world.toolkit.messages.empty());
  EXPECT_THAT(healthy->calls,
              Contains(testing::AllOf(testing::HasSubstr("IServer_SetPortForwarding"),
                                      testing::HasSubstr("Game"), testing::HasSubstr("Web"))));

  main->Unload();
  End();
  EXPECT_EQ(world.settings.Value("RouterCount"), "2");
  const bool bNamesItself = !(member == "IServer_ClassName" && std::string(InjectedFault().name) == "Empty");
  EXPECT_EQ(world.settings.Value("Router_1"), bNamesItself ? kClass : kHealthy);
  EXPECT_EQ(world.settings.Value("RouterClass"), kHealthy);
  EXPECT_EQ(world.settings.Value("MP_1_Name"), "Game");
  EXPECT_EQ(world.settings.Value("MP_2_Name"), "Web");
  EXPECT_EQ(world.settings.Value("MP_2_Enabled"), "True");
  EXPECT_EQ(world.folder.Read("RouterLog.dat"), kLog);
}

INSTANTIATE_TEST_SUITE_P(
    EachMember, FailingPlugInTest,
    testing::Combine(testing::Values("IServer_ServerTitle", "IServer_EventHandler", "IServer_ClassName",
                                     "IServer_Version", "IServer_Functional", "IServer_EnableLog",
                                     "IServer_Configure", "IServer_WANIP", "IServer_CheckForWarning",
                                     "IServer_SetLogging", "IServer_SetPortForwarding",
                                     "IServer_ApplicationExiting", "IServer_GetFeatures",
                                     "IServer_ActivateFeaure", "IServer_GetPortForwardingDescription",
                                     "IServer_SaveSettings"),
                     testing::Range<std::size_t>(0, 4)),
    [](const auto& cell) {
      return std::string(std::get<0>(cell.param)).substr(8) + Faults()[std::get<1>(cell.param)].name;
    });

}  // namespace
