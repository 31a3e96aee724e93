#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/frmMain.h"
#include "support/Shell.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class frmMainExitTest : public testing::Test, protected support::Shell {
 protected:
  frmMainExitTest() {
    SelectRouter();
    Start();
    router->calls.clear();
    world.journal.clear();
  }
};

TEST_F(frmMainExitTest, TheCloseBoxHidesTheWindowAndNeitherEndsNorSaves) {
  main->Show();
  main->UserClose(ui::CloseReason::kUser);
  EXPECT_FALSE(main->Visible());
  EXPECT_TRUE(main->IsLoaded());
  EXPECT_THAT(world.journal, IsEmpty());
}

TEST_F(frmMainExitTest, ExitAsksInTheSettledWords) {
  world.toolkit.answers = {ui::MessageResult::kNo};
  Choose("mnuExit");
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, "Are you sure you want to exit Harbourline?");
  EXPECT_EQ(world.toolkit.messages[0].title, "Harbourline");
  EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kQuestion);
  EXPECT_EQ(world.toolkit.messages[0].buttons, ui::MessageButtons::kYesNo);
}

TEST_F(frmMainExitTest, NoLeavesEverythingRunning) {
  world.toolkit.answers = {ui::MessageResult::kNo};
  Choose("mnuExit");
  EXPECT_TRUE(main->IsLoaded());
  EXPECT_THAT(Calls("ApplicationExiting"), IsEmpty());
  world.toolkit.Advance(1000);
  EXPECT_THAT(Calls("CheckForWarning"), testing::Not(IsEmpty()));
}

TEST_F(frmMainExitTest, YesTellsThePlugInFirstThatTheProgramEndsAndLastToSave) {
  world.toolkit.answers = {ui::MessageResult::kYes};
  Choose("mnuExit");
  EXPECT_FALSE(main->IsLoaded());
  router->calls.clear();
  EXPECT_EQ(world.notificationArea.calls.back().message, platform::NotifyIconMessage::kDelete);
  End();
  EXPECT_THAT(router->calls,
              ElementsAre("get IServer_ClassName", "get IServer_ClassName", "call IServer_SaveSettings()"));
  EXPECT_EQ(router->alive, 0);
}

/// An exit while the window is still being loaded: the shell and the wizard let a click through.
class frmMainExitDuringStartTest : public testing::Test, protected support::Shell {
 protected:
  frmMainExitDuringStartTest() {
    Store("ShowSplashOnStartup", "True");
    world.toolkit.answers = {ui::MessageResult::kYes};
    world.toolkit.whenIdle = [this] {
      ++waits;
      for (ui::Form* form : ui::Form::LoadedForms()) form->Unload();
    };
  }

  int waits = 0;
};

TEST_F(frmMainExitDuringStartTest, AClickWhileTheIconIsMadeOpensNoMenuYetAndTheStartGoesOn) {
  bool opened = false;
  world.notificationArea.whileAsked = [this, &opened] {
    world.notificationArea.whileAsked = {};
    OpenMenu([&opened](ui::Menu&) -> ui::Menu* {
      opened = true;
      return nullptr;
    });
  };
  Start();
  EXPECT_FALSE(opened) << "the window that the menu belongs to isn't loaded";
  EXPECT_GE(waits, 1) << "the wizard and the title window come up";
}

TEST_F(frmMainExitDuringStartTest, AnExitWhileTheIconGetsItsPictureShowsNeitherWizardNorTitle) {
  world.notificationArea.whileAsked = [this] {
    if (!main || !main->IsLoaded()) return;
    world.notificationArea.whileAsked = {};
    Choose("mnuExit");
  };
  Start();
  EXPECT_FALSE(main->IsLoaded());
  EXPECT_EQ(waits, 0);
  EXPECT_THAT(ui::Form::LoadedForms(), IsEmpty());
  EXPECT_EQ(world.notificationArea.calls.back().message, platform::NotifyIconMessage::kDelete);
}

TEST_F(frmMainExitDuringStartTest, AnExitWhileTheWizardIsUpShowsNoTitle) {
  world.toolkit.whenIdle = [this] {
    ++waits;
    if (main->IsLoaded()) return Choose("mnuExit");
    for (ui::Form* form : ui::Form::LoadedForms()) form->Unload();
  };
  Start();
  EXPECT_FALSE(main->IsLoaded());
  EXPECT_EQ(waits, 1);
  EXPECT_THAT(ui::Form::LoadedForms(), IsEmpty());
}

