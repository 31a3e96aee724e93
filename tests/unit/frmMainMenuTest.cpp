#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/frmMain.h"
#include "support/FindControl.h"
#include "support/Shell.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class frmMainMenuTest : public testing::Test, protected support::Shell {
 protected:
  /// The visible captions below the entry, in order; a tick is "+", a disabled entry "-" in front.
  static std::vector<std::string> Captions(const ui::Menu& menu) {
    std::vector<std::string> captions;
    for (const ui::Control* child : menu.Children()) {
      const auto& entry = static_cast<const ui::Menu&>(*child);
      if (!entry.Visible()) continue;
      captions.push_back((entry.Enabled() ? "" : "-") + std::string(entry.Checked() ? "+" : "") +
                         entry.Caption());
    }
    return captions;
  }
  /// What the user sees in the menu, or in the submenu of that name.
  std::vector<std::string> See(const std::string& submenu = {}) {
    std::vector<std::string> captions;
    OpenMenu([&](ui::Menu& menu) -> ui::Menu* {
      captions = Captions(submenu.empty() ? menu : *Find(menu, submenu));
      return nullptr;
    });
    return captions;
  }
  void ThreeProfiles() {
    SelectRouter();
    StoreProfile(1, "Voice", false, 100);
    StoreProfile(2, "Game", true, 200);
    StoreProfile(3, "chess", false, 300);
    Start();
    router->calls.clear();
  }
  void GiveFeatures() {
    router->Do("IServer_GetFeatures", [](std::span<platform::Argument> arguments) {
      arguments[0].value =
          base::MakeArray(base::ElementType::kText, 0, {std::string("One"), std::string("Two")});
      arguments[1].value = base::MakeArray(base::ElementType::kInt16, 0, {std::int16_t{5}, std::int16_t{9}});
      return base::Variant(true);
    });
  }
};

TEST_F(frmMainMenuTest, WithoutARouterItOffersSetupHelpExitAndCancel) {
  Start();
  EXPECT_THAT(See(), ElementsAre("-&Copy IP (N/A) to Clipboard", "-", "-&Clear DMZ Hosting",
                                 "-&Set DMZ to This Computer", "-", "&Setup...", "&Help...", "&Exit", "-",
                                 "&Cancel"));
}

TEST_F(frmMainMenuTest, WithARouterAndProfilesItShowsTheAddressAndTheProfilesInTheOrderOfNames) {
  ThreeProfiles();
  EXPECT_THAT(
      See(), ElementsAre(HasSubstr("&Copy IP ("), "-", "&Clear DMZ Hosting", "&Set DMZ to This Computer", "-",
                         "&Profiles", "-", "&Setup...", "&Help...", "&Exit", "-", "&Cancel"));
  EXPECT_THAT(See("mnuPortForwarding"), ElementsAre("Clear All", "-", "+Game", "Voice", "chess"));
}

TEST_F(frmMainMenuTest, AProfileThatWasAddedOnItsPageStandsInTheMenuInTheOrderOfNames) {
  ThreeProfiles();
  support::FindControl<ui::TreeView>(*main, "tvCategories").UserSelect("PortForwardingProfiles");
  auto& page = support::FindControl<ui::Control>(*main, "ctlMapProfile");
  for (const char* name : {"Quake", "alpha"}) {
    support::FindControl<ui::ToolBar>(page, "tbProfiles").UserClick("Add");
    auto& editor = support::FindControl<ui::Control>(page, "ctlProfile");
    support::FindControl<ui::TextBox>(editor, "txtName").UserText(name);
    support::FindControl<ui::Button>(editor, "cmdAccept").UserClick();
  }
  EXPECT_THAT(See("mnuPortForwarding"), ElementsAre("Clear All", "-", "+Game", testing::HasSubstr("Quake"),
                                                    "Voice", testing::HasSubstr("alpha"), "chess"));
}

