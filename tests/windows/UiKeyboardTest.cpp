#include <windows.h>

#include <gmock/gmock.h>

#include "support/Ui.h"
#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Frame.h"
#include "ui/Label.h"
#include "ui/TextBox.h"
#include "ui/UserControl.h"
#include "ui/modControlHelper.h"

namespace {

/// A window with a field, a frame that holds two pages, one of them in sight, and a button.
class UiKeyboardTest : public support::UiTest {
 protected:
  UiKeyboardTest() {
    first_.Move(100, 100, 1500, 330);
    frame_.Move(0, 500, 6000, 3000);
    for (ui::UserControl* page : {&hidden_, &page_}) page->Move(0, 0, 6000, 3000);
    hiddenEnable_.Move(100, 100, 1500, 330);
    label_.Move(100, 100, 1000, 330);
    name_.Move(1200, 100, 1500, 330);
    enable_.Move(1200, 600, 1500, 330);
    accept_.Move(1200, 1100, 1500, 420);
    last_.Move(100, 3600, 1500, 420);
    hidden_.Visible(false);
    form_.Show();
    RunUntil([this] { return first_.HasFocus(); });
  }

  static HWND Native(const ui::Control& control) {
    return reinterpret_cast<HWND>(control.GetPeer()->Handle());
  }
  /// A key as the keyboard sends it to what has the focus.
  static void Press(WORD key) {
    PostMessageA(GetFocus(), WM_KEYDOWN, key, 1);
    PostMessageA(GetFocus(), WM_KEYUP, key, 0xC0000001);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  static void PressShiftTab() {
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[VK_SHIFT] = 0x80;
    SetKeyboardState(keys);
    Press(VK_TAB);
    keys[VK_SHIFT] = 0;
    SetKeyboardState(keys);
  }
  static void PressAlt(char letter) {
    PostMessageA(GetFocus(), WM_SYSCHAR, static_cast<WPARAM>(letter), 1 << 29);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  /// The name of the control that has the focus on the screen and in the controls, "?" when they differ.
  std::string Focus() const {
    const std::string native = support::ControlNameOf(GetFocus());
    for (const ui::Control* control : std::initializer_list<const ui::Control*>{
             &first_, &hiddenEnable_, &name_, &enable_, &accept_, &last_}) {
      if (control->HasFocus()) return control->Name() == native ? native : "?";
    }
    return native.empty() ? "" : "?";
  }
  bool FocusReaches(const std::string& name) const {
    return RunUntil([&] { return Focus() == name; });
  }

  support::TestForm form_{"frmTest", {}, 6000, 4200};
  ui::TextBox first_{&form_, "txtFirst"};
  ui::Frame frame_{&form_, "framConfig"};
  ui::UserControl hidden_{&frame_, "ctlHidden", 6000, 3000};
  ui::CheckBox hiddenEnable_{&hidden_, "chkHidden", "&Enable"};
  ui::UserControl page_{&frame_, "ctlPage", 6000, 3000};
  ui::Label label_{&page_, "lblName", "&Name:"};
  ui::TextBox name_{&page_, "txtName"};
  ui::CheckBox enable_{&page_, "chkEnable", "&Enable"};
  ui::Button accept_{&page_, "cmdAccept", "&Accept"};
  ui::Button last_{&form_, "cmdLast", "&Last"};
};

TEST_F(UiKeyboardTest, TabGoesIntoThePageThroughItAndOutAgainBothWays) {
  for (const char* name : {"txtName", "chkEnable", "cmdAccept", "cmdLast", "txtFirst"}) {
    Press(VK_TAB);
    EXPECT_EQ(Focus(), name);
  }
  for (const char* name : {"cmdLast", "cmdAccept", "chkEnable", "txtName", "txtFirst"}) {
    PressShiftTab();
    EXPECT_EQ(Focus(), name);
  }
}

TEST_F(UiKeyboardTest, TheLetterOfALabelLeadsToTheFieldBehindIt) {
  PressAlt('n');
  EXPECT_EQ(Focus(), "txtName");
}

TEST_F(UiKeyboardTest, TheLetterOfACheckBoxTicksTheOneThatIsSeen) {
  PressAlt('e');
  EXPECT_TRUE(enable_.Checked());
  EXPECT_FALSE(hiddenEnable_.Checked());
  EXPECT_EQ(Focus(), "chkEnable");
}

TEST_F(UiKeyboardTest, TheLetterOfAButtonPressesItFromAnywhere) {
  int presses = 0;
  accept_.Click.Connect([&] { ++presses; });
  PressAlt('a');
  EXPECT_EQ(presses, 1);
  accept_.Enabled(false);
  PressAlt('a');
  EXPECT_EQ(presses, 1);
}

TEST_F(UiKeyboardTest, EnterPressesTheButtonThatHasTheFocusBeforeTheDefaultOne) {
  std::string pressed;
  last_.Default(true);
  last_.Click.Connect([&] { pressed += "last "; });
  accept_.Click.Connect([&] { pressed += "accept "; });
  Press(VK_RETURN);
  const auto looksDefault = [](const ui::Button& button) {
    return (GetWindowLongA(Native(button), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
  };
  EXPECT_TRUE(looksDefault(last_));
  accept_.SetFocus();
  ASSERT_TRUE(FocusReaches("cmdAccept"));
  Press(VK_RETURN);
  EXPECT_EQ(pressed, "last accept ");
  EXPECT_TRUE(looksDefault(accept_));
  EXPECT_FALSE(looksDefault(last_));
  first_.SetFocus();
  ASSERT_TRUE(FocusReaches("txtFirst"));
  EXPECT_FALSE(looksDefault(accept_));
  EXPECT_TRUE(looksDefault(last_));
}

TEST_F(UiKeyboardTest, AFieldSelectsItsTextWhenTheKeyboardReachesIt) {
  name_.Text("Games");
  name_.GotFocus.Connect([this] { modControlHelper::SelectAllText(name_); });
  Press(VK_TAB);
  EXPECT_EQ(name_.SelLength(), 5);
  DWORD begin = 9;
  DWORD end = 9;
  SendMessageA(Native(name_), EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
  EXPECT_EQ(begin, 0u);
  EXPECT_EQ(end, 5u);
}

TEST_F(UiKeyboardTest, AButtonThatSwitchesItselfOffPassesTheFocusOn) {
  accept_.SetFocus();
  ASSERT_TRUE(FocusReaches("cmdAccept"));
  accept_.Click.Connect([this] { accept_.Enabled(false); });
  Press(VK_SPACE);
  EXPECT_EQ(Focus(), "cmdLast");
}

TEST_F(UiKeyboardTest, AControlThatIsHiddenPassesTheFocusOn) {
  name_.SetFocus();
  ASSERT_TRUE(FocusReaches("txtName"));
  name_.Visible(false);
  EXPECT_EQ(Focus(), "chkEnable");
}

TEST_F(UiKeyboardTest, APageThatIsHiddenPassesTheFocusToWhatIsSeenThen) {
  name_.SetFocus();
  ASSERT_TRUE(FocusReaches("txtName"));
  page_.Visible(false);
  hidden_.Visible(true);
  EXPECT_TRUE(RunUntil([this] { return !IsWindowVisible(Native(page_)); }));
  EXPECT_EQ(Focus(), "cmdLast");
  PressShiftTab();
  EXPECT_EQ(Focus(), "chkHidden");
}

TEST_F(UiKeyboardTest, APageThatIsHiddenOnlyWhileItIsLaidOutKeepsTheFocusAndStaysOnTheScreen) {
  name_.SetFocus();
  ASSERT_TRUE(FocusReaches("txtName"));
  int moves = 0;
  name_.LostFocus.Connect([&] { ++moves; });
  for (ui::Control* control : std::initializer_list<ui::Control*>{&frame_, &page_}) {
    control->Visible(false);
    control->Move(0, 500, 5000, 2900);
    EXPECT_TRUE(IsWindowVisible(Native(*control)));
    control->Visible(true);
  }
  RunFor(50);
  EXPECT_TRUE(IsWindowVisible(Native(page_)));
  EXPECT_EQ(Focus(), "txtName");
  EXPECT_EQ(moves, 0);
}

TEST_F(UiKeyboardTest, AFocusThatReachesAPageGoesToItsFirstControl) {
  ::SetFocus(Native(page_));
  EXPECT_EQ(Focus(), "txtName");
}

TEST_F(UiKeyboardTest, FocusAndLettersAreMarkedAlsoForWhoUsesTheMouse) {
  RECT place{};
  GetWindowRect(Native(last_), &place);
  support::ClickAt((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  ASSERT_TRUE(FocusReaches("cmdLast"));
  for (const ui::Control* control : std::initializer_list<const ui::Control*>{&last_, &enable_, &label_}) {
    EXPECT_EQ(SendMessageA(Native(*control), WM_QUERYUISTATE, 0, 0) & (UISF_HIDEFOCUS | UISF_HIDEACCEL), 0);
  }
}

TEST_F(UiKeyboardTest, TheHelpKeyAsksForTheTopicOfWhatHasTheFocus) {
  std::vector<std::int32_t> topics;
  ui::TheInterface().help = [&](std::uintptr_t window, std::int32_t topic) {
    EXPECT_EQ(window, form_.Handle());
    topics.push_back(topic);
  };
  page_.HelpContextID(9010);
  form_.HelpContextID(9000);
  support::PressKey(VK_F1);
  EXPECT_TRUE(RunUntil([&] { return topics.size() == 1; }));
  name_.SetFocus();
  support::PressKey(VK_F1);
  EXPECT_TRUE(RunUntil([&] { return topics.size() == 2; }));
  enable_.SetFocus();
  support::PressKey(VK_F1);
  EXPECT_TRUE(RunUntil([&] { return topics.size() == 3; }));
  EXPECT_THAT(topics, testing::ElementsAre(9000, 9010, 9010));
}

}  // namespace
