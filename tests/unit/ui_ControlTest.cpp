#include "ui/Control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Button.h"
#include "ui/Form.h"
#include "ui/Frame.h"
#include "ui/Label.h"
#include "ui/TextBox.h"
#include "ui/UserControl.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ui::Aspect;

class Window : public ui::Form {
 public:
  Window() : Form("frmTest", "Test", {}, 3000, 2000) {}
};

class Page : public ui::UserControl {
 public:
  explicit Page(ui::Control* parent) : UserControl(parent, "ctlTest", 1000, 500) {}
  int layouts = 0;

 private:
  void OnResize() override { ++layouts; }
};

class UiControl : public support::InterfaceTest {};

TEST_F(UiControl, StandsBehindItsElderSiblings) {
  Window window;
  ui::Label first(&window, "first");
  ui::Label second(&window, "second");
  auto third = std::make_unique<ui::Label>(&window, "third");
  ui::Label fourth(&window, "fourth");
  EXPECT_THAT(window.Children(), ElementsAre(&first, &second, third.get(), &fourth));
  third.reset();
  EXPECT_THAT(window.Children(), ElementsAre(&first, &second, &fourth));
}

TEST_F(UiControl, IsNamedFromTheWindowDown) {
  Window window;
  ui::Frame frame(&window, "framOne");
  ui::TextBox box(&frame, "txtName(3)");
  EXPECT_EQ(box.Path(), "frmTest.framOne.txtName(3)");
  EXPECT_EQ(window.Path(), "frmTest");
}

TEST_F(UiControl, FindsTheWindowItStandsOn) {
  Window window;
  ui::Frame frame(&window, "framOne");
  ui::TextBox box(&frame, "txtName");
  ui::Frame loose(nullptr, "framLoose");
  ui::TextBox onLoose(&loose, "txtLoose");
  EXPECT_EQ(box.ParentForm(), &window);
  EXPECT_EQ(window.ParentForm(), &window);
  EXPECT_EQ(onLoose.ParentForm(), nullptr);
}

TEST_F(UiControl, OutlivesTheParentThatIsDestroyedFirst) {
  auto window = std::make_unique<Window>();
  ui::TextBox box(window.get(), "txtName");
  window->Load();
  window.reset();
  EXPECT_EQ(box.Parent(), nullptr);
  EXPECT_EQ(box.ParentForm(), nullptr);
  EXPECT_EQ(box.GetPeer(), nullptr);
  EXPECT_EQ(box.Path(), "txtName");
  box.Text("still there");
  EXPECT_EQ(box.Text(), "still there");
}

TEST_F(UiControl, LosesItsPeerBeforeTheParentThatIsDestroyedFirst) {
  Window window;
  auto frame = std::make_unique<ui::Frame>(&window, "framOne");
  ui::TextBox box(frame.get(), "txtName");
  window.Load();
  toolkit.peers.clear();
  frame.reset();
  EXPECT_EQ(box.GetPeer(), nullptr);
  EXPECT_THAT(toolkit.peers, ElementsAre("take txtName", "take framOne"));
  EXPECT_THAT(window.Children(), IsEmpty());
}

TEST_F(UiControl, LeavesAWindowThatStaysLoaded) {
  Window window;
  ui::Frame frame(&window, "framOne");
  auto box = std::make_unique<ui::TextBox>(&frame, "txtName");
  window.Load();
  toolkit.peers.clear();
  box.reset();
  EXPECT_THAT(frame.Children(), IsEmpty());
  EXPECT_THAT(toolkit.peers, ElementsAre("take txtName"));
}