TEST_F(frmMainMenuTest, TwoOpeningsGiveTheSameEntries) {
  ThreeProfiles();
  const auto first = See("mnuPortForwarding");
  EXPECT_EQ(See("mnuPortForwarding"), first);
}

TEST_F(frmMainMenuTest, WithoutProfilesTheSubmenuIsHiddenAndTheSeparatorStaysOnlyForFeatures) {
  SelectRouter();
  Start();
  EXPECT_THAT(See(), testing::Not(testing::Contains("&Profiles")));
  const auto without = See();
  GiveFeatures();
  const auto with = See();
  EXPECT_THAT(with, testing::Contains("&Features"));
  EXPECT_EQ(with.size(), without.size() + 2);
  EXPECT_THAT(See("mnuFeatures"), ElementsAre("One", "Two"));
}

TEST_F(frmMainMenuTest, FeaturesThatGoAwayTakeTheirSubmenuWithThem) {
  SelectRouter();
  GiveFeatures();
  Start();
  EXPECT_THAT(See(), testing::Contains("&Features"));
  router->Answer("IServer_GetFeatures", false);
  EXPECT_THAT(See(), testing::Not(testing::Contains("&Features")));
}

TEST_F(frmMainMenuTest, TheAddressAndTheFeaturesAreAskedAtEachOpeningWithEmptyArrays) {
  ThreeProfiles();
  See();
  EXPECT_THAT(router->calls,
              ElementsAre("get IServer_WANIP", "call IServer_GetFeatures(&[0..-1]{}, &[0..-1]{})"));
}

TEST_F(frmMainMenuTest, AFeatureIsCalledByItsIdentifier) {
  SelectRouter();
  GiveFeatures();
  Start();
  Choose("mnuSubFeatures(2)");
  EXPECT_THAT(Calls("ActivateFeaure"), ElementsAre("call IServer_ActivateFeaure(&\"192.168.1.7\", &9:16)"));
}

TEST_F(frmMainMenuTest, APlugInWithoutGetFeaturesIsToldOnceAndTheMenuOpensWithoutFeatures) {
  ThreeProfiles();
  GiveFeatures();
  See();
  router->Lack("IServer_GetFeatures");
  for (int opening = 0; opening < 3; ++opening) {
    EXPECT_THAT(See(), ElementsAre("&Copy IP (203.0.113.9) to Clipboard", "-", "&Clear DMZ Hosting",
                                   "&Set DMZ to This Computer", "-", "&Profiles", "-", "&Setup...",
                                   "&Help...", "&Exit", "-", "&Cancel"));
    EXPECT_THAT(See("mnuPortForwarding"), ElementsAre("Clear All", "-", "+Game", "Voice", "chess"));
  }
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_THAT(world.toolkit.messages[0].text, HasSubstr("IServer_GetFeatures"));
}

TEST_F(frmMainMenuTest, AnAddressThatCanNotBeReadIsToldOnceAndTheMenuOpensWithNotAvailable) {
  ThreeProfiles();
  GiveFeatures();
  router->Fail("IServer_WANIP", 7, "no answer");
  for (int opening = 0; opening < 3; ++opening) {
    const auto captions = See();
    ASSERT_FALSE(captions.empty());
    EXPECT_EQ(captions.front(), "&Copy IP (N/A) to Clipboard");
    EXPECT_THAT(captions,
                testing::IsSupersetOf({"&Profiles", "&Features", "&Setup...", "&Help...", "&Exit"}));
  }
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, "no answer (7)");
}

TEST_F(frmMainMenuTest, AnAddressOfTheWrongKindLeavesTheMenuInReach) {
  ThreeProfiles();
  router->Answer("IServer_WANIP", base::MakeArray(base::ElementType::kInt16, 0, {std::int16_t{5}}));
  EXPECT_THAT(See(), testing::Contains("&Exit"));
  EXPECT_EQ(world.toolkit.messages.size(), 1u);
}

