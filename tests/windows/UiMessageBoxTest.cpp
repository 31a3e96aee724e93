#include "support/Ui.h"
#include "ui/MessageBox.h"
#include "ui/Timer.h"

namespace {

using support::Bystander;
using support::FindOwnWindow;
using support::TestForm;
using support::WaitFor;

constexpr char kBoxClass[] = "#32770";

class UiMessageBoxTest : public support::UiTest {
 protected:
  /// Waits for the box and presses the button with the number, once `look` has had its look.
  template <typename Look>
  static auto Press(int button, Look look) {
    return [button, look] {
      const HWND box = WaitFor([] { return FindOwnWindow(kBoxClass, "Harbourline"); });
      if (!box) return;
      look(box);
      PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    };
  }
};

TEST_F(UiMessageBoxTest, ShowsTheTextInLinesUnderTheTitleAndIsAnsweredOk) {
  std::string text;
  ui::MessageResult result{};
  {
    const Bystander user(Press(IDOK, [&](HWND box) {
      for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const std::string part = support::TextOf(child);
        if (part.size() > 10) text = part;
      }
    }));
    result = ui::ShowMessage("The first line\r\nand the second", ui::MessageIcon::kInformation);
  }
  EXPECT_EQ(result, ui::MessageResult::kOk);
  EXPECT_EQ(text, "The first line\r\nand the second");
}

TEST_F(UiMessageBoxTest, AQuestionIsAnsweredYesOrNo) {
  for (const auto& [button, expected] :
       {std::pair(IDYES, ui::MessageResult::kYes), std::pair(IDNO, ui::MessageResult::kNo)}) {
    const Bystander user(Press(button, [](HWND box) {
      EXPECT_NE(GetDlgItem(box, IDYES), nullptr);
      EXPECT_NE(GetDlgItem(box, IDNO), nullptr);
      EXPECT_EQ(GetDlgItem(box, IDOK), nullptr);
    }));
    EXPECT_EQ(ui::ShowMessage("Really?", ui::MessageIcon::kQuestion, ui::MessageButtons::kYesNo), expected);
  }
}

TEST_F(UiMessageBoxTest, StandsOverTheActiveWindowAndKeepsAllOthersOutOfReach) {
  TestForm other("frmOther");
  other.Show();
  TestForm active("frmActive");
  active.Show();
  HWND owner = nullptr;
  bool othersEnabled = true;
  {
    const Bystander user(Press(IDOK, [&](HWND box) {
      owner = GetWindow(box, GW_OWNER);
      othersEnabled = IsWindowEnabled(other.Window()) || IsWindowEnabled(active.Window());
    }));
    ui::ShowMessage("Look at me", ui::MessageIcon::kWarning);
  }
  EXPECT_EQ(owner, active.Window());
  EXPECT_FALSE(othersEnabled);
  EXPECT_TRUE(IsWindowEnabled(other.Window()));
  EXPECT_TRUE(IsWindowEnabled(active.Window()));
  EXPECT_EQ(GetActiveWindow(), active.Window());
}

TEST_F(UiMessageBoxTest, HasNoOwnerWhenNoWindowIsSeen) {
  TestForm hidden;
  hidden.Load();
  HWND owner = hidden.Window();
  {
    const Bystander user(Press(IDOK, [&](HWND box) { owner = GetWindow(box, GW_OWNER); }));
    ui::ShowMessage("Nobody is there", ui::MessageIcon::kCritical);
  }
  EXPECT_EQ(owner, nullptr);
}

TEST_F(UiMessageBoxTest, TimersTickWhileItIsUp) {
  ui::Timer timer(nullptr, "tmTest");
  int ticks = 0;
  timer.Tick.Connect([&] { ++ticks; });
  timer.AttachPeers();
  timer.Interval(20);
  timer.Enabled(true);
  const Bystander user(Press(IDOK, [](HWND) { Sleep(200); }));
  ui::ShowMessage("Time passes", ui::MessageIcon::kInformation);
  EXPECT_GT(ticks, 2);
}

}  // namespace
