#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include "support/Ui.h"
#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Frame.h"
#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/TextBox.h"
#include "ui/UserControl.h"

namespace {

constexpr ui::Color kCream = ui::Rgb(253, 235, 200);
constexpr ui::Color kOther = ui::Rgb(10, 200, 30);

/// What lies behind and around the text of controls.
class UiGroundTest : public support::UiTest {
 protected:
  UiGroundTest() {
    page_.Move(0, 0, 6000, 4000);
    page_.BackColor(kCream);
    label_.Move(100, 100, 2000, 330);
    check_.Move(100, 500, 2000, 330);
    field_.Move(100, 900, 2000, 330);
    button_.Move(100, 1300, 2000, 420);
    inner_.Move(100, 1800, 3000, 1500);
    below_.Move(100, 400, 1000, 330);
    form_.Show();
  }

  static HWND Native(const ui::Control& control) {
    return reinterpret_cast<HWND>(control.GetPeer()->Handle());
  }
  COLORREF PixelOf(const ui::Control& control, LONG x, LONG y) const {
    RedrawWindow(form_.Window(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    const HDC context = GetDC(Native(control));
    const COLORREF color = GetPixel(context, x, y);
    ReleaseDC(Native(control), context);
    return color;
  }
  /// A pixel near the right end, where neither text nor border stands.
  COLORREF EndOf(const ui::Control& control) const {
    const SIZE inner = support::InnerSize(Native(control));
    return PixelOf(control, inner.cx - 4, inner.cy - 4);
  }

  support::TestForm form_{"frmTest", {}, 6000, 4000};
  ui::UserControl page_{&form_, "ctlPage", 6000, 4000};
  ui::Label label_{&page_, "lblTest", "Text"};
  ui::CheckBox check_{&page_, "chkTest", "Text"};
  ui::TextBox field_{&page_, "txtTest"};
  ui::Button button_{&page_, "cmdTest", "Text"};
  ui::Frame inner_{&page_, "framTest", "Mappings", true};
  ui::Label below_{&inner_, "lblBelow", ""};
};

TEST_F(UiGroundTest, WhatHasNoColourOfItsOwnShowsThePage) {
  EXPECT_EQ(EndOf(label_), static_cast<COLORREF>(kCream));
  EXPECT_EQ(EndOf(check_), static_cast<COLORREF>(kCream));
  EXPECT_EQ(EndOf(inner_), static_cast<COLORREF>(kCream));
  EXPECT_EQ(EndOf(below_), static_cast<COLORREF>(kCream)) << "through the frame";
  EXPECT_EQ(EndOf(field_), GetSysColor(COLOR_WINDOW)) << "a field is a paper of its own";
}

TEST_F(UiGroundTest, AColourOfItsOwnIsShown) {
  for (ui::Control* control : std::initializer_list<ui::Control*>{&label_, &check_, &field_, &inner_}) {
    control->BackColor(kOther);
    EXPECT_EQ(EndOf(*control), static_cast<COLORREF>(kOther)) << control->Name();
  }
  EXPECT_EQ(EndOf(below_), static_cast<COLORREF>(kOther));
}

TEST_F(UiGroundTest, AFieldThatIsOffOrLockedKeepsItsColour) {
  field_.BackColor(kCream);
  field_.Enabled(false);
  EXPECT_EQ(EndOf(field_), static_cast<COLORREF>(kCream));
  field_.Enabled(true);
  field_.Locked(true);
  EXPECT_EQ(EndOf(field_), static_cast<COLORREF>(kCream));
}

TEST_F(UiGroundTest, ThereIsNoGreyAroundTheCaptionOfAFrameAndTheCornersOfAButton) {
  const SIZE inner = support::InnerSize(Native(inner_));
  EXPECT_EQ(PixelOf(inner_, inner.cx - 1, 0), static_cast<COLORREF>(kCream)) << "beside the caption";
  const HDC context = GetDC(Native(button_));
  SendMessageA(Native(page_), WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(context),
               reinterpret_cast<LPARAM>(Native(button_)));
  EXPECT_EQ(GetBkColor(context), static_cast<COLORREF>(kCream));
  ReleaseDC(Native(button_), context);
}

TEST_F(UiGroundTest, WhatChangesItsColourIsDrawnAnewWithAllThatStandsOnIt) {
  RedrawWindow(form_.Window(), nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  page_.BackColor(kOther);
  EXPECT_TRUE(GetUpdateRect(Native(below_), nullptr, FALSE));
  page_.BackColor(ui::kDefaultColor);
  RedrawWindow(form_.Window(), nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  form_.BackColor(kCream);
  EXPECT_TRUE(GetUpdateRect(Native(below_), nullptr, FALSE));
  EXPECT_EQ(EndOf(below_), static_cast<COLORREF>(kCream));
}

TEST_F(UiGroundTest, NothingIsErasedUnderControlsAndListsAreDrawnInOneGo) {
  for (const HWND window : {form_.Window(), Native(page_), Native(inner_)}) {
    EXPECT_NE(GetWindowLongA(window, GWL_STYLE) & WS_CLIPCHILDREN, 0);
  }
  ui::ListView list(&page_, "lvTest");
  list.AttachPeers();
  EXPECT_NE(SendMessageA(Native(list), LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0) & LVS_EX_DOUBLEBUFFER, 0);
}

}  // namespace
