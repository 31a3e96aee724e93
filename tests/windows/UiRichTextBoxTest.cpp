#include "ui/RichTextBox.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <richedit.h>

#include <filesystem>
#include <fstream>

#include "support/Role.h"
#include "support/Ui.h"
#include "ui/Button.h"
#include "ui/modControlHelper.h"

namespace {

constexpr ui::Color kCream = ui::Rgb(253, 235, 200);
constexpr ui::Color kNavy = ui::Rgb(0, 0, 128);

class UiRichTextBoxTest : public support::UiTest {
 protected:
  UiRichTextBoxTest() {
    box_.Move(100, 100, 4000, 1500);
    next_.Move(100, 2000, 1500, 420);
    form_.Show();
  }

  HWND Native() const { return reinterpret_cast<HWND>(box_.GetPeer()->Handle()); }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(Native(), message, wParam, lParam);
  }
  CHARFORMAT2A FormatAt(LONG place) const {
    CHARRANGE before{};
    Send(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&before));
    CHARRANGE range{place, place + 1};
    Send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
    CHARFORMAT2A format{};
    format.cbSize = sizeof format;
    Send(EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
    Send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&before));
    return format;
  }
  bool BoldAt(LONG place) const { return (FormatAt(place).dwEffects & CFE_BOLD) != 0; }
  LONG TopLine() const { return static_cast<LONG>(Send(EM_GETFIRSTVISIBLELINE)); }
  COLORREF PixelNearTheEnd() const {
    UpdateWindow(Native());
    const SIZE inner = support::InnerSize(Native());
    const HDC context = GetDC(Native());
    const COLORREF color = GetPixel(context, inner.cx - 3, inner.cy - 3);
    ReleaseDC(Native(), context);
    return color;
  }
  void Press(WPARAM key) const {
    PostMessageA(Native(), WM_KEYDOWN, key, 1);
    PostMessageA(Native(), WM_KEYUP, key, 0xC0000001);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  void AddLines(int count) {
    for (int i = 0; i < count; ++i) modControlHelper::AddRichText(box_, "A line\r\n", false, ui::kBlack);
  }

  support::TestForm form_{"frmTest", {}, 6000, 3000};
  ui::RichTextBox box_{&form_, "rtTest"};
  ui::Button next_{&form_, "cmdNext", "&Next"};
};

TEST_F(UiRichTextBoxTest, IsARichEditThatCanNotBeTypedIn) {
  char name[64] = "";
  GetClassNameA(Native(), name, sizeof name);
  EXPECT_STRCASEEQ(name, "RICHEDIT50W");
  EXPECT_EQ(support::ControlNameOf(Native()), "rtTest");
  modControlHelper::AddRichText(box_, "fixed", false, ui::kBlack);
  Send(WM_CHAR, 'x', 1);
  EXPECT_EQ(support::TextOf(Native()), "fixed");
  EXPECT_EQ(box_.Text(), "fixed");
}

TEST_F(UiRichTextBoxTest, RunsHaveTheirColourWeightAndTheControlsFont) {
  box_.Font({"MS Sans Serif", 9.75, false});
  modControlHelper::AddRichText(box_, "Bold", true, ui::kBlack);
  modControlHelper::AddRichText(box_, " navy", false, kNavy);
  EXPECT_EQ(support::TextOf(Native()), "Bold navy");
  EXPECT_TRUE(BoldAt(0));
  EXPECT_TRUE(BoldAt(3));
  EXPECT_FALSE(BoldAt(5));
  EXPECT_EQ(FormatAt(1).crTextColor, static_cast<COLORREF>(ui::kBlack));
  EXPECT_EQ(FormatAt(6).crTextColor, static_cast<COLORREF>(kNavy));
  EXPECT_EQ(FormatAt(1).yHeight, 195) << "9.75 points in twips";
  box_.Font({"MS Sans Serif", 12, false});
  EXPECT_EQ(FormatAt(1).yHeight, 240);
  EXPECT_TRUE(BoldAt(1)) << "a font leaves the runs' weight";
}

TEST_F(UiRichTextBoxTest, WhatIsAddedInTheMiddleIsShownThere) {
  box_.Text("ac");
  EXPECT_EQ(support::TextOf(Native()), "ac");
  box_.SelStart(1);
  box_.SelText("b");
  EXPECT_EQ(support::TextOf(Native()), "abc");
  box_.Text("");
  EXPECT_EQ(support::TextOf(Native()), "");
}

TEST_F(UiRichTextBoxTest, KeepsLineEndsTabsAndCharactersBeyondAscii) {
  modControlHelper::AddRichText(box_, "Z\xFCrich\x85\r\n\tnext", false, ui::kBlack);
  EXPECT_EQ(support::TextOf(Native()), "Z\xFCrich\x85\r\n\tnext");
  EXPECT_EQ(Send(EM_GETLINECOUNT), 2);
}

