#include "ui/Form.h"

#include "support/Ui.h"
#include "ui/Frame.h"
#include "ui/TextBox.h"
#include "ui/win32/Win32Screen.h"

namespace {

using support::ControlNameOf;
using support::InnerSize;
using support::TestForm;

class UiFormTest : public support::UiTest {
 protected:
  static LONG Pixels(ui::Twips twips) { return ui::win32::Scale::OfScreen().Pixels(twips); }
};

TEST_F(UiFormTest, ALoadedFormHasAHiddenWindowOfAnEightBitClassWithItsNameAndCaption) {
  TestForm form;
  EXPECT_EQ(form.Handle(), 0u);
  form.Load();
  ASSERT_NE(form.Window(), nullptr);
  EXPECT_FALSE(IsWindowVisible(form.Window()));
  EXPECT_FALSE(IsWindowUnicode(form.Window()));
  EXPECT_EQ(ControlNameOf(form.Window()), "frmTest");
  EXPECT_EQ(support::TextOf(form.Window()), "A test");
  char name[64];
  GetClassNameA(form.Window(), name, sizeof name);
  EXPECT_STREQ(name, "HarbourlineWindow");
}

TEST_F(UiFormTest, AWindowWithoutAnIconOfItsOwnHasTheProgramsFirstPicture) {
  TestForm form;
  form.Load();
  ICONINFO icon{};
  ASSERT_TRUE(GetIconInfo(reinterpret_cast<HICON>(GetClassLongPtrA(form.Window(), GCLP_HICONSM)), &icon));
  DeleteObject(icon.hbmMask);
  DeleteObject(icon.hbmColor);
  EXPECT_NE(GetClassLongPtrA(form.Window(), GCLP_HICON), 0u);
}

TEST_F(UiFormTest, TheNameGoesWithTheWindow) {
  TestForm form("frmNobodyElseIsCalledLikeThis");
  form.Load();
  EXPECT_NE(GlobalFindAtomA("frmNobodyElseIsCalledLikeThis"), 0);
  const HWND window = form.Window();
  form.Unload();
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(form.Handle(), 0u);
  EXPECT_EQ(GlobalFindAtomA("frmNobodyElseIsCalledLikeThis"), 0);
}

TEST_F(UiFormTest, TheInnerAreaHasTheDesignSizeAndStandsInTheMiddleOfTheScreen) {
  TestForm form("frmTest", {}, 4800, 3000);
  form.Show();
  const SIZE inner = InnerSize(form.Window());
  EXPECT_EQ(inner.cx, Pixels(4800));
  EXPECT_EQ(inner.cy, Pixels(3000));
  RECT outer;
  GetWindowRect(form.Window(), &outer);
  RECT work;
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  EXPECT_NEAR(outer.left - work.left, work.right - outer.right, 1);
  EXPECT_NEAR(outer.top - work.top, work.bottom - outer.bottom, 1);
  EXPECT_EQ(form.resizes, 1) << "the size is what the form had from the start, told once when it was loaded";
}

TEST_F(UiFormTest, AWindowCentredOnItsOwnerStandsOverItAndBelongsToIt) {
  TestForm owner("frmOwner", {}, 7500, 6000);
  owner.Show();
  SetWindowPos(owner.Window(), nullptr, 300, 200, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  ui::Form::Style style;
  style.centreOnScreen = false;
  style.centreOnOwner = true;
  TestForm owned("frmOwned", style, 3000, 1500);
  owned.Show(&owner);
  EXPECT_EQ(GetWindow(owned.Window(), GW_OWNER), owner.Window());
  RECT outer;
  GetWindowRect(owner.Window(), &outer);
  RECT inner;
  GetWindowRect(owned.Window(), &inner);
  EXPECT_NEAR(inner.left - outer.left, outer.right - inner.right, 1);
  EXPECT_NEAR(inner.top - outer.top, outer.bottom - inner.bottom, 1);
}

TEST_F(UiFormTest, AnOwnerThatIsDestroyedLeavesTheWindowsItOwnedAlone) {
  TestForm owned("frmOwned");
  {
    TestForm owner("frmOwner");
    owner.Load();
    owned.Show(&owner);
  }
  ASSERT_NE(owned.Window(), nullptr);
  EXPECT_TRUE(IsWindowVisible(owned.Window()));
}

TEST_F(UiFormTest, TheStylesAreThoseOfTheForm) {
  const auto stylesOf = [](const ui::Form::Style& style) {
    TestForm form("frmTest", style);
    form.Load();
    return std::pair(GetWindowLongA(form.Window(), GWL_STYLE), GetWindowLongA(form.Window(), GWL_EXSTYLE));
  };
  const auto [plain, plainMore] = stylesOf({});
  EXPECT_EQ(plain & (WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX),
            WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX);
  EXPECT_EQ(plainMore & WS_EX_APPWINDOW, WS_EX_APPWINDOW);
  ui::Form::Style tool;
  tool.resizable = tool.minimiseAndMaximise = tool.inTaskBar = false;
  tool.toolWindow = true;
  const auto [small, smallMore] = stylesOf(tool);
  EXPECT_EQ(small & (WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX),
            WS_CAPTION | WS_SYSMENU);
  EXPECT_EQ(smallMore & (WS_EX_TOOLWINDOW | WS_EX_APPWINDOW), WS_EX_TOOLWINDOW);
  ui::Form::Style bare;
  bare.border = false;
  EXPECT_EQ(stylesOf(bare).first & WS_CAPTION, 0);
}

TEST_F(UiFormTest, TheCloseBoxIsTheUsersOwnClosing) {
  TestForm form;
  form.refuses = true;
  form.Show();
  PostMessageA(form.Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
  ASSERT_TRUE(RunUntil([&] { return !form.asked.empty(); }));
  EXPECT_EQ(form.asked.front(), ui::CloseReason::kUser);
  EXPECT_TRUE(form.IsLoaded());
  EXPECT_TRUE(IsWindowVisible(form.Window()));
  form.refuses = false;
  PostMessageA(form.Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
  EXPECT_TRUE(RunUntil([&] { return !form.IsLoaded(); }));
}

TEST_F(UiFormTest, TheKeysForClosingAreTheUsersOwnClosingToo) {
  TestForm form;
  form.Show();
  PostMessageA(form.Window(), WM_SYSKEYDOWN, VK_F4, 1 << 29);
  ASSERT_TRUE(RunUntil([&] { return !form.IsLoaded(); }));
  EXPECT_EQ(form.asked.front(), ui::CloseReason::kUser);
}

TEST_F(UiFormTest, AnotherProgramThatClosesTheWindowIsTheTaskManager) {
  TestForm form;
  form.Show();
  PostMessageA(form.Window(), WM_CLOSE, 0, 0);
  ASSERT_TRUE(RunUntil([&] { return !form.IsLoaded(); }));
  EXPECT_EQ(form.asked.front(), ui::CloseReason::kTaskManager);
}

TEST_F(UiFormTest, TheLoopEndsAfterAMessageThatWasSentFromElsewhere) {
  TestForm form;
  form.Show();
  const HWND window = form.Window();
  const support::Bystander closer([window] { SendMessageA(window, WM_CLOSE, 0, 0); });
  // Without a timer that would wake it.
  ui::TheInterface().toolkit->RunWhile([&] { return form.IsLoaded(); });
  EXPECT_FALSE(form.IsLoaded());
}

TEST_F(UiFormTest, AUserWhoResizesIsToldInTwipsAndCodeThatResizesIsNotEchoed) {
  TestForm form;
  form.Show();
  form.resizes = 0;
  SetWindowPos(form.Window(), nullptr, 10, 20, 500, 400, SWP_NOZORDER);
  const SIZE inner = InnerSize(form.Window());
  EXPECT_EQ(form.resizes, 1);
  EXPECT_EQ(Pixels(form.Width()), inner.cx);
  EXPECT_EQ(Pixels(form.Height()), inner.cy);
  POINT origin{};
  ClientToScreen(form.Window(), &origin);
  EXPECT_EQ(Pixels(form.Left()), origin.x);
  form.Move(form.Left(), form.Top(), 6000, 4500);
  EXPECT_EQ(InnerSize(form.Window()).cx, Pixels(6000));
  EXPECT_EQ(InnerSize(form.Window()).cy, Pixels(4500));
  EXPECT_EQ(form.resizes, 2);
  EXPECT_EQ(form.Width(), 6000);
}

TEST_F(UiFormTest, AMinimisedWindowKeepsItsSizeAndShowBringsItBack) {
  TestForm form;
  form.Show();
  ShowWindow(form.Window(), SW_MINIMIZE);
  EXPECT_EQ(form.Width(), 4800);
  EXPECT_EQ(form.Height(), 3000);
  form.Show();
  EXPECT_FALSE(IsIconic(form.Window()));
  EXPECT_EQ(form.Width(), 4800);
}

TEST_F(UiFormTest, CaptionEnabledAndVisibleFollow) {
  TestForm form;
  form.Load();
  form.Caption("Another");
  EXPECT_EQ(support::TextOf(form.Window()), "Another");
  form.Enabled(false);
  EXPECT_FALSE(IsWindowEnabled(form.Window()));
  form.Enabled(true);
  EXPECT_TRUE(IsWindowEnabled(form.Window()));
  form.Visible(true);
  EXPECT_TRUE(IsWindowVisible(form.Window()));
  form.Hide();
  EXPECT_FALSE(IsWindowVisible(form.Window()));
}

TEST_F(UiFormTest, TheGroundHasTheFormsColour) {
  TestForm form;
  form.BackColor(ui::Rgb(253, 235, 200));
  form.Show();
  RunFor(50);
  const HDC context = GetDC(form.Window());
  EXPECT_EQ(GetPixel(context, 20, 20), static_cast<COLORREF>(RGB(253, 235, 200)));
  form.BackColor(ui::Rgb(10, 20, 30));
  UpdateWindow(form.Window());
  EXPECT_EQ(GetPixel(context, 20, 20), static_cast<COLORREF>(RGB(10, 20, 30)));
  ReleaseDC(form.Window(), context);
}

TEST_F(UiFormTest, AFormHasNoIconUntilItGetsOne) {
  TestForm form;
  form.Load();
  EXPECT_EQ(SendMessageA(form.Window(), WM_GETICON, ICON_SMALL, 0), 0);
  EXPECT_EQ(SendMessageA(form.Window(), WM_GETICON, ICON_BIG, 0), 0);
  form.Icon(ui::ResourcePicture("HARBOURLINE"));
  EXPECT_NE(SendMessageA(form.Window(), WM_GETICON, ICON_SMALL, 0), 0);
  EXPECT_NE(SendMessageA(form.Window(), WM_GETICON, ICON_BIG, 0), 0);
}

TEST_F(UiFormTest, AnIconThatIsSetFirstLoadsTheForm) {
  TestForm form;
  form.Icon(ui::ResourcePicture("NETLIGHT09"));
  ASSERT_NE(form.Window(), nullptr);
  EXPECT_EQ(static_cast<std::uintptr_t>(SendMessageA(form.Window(), WM_GETICON, ICON_SMALL, 0)),
            ui::TheInterface().screen->SmallIcon(form.Icon()));
}

TEST_F(UiFormTest, TheMousePlaceComesInTwipsAndGivesTheExactNumberBack) {
  TestForm form;
  form.Load();
  std::vector<float> numbers;
  form.MouseMove.Connect([&](float x, float y) {
    numbers.push_back(x / ui::TheInterface().screen->TwipsPerPixelX());
    numbers.push_back(y / ui::TheInterface().screen->TwipsPerPixelY());
  });
  std::vector<float> expected;
  for (WORD number = 512; number <= 518; ++number) {
    PostMessageA(form.Window(), WM_MOUSEMOVE, 0, MAKELPARAM(number, 7));
    expected.push_back(number);
    expected.push_back(7);
  }
  PostMessageA(form.Window(), WM_MOUSEMOVE, 0, MAKELPARAM(static_cast<WORD>(-3), static_cast<WORD>(-32768)));
  expected.push_back(-3);
  expected.push_back(-32768);
  ui::TheInterface().toolkit->ProcessPendingEvents();
  EXPECT_EQ(numbers, expected);
}

TEST_F(UiFormTest, TheMouseNumbersAreExactAtEveryScaling) {
  for (int dots = 72; dots <= 960; ++dots) {
    const volatile float twipsPerPixel = ui::win32::TwipsPerPixel(dots);
    for (int number = 512; number <= 518; ++number) {
      const volatile float place = static_cast<float>(number) * twipsPerPixel;
      EXPECT_EQ(place / twipsPerPixel, static_cast<float>(number)) << "at " << dots << " dots per inch";
    }
  }
}

TEST_F(UiFormTest, EveryLoadedFormHearsThatTheShellStartedAnew) {
  TestForm first("frmFirst");
  TestForm second("frmSecond", {.inTaskBar = false});
  int heard = 0;
  for (TestForm* form : {&first, &second}) {
    form->Load();
    form->ShellRestarted.Connect([&heard] { ++heard; });
  }
  PostMessageA(HWND_BROADCAST, RegisterWindowMessageA("TaskbarCreated"), 0, 0);
  EXPECT_TRUE(RunUntil([&] { return heard == 2; })) << heard;
}

TEST_F(UiFormTest, TheFocusComesBackWhenTheWindowIsActivatedAgain) {
  TestForm form;
  ui::TextBox first(&form, "txtFirst");
  ui::TextBox second(&form, "txtSecond");
  first.Move(0, 0, 1500, 300);
  second.Move(0, 400, 1500, 300);
  form.Show();
  ASSERT_TRUE(RunUntil([&] { return first.HasFocus(); })) << "the first in the order of the tab key";
  second.SetFocus();
  ASSERT_TRUE(RunUntil([&] { return second.HasFocus() && !first.HasFocus(); }));
  TestForm other("frmOther");
  other.Show();
  ASSERT_TRUE(RunUntil([&] { return GetActiveWindow() == other.Window(); }));
  form.Show();
  EXPECT_TRUE(RunUntil(
      [&] { return second.GetPeer() && GetFocus() == reinterpret_cast<HWND>(second.GetPeer()->Handle()); }));
}

TEST_F(UiFormTest, TheFocusStaysWhereItIsWhenTheUserResizesAWindowThatHidesWhatItMoves) {
  struct HidingForm : TestForm {
    ui::Frame frame{this, "framOne"};
    ui::TextBox first{&frame, "txtFirst"};
    ui::TextBox second{&frame, "txtSecond"};
    void OnResize() override {
      TestForm::OnResize();
      frame.Visible(false);
      frame.Move(0, 0, Width(), Height());
      first.Move(0, 0, Width(), 300);
      second.Move(0, 400, Width(), 300);
      frame.Visible(true);
    }
  } form;
  form.Show();
  form.second.SetFocus();
  ASSERT_TRUE(RunUntil([&] { return form.second.HasFocus(); }));
  int left = 0;
  form.second.LostFocus.Connect([&left] { ++left; });
  const int before = form.resizes;
  SetWindowPos(form.Window(), nullptr, 10, 20, 500, 400, SWP_NOZORDER);
  ASSERT_TRUE(RunUntil([&] { return form.resizes > before; }));
  EXPECT_TRUE(form.second.HasFocus());
  EXPECT_EQ(GetFocus(), reinterpret_cast<HWND>(form.second.GetPeer()->Handle()));
  EXPECT_EQ(left, 0);
}

TEST_F(UiFormTest, AFormMayDestroyItselfWhileItCloses) {
  auto* form = new TestForm;
  form->Show();
  struct Deleter : TestForm {
    TestForm* victim = nullptr;
    void OnUnload() override { delete victim; }
  } closing;
  closing.victim = form;
  closing.Show();
  PostMessageA(closing.Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
  EXPECT_TRUE(RunUntil([&] { return !closing.IsLoaded(); }));
  EXPECT_EQ(ui::Form::LoadedForms().size(), 0u);
}

TEST_F(UiFormTest, AToldQuitEndsAllLoopsAndLosesNothing) {
  int loopsEnded = 0;
  PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
  bool nested = false;
  ui::TheInterface().toolkit->RunWhile([&] {
    if (nested) return true;
    nested = true;
    PostQuitMessage(3);
    ui::TheInterface().toolkit->RunWhile([] { return true; });
    ++loopsEnded;
    return true;
  });
  ++loopsEnded;
  EXPECT_EQ(loopsEnded, 2);
  MSG message;
  EXPECT_FALSE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE))
      << "a box after it would close at once";
}

}  // namespace
