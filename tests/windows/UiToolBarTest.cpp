#include "ui/ToolBar.h"

#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>

#include "support/Ui.h"
#include "ui/TextBox.h"
#include "ui/win32/Scale.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ui::Color kCream = ui::Rgb(253, 235, 200);

class UiToolBarTest : public support::UiTest {
 protected:
  UiToolBarTest() {
    form_.BackColor(kCream);
    before_.Move(100, 100, 1500, 330);
    bar_.Move(100, 600, 3000, 420);
    after_.Move(100, 1500, 1500, 330);
    bar_.AddButton("Add", "Add a Profile", ui::ResourcePicture("ADD"));
    bar_.AddButton("Delete", "Delete a Profile", ui::ResourcePicture("DELETE"));
    bar_.AddButton("Edit", "Edit a Profile", ui::ResourcePicture("EDIT"));
    bar_.ButtonClick.Connect([this](const std::string& key) { clicks_.push_back(key); });
    form_.Show();
    RunUntil([this] { return before_.HasFocus(); });
  }

  static HWND WindowOf(const ui::Control& control) {
    return reinterpret_cast<HWND>(control.GetPeer()->Handle());
  }
  HWND Native() const { return WindowOf(bar_); }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(Native(), message, wParam, lParam);
  }
  TBBUTTON ButtonAt(int position) const {
    TBBUTTON button{};
    Send(TB_GETBUTTON, static_cast<WPARAM>(position), reinterpret_cast<LPARAM>(&button));
    return button;
  }
  RECT PlaceOf(int position) const {
    RECT place{};
    Send(TB_GETITEMRECT, static_cast<WPARAM>(position), reinterpret_cast<LPARAM>(&place));
    return place;
  }
  POINT MiddleOf(int position) const {
    const RECT place = PlaceOf(position);
    POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    ClientToScreen(Native(), &middle);
    return middle;
  }
  bool EnabledAt(int position) const {
    return Send(TB_ISBUTTONENABLED, static_cast<WPARAM>(ButtonAt(position).idCommand)) != 0;
  }
  static void Press(const ui::Control& control, WPARAM key) {
    PostMessageA(WindowOf(control), WM_KEYDOWN, key, 1);
    PostMessageA(WindowOf(control), WM_KEYUP, key, 0xC0000001);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  COLORREF PixelAt(LONG x, LONG y) const {
    UpdateWindow(Native());
    const HDC context = GetDC(Native());
    const COLORREF color = GetPixel(context, x, y);
    ReleaseDC(Native(), context);
    return color;
  }

  support::TestForm form_{"frmTest", {}, 6000, 3000};
  ui::TextBox before_{&form_, "txtBefore"};
  ui::ToolBar bar_{&form_, "tbProfiles"};
  ui::TextBox after_{&form_, "txtAfter"};
  std::vector<std::string> clicks_;
};

TEST_F(UiToolBarTest, ShowsItsButtonsWithPictureAndTip) {
  ASSERT_EQ(Send(TB_BUTTONCOUNT), 3);
  EXPECT_EQ(support::ControlNameOf(Native()), "tbProfiles");
  char text[64] = "";
  Send(TB_GETBUTTONTEXTA, static_cast<WPARAM>(ButtonAt(1).idCommand), reinterpret_cast<LPARAM>(text));
  EXPECT_STREQ(text, "Delete a Profile");
  const auto pictures = reinterpret_cast<HIMAGELIST>(Send(TB_GETIMAGELIST));
  ASSERT_EQ(ImageList_GetImageCount(pictures), 3);
  int width = 0;
  int height = 0;
  ImageList_GetIconSize(pictures, &width, &height);
  EXPECT_EQ(width, ui::win32::Scale::OfScreen().Pixels(16 * 15));
  EXPECT_EQ(ButtonAt(2).iBitmap, 2);
  bar_.AddButton("More", "More", nullptr);
  EXPECT_EQ(Send(TB_BUTTONCOUNT), 4);
}

TEST_F(UiToolBarTest, TheButtonsFitIntoTheBarAndShowNoText) {
  const SIZE inner = support::InnerSize(Native());
  const RECT last = PlaceOf(2);
  EXPECT_LE(last.bottom, inner.cy);
  EXPECT_LT(last.right, 4 * inner.cy);
}

TEST_F(UiToolBarTest, AClickOfTheMouseIsOneButtonClick) {
  const POINT place = MiddleOf(1);
  support::ClickAt(place.x, place.y);
  EXPECT_TRUE(RunUntil([this] { return !clicks_.empty(); }));
  RunFor(50);
  EXPECT_THAT(clicks_, ElementsAre("Delete"));
}