TEST_F(frmMainMenuTest, OddArraysWithTheAnswerFalseMeanNoFeaturesAndAreNotConverted) {
  ThreeProfiles();
  router->Do("IServer_GetFeatures", [](std::span<platform::Argument> arguments) {
    arguments[0].value = std::int32_t{12};
    arguments[1].value = base::MakeArray(base::ElementType::kText, 0, {std::string("no number")});
    return base::Variant(false);
  });
  EXPECT_THAT(See(), testing::Contains("&Exit"));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(frmMainMenuTest, ADoubleClickDuringABoxOfTheStartDoesNotLoadTheWindowEarly) {
  SelectRouter();
  StoreProfile(1, "Game", true);
  router->Answer("IServer_SetPortForwarding", true);
  world.toolkit.whileMessage = [this](const ui::Message&) {
    EXPECT_FALSE(main->IsLoaded());
    Tray().UserMouseMove(515 * world.toolkit.twipsPerPixel, 0);
    EXPECT_FALSE(main->IsLoaded());
  };
  Start();
  EXPECT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_TRUE(main->IsLoaded());
  EXPECT_FALSE(main->Visible());
}

TEST_F(frmMainMenuTest, FewerNamesThanIdentifiersAreToldInPlainWords) {
  SelectRouter();
  Start();
  router->Do("IServer_GetFeatures", [](std::span<platform::Argument> arguments) {
    arguments[1].value = base::MakeArray(base::ElementType::kInt16, 0, {std::int16_t{5}});
    return base::Variant(true);
  });
  EXPECT_THAT(See(),
              testing::AllOf(testing::Contains("&Exit"), testing::Not(testing::Contains("&Features"))));
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_THAT(world.toolkit.messages[0].text, HasSubstr("fewer names of features than identifiers"));
}

TEST_F(frmMainMenuTest, CopyPutsOnTheClipboardWhatThePlugInSaysAtTheClick) {
  SelectRouter();
  router->Answer("IServer_WANIP", std::string("1.1.1.1"));
  Start();
  world.toolkit.clipboard = "before";
  OpenMenu([&](ui::Menu& menu) {
    router->Answer("IServer_WANIP", std::string("2.2.2.2"));
    EXPECT_EQ(Find(menu, "mnuCopyIP")->Caption(), "&Copy IP (1.1.1.1) to Clipboard");
    return Find(menu, "mnuCopyIP");
  });
  EXPECT_EQ(world.toolkit.clipboard, "2.2.2.2");
}

TEST_F(frmMainMenuTest, SetDMZWritesTheLastOctetAndClearWritesZero) {
  SelectRouter();
  router->Accept("IServer_DMZ");
  world.network.localIP = "192.168.1.34";
  Start();
  Choose("mnuSetDMZ");
  Choose("mnuClearDMZ");
  EXPECT_THAT(Calls("IServer_DMZ"), ElementsAre("put IServer_DMZ = 34:32", "put IServer_DMZ = 0:32"));
}

TEST_F(frmMainMenuTest, AnInactiveProfileComesAndAnActiveOneGoes) {
  ThreeProfiles();
  Choose("mnuProfiles(4)");
  ASSERT_EQ(Calls("SetPortForwarding").size(), 1u);
  EXPECT_THAT(Calls("SetPortForwarding")[0], testing::AllOf(HasSubstr("100"), HasSubstr("200")));
  EXPECT_THAT(See("mnuPortForwarding"), ElementsAre("Clear All", "-", "+Game", "+Voice", "chess"));
  Choose("mnuProfiles(3)");
  EXPECT_THAT(Calls("SetPortForwarding")[1],
              testing::AllOf(HasSubstr("100"), testing::Not(HasSubstr("200"))));
  EXPECT_THAT(See("mnuPortForwarding"), ElementsAre("Clear All", "-", "Game", "+Voice", "chess"));
}

TEST_F(frmMainMenuTest, TheTickOfTheClickedEntryFollowsAtOnce) {
  ThreeProfiles();
  ui::Menu* entry = nullptr;
  OpenMenu([&](ui::Menu& menu) { return entry = Find(menu, "mnuProfiles(5)"); });
  EXPECT_TRUE(entry->Checked());
}

TEST_F(frmMainMenuTest, ClearAllTakesEverythingOffAndUnticksTheEntries) {
  ThreeProfiles();
  ui::Menu* game = nullptr;
  OpenMenu([&](ui::Menu& menu) {
    game = Find(menu, "mnuProfiles(3)");
    return Find(menu, "mnuProfiles(1)");
  });
  EXPECT_FALSE(game->Checked());
  EXPECT_THAT(Calls("SetPortForwarding"),
              ElementsAre("call IServer_SetPortForwarding(&[10..10]{null}, &7:16)"));
  for (const auto& profile : g_Registry->ccMapProfiles()) EXPECT_FALSE(profile->bEnabled);
}

TEST_F(frmMainMenuTest, ClearAllWithNothingActiveStillSendsTheEmptyRequest) {
  ThreeProfiles();
  Choose("mnuProfiles(1)");
  Choose("mnuProfiles(1)");
  EXPECT_EQ(Calls("[10..10]{null}").size(), 2u);
}

TEST_F(frmMainMenuTest, AProfileThatFollowsItsProgramRefusesTheUser) {
  SelectRouter();
  StoreProfile(1, "Game", false);
  Store("MP_1_AutoActivate", "True");
  Store("AutomaticActivation", "True");
  Start();
  router->calls.clear();
  Choose("mnuProfiles(3)");
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text,
            "\"Game\" can not be enabled/disabled manually.\r\n"
            "Disable Auto Activate for this profile if you want manual control.");
  EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kWarning);
  EXPECT_EQ(world.toolkit.messages[0].buttons, ui::MessageButtons::kOk);
  EXPECT_THAT(Calls("SetPortForwarding"), IsEmpty());
}

