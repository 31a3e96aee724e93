#include "support/Ui.h"
#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/ComboBox.h"
#include "ui/Frame.h"
#include "ui/Label.h"
#include "ui/ListBox.h"
#include "ui/TextBox.h"
#include "ui/UserControl.h"

namespace {

using support::TestForm;

constexpr ui::Color kCream = ui::Rgb(253, 235, 200);

class UiControlsTest : public support::UiTest {
 protected:
  UiControlsTest() { form_.BackColor(kCream); }

  static HWND Native(const ui::Control& control) {
    return reinterpret_cast<HWND>(control.GetPeer()->Handle());
  }
  static void PressKeyIn(const ui::Control& control, WPARAM key) {
    PostMessageA(Native(control), WM_KEYDOWN, key, 1);
    PostMessageA(Native(control), WM_KEYUP, key, 0xC0000001);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  COLORREF PixelOf(HWND window, int x, int y) {
    RedrawWindow(form_.Window(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    const HDC context = GetDC(window);
    const COLORREF color = GetPixel(context, x, y);
    ReleaseDC(window, context);
    return color;
  }

  TestForm form_{"frmTest", {}, 7500, 6000};
};

TEST_F(UiControlsTest, EveryControlHasItsNameAndAnEightBitNotificationParent) {
  ui::UserControl page(&form_, "ctlPage", 6000, 5000);
  ui::Frame frame(&page, "framMappings");
  ui::TextBox box(&frame, "txtBeginRange(3)");
  form_.Show();
  EXPECT_EQ(support::ControlNameOf(Native(page)), "ctlPage");
  EXPECT_EQ(support::ControlNameOf(Native(frame)), "framMappings");
  EXPECT_EQ(support::ControlNameOf(Native(box)), "txtBeginRange(3)");
  EXPECT_EQ(GetParent(Native(box)), Native(frame));
  EXPECT_EQ(GetParent(Native(frame)), Native(page));
  EXPECT_FALSE(IsWindowUnicode(Native(page)));
  SendMessageA(Native(box), WM_CHAR, 'x', 1);
  EXPECT_EQ(box.Text(), "x") << "what a box tells its frame reaches the box's own control";
}

TEST_F(UiControlsTest, AControlThatIsDestroyedTakesItsWindowAlong) {
  auto label = std::make_unique<ui::Label>(&form_, "lblTest", "text");
  form_.Show();
  const HWND window = Native(*label);
  EXPECT_TRUE(IsWindow(window));
  label.reset();
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(GlobalFindAtomA("lblTest"), 0);
}

TEST_F(UiControlsTest, ALabelThatIsMadeNarrowerIsDrawnAnewAsAWhole) {
  ui::Label middle(&form_, "lblMiddle", "Middle", ui::Alignment::kCenter);
  middle.Move(0, 0, 3000, 300);
  form_.Show();
  RedrawWindow(form_.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  middle.Move(0, 0, 1500, 300);
  RECT stale{};
  EXPECT_TRUE(GetUpdateRect(Native(middle), &stale, FALSE));
  RECT whole{};
  GetClientRect(Native(middle), &whole);
  EXPECT_TRUE(EqualRect(&stale, &whole));
}

TEST_F(UiControlsTest, ALabelShowsItsCaptionAlignmentAndColours) {
  ui::Label left(&form_, "lblLeft", "Left");
  ui::Label right(&form_, "lblRight", "Right", ui::Alignment::kRight);
  ui::Label middle(&form_, "lblMiddle", "Middle", ui::Alignment::kCenter);
  left.Move(0, 0, 3000, 600);
  left.BackColor(ui::Rgb(1, 2, 3));
  form_.Show();
  EXPECT_EQ(GetWindowLongA(Native(right), GWL_STYLE) & SS_TYPEMASK, SS_RIGHT);
  EXPECT_EQ(GetWindowLongA(Native(middle), GWL_STYLE) & SS_TYPEMASK, SS_CENTER);
  left.Caption("Another");
  EXPECT_EQ(support::TextOf(Native(left)), "Another");
  const SIZE inner = support::InnerSize(Native(left));
  EXPECT_EQ(PixelOf(Native(left), inner.cx - 2, inner.cy - 2), static_cast<COLORREF>(RGB(1, 2, 3)));
  left.BackColor(ui::Rgb(4, 5, 6));
  EXPECT_EQ(PixelOf(Native(left), inner.cx - 2, inner.cy - 2), static_cast<COLORREF>(RGB(4, 5, 6)));
  left.Transparent(true);
  EXPECT_EQ(PixelOf(Native(left), inner.cx - 2, inner.cy - 2), static_cast<COLORREF>(kCream));
}

TEST_F(UiControlsTest, AFrameLetsItsGroundShowThroughTransparentControlsAndDrawsItsBorder) {
  ui::Frame plain(&form_, "framPlain");
  ui::Frame bordered(&form_, "framAutoActivate", "Auto", true);
  ui::Label label(&plain, "lblTitle", "");
  plain.Move(0, 0, 3000, 2000);
  bordered.Move(3000, 0, 3000, 2000);
  label.Move(0, 0, 1000, 400);
  label.Transparent(true);
  plain.BackColor(ui::Rgb(7, 8, 9));
  bordered.BackColor(kCream);
  form_.Show();
  EXPECT_EQ(PixelOf(Native(label), 3, 3), static_cast<COLORREF>(RGB(7, 8, 9)));
  plain.BackColor(ui::Rgb(70, 80, 90));
  EXPECT_EQ(PixelOf(Native(label), 3, 3), static_cast<COLORREF>(RGB(70, 80, 90)));
  const SIZE inner = support::InnerSize(Native(bordered));
  EXPECT_EQ(PixelOf(Native(bordered), inner.cx / 2, inner.cy / 2), static_cast<COLORREF>(kCream));
  EXPECT_NE(PixelOf(Native(bordered), inner.cx - 1, inner.cy / 2), static_cast<COLORREF>(kCream));
  EXPECT_EQ(support::TextOf(Native(bordered)), "Auto");
}

TEST_F(UiControlsTest, AButtonIsPressedByMouseBlankAndAccessKey) {
  ui::TextBox box(&form_, "txtBox");
  ui::Button button(&form_, "cmdAccept", "&Accept");
  box.Move(0, 0, 1500, 330);
  button.Move(0, 600, 1500, 500);
  int clicks = 0;
  button.Click.Connect([&] { ++clicks; });
  form_.Show();
  SendMessageA(Native(button), BM_CLICK, 0, 0);
  EXPECT_EQ(clicks, 1);
  button.SetFocus();
  ASSERT_TRUE(RunUntil([&] { return button.HasFocus(); }));
  PressKeyIn(button, VK_SPACE);
  EXPECT_EQ(clicks, 2);
  box.SetFocus();
  PostMessageA(Native(box), WM_SYSCHAR, 'a', 1 << 29);
  EXPECT_TRUE(RunUntil([&] { return clicks == 3; }));
  button.Enabled(false);
  SendMessageA(Native(button), BM_CLICK, 0, 0);
  EXPECT_EQ(clicks, 3);
  button.Caption("Something else");
  EXPECT_EQ(support::TextOf(Native(button)), "Something else");
}

TEST_F(UiControlsTest, EnterPressesTheDefaultButtonAndEscapeTheCancelButtonAlsoOnAPage) {
  ui::UserControl page(&form_, "ctlPage", 6000, 5000);
  ui::TextBox box(&page, "txtBox");
  ui::Button next(&page, "cmdNext", "&Next >");
  ui::Button cancel(&page, "cmdCancel", "&Cancel");
  next.Default(true);
  cancel.Cancel(true);
  std::string pressed;
  next.Click.Connect([&] { pressed += "next "; });
  cancel.Click.Connect([&] { pressed += "cancel "; });
  form_.Show();
  box.SetFocus();
  ASSERT_TRUE(RunUntil([&] { return box.HasFocus(); }));
  PressKeyIn(box, VK_RETURN);
  PressKeyIn(box, VK_ESCAPE);
  EXPECT_EQ(pressed, "next cancel ");
  next.Enabled(false);
  cancel.Visible(false);
  PressKeyIn(box, VK_RETURN);
  PressKeyIn(box, VK_ESCAPE);
  EXPECT_EQ(pressed, "next cancel ");
}

TEST_F(UiControlsTest, TabWalksInTheOrderOfConstructionAndThroughPages) {
  ui::TextBox first(&form_, "txtFirst");
  ui::UserControl page(&form_, "ctlPage", 3000, 3000);
  ui::TextBox second(&page, "txtSecond");
  ui::Label label(&page, "lblBetween", "not a stop");
  ui::CheckBox third(&page, "chkThird", "third");
  ui::TextBox skipped(&page, "txtSkipped");
  skipped.TabStop(false);
  ui::Button last(&form_, "cmdLast", "last");
  form_.Show();
  ASSERT_TRUE(RunUntil([&] { return first.HasFocus(); }));
  PressKeyIn(first, VK_TAB);
  EXPECT_TRUE(second.HasFocus());
  PressKeyIn(second, VK_TAB);
  EXPECT_TRUE(third.HasFocus());
  PressKeyIn(third, VK_TAB);
  EXPECT_TRUE(last.HasFocus());
  PressKeyIn(last, VK_TAB);
  EXPECT_TRUE(first.HasFocus());
}

TEST_F(UiControlsTest, ACheckBoxGoesBothWays) {
  ui::CheckBox box(&form_, "chkEnable", "&Enable");
  box.Move(0, 0, 1500, 330);
  box.Checked(true);
  form_.Show();
  int clicks = 0;
  box.Click.Connect([&] { ++clicks; });
  EXPECT_EQ(SendMessageA(Native(box), BM_GETCHECK, 0, 0), BST_CHECKED);
  SendMessageA(Native(box), BM_CLICK, 0, 0);
  EXPECT_FALSE(box.Checked());
  EXPECT_EQ(clicks, 1);
  box.Checked(true);
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(SendMessageA(Native(box), BM_GETCHECK, 0, 0), BST_CHECKED);
}

TEST_F(UiControlsTest, ACheckBoxMayBeUncheckedByItsOwnClick) {
  ui::CheckBox box(&form_, "chkEnable", "&Enable");
  box.Move(0, 0, 1500, 330);
  form_.Show();
  int ticked = 0;
  box.Click.Connect([&] {
    if (!box.Checked()) return;
    ++ticked;
    box.Checked(false);
  });
  SendMessageA(Native(box), BM_CLICK, 0, 0);
  EXPECT_EQ(ticked, 1);
  EXPECT_FALSE(box.Checked());
  EXPECT_EQ(SendMessageA(Native(box), BM_GETCHECK, 0, 0), BST_UNCHECKED);
}

TEST_F(UiControlsTest, AComboBoxGoesBothWays) {
  ui::ComboBox box(&form_, "cbRouterSelection");
  box.Move(0, 0, 3000, 315);
  box.AddItem("zero");
  form_.Show();
  box.AddItem("two");
  box.AddItem("one", 1);
  box.ListIndex(2);
  int clicks = 0;
  box.Click.Connect([&] { ++clicks; });
  EXPECT_EQ(SendMessageA(Native(box), CB_GETCOUNT, 0, 0), 3);
  EXPECT_EQ(SendMessageA(Native(box), CB_GETCURSEL, 0, 0), 2);
  char text[32] = "";
  SendMessageA(Native(box), CB_GETLBTEXT, 1, reinterpret_cast<LPARAM>(text));
  EXPECT_STREQ(text, "one");
  box.SetFocus();
  PressKeyIn(box, VK_UP);
  EXPECT_EQ(box.ListIndex(), 1);
  EXPECT_EQ(clicks, 1);
  box.Clear();
  EXPECT_EQ(SendMessageA(Native(box), CB_GETCOUNT, 0, 0), 0);
  RECT place;
  GetWindowRect(Native(box), &place);
  EXPECT_LT(place.bottom - place.top, 60) << "the closed box, not its list";
}

TEST_F(UiControlsTest, ChoosingInTheOpenListIsReportedOnceAlsoForTheRowThatIsChosenAlready) {
  ui::ComboBox box(&form_, "cbRouterSelection");
  box.Move(0, 0, 3000, 315);
  for (const char* text : {"zero", "one", "two"}) box.AddItem(text);
  box.ListIndex(1);
  form_.Show();
  box.SetFocus();
  std::vector<std::int32_t> chosen;
  box.Click.Connect([&] { chosen.push_back(box.ListIndex()); });
  const auto choose = [&](int row) {
    SendMessageA(Native(box), CB_SHOWDROPDOWN, TRUE, 0);
    ui::TheInterface().toolkit->ProcessPendingEvents();
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(Native(box), &info);
    RECT place{};
    SendMessageA(info.hwndList, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    ClientToScreen(info.hwndList, &middle);
    support::ClickAt(middle.x, middle.y);
    RunUntil([&] { return SendMessageA(Native(box), CB_GETDROPPEDSTATE, 0, 0) == FALSE; });
    RunFor(50);
  };
  choose(1);
  EXPECT_EQ(chosen, std::vector<std::int32_t>{1});
  choose(2);
  EXPECT_EQ(chosen, (std::vector<std::int32_t>{1, 2}));
  SendMessageA(Native(box), CB_SHOWDROPDOWN, TRUE, 0);
  PressKeyIn(box, VK_ESCAPE);
  RunFor(50);
  EXPECT_EQ(chosen, (std::vector<std::int32_t>{1, 2})) << "leaving the list is no choice";
}

TEST_F(UiControlsTest, AListBoxGoesBothWays) {
  ui::ListBox box(&form_, "lslAvailableClasses");
  box.Move(0, 0, 3000, 2000);
  form_.Show();
  for (const char* text : {"zero", "one", "two"}) box.AddItem(text);
  box.ListIndex(1);
  int clicks = 0;
  int doubles = 0;
  box.Click.Connect([&] { ++clicks; });
  box.DblClick.Connect([&] { ++doubles; });
  EXPECT_EQ(SendMessageA(Native(box), LB_GETCURSEL, 0, 0), 1);
  RECT place;
  SendMessageA(Native(box), LB_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&place));
  const LPARAM where = MAKELPARAM(10, (place.top + place.bottom) / 2);
  SendMessageA(Native(box), WM_LBUTTONDOWN, MK_LBUTTON, where);
  SendMessageA(Native(box), WM_LBUTTONUP, 0, where);
  EXPECT_EQ(box.ListIndex(), 2);
  EXPECT_EQ(clicks, 1);
  SendMessageA(Native(box), WM_LBUTTONDBLCLK, MK_LBUTTON, where);
  SendMessageA(Native(box), WM_LBUTTONUP, 0, where);
  EXPECT_EQ(doubles, 1);
}

TEST_F(UiControlsTest, AHandlerOfAButtonMayUnloadTheWindow) {
  ui::Button button(&form_, "cmdClose", "Close");
  button.Move(0, 0, 1500, 400);
  form_.Show();
  button.Click.Connect([&] { form_.Unload(); });
  SendMessageA(Native(button), BM_CLICK, 0, 0);
  EXPECT_FALSE(form_.IsLoaded());
}

TEST_F(UiControlsTest, AFailureInAHandlerIsToldInOneBoxAndTheProgramGoesOn) {
  ui::Button button(&form_, "cmdFail", "Fail");
  button.Move(0, 0, 1500, 400);
  form_.Show();
  button.Click.Connect([] { throw std::runtime_error("it didn't work"); });
  std::string text;
  {
    const support::Bystander user([&] {
      const HWND box = support::WaitFor([] { return support::FindOwnWindow("#32770", "Harbourline"); });
      for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (support::TextOf(child).find("work") != std::string::npos) text = support::TextOf(child);
      }
      PostMessageA(box, WM_COMMAND, IDOK, 0);
    });
    SendMessageA(Native(button), BM_CLICK, 0, 0);
  }
  EXPECT_EQ(text, "it didn't work");
  EXPECT_TRUE(form_.IsLoaded());
}

}  // namespace
