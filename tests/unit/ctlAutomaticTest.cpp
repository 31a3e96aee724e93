#include "automatic/ctlAutomatic.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Shell.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ctlAutomaticTest : public testing::Test, protected support::Shell {
 protected:
  /// Two profiles that follow programs, one that doesn't.
  void StartWithPrograms(const std::string& automatic = "True") {
    SelectRouter();
    StoreProfile(1, "Chess", false, 100);
    StoreProfile(2, "Game", false, 200);
    StoreProfile(3, "Plain", false, 300);
    for (const char* number : {"1", "2"}) Store(std::string("MP_") + number + "_AutoActivate", "True");
    Store("MP_1_WindowClass", "ChessWindow");
    Store("MP_2_WindowTitle", "The Game");
    Store("AutomaticActivation", automatic);
    Start();
    router->calls.clear();
    world.debug.lines.clear();
  }
  void Run(const std::string& className, const std::string& title) {
    world.windows.windows.push_back({++lastWindow_, className, title});
  }
  template <typename Kind>
  Kind& Get(const std::string& name) {
    return static_cast<Kind&>(*FindBelow(*main, name));
  }
  ui::ListView& Rows() {
    return *static_cast<ui::ListView*>(FindBelow(Get<ui::Control>("ctlAutomatic"), "lvProfiles"));
  }
  std::string Error() {
    return static_cast<ui::Label*>(FindBelow(Get<ui::Control>("ctlAutomatic"), "lblError"))->Caption();
  }
  ui::CheckBox& Enable() {
    return *static_cast<ui::CheckBox*>(FindBelow(Get<ui::Control>("ctlAutomatic"), "chkEnable"));
  }
  std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (std::size_t row = 0; row < Rows().RowCount(); ++row) texts.emplace_back(Rows().Text(row));
    return texts;
  }

 private:
  static ui::Control* FindBelow(ui::Control& top, const std::string& name) {
    for (ui::Control* child : top.Children()) {
      if (child->Name() == name) return child;
      if (ui::Control* below = FindBelow(*child, name)) return below;
    }
    return nullptr;
  }
  platform::WindowHandle lastWindow_ = 0;
};

TEST_F(ctlAutomaticTest, AProgramThatStartsHasItsProfileWithinTwoSecondsByOneCall) {
  StartWithPrograms();
  EXPECT_THAT(Texts(), ElementsAre("Chess", "Game"));
  Run("ChessWindow", "whatever");
  world.toolkit.Advance(2000);
  ASSERT_EQ(Calls("SetPortForwarding").size(), 1u);
  EXPECT_THAT(Calls("SetPortForwarding")[0], HasSubstr("100"));
  EXPECT_THAT(Texts(), ElementsAre("Chess (Active)", "Game"));
  EXPECT_EQ(Rows().CellColor(0, 0), ui::Rgb(128, 0, 0));
  EXPECT_THAT(world.debug.lines, ElementsAre("Auto load profile \"Chess\""));
}

TEST_F(ctlAutomaticTest, AProgramThatEndsTakesItsProfileWithIt) {
  StartWithPrograms();
  Run("ChessWindow", "");
  world.toolkit.Advance(2000);
  world.windows.windows.clear();
  world.toolkit.Advance(2000);
  ASSERT_EQ(Calls("SetPortForwarding").size(), 2u);
  EXPECT_THAT(Calls("SetPortForwarding")[1], HasSubstr("[10..10]{null}"));
  EXPECT_THAT(Texts(), ElementsAre("Chess", "Game"));
}

TEST_F(ctlAutomaticTest, TwoProfilesThatChangeInOneTickAreOneCall) {
  StartWithPrograms();
  Run("ChessWindow", "");
  Run("Other", "The Game");
  world.toolkit.Advance(2000);
  ASSERT_EQ(Calls("SetPortForwarding").size(), 1u);
  EXPECT_THAT(Calls("SetPortForwarding")[0], testing::AllOf(HasSubstr("100"), HasSubstr("200")));
}

