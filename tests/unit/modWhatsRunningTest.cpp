#include "automatic/modWhatsRunning.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automatic/frmClassBrowser.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;

class modWhatsRunningTest : public testing::Test {
 protected:
  support::World world;
};

/// Counts the questions.
class CountingWindowList : public support::FakeWindowList {
 public:
  int searches = 0;
  platform::WindowHandle FindWindow(const char* className, const char* title) override {
    ++searches;
    return FakeWindowList::FindWindow(className, title);
  }
};

TEST_F(modWhatsRunningTest, WithClassAndTitleEmptyTheMachineIsNotAsked) {
  CountingWindowList windows;
  windows.windows = {{1, "", ""}};
  platform::TheMachine().windows = &windows;
  EXPECT_FALSE(modWhatsRunning::IsProgramRunning("", ""));
  EXPECT_EQ(windows.searches, 0);
  modWhatsRunning::IsProgramRunning("Notepad", "");
  EXPECT_EQ(windows.searches, 1);
}

TEST_F(modWhatsRunningTest, AClassAloneIsTrueForAnyWindowOfThatClass) {
  world.windows.windows = {{1, "Notepad", "letter.txt - Notepad"}};
  EXPECT_TRUE(modWhatsRunning::IsProgramRunning("Notepad", ""));
  EXPECT_FALSE(modWhatsRunning::IsProgramRunning("Write", ""));
}

TEST_F(modWhatsRunningTest, ATitleAloneMustBeTheWholeTitle) {
  world.windows.windows = {{1, "Game", "The Game"}};
  EXPECT_TRUE(modWhatsRunning::IsProgramRunning("", "The Game"));
  EXPECT_FALSE(modWhatsRunning::IsProgramRunning("", "The Game "));
  EXPECT_FALSE(modWhatsRunning::IsProgramRunning("", "Game"));
}

TEST_F(modWhatsRunningTest, ClassAndTitleMustBelongToOneWindow) {
  world.windows.windows = {{1, "Game", "One"}, {2, "Write", "Two"}};
  EXPECT_TRUE(modWhatsRunning::IsProgramRunning("Write", "Two"));
  EXPECT_FALSE(modWhatsRunning::IsProgramRunning("Write", "One"));
}

TEST_F(modWhatsRunningTest, TheListHasHiddenAndEqualWindowsAndLeavesOutThoseWithoutATitle) {
  world.windows.windows = {{1, "A", "One"}, {2, "B", ""}, {3, "A", "One"}};
  ui::Form host("frmHost", "", {}, 1000, 1000);
  ui::ListBox list(&host, "list");
  list.AddItem("old");
  modWhatsRunning::EnumAvailableWindows(list);
  ASSERT_EQ(list.ListCount(), 2);
  EXPECT_EQ(list.List(0), "One::A");
  EXPECT_EQ(list.List(1), "One::A");
}

/// Windows that close as soon as somebody has asked for the length of their title.
class ClosingWindowList : public support::FakeWindowList {
 public:
  std::int32_t GetWindowTextLength(platform::WindowHandle window) override {
    const std::int32_t length = FakeWindowList::GetWindowTextLength(window);
    for (Window& open : windows) {
      if (open.handle == window) open.title.clear();
    }
    return length;
  }
};

TEST_F(modWhatsRunningTest, AWindowThatVanishesBeforeItsTitleIsReadHasAnEmptyTitleInItsEntry) {
  ClosingWindowList windows;
  windows.windows = {{1, "Game", "One"}, {2, "Write", "Two"}};
  platform::TheMachine().windows = &windows;
  ui::Form host("frmHost", "", {}, 1000, 1000);
  ui::ListBox list(&host, "list");
  modWhatsRunning::EnumAvailableWindows(list);
  ASSERT_EQ(list.ListCount(), 2);
  EXPECT_EQ(list.List(0), "::Game");
  EXPECT_EQ(list.List(1), "::Write");
}

TEST_F(modWhatsRunningTest, AClassNameIsCutAt254Characters) {
  world.windows.windows = {{1, std::string(400, 'c'), "t"}};
  EXPECT_EQ(modWhatsRunning::GetWindowClassName(1), std::string(254, 'c'));
}

