#include "support/PracticeRouterTest.h"

namespace {

HWND Dialog() {
  return FindWindowW(L"#32770", L"Configure Practice Router");
}

/// What the user does in the dialog; runs inside the dialog's own message loop.
std::function<void(HWND)> useDialog;

void CALLBACK OnTick(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND dialog = Dialog();
  if (!dialog || !IsWindowVisible(dialog)) return;
  KillTimer(nullptr, timer);
  useDialog(dialog);
}

class PracticeRouterDialogTest : public PracticeRouterTest {
 protected:
  late::Answer Configure(std::function<void(HWND)> use) {
    useDialog = std::move(use);
    SetTimer(nullptr, 0, 20, OnTick);
    return Call(L"IServer_Configure");
  }
  static void Press(HWND dialog, const wchar_t* button) {
    SendMessageW(Button(dialog, button), BM_CLICK, 0, 0);
  }
  static void Tick(HWND dialog, const wchar_t* box) { SendMessageW(Button(dialog, box), BM_CLICK, 0, 0); }
  static bool IsTicked(HWND dialog, const wchar_t* box) {
    return SendMessageW(Button(dialog, box), BM_GETCHECK, 0, 0) == BST_CHECKED;
  }
  static HWND Edit(HWND dialog) { return FindWindowExW(dialog, nullptr, L"Edit", nullptr); }
};

TEST_F(PracticeRouterDialogTest, ShowsWhatIsSet) {
  Configure([](HWND dialog) {
    wchar_t text[64] = L"";
    GetWindowTextW(Edit(dialog), text, 64);
    EXPECT_STREQ(text, L"203.0.113.7");
    EXPECT_TRUE(IsTicked(dialog, L"&Router is working"));
    EXPECT_FALSE(IsTicked(dialog, L"&Show a warning"));
    EXPECT_FALSE(IsTicked(dialog, L"Re&fuse port forwarding"));
    EXPECT_TRUE(IsTicked(dialog, L"&Make log traffic while logging is on"));
    Press(dialog, L"Cancel");
  });
}

TEST_F(PracticeRouterDialogTest, AcceptedItAnswersFalseAndSetsAndStoresEverything) {
  const late::Answer answer = Configure([](HWND dialog) {
    SetWindowTextW(Edit(dialog), L"198.51.100.23");
    Tick(dialog, L"&Router is working");
    Tick(dialog, L"&Show a warning");
    Tick(dialog, L"Re&fuse port forwarding");
    Press(dialog, L"OK");
  });
  EXPECT_TRUE(answer.IsBool(false));
  for (int made = 0; made < 2; ++made) {
    EXPECT_TRUE(Call(L"IServer_WANIP").IsText(L"198.51.100.23"));
    EXPECT_TRUE(Call(L"IServer_Functional").IsBool(false));
    EXPECT_TRUE(CallWithAddress(L"IServer_CheckForWarning").IsBool(true));
    EXPECT_TRUE(Forward({{L"Web", L"", 80, 80, false, true, 5, false}}, 5).IsBool(true));
    EXPECT_EQ(Fact(L"Status"), L"Not working");
    EXPECT_EQ(Fact(L"Forwarding"), L"Refused");
    MakeAgain();
  }
}

TEST_F(PracticeRouterDialogTest, ARefusingRouterAnswersTrueAndKeepsItsTable) {
  EXPECT_TRUE(Forward({{L"Web", L"", 80, 80, false, true, 5, false}}, 5).IsBool(false));
  Configure([](HWND dialog) {
    Tick(dialog, L"Re&fuse port forwarding");
    Press(dialog, L"OK");
  });
  EXPECT_TRUE(Forward({{L"Game", L"", 1, 1, true, true, 5, false}}, 5).IsBool(true));
  late::MappingArray empty = late::MappingArray::Empty();
  EXPECT_TRUE(Forward(empty, 5).IsBool(true));
  EXPECT_THAT(Table(), testing::ElementsAre(L"Web |  | 80 | TCP | *.5"));
}

TEST_F(PracticeRouterDialogTest, CancelledItAnswersTrueAndChangesNothing) {
  const late::Answer answer = Configure([](HWND dialog) {
    SetWindowTextW(Edit(dialog), L"198.51.100.23");
    Tick(dialog, L"&Show a warning");
    Press(dialog, L"Cancel");
  });
  EXPECT_TRUE(answer.IsBool(true));
  EXPECT_TRUE(Call(L"IServer_WANIP").IsText(L"203.0.113.7"));
  EXPECT_TRUE(CallWithAddress(L"IServer_CheckForWarning").IsBool(false));
}

TEST_F(PracticeRouterDialogTest, WithoutTheTickLoggingBringsNoTraffic) {
  Configure([](HWND dialog) {
    Tick(dialog, L"&Make log traffic while logging is on");
    Press(dialog, L"OK");
  });
  late::Put(router.get(), L"IServer_EnableLog", late::Value(true));
  EXPECT_TRUE(CallWithAddress(L"IServer_SetLogging").IsBool(false));
  EXPECT_EQ(Fact(L"Log"), L"On, no traffic");
}

TEST_F(PracticeRouterDialogTest, ClosedByItsBoxItCountsAsCancelled) {
  EXPECT_TRUE(Configure([](HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); }).IsBool(true));
}

TEST_F(PracticeRouterDialogTest, ASecondDialogDoesNotOpen) {
  const late::Answer answer = Configure([this](HWND dialog) {
    EXPECT_TRUE(Call(L"IServer_Configure").IsBool(true));
    Press(dialog, L"OK");
  });
  EXPECT_TRUE(answer.IsBool(false));
}

TEST_F(PracticeRouterDialogTest, WhatTheProgramWritesMeanwhileStays) {
  Configure([this](HWND dialog) {
    late::Put(router.get(), L"IServer_EnableLog", late::Value(true));
    Press(dialog, L"OK");
  });
  EXPECT_TRUE(Call(L"IServer_EnableLog").IsBool(true));
}

TEST_F(PracticeRouterDialogTest, TheRouterMayBeReleasedWhileItsDialogIsUp) {
  const late::Answer answer = Configure([this](HWND dialog) {
    router.release()->Release();
    Press(dialog, L"OK");
  });
  EXPECT_TRUE(answer.IsBool(false));
  EXPECT_EQ(Window(), nullptr);
  router = host::Make(kProgId);
}

TEST_F(PracticeRouterDialogTest, TheWindowsButtonOpensTheSameDialog) {
  Call(L"IServer_WANIP");
  useDialog = [](HWND dialog) {
    SetWindowTextW(Edit(dialog), L"192.0.2.99");
    Press(dialog, L"OK");
  };
  SetTimer(nullptr, 0, 20, OnTick);
  SendMessageW(Button(Window(), L"Configure..."), BM_CLICK, 0, 0);
  EXPECT_TRUE(Call(L"IServer_WANIP").IsText(L"192.0.2.99"));
  EXPECT_EQ(Fact(L"WAN address"), L"192.0.2.99");
}

}  // namespace