TEST_F(frmMainExitTest, ALogOffSavesTwiceAndTellsThePlugInInOrder) {
  EXPECT_TRUE(ui::Form::QuerySessionEnd());
  EXPECT_EQ(Calls("SaveSettings").size(), 1u);
  EXPECT_THAT(Calls("ApplicationExiting"), IsEmpty());
  End();
  EXPECT_EQ(Calls("SaveSettings").size(), 2u);
  EXPECT_THAT(Calls("ApplicationExiting"), ElementsAre("call IServer_ApplicationExiting(\"192.168.1.7\")"));
}

TEST_F(frmMainExitTest, APlugInThatFailsWhileTheSessionEndsHoldsNothingUpByABox) {
  router->Fail("IServer_SaveSettings", 5, "no room");
  EXPECT_TRUE(ui::Form::QuerySessionEnd());
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_THAT(world.debug.lines, testing::Contains(testing::HasSubstr("no room (5)")));
  {
    const ui::EventGuard::Unattended nobodyAnswers;
    End();
  }
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_EQ(world.settings.Value("RouterClass"), kClass);
}

class frmMainSessionEndTest : public testing::Test, protected support::Shell {};

TEST_F(frmMainSessionEndTest, ALogOffDuringABoxOfTheStartSavesTwiceAndTellsThePlugInInOrder) {
  SelectRouter();
  StoreProfile(1, "Game", true);
  router->Answer("IServer_SetPortForwarding", true);
  world.toolkit.whileMessage = [this](const ui::Message&) {
    world.settings.Values().clear();
    router->calls.clear();
    // As the end of the session does, after which the process ends.
    EXPECT_TRUE(ui::Form::QuerySessionEnd());
    main->EndSession();
    EXPECT_EQ(world.settings.Value("MP_1_Name"), "Game");
    EXPECT_EQ(world.settings.Value("MP_1_Enabled"), "True");
    EXPECT_TRUE(world.folder.Contains("RouterLog.dat"));
    EXPECT_THAT(router->calls,
                ElementsAre("get IServer_ClassName", "get IServer_ClassName", "call IServer_SaveSettings()",
                            "call IServer_ApplicationExiting(\"192.168.1.7\")"));
  };
  Start();
  EXPECT_EQ(world.toolkit.messages.size(), 1u);
  router->calls.clear();
  End();
  EXPECT_EQ(Calls("SaveSettings").size(), 1u);
}

TEST_F(frmMainExitTest, ALogOffThatIsCalledOffLeavesTheProgramRunning) {
  EXPECT_TRUE(ui::Form::QuerySessionEnd());
  world.toolkit.Advance(1000);
  EXPECT_TRUE(main->IsLoaded());
  EXPECT_THAT(Calls("CheckForWarning"), testing::Not(IsEmpty()));
}

TEST_F(frmMainExitTest, ClosingByTheTaskManagerGoesOnWithoutAQuestion) {
  main->UserClose(ui::CloseReason::kTaskManager);
  EXPECT_FALSE(main->IsLoaded());
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_EQ(Calls("ApplicationExiting").size(), 1u);
}

TEST_F(frmMainExitTest, WithoutARouterNothingIsToldToAnyPlugIn) {
  g_Registry->Router.reset();
  main->Unload();
  EXPECT_THAT(Calls("ApplicationExiting"), IsEmpty());
  End();
  EXPECT_THAT(Calls("SaveSettings"), IsEmpty());
}

TEST_F(frmMainExitTest, APlugInThatFailsAtTheExitIsToldAndTheSettingsAreSavedAllTheSame) {
  router->Fail("IServer_ApplicationExiting", 5, "no more");
  world.toolkit.answers = {ui::MessageResult::kYes};
  Choose("mnuExit");
  EXPECT_FALSE(main->IsLoaded());
  ASSERT_EQ(world.toolkit.messages.size(), 2u);
  EXPECT_EQ(world.toolkit.messages[1].text, "no more (5)");
  End();
  EXPECT_EQ(world.settings.Value("RouterClass"), kClass);
}

TEST_F(frmMainExitTest, APlugInThatCanNotTellItsClassAnyMoreCostsNoSetting) {
  router->Fail("IServer_ClassName", 5, "no class");
  main->Unload();
  End();
  EXPECT_EQ(world.settings.Value("Router_1"), kClass);
  EXPECT_EQ(world.settings.Value("RouterClass"), kClass);
  EXPECT_EQ(world.settings.Value("FilterOutProfiles"), "False");
  ASSERT_FALSE(world.toolkit.messages.empty());
  EXPECT_EQ(world.toolkit.messages.back().text, "no class (5)");
}

}  // namespace
