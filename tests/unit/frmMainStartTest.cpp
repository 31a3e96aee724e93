#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Error.h"
#include "setup/frmWizard.h"
#include "shell/frmMain.h"
#include "shell/frmSplash.h"
#include "support/Shell.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class frmMainStartTest : public testing::Test, protected support::Shell {};

TEST_F(frmMainStartTest, AFirstStartWithoutPlugInsFailsNowhereAndSavesTheDefaults) {
  Start();
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_FALSE(main->Visible());
  End();
  EXPECT_EQ(world.settings.Value("Version"), modCommon::GetVersionString());
  EXPECT_EQ(world.settings.Value("RouterCount"), "0");
  EXPECT_FALSE(world.settings.Contains("RouterClass"));
  EXPECT_EQ(world.settings.Value("LastMenuLocation"), "Help");
  EXPECT_EQ(g_Registry, nullptr);
}

TEST_F(frmMainStartTest, TheStartCallsThePlugInInTheSettledOrder) {
  SelectRouter();
  Start();
  const std::vector<std::string> look = {"get IServer_Version",
                                         "get IServer_WANIP",
                                         "get IServer_Functional",
                                         "get IServer_EventHandler",
                                         "get IServer_EnableLog",
                                         "get IServer_Functional",
                                         "call IServer_SetLogging(&\"192.168.1.7\")"};
  std::vector<std::string> expected = {"get IServer_ServerTitle", "get IServer_ClassName",
                                       "get IServer_ServerTitle", "get IServer_ServerTitle",
                                       "get IServer_Functional"};
  expected.insert(expected.end(), look.begin(), look.end());
  expected.insert(expected.end(), look.begin(), look.end());
  expected.insert(expected.end(), {"get IServer_EventHandler", "get IServer_EnableLog",
                                   "call IServer_SetPortForwarding(&[10..10]{null}, &7:16)"});
  EXPECT_THAT(router->calls, testing::ElementsAreArray(expected));
}

TEST_F(frmMainStartTest, TheTipIsSetBeforeTheIconAndTellsTheWANAddress) {
  SelectRouter();
  router->Answer("IServer_WANIP", std::string("203.0.113.9"));
  Start();
  const auto& calls = world.notificationArea.calls;
  ASSERT_GE(calls.size(), 2u);
  EXPECT_EQ(calls.front().message, platform::NotifyIconMessage::kAdd);
  EXPECT_EQ(calls.front().data.hIcon, 0u);
  EXPECT_STREQ(calls.front().data.szTip.data(), "WAN 203.0.113.9");
  EXPECT_NE(calls.back().data.hIcon, 0u);
}

TEST_F(frmMainStartTest, WithoutInternetTheTipSaysSo) {
  world.network.connected = false;
  Start();
  EXPECT_STREQ(world.notificationArea.calls.back().data.szTip.data(), "Not Connected to Internet");
}

TEST_F(frmMainStartTest, AProfileStoredAsEnabledIsSentWithItsForeignMappingAtTheStart) {
  SelectRouter();
  StoreProfile(1, "Game", true, 27015, "12");
  Start();
  EXPECT_THAT(Calls("SetPortForwarding"), ElementsAre(HasSubstr("27015")));
}

TEST_F(frmMainStartTest, AFailureAtTheStartShowsTheFiveCausesWithTheWindowHidden) {
  SelectRouter();
  router->Answer("IServer_SetPortForwarding", true);
  world.toolkit.whileMessage = [&](const ui::Message&) {
    for (const ui::Form* form : ui::Form::LoadedForms()) EXPECT_FALSE(form->Visible()) << form->Name();
  };
  Start();
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  const ui::Message& message = world.toolkit.messages[0];
  EXPECT_EQ(message.title, "Harbourline");
  EXPECT_EQ(message.icon, ui::MessageIcon::kWarning);
  EXPECT_EQ(message.buttons, ui::MessageButtons::kOk);
  EXPECT_EQ(message.text,
            "An error occurred during profile activation.\r\n\r\nPossible causes: \r\n\r\n"
            "   1) Router exceeded the maximum number of port forwarding mappings.\r\n"
            "   2) A Network communication error. \r\n"
            "   3) Router too busy to handle the request. \r\n"
            "   4) Plug-in you are using is not compatable with your router.\r\n"
            "   5) Router has not been setup. Need to run Setup Wizard again.");
}

