#include "shell/frmErrors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "shell/modCommon.h"
#include "support/FindControl.h"
#include "support/World.h"

namespace {

class FrmErrors : public testing::Test {
 protected:
  FrmErrors() { world.clock.now = {2026, 7, 9, 11, 59, 7}; }

  ui::RichTextBox& Text() { return support::FindControl<ui::RichTextBox>(report, "rtErrors"); }
  ui::Label& Help() { return support::FindControl<ui::Label>(report, "lblHelp"); }

  support::World world;
  frmErrors report;
};

TEST_F(FrmErrors, WritesTheTimeInTheUsersOwnFormTheMessageAndTheNumber) {
  report.AddErrorText("Router unreachable", 12);
  EXPECT_EQ(Text().Text(), "11.59.07 - Router unreachable (12)\r\n");
}

TEST_F(FrmErrors, WritesTheNumber0AndNegativeNumbers) {
  report.AddErrorText("", 0);
  report.AddErrorText("x", -5);
  EXPECT_EQ(Text().Text(), "11.59.07 -  (0)\r\n11.59.07 - x (-5)\r\n");
}

TEST_F(FrmErrors, AddsEachLineAtTheEndInBlackAndNotBold) {
  report.AddErrorText("first", 1);
  Text().SelStart(3);
  Text().SelColor(ui::Rgb(255, 0, 0));
  Text().SelBold(true);
  report.AddErrorText("second", 2);
  EXPECT_EQ(Text().Text(), "11.59.07 - first (1)\r\n11.59.07 - second (2)\r\n");
  for (const ui::RichTextBox::Run& run : Text().Runs()) {
    EXPECT_EQ(run.color, ui::kBlack);
    EXPECT_FALSE(run.bold);
  }
}

TEST_F(FrmErrors, KeepsLongMessagesAndLineEndsInThem) {
  const std::string message(100'000, 'x');
  report.AddErrorText(message + "\r\nnext", 1);
  EXPECT_EQ(Text().Text(), "11.59.07 - " + message + "\r\nnext (1)\r\n");
}

TEST_F(FrmErrors, HasItsTextsAndColoursWhenItIsLoaded) {
  report.Load();
  EXPECT_EQ(report.Caption(), "Harbourline - Error Report");
  EXPECT_EQ(Help().Caption(), "The following errors occured during this session.");
  EXPECT_EQ(Help().ForeColor(), modCommon::ColorHelpText());
  EXPECT_EQ(Help().BackColor(), modCommon::ColorBackground());
  EXPECT_EQ(report.BackColor(), modCommon::ColorBackground());
  EXPECT_EQ(Text().Font(), ui::BodyFont());
  EXPECT_TRUE(report.GetStyle().centreOnScreen);
  EXPECT_EQ(report.Width(), 4680);
  EXPECT_EQ(report.Height(), 3090);
}

TEST_F(FrmErrors, IsHiddenByTheUsersCloseAndKeepsItsLines) {
  report.AddErrorText("first", 1);
  report.Show();
  report.UserClose(ui::CloseReason::kUser);
  EXPECT_FALSE(report.Visible());
  EXPECT_TRUE(report.IsLoaded());
  report.AddErrorText("second", 2);
  report.Show();
  EXPECT_TRUE(report.Visible());
  EXPECT_EQ(Text().Text(), "11.59.07 - first (1)\r\n11.59.07 - second (2)\r\n");
}

TEST_F(FrmErrors, GoesForAnyOtherReason) {
  for (const ui::CloseReason reason : {ui::CloseReason::kCode, ui::CloseReason::kSessionEnds,
                                       ui::CloseReason::kTaskManager, ui::CloseReason::kOwnerCloses}) {
    report.Show();
    EXPECT_TRUE(report.Unload(reason));
    EXPECT_FALSE(report.IsLoaded());
  }
}

TEST_F(FrmErrors, GoesWithItsOwner) {
  ui::Form owner("frmTest", "Test", {}, 100, 100);
  owner.Load();
  report.Show(&owner);
  EXPECT_TRUE(owner.Unload());
  EXPECT_FALSE(report.IsLoaded());
}

TEST_F(FrmErrors, DoesNotHoldUpTheEndOfTheSession) {
  report.Show();
  EXPECT_TRUE(ui::Form::QuerySessionEnd());
  EXPECT_TRUE(report.Visible());
}

TEST_F(FrmErrors, FillsTheWindowBelowTheHelpLine) {
  report.UserResize({0, 0, 6000, 4000});
  EXPECT_EQ(Help().GetBounds(), (ui::Bounds{0, 0, 6000, Help().Height()}));
  EXPECT_GT(Help().Height(), 0);
  EXPECT_EQ(Text().GetBounds(), (ui::Bounds{0, Help().Height(), 6000, 4000 - Help().Height()}));
  report.UserResize({0, 0, 10, 10});
  EXPECT_EQ(Text().Height(), 0);
}

TEST_F(FrmErrors, IsOneForTheProgramAndNotLoadedBeforeItIsShown) {
  EXPECT_EQ(&frmErrors::Shared(), &frmErrors::Shared());
  EXPECT_FALSE(frmErrors::Shared().IsLoaded());
}

}  // namespace