TEST_F(UiRichTextBoxTest, TakesLongTexts) {
  std::string text;
  while (text.size() < 70'000) text += "A line of a text that goes on and on, and ends far beyond 64 kB\r\n";
  modControlHelper::AddRichText(box_, text, false, ui::kBlack);
  modControlHelper::AddRichText(box_, "y", false, ui::kBlack);
  EXPECT_EQ(support::TextOf(Native()), text + "y");
}

TEST_F(UiRichTextBoxTest, ALongTextStartsAtItsTopAndHasAScrollBar) {
  AddLines(100);
  RunFor(20);
  EXPECT_EQ(TopLine(), 0);
  EXPECT_NE(GetWindowLongA(Native(), GWL_STYLE) & WS_VSCROLL, 0);
  Send(WM_VSCROLL, SB_BOTTOM);
  EXPECT_GT(TopLine(), 50);
}

TEST_F(UiRichTextBoxTest, AddingLeavesWhatIsBeingReadUnlessThatIsTheEnd) {
  AddLines(100);
  RunFor(20);
  Send(WM_VSCROLL, SB_LINEDOWN);
  Send(WM_VSCROLL, SB_LINEDOWN);
  const LONG reading = TopLine();
  ASSERT_GT(reading, 0);
  AddLines(1);
  RunFor(20);
  EXPECT_EQ(TopLine(), reading);
  Send(WM_VSCROLL, SB_BOTTOM);
  const LONG end = TopLine();
  AddLines(20);
  RunFor(20);
  EXPECT_GE(TopLine(), end + 19);
}

TEST_F(UiRichTextBoxTest, AddingLeavesTheUsersSelection) {
  box_.Text("0123456789");
  CHARRANGE range{2, 5};
  Send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
  modControlHelper::AddRichText(box_, "more", false, ui::kBlack);
  range = {};
  Send(EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&range));
  EXPECT_EQ(range.cpMin, 2);
  EXPECT_EQ(range.cpMax, 5);
}

TEST_F(UiRichTextBoxTest, TheUsersPlaceIsReportedInCharactersOfTheText) {
  modControlHelper::AddRichText(box_, "ab\r\ncd", false, ui::kBlack);
  box_.SetFocus();
  ASSERT_TRUE(RunUntil([this] { return box_.HasFocus(); }));
  EXPECT_EQ(box_.SelStart(), 6) << "as the code left it";
  Press(VK_DOWN);
  EXPECT_EQ(box_.SelStart(), 4) << "a line end counts as two";
  Press(VK_RIGHT);
  EXPECT_EQ(box_.SelStart(), 5);
}

TEST_F(UiRichTextBoxTest, ShowsADocument) {
  const support::TemporaryFolder folder;
  const std::filesystem::path path = std::filesystem::path(folder.Path()) / "License.rtf";
  std::ofstream(path, std::ios::binary)
      << R"({\rtf1\ansi{\fonttbl{\f0 Arial;}}\f0\fs40 Large {\b bold}\par End})";
  box_.LoadFile(path.string());
  EXPECT_EQ(support::TextOf(Native()), "Large bold\r\nEnd");
  EXPECT_FALSE(BoldAt(2));
  EXPECT_TRUE(BoldAt(7));
  EXPECT_EQ(FormatAt(2).yHeight, 400);
  box_.Text("plain");
  EXPECT_EQ(support::TextOf(Native()), "plain");
  EXPECT_NE(FormatAt(2).yHeight, 400);
}

TEST_F(UiRichTextBoxTest, HasTheControlsGroundAndAnEdgeOnlyOnAnotherOne) {
  EXPECT_EQ(PixelNearTheEnd(), GetSysColor(COLOR_WINDOW));
  EXPECT_NE(GetWindowLongA(Native(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE, 0);
  form_.BackColor(kCream);
  box_.BackColor(kCream);
  EXPECT_EQ(PixelNearTheEnd(), static_cast<COLORREF>(kCream));
  EXPECT_EQ(GetWindowLongA(Native(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE, 0);
  box_.BackColor(ui::kWhite);
  EXPECT_NE(GetWindowLongA(Native(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE, 0);
}

TEST_F(UiRichTextBoxTest, TabEnterAndEscapeAreTheWindows) {
  int presses = 0;
  next_.Default(true);
  next_.Cancel(true);
  next_.Click.Connect([&] { ++presses; });
  box_.Text("text");
  box_.SetFocus();
  ASSERT_TRUE(RunUntil([this] { return box_.HasFocus(); }));
  Press(VK_RETURN);
  EXPECT_EQ(presses, 1);
  Press(VK_ESCAPE);
  EXPECT_EQ(presses, 2);
  Press(VK_TAB);
  EXPECT_TRUE(next_.HasFocus());
}

TEST_F(UiRichTextBoxTest, AHiddenBoxStaysHiddenWhenItIsWrittenTo) {
  box_.Visible(false);
  box_.Text("not yet");
  EXPECT_EQ(support::TextOf(Native()), "not yet");
  EXPECT_FALSE(IsWindowVisible(Native()));
  box_.Visible(true);
  EXPECT_TRUE(IsWindowVisible(Native()));
}

TEST_F(UiRichTextBoxTest, ABoxThatIsLoadedAgainShowsWhatItHolds) {
  modControlHelper::AddRichText(box_, "kept", true, kNavy);
  form_.Unload();
  form_.Show();
  EXPECT_EQ(support::TextOf(Native()), "kept");
  EXPECT_TRUE(BoldAt(1));
}

}  // namespace
