#include "ui/TextBox.h"

#include "support/Ui.h"
#include "ui/Button.h"

namespace {

using support::TestForm;

class UiTextBoxTest : public support::UiTest {
 protected:
  UiTextBoxTest() {
    box_.Move(100, 100, 3000, 330);
    long_.Move(100, 600, 3000, 1200);
    box_.Change.Connect([this] { ++changes_; });
    form_.Show();
    box_.SetFocus();
    RunUntil([this] { return box_.HasFocus(); });
  }

  static HWND WindowOf(const ui::Control& control) {
    return reinterpret_cast<HWND>(control.GetPeer()->Handle());
  }
  HWND Native() const { return WindowOf(box_); }

  void Type(const std::string& text) {
    for (const char c : text) PostMessageA(Native(), WM_CHAR, static_cast<unsigned char>(c), 1);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  static std::pair<DWORD, DWORD> NativeSelection(HWND window) {
    DWORD begin = 0;
    DWORD end = 0;
    SendMessageA(window, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
    return {begin, end};
  }
  static COLORREF GroundOf(HWND window) {
    RECT inner;
    GetClientRect(window, &inner);
    UpdateWindow(window);
    const HDC context = GetDC(window);
    const COLORREF color = GetPixel(context, inner.right - 5, inner.bottom / 2);
    ReleaseDC(window, context);
    return color;
  }

  TestForm form_;
  ui::TextBox box_{&form_, "txtName"};
  ui::TextBox long_{&form_, "txtError", {.multiLine = true, .verticalScrollBar = true}};
  int changes_ = 0;
};

TEST_F(UiTextBoxTest, HasTheControlsNameTextAndPlace) {
  EXPECT_EQ(support::ControlNameOf(Native()), "txtName");
  RECT place;
  GetWindowRect(Native(), &place);
  MapWindowPoints(nullptr, form_.Window(), reinterpret_cast<POINT*>(&place), 2);
  const float scale = 1 / ui::TheInterface().screen->TwipsPerPixelX();
  EXPECT_NEAR(static_cast<float>(place.left), 100 * scale, 0.6);
  EXPECT_NEAR(static_cast<float>(place.right), 3100 * scale, 0.6);
  EXPECT_NEAR(static_cast<float>(place.bottom), 430 * scale, 0.6);
}

TEST_F(UiTextBoxTest, ABoxWithoutBorderLooksLikePlainText) {
  ui::TextBox plain(&form_, "txtPlain", {.border = false});
  plain.Move(100, 2000, 3000, 330);
  plain.BackColor(ui::Rgb(1, 2, 3));
  plain.Locked(true);
  form_.Unload();
  form_.Show();
  const auto edges = [](HWND window) {
    return GetWindowLongA(window, GWL_EXSTYLE) & (WS_EX_CLIENTEDGE | WS_EX_STATICEDGE);
  };
  EXPECT_EQ(edges(WindowOf(plain)), 0);
  EXPECT_EQ(GetWindowLongA(WindowOf(plain), GWL_STYLE) & WS_BORDER, 0);
  EXPECT_NE(edges(Native()), 0);
  EXPECT_EQ(GroundOf(WindowOf(plain)), RGB(1, 2, 3));
}

TEST_F(UiTextBoxTest, CodeWritesTheNativeTextAndRaisesOneChange) {
  box_.Text("from code");
  EXPECT_EQ(support::TextOf(Native()), "from code");
  EXPECT_EQ(changes_, 1);
}

TEST_F(UiTextBoxTest, TheUserWritesTheControlsTextAndRaisesAChangeEachTime) {
  Type("abc");
  EXPECT_EQ(box_.Text(), "abc");
  EXPECT_EQ(changes_, 3);
  Type("\b");
  EXPECT_EQ(box_.Text(), "ab");
}

TEST_F(UiTextBoxTest, KeepsCharactersBeyondAscii) {
  box_.Text("Z\xFCrich");
  EXPECT_EQ(support::TextOf(Native()), "Z\xFCrich");
  PostMessageA(Native(), EM_SETSEL, 6, 6);
  Type("\xE9");
  EXPECT_EQ(box_.Text(), "Z\xFCrich\xE9");
}

TEST_F(UiTextBoxTest, AHandlerMayPutAnotherTextInPlaceOfTheTypedOne) {
  box_.Change.Connect([this] {
    if (box_.Text() == "x") box_.Text("replaced");
  });
  Type("x");
  EXPECT_EQ(box_.Text(), "replaced");
  EXPECT_EQ(support::TextOf(Native()), "replaced");
}

TEST_F(UiTextBoxTest, TakesLongTexts) {
  const std::string text(100'000, 'x');
  box_.Text(text);
  EXPECT_EQ(support::TextOf(Native()), text);
  PostMessageA(Native(), EM_SETSEL, 100'000, 100'000);
  Type("y");
  EXPECT_EQ(box_.Text(), text + "y");
}

TEST_F(UiTextBoxTest, ALockedBoxCannotBeTypedIn) {
  box_.Text("fixed");
  box_.Locked(true);
  Type("x");
  EXPECT_EQ(box_.Text(), "fixed");
  EXPECT_EQ(support::TextOf(Native()), "fixed");
  box_.Locked(false);
  Type("x");
  EXPECT_EQ(box_.Text(), "xfixed");
}

TEST_F(UiTextBoxTest, TheSelectionGoesBothWays) {
  box_.Text("0123456789");
  box_.SelStart(2);
  box_.SelLength(3);
  EXPECT_EQ(NativeSelection(Native()), (std::pair<DWORD, DWORD>(2, 5)));
  PostMessageA(Native(), WM_KEYDOWN, VK_END, 1);
  ui::TheInterface().toolkit->ProcessPendingEvents();
  EXPECT_EQ(box_.SelStart(), 10);
  EXPECT_EQ(box_.SelLength(), 0);
  SendMessageA(Native(), EM_SETSEL, 1, 4);
  EXPECT_EQ(box_.SelStart(), 1);
  EXPECT_EQ(box_.SelLength(), 3);
  Type("x");
  EXPECT_EQ(box_.Text(), "0x456789");
  EXPECT_EQ(box_.SelStart(), 2);
}

TEST_F(UiTextBoxTest, ABoxMaySelectItsWholeTextWhenItGetsTheFocus) {
  box_.Text("all of it");
  long_.SetFocus();
  box_.GotFocus.Connect([this] {
    box_.SelStart(0);
    box_.SelLength(static_cast<std::int32_t>(box_.Text().size()));
  });
  box_.SetFocus();
  ASSERT_TRUE(RunUntil([this] { return box_.HasFocus(); }));
  EXPECT_EQ(NativeSelection(Native()), (std::pair<DWORD, DWORD>(0, 9)));
}

TEST_F(UiTextBoxTest, TheColoursAreTheControls) {
  box_.BackColor(ui::Rgb(253, 235, 200));
  box_.ForeColor(ui::Rgb(0, 0, 128));
  EXPECT_EQ(GroundOf(Native()), static_cast<COLORREF>(RGB(253, 235, 200)));
  box_.Locked(true);
  EXPECT_EQ(GroundOf(Native()), static_cast<COLORREF>(RGB(253, 235, 200)));
  const HDC context = GetDC(Native());
  SendMessageA(form_.Window(), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(context),
               reinterpret_cast<LPARAM>(Native()));
  EXPECT_EQ(GetTextColor(context), static_cast<COLORREF>(RGB(0, 0, 128)));
  ReleaseDC(Native(), context);
}

TEST_F(UiTextBoxTest, SeveralLinesHaveAScrollBar) {
  const auto style = GetWindowLongA(WindowOf(long_), GWL_STYLE);
  EXPECT_NE(style & WS_VSCROLL, 0);
  EXPECT_NE(style & ES_MULTILINE, 0);
  long_.Text("one\r\ntwo\r\nthree");
  EXPECT_EQ(SendMessageA(WindowOf(long_), EM_GETLINECOUNT, 0, 0), 3);
}

TEST_F(UiTextBoxTest, TabLeavesABoxOfSeveralLinesAndEscapePressesTheCancelButton) {
  ui::Button cancel(&form_, "cmdCancel", "&Cancel");
  cancel.Cancel(true);
  cancel.Move(100, 2000, 1000, 400);
  cancel.AttachPeers();
  int cancelled = 0;
  cancel.Click.Connect([&] { ++cancelled; });
  long_.SetFocus();
  ASSERT_TRUE(RunUntil([this] { return long_.HasFocus(); }));
  PostMessageA(WindowOf(long_), WM_KEYDOWN, VK_ESCAPE, 1);
  EXPECT_TRUE(RunUntil([&] { return cancelled == 1; }));
  PostMessageA(WindowOf(long_), WM_KEYDOWN, VK_TAB, 1);
  EXPECT_TRUE(RunUntil([&] { return cancel.HasFocus(); }));
  EXPECT_EQ(long_.Text(), "");
}

TEST_F(UiTextBoxTest, AHandlerMayUnloadTheWindowWhileTheUserTypes) {
  box_.Change.Connect([this] { form_.Unload(); });
  Type("x");
  EXPECT_FALSE(form_.IsLoaded());
}

TEST_F(UiTextBoxTest, ABoxThatIsLoadedAgainShowsWhatItHolds) {
  Type("kept");
  form_.Unload();
  form_.Show();
  EXPECT_EQ(support::TextOf(Native()), "kept");
}

TEST_F(UiTextBoxTest, VisibleAndEnabledFollow) {
  box_.Visible(false);
  EXPECT_FALSE(IsWindowVisible(Native()));
  box_.Visible(true);
  EXPECT_TRUE(IsWindowVisible(Native()));
  box_.Enabled(false);
  EXPECT_FALSE(IsWindowEnabled(Native()));
}

}  // namespace
