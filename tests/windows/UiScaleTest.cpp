#include "ui/win32/Scale.h"

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>
#include <richedit.h>

#include "support/Ui.h"
#include "ui/Button.h"
#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/RichTextBox.h"
#include "ui/ToolBar.h"
#include "ui/UserControl.h"

namespace {

using ui::win32::Scale;

/// A window that comes to a monitor of twice the scale.
class UiScaleTest : public support::UiTest {
 protected:
  UiScaleTest() {
    page_.Move(100, 200, 6000, 4000);
    label_.Move(150, 300, 1500, 330);
    button_.Move(150, 700, 1500, 700);
    button_.Picture(ui::ResourcePicture("ACCEPT"));
    bar_.Move(150, 1500, 1500, 420);
    bar_.AddButton("Add", "Add", ui::ResourcePicture("ADD"));
    list_.Move(150, 2000, 3000, 1000);
    list_.AddColumn("Name", "Name", 1200);
    form_.Show();
    RunFor(20);
  }

  static HWND Native(const ui::Control& control) {
    return reinterpret_cast<HWND>(control.GetPeer()->Handle());
  }
  void ComeTo(Scale scale) {
    RECT suggested{40, 50, 1000, 900};
    const auto dots = static_cast<WORD>(scale.DotsPerInch());
    SendMessageA(form_.Window(), WM_DPICHANGED, MAKEWPARAM(dots, dots), reinterpret_cast<LPARAM>(&suggested));
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  /// In the inner area of what the control stands on.
  static RECT PlaceOf(const ui::Control& control) {
    RECT place{};
    GetWindowRect(Native(control), &place);
    MapWindowPoints(nullptr, GetParent(Native(control)), reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
  static LONG FontHeightOf(const ui::Control& control) {
    LOGFONTA font{};
    GetObjectA(reinterpret_cast<HFONT>(SendMessageA(Native(control), WM_GETFONT, 0, 0)), sizeof font, &font);
    return font.lfHeight;
  }
  LONG ButtonPictureSide() const {
    ICONINFO info{};
    GetIconInfo(reinterpret_cast<HICON>(SendMessageA(Native(button_), BM_GETIMAGE, IMAGE_ICON, 0)), &info);
    BITMAP bitmap{};
    GetObjectA(info.hbmColor, sizeof bitmap, &bitmap);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    return bitmap.bmWidth;
  }
  LONG BarPictureSide() const {
    int width = 0;
    int height = 0;
    const auto list = reinterpret_cast<HIMAGELIST>(SendMessageA(Native(bar_), TB_GETIMAGELIST, 0, 0));
    ImageList_GetIconSize(list, &width, &height);
    return width;
  }

  const Scale before_ = Scale::OfScreen();
  const Scale twice_{before_.DotsPerInch() * 2};
  support::TestForm form_{"frmTest", {}, 6600, 4500};
  ui::UserControl page_{&form_, "ctlPage", 6000, 4000};
  ui::Label label_{&page_, "lblTest", "Text"};
  ui::Button button_{&page_, "cmdTest", "&Accept"};
  ui::ToolBar bar_{&page_, "tbTest"};
  ui::ListView list_{&page_, "lvTest"};
  ui::RichTextBox text_{&page_, "rtTest"};
};

TEST_F(UiScaleTest, TheWindowKeepsItsLengthsAndNobodyIsToldOfANewSize) {
  form_.resizes = 0;
  ComeTo(twice_);
  EXPECT_EQ(support::InnerSize(form_.Window()).cx, twice_.Pixels(6600));
  EXPECT_EQ(support::InnerSize(form_.Window()).cy, twice_.Pixels(4500));
  EXPECT_EQ(form_.Width(), 6600);
  EXPECT_EQ(form_.Height(), 4500);
  EXPECT_EQ(form_.resizes, 0);
  RECT outer{};
  GetWindowRect(form_.Window(), &outer);
  EXPECT_EQ(outer.left, 40);
  EXPECT_EQ(outer.top, 50);
}

TEST_F(UiScaleTest, ControlsFontsAndPicturesFollow) {
  const LONG font = FontHeightOf(label_);
  ComeTo(twice_);
  for (const ui::Control* control : std::initializer_list<const ui::Control*>{&page_, &label_, &button_}) {
    const RECT wanted = twice_.Pixels(control->GetBounds());
    const RECT place = PlaceOf(*control);
    EXPECT_TRUE(EqualRect(&place, &wanted)) << control->Name();
  }
  EXPECT_NEAR(FontHeightOf(label_), 2 * font, 1);
  EXPECT_EQ(ButtonPictureSide(), twice_.Pixels(32 * 15));
  EXPECT_EQ(BarPictureSide(), twice_.Pixels(16 * 15));
  EXPECT_EQ(SendMessageA(Native(list_), LVM_GETCOLUMNWIDTH, 0, 0), twice_.Pixels(1200));
  EXPECT_EQ(list_.Columns()[0].width, 1200);
  WPARAM numerator = 0;
  LPARAM denominator = 0;
  SendMessageA(Native(text_), EM_GETZOOM, reinterpret_cast<WPARAM>(&numerator),
               reinterpret_cast<LPARAM>(&denominator));
  EXPECT_EQ(numerator, 2 * static_cast<WPARAM>(denominator));
}

TEST_F(UiScaleTest, WhatIsDoneOnTheNewMonitorIsInItsScale) {
  ComeTo(twice_);
  label_.Move(300, 600, 1500, 330);
  EXPECT_EQ(PlaceOf(label_).left, twice_.Pixels(300));
  form_.Move(form_.Left(), form_.Top(), 6900, 4500);
  EXPECT_EQ(support::InnerSize(form_.Window()).cx, twice_.Pixels(6900));
  RECT outer{};
  GetWindowRect(form_.Window(), &outer);
  SetWindowPos(form_.Window(), nullptr, 0, 0, outer.right - outer.left - 100, outer.bottom - outer.top,
               SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_EQ(form_.Width(), twice_.ToTwips(twice_.Pixels(6900) - 100));
}

TEST_F(UiScaleTest, TheWayBackGivesTheSizesFromBefore) {
  const RECT place = PlaceOf(button_);
  const LONG font = FontHeightOf(label_);
  const LONG picture = ButtonPictureSide();
  ComeTo(twice_);
  ComeTo(before_);
  const RECT again = PlaceOf(button_);
  EXPECT_TRUE(EqualRect(&again, &place));
  EXPECT_EQ(FontHeightOf(label_), font);
  EXPECT_EQ(ButtonPictureSide(), picture);
  EXPECT_EQ(support::InnerSize(form_.Window()).cx, before_.Pixels(6600));
}

}  // namespace
