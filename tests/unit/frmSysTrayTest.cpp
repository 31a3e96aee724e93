#include "ui/frmSysTray.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/World.h"
#include "ui/ctlSysTray.h"

namespace {

using platform::NotifyIconMessage;
using testing::ElementsAre;

class frmSysTrayTest : public testing::Test {
 protected:
  const platform::NotifyIconData& Last() const { return world.notificationArea.calls.back().data; }
  std::string Tip() const { return std::string(Last().szTip.data(), Last().szTip.size()); }
  std::vector<NotifyIconMessage> Messages() const {
    std::vector<NotifyIconMessage> messages;
    for (const auto& call : world.notificationArea.calls) messages.push_back(call.message);
    return messages;
  }
  /// The notification area reports a mouse action.
  void Mouse(int message) {
    tray.UserMouseMove(static_cast<float>(message) * world.toolkit.twipsPerPixel, 0);
  }
  void RecordEvents() {
    tray.LeftButtonClick.Connect([this] { events.push_back("left"); });
    tray.RightButtonClick.Connect([this] { events.push_back("right"); });
    tray.LeftButtonDoubleClick.Connect([this] { events.push_back("left double"); });
    tray.RightButtonDoubleClick.Connect([this] { events.push_back("right double"); });
  }

  support::World world;
  frmSysTray tray;
  ui::PictureRef picture = ui::ResourcePicture("A");
  std::vector<std::string> events;
};

TEST_F(frmSysTrayTest, FirstUpdateAddsTheIconWithTheWholeRecord) {
  tray.ToolTip("Hello");
  tray.TrayIcon(picture);
  EXPECT_EQ(Last().cbSize, 88u);
  EXPECT_EQ(Last().hWnd, tray.Handle());
  EXPECT_NE(Last().hWnd, 0u);
  EXPECT_EQ(Last().uID, 0u);
  EXPECT_EQ(Last().uFlags, 7u);
  EXPECT_EQ(Last().uCallbackMessage, 0x200u);
  EXPECT_EQ(Last().hIcon, world.toolkit.SmallIcon(picture));
  EXPECT_FALSE(tray.Visible());
}

TEST_F(frmSysTrayTest, IconThenTipIsOneAddAndOneModifyAndTheFirstCarriesTheStoredTip) {
  tray.TrayIcon(picture);
  EXPECT_EQ(Tip(), std::string(1, '\0') + std::string(63, ' '));
  tray.ToolTip("WAN 1.2.3.4");
  EXPECT_THAT(Messages(), ElementsAre(NotifyIconMessage::kAdd, NotifyIconMessage::kModify));
}

TEST_F(frmSysTrayTest, AShortTipIsTerminatedAndPaddedWithBlanks) {
  tray.ToolTip("abc");
  EXPECT_EQ(Tip(), std::string("abc\0", 4) + std::string(60, ' '));
  EXPECT_EQ(tray.ToolTip(), "abc");
}

TEST_F(frmSysTrayTest, ATipOf63CharactersReachesTheAreaWholeWithItsTerminator) {
  tray.ToolTip(std::string(63, 'x'));
  EXPECT_EQ(Tip(), std::string(63, 'x') + '\0');
}

TEST_F(frmSysTrayTest, ATipFrom64CharactersOnIsCutAndHasNoTerminator) {
  tray.ToolTip(std::string(64, 'x'));
  EXPECT_EQ(Tip(), std::string(64, 'x'));
  tray.ToolTip(std::string(64, 'y') + "z");
  EXPECT_EQ(Tip(), std::string(64, 'y'));
  EXPECT_EQ(tray.ToolTip().size(), 65u);
}

TEST_F(frmSysTrayTest, ReadingTheIconGivesAnEmptyPicture) {
  tray.TrayIcon(picture);
  EXPECT_EQ(tray.TrayIcon(), nullptr);
  EXPECT_EQ(tray.Icon(), picture);
}

TEST_F(frmSysTrayTest, AFailedCallGoesUnnoticedAndTheNextOneModifies) {
  world.notificationArea.answer = false;
  tray.TrayIcon(picture);
  tray.TrayIcon(picture);
  EXPECT_THAT(Messages(), ElementsAre(NotifyIconMessage::kAdd, NotifyIconMessage::kModify));
}

TEST_F(frmSysTrayTest, UnloadingTwiceRemovesOnce) {
  tray.TrayIcon(picture);
  tray.Unload();
  tray.Unload();
  EXPECT_THAT(Messages(), ElementsAre(NotifyIconMessage::kAdd, NotifyIconMessage::kDelete));
}

TEST_F(frmSysTrayTest, UnloadingWithoutAnIconRemovesNothing) {
  tray.Load();
  tray.Unload();
  EXPECT_TRUE(world.notificationArea.calls.empty());
}

TEST_F(frmSysTrayTest, AfterARemovalAFurtherSetAddsTheIconAgain) {
  tray.TrayIcon(picture);
  tray.Unload();
  tray.ToolTip("again");
  EXPECT_THAT(Messages(),
              ElementsAre(NotifyIconMessage::kAdd, NotifyIconMessage::kDelete, NotifyIconMessage::kAdd));
}

TEST_F(frmSysTrayTest, AShellThatRestartedGetsTheIconAgainWithItsTip) {
  tray.TrayIcon(picture);
  tray.ToolTip("abc");
  tray.UserShellRestarted();
  EXPECT_EQ(Messages().back(), NotifyIconMessage::kAdd);
  EXPECT_EQ(Tip().substr(0, 4), std::string("abc\0", 4));
  EXPECT_EQ(Last().hIcon, world.toolkit.SmallIcon(picture));
}

TEST_F(frmSysTrayTest, AShellThatRestartedBeforeTheIconWasShownGetsNone) {
  tray.Load();
  tray.UserShellRestarted();
  EXPECT_TRUE(world.notificationArea.calls.empty());
}

TEST_F(frmSysTrayTest, OnlyTheFourReleasesAndDoublePressesRaiseEventsAtEveryScaling) {
  RecordEvents();
  for (const float dotsPerInch : {96.0F, 120.0F, 144.0F, 168.0F, 192.0F, 216.0F, 240.0F, 288.0F, 384.0F}) {
    world.toolkit.twipsPerPixel = 1440 / dotsPerInch;
    events.clear();
    for (int message = 500; message < 530; ++message) Mouse(message);
    EXPECT_THAT(events, ElementsAre("left", "left double", "right", "right double")) << dotsPerInch;
  }
}

TEST_F(frmSysTrayTest, AMouseMoveOverTheIconRaisesNoEvent) {
  RecordEvents();
  Mouse(512);
  EXPECT_TRUE(events.empty());
}

TEST_F(frmSysTrayTest, ADoubleClickOfTheRightButtonIsClickDoubleClickClick) {
  RecordEvents();
  for (const int message : {516, 517, 518, 517}) Mouse(message);
  EXPECT_THAT(events, ElementsAre("right", "right double", "right"));
}

TEST_F(frmSysTrayTest, TheControlPassesEverythingOnAndEndsTheWindow) {
  ui::Form host("frmHost", "", {}, 1000, 1000);
  std::vector<std::string> heard;
  {
    ctlSysTray control(&host, "ctlSysTray");
    EXPECT_FALSE(control.Visible());
    control.Icon(picture);
    control.ToolTip("tip");
    EXPECT_EQ(control.ToolTip(), "tip");
    EXPECT_EQ(control.Icon(), nullptr);
    control.LeftButtonClick.Connect([&] { heard.push_back("left"); });
    control.RightButtonClick.Connect([&] { heard.push_back("right"); });
    control.LeftButtonDoubleClick.Connect([&] { heard.push_back("left double"); });
    control.RightButtonDoubleClick.Connect([&] { heard.push_back("right double"); });
    ui::Form* window = ui::Form::LoadedForms().back();
    for (int message = 512; message <= 518; ++message) {
      window->UserMouseMove(static_cast<float>(message) * world.toolkit.twipsPerPixel, 0);
    }
  }
  EXPECT_THAT(heard, ElementsAre("left", "left double", "right", "right double"));
  EXPECT_EQ(Messages().back(), NotifyIconMessage::kDelete);
}

}  // namespace