TEST_F(modWhatsRunningTest, AnEntryIsCutAtItsFirstSeparator) {
  EXPECT_EQ(modWhatsRunning::WindowTitleFromEntry("Game::Class"), "Game");
  EXPECT_EQ(modWhatsRunning::WindowClassFromEntry("Game::Class"), "Class");
  EXPECT_EQ(modWhatsRunning::WindowTitleFromEntry("a::b::Class"), "a");
  EXPECT_EQ(modWhatsRunning::WindowClassFromEntry("a::b::Class"), "b::Class");
}

TEST_F(modWhatsRunningTest, AnEntryWithoutSeparatorHasNoTitleAndTheClassLessItsFirstCharacter) {
  EXPECT_EQ(modWhatsRunning::WindowTitleFromEntry("[None]"), "");
  EXPECT_EQ(modWhatsRunning::WindowClassFromEntry("[None]"), "None]");
  EXPECT_EQ(modWhatsRunning::WindowClassFromEntry(""), "");
}

class frmClassBrowserTest : public modWhatsRunningTest {
 protected:
  frmClassBrowserTest() {
    world.windows.windows = {{1, "Notepad", "letter"}, {2, "Odd", "a::b"}};
    browser.sWindowClass("before class");
    browser.sWindowTitle("before title");
    browser.Load();
  }
  template <typename Kind>
  Kind& Get(const std::string& name) {
    for (ui::Control* child : browser.Children()) {
      if (child->Name() == name) return static_cast<Kind&>(*child);
    }
    throw std::runtime_error("no " + name);
  }
  ui::ListBox& List() { return Get<ui::ListBox>("lslAvailableClasses"); }

  frmClassBrowser browser;
};

TEST_F(frmClassBrowserTest, ItOpensWithNoneOnTopAndNothingToAccept) {
  EXPECT_EQ(List().ListCount(), 3);
  EXPECT_EQ(List().List(0), "[None]");
  EXPECT_EQ(List().List(1), "letter::Notepad");
  EXPECT_FALSE(Get<ui::Button>("cmdAccept").Enabled());
  EXPECT_EQ(Get<ui::TextBox>("txtWindowClass").Text(), "before class");
  EXPECT_EQ(browser.HelpContextID(), 9020);
  EXPECT_EQ(browser.Caption(), "Select a Running Program");
}

TEST_F(frmClassBrowserTest, AnAcceptedChoiceStaysReadableAfterTheWindowHasGone) {
  List().UserSelect(1);
  EXPECT_EQ(Get<ui::TextBox>("txtWindowTitle").Text(), "letter");
  Get<ui::Button>("cmdAccept").UserClick();
  EXPECT_FALSE(browser.IsLoaded());
  EXPECT_FALSE(browser.bCancel());
  EXPECT_EQ(browser.sWindowClass(), "Notepad");
  EXPECT_EQ(browser.sWindowTitle(), "letter");
}

TEST_F(frmClassBrowserTest, NoneGivesEmptyClassAndTitle) {
  List().UserSelect(1);
  List().UserSelect(0);
  Get<ui::Button>("cmdAccept").UserClick();
  EXPECT_FALSE(browser.bCancel());
  EXPECT_EQ(browser.sWindowClass(), "");
  EXPECT_EQ(browser.sWindowTitle(), "");
}

TEST_F(frmClassBrowserTest, CancelAfterASelectionLeavesTheSelectionInTheMembers) {
  List().UserSelect(1);
  Get<ui::Button>("cmdCancel").UserClick();
  EXPECT_TRUE(browser.bCancel());
  EXPECT_EQ(browser.sWindowClass(), "Notepad");
}

TEST_F(frmClassBrowserTest, TheCloseBoxHandsOverWhatWasPicked) {
  List().UserSelect(1);
  browser.UserClose(ui::CloseReason::kUser);
  EXPECT_FALSE(browser.IsLoaded());
  EXPECT_FALSE(browser.bCancel());
  EXPECT_EQ(browser.sWindowClass(), "Notepad");
  EXPECT_EQ(browser.sWindowTitle(), "letter");
}

TEST_F(frmClassBrowserTest, TheCloseBoxWithoutAChoiceHandsOverWhatItStartedFrom) {
  browser.UserClose(ui::CloseReason::kUser);
  EXPECT_FALSE(browser.bCancel());
  EXPECT_EQ(browser.sWindowClass(), "before class");
}

TEST_F(frmClassBrowserTest, ATitleWithTheSeparatorIsCutThereAndItsRestStandsInFrontOfTheClass) {
  List().UserSelect(2);
  EXPECT_EQ(browser.sWindowTitle(), "a");
  EXPECT_EQ(browser.sWindowClass(), "b::Odd");
}

}  // namespace
