#include "base/Error.h"
#include "support/Ui.h"

namespace {

class UiClipboardTest : public support::UiTest {
 protected:
  static ui::Clipboard& Clipboard() { return *ui::TheInterface().clipboard; }

  static std::string Text(UINT format = CF_TEXT) {
    if (!OpenClipboard(nullptr)) return "(not open)";
    std::string text = "(none)";
    if (const HANDLE data = GetClipboardData(format)) {
      text = format == CF_TEXT ? static_cast<const char*>(GlobalLock(data)) : "(there)";
      GlobalUnlock(data);
    }
    CloseClipboard();
    return text;
  }
};

TEST_F(UiClipboardTest, HoldsTheTextInEightBitsAndForOtherProgramsInUnicode) {
  Clipboard().SetText("198.51.100.7");
  EXPECT_EQ(Text(), "198.51.100.7");
  EXPECT_EQ(Text(CF_UNICODETEXT), "(there)");
  Clipboard().SetText("");
  EXPECT_EQ(Text(), "");
}

TEST_F(UiClipboardTest, KeepsCharactersBeyondAscii) {
  Clipboard().SetText("Z\xFCrich \xE9t\xE9");
  EXPECT_EQ(Text(), "Z\xFCrich \xE9t\xE9");
}

TEST_F(UiClipboardTest, ClearLeavesNothing) {
  Clipboard().SetText("something");
  Clipboard().Clear();
  EXPECT_EQ(Text(), "(none)");
}

TEST_F(UiClipboardTest, WaitsForAnotherProgramThatHasItOpen) {
  const HANDLE taken = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  {
    const support::Bystander other([taken] {
      const HWND owner =
          CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
      OpenClipboard(owner);
      SetEvent(taken);
      Sleep(300);
      CloseClipboard();
      DestroyWindow(owner);
    });
    WaitForSingleObject(taken, INFINITE);
    Clipboard().SetText("after a while");
  }
  EXPECT_EQ(Text(), "after a while");
  CloseHandle(taken);
}

TEST_F(UiClipboardTest, FailsWhenItStaysTaken) {
  const HANDLE taken = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  const HANDLE leave = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  {
    const support::Bystander other([=] {
      const HWND owner =
          CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
      OpenClipboard(owner);
      SetEvent(taken);
      WaitForSingleObject(leave, INFINITE);
      CloseClipboard();
      DestroyWindow(owner);
    });
    WaitForSingleObject(taken, INFINITE);
    EXPECT_THROW(Clipboard().SetText("never"), base::Error);
    EXPECT_THROW(Clipboard().Clear(), base::Error);
    SetEvent(leave);
  }
  CloseHandle(taken);
  CloseHandle(leave);
}

}  // namespace