TEST_F(UiControl, MovesOnceAndIsLaidOutOnlyWhenItsSizeChanges) {
  Window window;
  Page page(&window);
  window.Load();
  toolkit.TakeChanges(page);
  page.layouts = 0;
  page.Move(10, 20, 1000, 500);
  EXPECT_THAT(toolkit.TakeChanges(page), ElementsAre(Aspect::kBounds));
  EXPECT_EQ(page.layouts, 0);
  page.Move(10, 20, 1000, 600);
  EXPECT_THAT(toolkit.TakeChanges(page), ElementsAre(Aspect::kBounds));
  EXPECT_EQ(page.layouts, 1);
  page.Move(10, 20, 1000, 600);
  EXPECT_THAT(toolkit.TakeChanges(page), IsEmpty());
  EXPECT_EQ(page.layouts, 1);
  EXPECT_EQ(page.Right(), 1010);
  EXPECT_EQ(page.Bottom(), 620);
}

TEST_F(UiControl, AWidthOrHeightBelowZeroCountsAsZero) {
  Window window;
  Page page(&window);
  page.Move(10, 20, -1, 500);
  EXPECT_EQ(page.GetBounds(), (ui::Bounds{10, 20, 0, 500}));
  page.Move(-10, -20, 1000, -500);
  EXPECT_EQ(page.GetBounds(), (ui::Bounds{-10, -20, 1000, 0}));
}

TEST_F(UiControl, APageThatNobodyResizesIsLaidOutWhenItsWindowComesUp) {
  Window window;
  Page page(&window);
  page.Move(0, 0, 1000, 500);
  EXPECT_EQ(page.layouts, 0);
  window.Load();
  EXPECT_EQ(page.layouts, 1);
}

TEST_F(UiControl, IsSeenOnlyWhenAllThatItStandsOnIsVisible) {
  Window window;
  ui::Frame frame(&window, "framOne");
  ui::TextBox box(&frame, "txtName");
  EXPECT_FALSE(box.IsSeen());
  window.Show();
  EXPECT_TRUE(box.IsSeen());
  frame.Visible(false);
  EXPECT_FALSE(box.IsSeen());
  EXPECT_TRUE(box.Visible());
  frame.Visible(true);
  box.Visible(false);
  EXPECT_FALSE(box.IsSeen());
}

TEST_F(UiControl, SetFocusAsksThePeerAndTheReportMovesTheFocus) {
  Window window;
  ui::TextBox box(&window, "txtName");
  window.Show();
  box.SetFocus();
  EXPECT_EQ(toolkit.TakeFocus(box), 1);
  EXPECT_FALSE(box.HasFocus());
  box.UserFocus(true);
  EXPECT_TRUE(box.HasFocus());
}

TEST_F(UiControl, TheFocusEventsComeOnceEach) {
  Window window;
  ui::TextBox box(&window, "txtName");
  std::vector<std::string> events;
  box.GotFocus.Connect([&] { events.push_back("got"); });
  box.LostFocus.Connect([&] { events.push_back("lost"); });
  window.Show();
  box.UserFocus(true);
  box.UserFocus(true);
  box.UserFocus(false);
  box.UserFocus(false);
  EXPECT_THAT(events, ElementsAre("got", "lost"));
}

TEST_F(UiControl, TheFocusGoesNowhereWhereItCanNotBeSeenOrUsed) {
  Window window;
  ui::Frame frame(&window, "framOne");
  ui::TextBox box(&frame, "txtName");
  box.SetFocus();
  EXPECT_FALSE(box.HasFocus());
  window.Show();
  box.Enabled(false);
  box.SetFocus();
  EXPECT_EQ(toolkit.TakeFocus(box), 0);
  box.Enabled(true);
  frame.Visible(false);
  box.SetFocus();
  EXPECT_EQ(toolkit.TakeFocus(box), 0);
}

TEST(UiControlWithoutScreen, TheFocusLeavesOneControlBeforeItComesToTheNext) {
  ui::HeadlessToolkit toolkit;
  Window window;
  ui::Frame frame(&window, "framOne");
  ui::TextBox first(&frame, "txtFirst");
  ui::TextBox second(&window, "txtSecond");
  window.Show();
  std::vector<std::string> events;
  first.GotFocus.Connect([&] { events.push_back("first got"); });
  first.LostFocus.Connect([&] { events.push_back("first lost"); });
  second.GotFocus.Connect([&] { events.push_back("second got"); });
  first.SetFocus();
  second.SetFocus();
  EXPECT_THAT(events, ElementsAre("first got", "first lost", "second got"));
  EXPECT_FALSE(first.HasFocus());
  EXPECT_TRUE(second.HasFocus());
}