TEST_F(frmMainStartTest, AfterAFailedStartTheAutomaticEngineStaysUnarmed) {
  SelectRouter();
  Store("AutomaticActivation", "True");
  StoreProfile(1, "Game", false);
  Store("MP_1_AutoActivate", "True");
  Store("MP_1_WindowClass", "Notepad");
  world.windows.windows = {{1, "Notepad", "Untitled"}};
  router->Answer("IServer_SetPortForwarding", true);
  Start();
  world.toolkit.Advance(10'000);
  EXPECT_EQ(Calls("SetPortForwarding").size(), 1u);
}

TEST_F(frmMainStartTest, AfterASuccessfulStartTheAutomaticEngineRuns) {
  SelectRouter();
  Store("AutomaticActivation", "True");
  StoreProfile(1, "Game", false);
  Store("MP_1_AutoActivate", "True");
  Store("MP_1_WindowClass", "Notepad");
  world.windows.windows = {{1, "Notepad", "Untitled"}};
  Start();
  world.toolkit.Advance(2000);
  EXPECT_EQ(Calls("SetPortForwarding").size(), 2u);
  world.toolkit.Advance(10'000);
  EXPECT_EQ(Calls("SetPortForwarding").size(), 2u);
}

TEST_F(frmMainStartTest, AVersionThatDiffersIgnoresTheStoredRouterAndKeepsTheProfiles) {
  SelectRouter();
  Store("Version", "0.0.1");
  StoreProfile(1, "Game", true);
  world.toolkit.whenIdle = [] { frmWizard::Shared().Unload(); };
  Start();
  EXPECT_FALSE(g_Registry->RouterValid());
  EXPECT_EQ(g_Registry->ccMapProfiles().Count(), 1u);
  EXPECT_THAT(Calls("SetPortForwarding"), IsEmpty());
  bool bShown = false;
  main->RunWizardIfNewVersion(bShown);
  EXPECT_TRUE(bShown);
}

TEST_F(frmMainStartTest, TheSameVersionShowsNoWizard) {
  SelectRouter();
  Start();
  bool bShown = true;
  main->RunWizardIfNewVersion(bShown);
  EXPECT_FALSE(bShown);
}

TEST_F(frmMainStartTest, ASecondCopyActivatesTheProfilesThenSaysSoAndSavesOnItsWayOut) {
  SelectRouter();
  StoreProfile(1, "Game", true);
  world.process.earlierInstance = true;
  world.toolkit.whileMessage = [&](const ui::Message&) { EXPECT_EQ(Calls("SetPortForwarding").size(), 1u); };
  Start();
  EXPECT_FALSE(main->IsLoaded());
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, "This program is already running!");
  EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kInformation);
  EXPECT_THAT(Calls("ApplicationExiting"), ElementsAre("call IServer_ApplicationExiting(\"192.168.1.7\")"));
  EXPECT_THAT(Calls("SaveSettings"), IsEmpty());
  End();
  EXPECT_EQ(Calls("SaveSettings").size(), 1u);
  EXPECT_EQ(world.settings.Value("MP_1_Name"), "Game");
}

TEST_F(frmMainStartTest, TheMonitorRunsFromTheEndOfTheLoadOnThreeTimesASecond) {
  SelectRouter();
  Start();
  EXPECT_THAT(Calls("CheckForWarning"), IsEmpty());
  world.toolkit.Advance(332);
  EXPECT_THAT(Calls("CheckForWarning"), IsEmpty());
  // The first tick only takes the counters.
  world.toolkit.Advance(1);
  EXPECT_THAT(Calls("CheckForWarning"), IsEmpty());
  world.toolkit.Advance(333);
  EXPECT_THAT(Calls("CheckForWarning"), ElementsAre("call IServer_CheckForWarning(&\"192.168.1.7\")"));
}

TEST_F(frmMainStartTest, AStateThatCanNotBeLoadedIsToldWithItsPlaceAndNeverSaved) {
  Store("RouterCount", "abc");
  Store("LoadOnStartup", "False");
  try {
    Start();
    FAIL() << "the start succeeded";
  } catch (const base::Error& error) {
    EXPECT_THAT(error.Text(), HasSubstr("RouterCount"));
    EXPECT_THAT(error.Text(), HasSubstr("abc"));
    EXPECT_THAT(error.Text(), HasSubstr("RouterSection"));
  }
  EXPECT_EQ(g_Registry, nullptr);
  EXPECT_EQ(world.settings.Value("RouterCount"), "abc");
  EXPECT_EQ(world.settings.Value("LoadOnStartup"), "False");
  EXPECT_FALSE(world.settings.Contains("Version"));
}

TEST_F(frmMainStartTest, APlugInThatFailsInAStepOfTheStartIsToldAndTheOtherStepsHaveTheirTurn) {
  SelectRouter();
  StoreProfile(1, "Game", true);
  router->Fail("IServer_Version", -2147221503, "The router is on fire");
  Start();
  ASSERT_FALSE(world.toolkit.messages.empty());
  EXPECT_EQ(world.toolkit.messages[0].text, "The router is on fire (-2147221503)");
  EXPECT_EQ(world.toolkit.messages[0].title, "Harbourline");
  EXPECT_EQ(Calls("SetPortForwarding").size(), 1u);
  EXPECT_TRUE(main->IsLoaded());
}

TEST_F(frmMainStartTest, TheTitleWindowIsUpForSevenSecondsBeforeTheMonitorStarts) {
  SelectRouter();
  Store("ShowSplashOnStartup", "True");
  world.toolkit.whenIdle = [this] {
    EXPECT_EQ(ui::Form::LoadedForms().back()->Name(), "frmSplash");
    EXPECT_TRUE(ui::Form::LoadedForms().back()->IsModal());
    world.toolkit.Advance(6'999);
    EXPECT_TRUE(frmSplash::Shared().IsLoaded());
    EXPECT_THAT(Calls("CheckForWarning"), IsEmpty());
    world.toolkit.Advance(1);
  };
  Start();
  EXPECT_FALSE(frmSplash::Shared().IsLoaded());
  world.toolkit.Advance(1'000);
  EXPECT_THAT(Calls("CheckForWarning"), testing::Not(IsEmpty()));
}

TEST_F(frmMainStartTest, WithoutTheTitleWindowNothingIsWaitedFor) {
  SelectRouter();
  world.toolkit.whenIdle = [] { FAIL() << "the start waits"; };
  Start();
}

TEST_F(frmMainStartTest, AStoredPageOfAnotherVersionOpensHelp) {
  Store("LastMenuLocation", "NoSuchPage");
  Start();
  EXPECT_EQ(g_Registry->LastMenuLocation, "Help");
}

TEST_F(frmMainStartTest, AStoredPageComesBack) {
  Store("LastMenuLocation", "WindowsConfiguration");
  Start();
  EXPECT_EQ(g_Registry->LastMenuLocation, "WindowsConfiguration");
  EXPECT_EQ(main->HelpContextID(), 4000);
}

}  // namespace