TEST_F(UiToolBarTest, AButtonThatIsOffCanNotBePressed) {
  bar_.ButtonEnabled("Delete", false);
  EXPECT_TRUE(EnabledAt(0));
  EXPECT_FALSE(EnabledAt(1));
  const POINT place = MiddleOf(1);
  support::ClickAt(place.x, place.y);
  RunFor(100);
  EXPECT_THAT(clicks_, IsEmpty());
  bar_.ButtonEnabled("Delete", true);
  EXPECT_TRUE(EnabledAt(1));
  bar_.Enabled(false);
  EXPECT_FALSE(EnabledAt(0));
  bar_.Enabled(true);
  EXPECT_TRUE(EnabledAt(0));
}

TEST_F(UiToolBarTest, TheKeyboardReachesEveryButton) {
  Press(before_, VK_TAB);
  ASSERT_TRUE(bar_.HasFocus());
  Press(bar_, VK_SPACE);
  Press(bar_, VK_RIGHT);
  Press(bar_, VK_RETURN);
  Press(bar_, VK_RIGHT);
  Press(bar_, VK_RIGHT);
  Press(bar_, VK_SPACE);
  Press(bar_, VK_HOME);
  Press(bar_, VK_RETURN);
  EXPECT_THAT(clicks_, ElementsAre("Add", "Delete", "Edit", "Add"));
  Press(bar_, VK_TAB);
  EXPECT_TRUE(after_.HasFocus());
}

TEST_F(UiToolBarTest, TheKeyboardSkipsAButtonThatIsOff) {
  bar_.ButtonEnabled("Add", false);
  bar_.ButtonEnabled("Edit", false);
  Press(before_, VK_TAB);
  Press(bar_, VK_SPACE);
  Press(bar_, VK_END);
  Press(bar_, VK_SPACE);
  EXPECT_THAT(clicks_, ElementsAre("Delete", "Delete"));
}

TEST_F(UiToolBarTest, TheButtonThatTheKeyboardHasReachedIsSeen) {
  const auto edge = [this](int position) {
    const RECT place = PlaceOf(position);
    std::vector<COLORREF> colors;
    for (LONG x = place.left; x < place.right; ++x) colors.push_back(PixelAt(x, place.top));
    return colors;
  };
  const auto plain = edge(1);
  Press(before_, VK_TAB);
  Press(bar_, VK_RIGHT);
  EXPECT_NE(edge(1), plain);
  Press(bar_, VK_TAB);
  EXPECT_EQ(edge(1), plain);
}

TEST_F(UiToolBarTest, StandsOnTheGroundOfItsPage) {
  const SIZE inner = support::InnerSize(Native());
  EXPECT_EQ(PixelAt(inner.cx - 3, inner.cy - 3), static_cast<COLORREF>(kCream));
  const RECT first = PlaceOf(0);
  EXPECT_EQ(PixelAt(first.left + 1, first.top + 1), static_cast<COLORREF>(kCream)) << "beside the picture";
}

TEST_F(UiToolBarTest, AHandlerMayUnloadTheWindow) {
  bar_.ButtonClick.Connect([this](const std::string&) { form_.Unload(); });
  const POINT place = MiddleOf(0);
  support::ClickAt(place.x, place.y);
  EXPECT_TRUE(RunUntil([this] { return !form_.IsLoaded(); }));
}

TEST_F(UiToolBarTest, AHandlerOfAKeyMayUnloadTheWindow) {
  bar_.ButtonClick.Connect([this](const std::string&) { form_.Unload(); });
  Press(before_, VK_TAB);
  Press(bar_, VK_SPACE);
  EXPECT_FALSE(form_.IsLoaded());
}

TEST_F(UiToolBarTest, TheTipComesUpUnderTheMouse) {
  const auto tips = reinterpret_cast<HWND>(Send(TB_GETTOOLTIPS));
  ASSERT_NE(tips, nullptr);
  const POINT place = MiddleOf(1);
  SetCursorPos(place.x, place.y);
  EXPECT_TRUE(RunUntil([&] { return IsWindowVisible(tips) != FALSE; }));
  char text[64] = "";
  TTTOOLINFOA tool{};
  tool.cbSize = TTTOOLINFOA_V2_SIZE;
  tool.hwnd = Native();
  tool.uId = static_cast<UINT_PTR>(ButtonAt(1).idCommand);
  tool.lpszText = text;
  SendMessageA(tips, TTM_GETTEXTA, 0, reinterpret_cast<LPARAM>(&tool));
  EXPECT_STREQ(text, "Delete a Profile");
}

}  // namespace