TEST_F(UiControl, TheFocusIsForgottenWithoutAnEventWhenTheWindowGoes) {
  Window window;
  ui::TextBox box(&window, "txtName");
  int lost = 0;
  box.LostFocus.Connect([&] { ++lost; });
  window.Show();
  box.UserFocus(true);
  window.Unload();
  EXPECT_FALSE(box.HasFocus());
  EXPECT_EQ(lost, 0);
}

TEST_F(UiControl, TheFocusIsForgottenWithoutAnEventWhenTheControlGoes) {
  Window window;
  auto box = std::make_unique<ui::TextBox>(&window, "txtName");
  int lost = 0;
  box->LostFocus.Connect([&] { ++lost; });
  window.Show();
  box->UserFocus(true);
  box.reset();
  EXPECT_EQ(lost, 0);
}

TEST_F(UiControl, AFailingFocusHandlerIsTold) {
  Window window;
  ui::TextBox box(&window, "txtName");
  box.GotFocus.Connect([] { throw base::Error(6, "Too big"); });
  window.Show();
  box.UserFocus(true);
  EXPECT_TRUE(box.HasFocus());
  EXPECT_THAT(Messages(), ElementsAre("Too big (6)"));
}

TEST_F(UiControl, PeersAreMadeFromTheWindowDownAndTakenFromBelow) {
  Window window;
  ui::Frame frame(&window, "framOne");
  ui::TextBox box(&frame, "txtName");
  ui::Button button(&window, "cmdOne");
  window.Load();
  EXPECT_THAT(toolkit.peers, ElementsAre("make frmTest", "make framOne", "make txtName", "make cmdOne"));
  toolkit.peers.clear();
  window.AttachPeers();
  EXPECT_THAT(toolkit.peers, IsEmpty());
  window.Unload();
  EXPECT_THAT(toolkit.peers, ElementsAre("take txtName", "take framOne", "take cmdOne", "take frmTest"));
}

TEST_F(UiControl, AControlThatComesLaterGetsItsPeerOnRequest) {
  Window window;
  window.Load();
  ui::Button button(&window, "cmdLate");
  EXPECT_EQ(button.GetPeer(), nullptr);
  button.AttachPeers();
  EXPECT_NE(button.GetPeer(), nullptr);
}

TEST(UiControlWithoutToolkit, IsCompleteWithoutAPeer) {
  ui::Frame frame(nullptr, "framOne");
  frame.AttachPeers();
  EXPECT_EQ(frame.GetPeer(), nullptr);
  frame.BackColor(ui::Rgb(1, 2, 3));
  EXPECT_EQ(frame.BackColor(), 1 + 2 * 256 + 3 * 65536);
}

TEST_F(UiControl, OnlyWhatCanBeUsedIsATabStop) {
  ui::Label label(nullptr, "lblOne");
  ui::Frame frame(nullptr, "framOne");
  Page page(nullptr);
  ui::TextBox box(nullptr, "txtOne");
  EXPECT_FALSE(label.TabStop());
  EXPECT_FALSE(frame.TabStop());
  EXPECT_FALSE(page.TabStop());
  EXPECT_TRUE(box.TabStop());
}

TEST_F(UiControl, APagePassesOnItsBackgroundAsItsOwnColour) {
  Page page(nullptr);
  page.BackgroundColor(ui::Rgb(253, 235, 200));
  EXPECT_EQ(page.BackgroundColor(), ui::Rgb(253, 235, 200));
  EXPECT_EQ(page.BackColor(), ui::Rgb(253, 235, 200));
}

}  // namespace
