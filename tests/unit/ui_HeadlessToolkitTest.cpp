#include "ui/HeadlessToolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "ui/FileDialog.h"
#include "ui/Form.h"
#include "ui/Menu.h"

namespace {

using testing::ElementsAre;
using ui::MessageButtons;
using ui::MessageIcon;
using ui::MessageResult;

TEST(UiHeadlessToolkit, IsInPlaceWhileItLives) {
  ui::Toolkit* const before = ui::TheInterface().toolkit;
  {
    ui::HeadlessToolkit outer;
    EXPECT_EQ(ui::TheInterface().toolkit, &outer);
    {
      ui::HeadlessToolkit inner;
      EXPECT_EQ(ui::TheInterface().dialogs, &inner);
      EXPECT_EQ(ui::TheInterface().clipboard, &inner);
      EXPECT_EQ(ui::TheInterface().screen, &inner);
    }
    EXPECT_EQ(ui::TheInterface().toolkit, &outer);
  }
  EXPECT_EQ(ui::TheInterface().toolkit, before);
}

TEST(UiHeadlessToolkit, AnswersMessageBoxesAsLaidReady) {
  ui::HeadlessToolkit toolkit;
  toolkit.answers = {MessageResult::kYes, MessageResult::kOk};
  EXPECT_EQ(ui::ShowMessage("Sure?", MessageIcon::kQuestion, MessageButtons::kYesNo), MessageResult::kYes);
  EXPECT_EQ(ui::ShowMessage("Well", MessageIcon::kInformation), MessageResult::kOk);
  EXPECT_EQ(ui::ShowMessage("Sure?", MessageIcon::kWarning, MessageButtons::kYesNo), MessageResult::kNo);
  EXPECT_EQ(ui::ShowMessage("Well", MessageIcon::kCritical), MessageResult::kOk);
  ASSERT_EQ(toolkit.messages.size(), 4u);
  EXPECT_EQ(toolkit.messages[2].icon, MessageIcon::kWarning);
  EXPECT_EQ(toolkit.messages[2].title, "Harbourline");
}

TEST(UiHeadlessToolkit, WhatRunsWhileABoxIsUpMayReplaceItself) {
  ui::HeadlessToolkit toolkit;
  std::vector<std::string> seen;
  toolkit.whileMessage = [&toolkit, &seen, kept = std::string(100, 'x')](const ui::Message& message) {
    toolkit.whileMessage = nullptr;
    seen.push_back(message.text + std::to_string(kept.size()));
  };
  ui::ShowMessage("a", MessageIcon::kInformation);
  ui::ShowMessage("b", MessageIcon::kInformation);
  EXPECT_THAT(seen, ElementsAre("a100"));
}

TEST(UiHeadlessToolkit, WhatRunsWhenTheLoopWaitsMayReplaceItself) {
  ui::HeadlessToolkit toolkit;
  int calls = 0;
  toolkit.whenIdle = [&toolkit, &calls, kept = std::string(100, 'x')] {
    toolkit.whenIdle = nullptr;
    calls += static_cast<int>(kept.size());
  };
  toolkit.RunWhile([&] { return calls == 0; });
  EXPECT_EQ(calls, 100);
}

TEST(UiHeadlessToolkit, TheLoopAsksItsConditionAfterEachTick) {
  ui::HeadlessToolkit toolkit;
  ui::Form window("frmTest", "Test", {}, 100, 100);
  ui::Timer first(&window, "tmFirst");
  ui::Timer second(&window, "tmSecond");
  std::vector<std::string> ticks;
  first.Tick.Connect([&] { ticks.push_back("first"); });
  second.Tick.Connect([&] { ticks.push_back("second"); });
  for (ui::Timer* timer : {&first, &second}) {
    timer->Interval(100);
    timer->Enabled(true);
  }
  window.Load();
  toolkit.RunWhile([&] { return ticks.empty(); });
  EXPECT_THAT(ticks, ElementsAre("first")) << "the second falls due at the same moment, and waits";
  toolkit.Advance(0);
  EXPECT_THAT(ticks, ElementsAre("first", "second"));
}

TEST(UiHeadlessToolkit, TheLoopEndsWhenNothingCanEndIt) {
  ui::HeadlessToolkit toolkit;
  bool asked = false;
  toolkit.RunWhile([&] { return asked = true; });
  EXPECT_TRUE(asked);
}

TEST(UiHeadlessToolkit, TheLoopGivesUpWhenTheTickingTimersNeverEndIt) {
  ui::HeadlessToolkit toolkit;
  ui::Form window("frmTest", "Test", {}, 100, 100);
  ui::Timer timer(&window, "tmTest");
  int ticks = 0;
  timer.Tick.Connect([&] { ++ticks; });
  timer.Interval(60000);
  timer.Enabled(true);
  window.Load();
  EXPECT_THROW(toolkit.RunWhile([] { return true; }), std::logic_error);
  EXPECT_EQ(ticks, 60) << "after an hour of the clock";
}

TEST(UiHeadlessToolkit, AWindowMayOutliveIt) {
  auto toolkit = std::make_unique<ui::HeadlessToolkit>();
  ui::Form window("frmTest", "Test", {}, 100, 100);
  ui::Timer timer(&window, "tmTest");
  timer.Interval(100);
  timer.Enabled(true);
  window.Load();
  toolkit.reset();
  timer.Interval(200);
  window.Unload();
  EXPECT_FALSE(window.IsLoaded());
}

TEST(UiHeadlessToolkit, AFileDialogIsCancelledUnlessItIsAnswered) {
  ui::HeadlessToolkit toolkit;
  ui::FileDialog dialog;
  EXPECT_FALSE(ui::TheInterface().dialogs->ShowFileDialog(dialog));
  toolkit.answerFileDialog = [](ui::FileDialog& asked) {
    asked.fileName = "chosen.prf";
    return true;
  };
  EXPECT_TRUE(ui::TheInterface().dialogs->ShowFileDialog(dialog));
  EXPECT_EQ(dialog.fileName, "chosen.prf");
}

TEST(UiHeadlessToolkit, AWindowThatIsNotLoadedShowsNoPopUpMenu) {
  ui::HeadlessToolkit toolkit;
  ui::Form window("frmTest", "Test", {}, 100, 100);
  ui::Menu menu(&window, "mnuTest", "Test");
  ui::Menu entry(&menu, "mnuEntry", "Entry");
  int shown = 0;
  int clicks = 0;
  entry.Click.Connect([&] { ++clicks; });
  toolkit.choosePopup = [&](ui::Menu&) {
    ++shown;
    return &entry;
  };
  menu.ShowAsPopup();
  EXPECT_EQ(shown, 0);
  window.Load();
  menu.ShowAsPopup();
  EXPECT_EQ(shown, 1);
  window.Unload();
  menu.ShowAsPopup();
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(clicks, 1);
}

TEST(UiHeadlessToolkit, HasAClipboard) {
  ui::HeadlessToolkit toolkit;
  ui::TheInterface().clipboard->SetText("192.0.2.1");
  EXPECT_EQ(toolkit.clipboard, "192.0.2.1");
  ui::TheInterface().clipboard->Clear();
  EXPECT_EQ(toolkit.clipboard, "");
}

TEST(UiHeadlessToolkit, EachPictureHasOneHandleAndNoPictureHasNone) {
  ui::HeadlessToolkit toolkit;
  const ui::PictureRef first = ui::ResourcePicture("first");
  const ui::PictureRef second = ui::ResourcePicture("second");
  EXPECT_EQ(toolkit.SmallIcon(nullptr), 0u);
  const std::uintptr_t handle = toolkit.SmallIcon(first);
  EXPECT_NE(handle, 0u);
  EXPECT_NE(toolkit.SmallIcon(second), handle);
  EXPECT_EQ(toolkit.SmallIcon(first), handle);
  EXPECT_EQ(toolkit.TwipsPerPixelX(), 15.0f);
}

}  // namespace