TEST_F(frmMainMenuTest, AProfileThatFollowsItsProgramObeysTheUserWhileAutomaticActivationIsOff) {
  SelectRouter();
  StoreProfile(1, "Game", false);
  Store("MP_1_AutoActivate", "True");
  Start();
  router->calls.clear();
  Choose("mnuProfiles(3)");
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_EQ(Calls("SetPortForwarding").size(), 1u);
}

TEST_F(frmMainMenuTest, AFailedActivationKeepsTheProfileAsWanted) {
  ThreeProfiles();
  router->Answer("IServer_SetPortForwarding", true);
  Choose("mnuProfiles(4)");
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_THAT(See("mnuPortForwarding"), testing::Contains("+Voice"));
}

TEST_F(frmMainMenuTest, AnAddressWithoutThreePointsGivesHostZero) {
  world.network.localIP = "";
  ThreeProfiles();
  Choose("mnuProfiles(1)");
  EXPECT_THAT(Calls("SetPortForwarding"),
              ElementsAre("call IServer_SetPortForwarding(&[10..10]{null}, &0:16)"));
}

TEST_F(frmMainMenuTest, SetupAndADoubleClickOfEitherButtonShowTheMainWindow) {
  Start();
  for (const int message : {515, 518}) {
    Tray().UserMouseMove(static_cast<float>(message) * world.toolkit.twipsPerPixel, 0);
    EXPECT_TRUE(main->Visible());
    main->UserClose(ui::CloseReason::kUser);
  }
  Choose("mnuSetup");
  EXPECT_TRUE(main->Visible());
}

TEST_F(frmMainMenuTest, ALeftClickDoesNothing) {
  Start();
  Tray().UserMouseMove(514 * world.toolkit.twipsPerPixel, 0);
  EXPECT_FALSE(main->Visible());
}

TEST_F(frmMainMenuTest, HelpOpensTheContentsPageBesideTheProgram) {
  Start();
  Choose("mnuHelp");
  EXPECT_THAT(world.shell.shown, ElementsAre(world.folder.PathOf("Help\\index.html")));
}

}  // namespace