TEST_F(ctlAutomaticTest, ATickWithoutAChangeCallsNothing) {
  StartWithPrograms();
  world.toolkit.Advance(20'000);
  EXPECT_THAT(Calls("SetPortForwarding"), IsEmpty());
}

TEST_F(ctlAutomaticTest, WhatTheUserDidByHandIsUndoneAtTheNextTick) {
  StartWithPrograms();
  Run("ChessWindow", "");
  world.toolkit.Advance(2000);
  const auto& profile = *g_Registry->ccMapProfiles().begin();
  profile->bEnabled = false;
  world.toolkit.Advance(2000);
  EXPECT_TRUE(profile->bEnabled);
  world.windows.windows.clear();
  world.toolkit.Advance(2000);
  profile->bEnabled = true;
  world.toolkit.Advance(2000);
  EXPECT_FALSE(profile->bEnabled);
}

TEST_F(ctlAutomaticTest, AFailedActivationShowsTheErrorUntilALaterChangeSucceedsAndIsNotRepeated) {
  StartWithPrograms();
  router->Answer("IServer_SetPortForwarding", true);
  Run("ChessWindow", "");
  world.toolkit.Advance(2000);
  EXPECT_EQ(Error(), "Too many mappings/Network error/Router busy");
  EXPECT_THAT(Texts(), ElementsAre("Chess (Active)", "Game"));
  world.toolkit.Advance(10'000);
  EXPECT_EQ(Calls("SetPortForwarding").size(), 1u);
  EXPECT_EQ(Error(), "Too many mappings/Network error/Router busy");
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  router->Answer("IServer_SetPortForwarding", false);
  Run("Other", "The Game");
  world.toolkit.Advance(2000);
  EXPECT_EQ(Error(), "");
}

TEST_F(ctlAutomaticTest, TheEventComesAfterTheActivationAndItsErrorAndBeforeThePageIsFilled) {
  StartWithPrograms();
  router->Answer("IServer_SetPortForwarding", true);
  std::vector<std::string> seen;
  auto& page = dynamic_cast<ctlAutomatic&>(Get<ui::Control>("ctlAutomatic"));
  page.Activated.Connect([&] {
    seen = Texts();
    seen.push_back(Error());
    seen.push_back(std::to_string(Calls("SetPortForwarding").size()));
  });
  world.toolkit.Advance(2000);
  EXPECT_THAT(seen, IsEmpty()) << "a tick without a change raises none";
  Run("ChessWindow", "");
  world.toolkit.Advance(2000);
  EXPECT_THAT(seen, ElementsAre("Chess", "Game", "Too many mappings/Network error/Router busy", "1"));
  EXPECT_THAT(Texts(), ElementsAre("Chess (Active)", "Game"));
}

TEST_F(ctlAutomaticTest, WhileItIsOffAProgramsStartChangesNothing) {
  StartWithPrograms("False");
  Run("ChessWindow", "");
  world.toolkit.Advance(10'000);
  EXPECT_THAT(Calls("SetPortForwarding"), IsEmpty());
  Enable().UserClick();
  EXPECT_TRUE(g_Registry->AutomaticActivation);
  world.toolkit.Advance(2000);
  EXPECT_EQ(Calls("SetPortForwarding").size(), 1u);
}

TEST_F(ctlAutomaticTest, SwitchingItOffLeavesTheProfilesAsTheyAre) {
  StartWithPrograms();
  Run("ChessWindow", "");
  world.toolkit.Advance(2000);
  Enable().UserClick();
  world.windows.windows.clear();
  world.toolkit.Advance(10'000);
  EXPECT_FALSE(g_Registry->AutomaticActivation);
  EXPECT_EQ(Calls("SetPortForwarding").size(), 1u);
  EXPECT_TRUE((*g_Registry->ccMapProfiles().begin())->bEnabled);
}

TEST_F(ctlAutomaticTest, AnAutoProfileWithoutClassAndTitleIsSwitchedOffAtTheFirstTick) {
  SelectRouter();
  StoreProfile(1, "Game", true);
  Store("MP_1_AutoActivate", "True");
  Store("AutomaticActivation", "True");
  Start();
  world.debug.lines.clear();
  world.toolkit.Advance(2000);
  EXPECT_FALSE((*g_Registry->ccMapProfiles().begin())->bEnabled);
  EXPECT_THAT(world.debug.lines, ElementsAre("Auto unload profile \"Game\""));
}

TEST_F(ctlAutomaticTest, TheListIsForReading) {
  StartWithPrograms();
  EXPECT_FALSE(Rows().UserLabelEditStart(0));
}

TEST_F(ctlAutomaticTest, APlugInThatRaisesAnErrorAtEveryTickIsToldOnce) {
  StartWithPrograms();
  router->Fail("IServer_SetPortForwarding", 7, "out of order");
  for (int i = 0; i < 5; ++i) {
    Run("ChessWindow", "");
    world.toolkit.Advance(2000);
    world.windows.windows.clear();
    world.toolkit.Advance(2000);
  }
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, "out of order (7)");
}

}  // namespace
