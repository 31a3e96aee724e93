#include "driver/Controls.h"
#include "support/MainWindow.h"
#include "support/Scene.h"
#include "support/WindowProgram.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Profiles under a user's mouse and keys, from the list to the store.
class EditingTest : public Scene {
 protected:
  static constexpr char kList[] = "ctlMapProfile.lvProfiles";
  static constexpr char kTools[] = "ctlMapProfile.tbProfiles";
  static constexpr char kAdd[] = "1";
  static constexpr char kDelete[] = "2";
  static constexpr char kEdit[] = "3";

  EditingTest() { SelectRecording(); }

  /// Starts with these profiles and opens their page.
  void Open(const std::vector<std::string>& names) {
    StoreProfiles(names);
    ASSERT_TRUE(program.StartAndWait());
    ASSERT_TRUE(window.Open());
    ASSERT_TRUE(window.OpenPage("Profiles", kList));
  }
  /// Opens the editor of a profile, and its grid.
  void OpenGrid(const std::string& name) {
    ASSERT_TRUE(window.ClickItem(kList, name));
    ASSERT_TRUE(window.ClickItem(kTools, kEdit));
    ASSERT_TRUE(window.Click("ctlProfile.cmdMappingAssignments"));
    ASSERT_TRUE(MainWindow::Shows("ctlMappingEditor.txtDescription(0)"));
  }
  /// Waits until the list has these rows; those that it has in the end.
  static std::vector<std::string> ListWith(const std::vector<std::string>& names) {
    std::vector<std::string> rows;
    WaitFor([&] {
      rows = MainWindow::Texts(kList);
      return rows == names;
    });
    return rows;
  }
  static void ExpectList(const std::vector<std::string>& names) { EXPECT_EQ(ListWith(names), names); }
  /// The text of the box that is up, which is answered by that button.
  std::string AnswerBox(const std::string& button) const {
    const auto box = program.WaitForBox();
    if (!box) return "(no box)";
    Program::Press(*box, button);
    return box->text;
  }
  static std::string Focus() {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    GetGUIThreadInfo(GetWindowThreadProcessId(GetForegroundWindow(), nullptr), &state);
    return desktop::ControlName(state.hwndFocus);
  }

  MainWindow window{program};
};

TEST_F(EditingTest, AProfileIsAddedAndItsEditorLeftByCancelKeepsItEmpty) {
  Open({"Game", "Voice"});
  ASSERT_TRUE(window.ClickItem(kTools, kAdd));
  ASSERT_TRUE(MainWindow::Shows("ctlProfile.txtName"));
  EXPECT_EQ(MainWindow::TextOf("ctlProfile.txtName"), "New Profile");
  EXPECT_FALSE(MainWindow::IsEnabled("ctlProfile.cmdAccept"));
  ASSERT_TRUE(window.Click("ctlProfile.cmdCancel"));
  ExpectList({"Game", "Voice", "New Profile"});
  ASSERT_TRUE(window.OpenPage("About", "ctlAbout.rtInfo"));
  ASSERT_TRUE(window.OpenPage("Profiles", kList));
  ExpectList({"Game", "New Profile", "Voice"});
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MapProfileCount"), "3");
  EXPECT_EQ(settings::Read("MP_2_Name"), "New Profile");
  EXPECT_EQ(settings::Read("MP_2_MapCount"), "0");
}

TEST_F(EditingTest, AProfileIsRenamedInTheListAndTheRowKeepsWhatWasTyped) {
  Open({"Game", "Voice"});
  ASSERT_TRUE(window.ClickItem(kList, "Voice"));
  ASSERT_TRUE(window.Type("{F2}"));
  ASSERT_TRUE(WaitFor([] { return Focus().empty(); })) << "the list gives the focus to the label's box";
  ASSERT_TRUE(window.Type("chess{ENTER}"));
  ExpectList({"Game", "chess"});
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Name"), "Game");
  EXPECT_EQ(settings::Read("MP_2_Name"), "chess");
  EXPECT_EQ(settings::Read("MP_2_MAP_1_BeginPort"), "1010") << "it is the same profile";
}

TEST_F(EditingTest, ADeletionAsksInTheSettledWordsAndNoKeepsTheProfile) {
  Open({"Game", "Voice"});
  ASSERT_TRUE(window.ClickItem(kList, "Game"));
  ASSERT_TRUE(window.ClickItem(kTools, kDelete));
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Harbourline");
  EXPECT_EQ(box->text, "Are you sure you want to delete \"Game\"");
  EXPECT_THAT(box->buttons, ElementsAre("Yes", "No"));
  ASSERT_TRUE(Program::Press(*box, "No"));
  ExpectList({"Game", "Voice"});
  ASSERT_TRUE(window.ClickItem(kTools, kDelete));
  EXPECT_EQ(AnswerBox("Yes"), "Are you sure you want to delete \"Game\"");
  ExpectList({"Voice"});
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MapProfileCount"), "1");
  EXPECT_EQ(settings::Read("MP_1_Name"), "Voice");
}

TEST_F(EditingTest, AnAcceptedProfileTakesItsPlaceUnderItsNewName) {
  Open({"Game", "Voice"});
  ASSERT_TRUE(window.ClickItem(kList, "Game"));
  ASSERT_TRUE(window.ClickItem(kTools, kEdit));
  EXPECT_FALSE(MainWindow::IsEnabled("ctlProfile.cmdAccept"));
  ASSERT_TRUE(window.Fill("ctlProfile.txtName", "xylophone"));
  ASSERT_TRUE(window.Fill("ctlProfile.txtDescription", "very loud"));
  ASSERT_TRUE(MainWindow::IsEnabled("ctlProfile.cmdAccept"));
  ASSERT_TRUE(window.Click("ctlProfile.cmdAccept"));
  ExpectList({"Voice", "xylophone"});
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_2_Name"), "xylophone");
  EXPECT_EQ(settings::Read("MP_2_Description"), "very loud");
}

TEST_F(EditingTest, ACancelledEditLeavesTheProfileAsItWas) {
  Open({"Game"});
  ASSERT_TRUE(window.ClickItem(kList, "Game"));
  ASSERT_TRUE(window.ClickItem(kTools, kEdit));
  ASSERT_TRUE(window.Fill("ctlProfile.txtName", "other"));
  ASSERT_TRUE(window.Click("ctlProfile.cmdCancel"));
  ExpectList({"Game"});
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Name"), "Game");
}

TEST_F(EditingTest, TheRunningProgramIsPickedFromTheListAndTheWordRunningBlinks) {
  const WindowProgram game("HarbourlineGameWindow", "The game");
  Open({"Game"});
  ASSERT_TRUE(window.ClickItem(kList, "Game"));
  ASSERT_TRUE(window.ClickItem(kTools, kEdit));
  ASSERT_TRUE(window.Click("ctlProfile.cmdBrowse"));
  EXPECT_EQ(AnswerBox("OK"),
            "Make sure the application that you want to recognized is running before continuing");
  ASSERT_TRUE(MainWindow::Shows("frmClassBrowser.lslAvailableClasses"));
  EXPECT_FALSE(MainWindow::IsEnabled("frmClassBrowser.cmdAccept"));
  EXPECT_EQ(MainWindow::Texts("frmClassBrowser.lslAvailableClasses").front(), "[None]");
  ASSERT_TRUE(window.ClickItem("frmClassBrowser.lslAvailableClasses", "The game::HarbourlineGameWindow"));
  ASSERT_TRUE(WaitFor([] { return MainWindow::IsEnabled("frmClassBrowser.cmdAccept"); }));
  ASSERT_TRUE(window.Click("frmClassBrowser.cmdAccept"));
  ASSERT_TRUE(WaitFor([] { return MainWindow::TextOf("ctlProfile.txtWindowTitle") == "The game"; }));
  EXPECT_EQ(MainWindow::TextOf("ctlProfile.txtWindowClass"), "HarbourlineGameWindow");
  EXPECT_TRUE(MainWindow::IsChecked("ctlProfile.chkEnabled"));
  EXPECT_TRUE(MainWindow::Shows("ctlProfile.lblRunning"));
  const HWND running = MainWindow::Control("ctlProfile.lblRunning");
  EXPECT_TRUE(WaitFor([=] { return !IsWindowVisible(running); })) << "and goes again";
  ASSERT_TRUE(window.Click("ctlProfile.cmdAccept"));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_WindowTitle"), "The game");
  EXPECT_EQ(settings::Read("MP_1_WindowClass"), "HarbourlineGameWindow");
  EXPECT_EQ(settings::Read("MP_1_AutoActivate"), "True");
}

TEST_F(EditingTest, MappingsAreTypedIntoTheGridAndARowWithoutATickIsNone) {
  Open({"Game"});
  OpenGrid("Game");
  EXPECT_FALSE(MainWindow::IsEnabled("ctlMappingEditor.cmdAccept"));
  ASSERT_TRUE(window.Fill("ctlMappingEditor.txtDescription(1)", "web server"));
  ASSERT_TRUE(window.Fill("ctlMappingEditor.txtBeginRange(1)", "443"));
  ASSERT_TRUE(window.Fill("ctlMappingEditor.txtEndRange(1)", "80"));
  ASSERT_TRUE(window.Click("ctlMappingEditor.chkTCP(1)"));
  EXPECT_TRUE(WaitFor([] { return MainWindow::TextOf("ctlMappingEditor.txtBeginRange(1)") == "80"; }))
      << "leaving the end turns the range round";
  EXPECT_EQ(MainWindow::TextOf("ctlMappingEditor.txtEndRange(1)"), "443");
  ASSERT_TRUE(window.Fill("ctlMappingEditor.txtDescription(2)", "no tick"));
  ASSERT_TRUE(window.Click("ctlMappingEditor.cmdShowAdvance"));
  ASSERT_TRUE(window.Fill("ctlMappingEditor.txtTargetIP(1)", "12"));
  ASSERT_TRUE(window.Click("ctlMappingEditor.cmdAccept"));
  ASSERT_TRUE(window.Click("ctlProfile.cmdAccept"));
  ASSERT_TRUE(MainWindow::Shows(kList));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_MapCount"), "2");
  EXPECT_EQ(settings::Read("MP_1_MAP_2_Description"), "web server");
  EXPECT_EQ(settings::Read("MP_1_MAP_2_BeginPort"), "80");
  EXPECT_EQ(settings::Read("MP_1_MAP_2_EndPort"), "443");
  EXPECT_EQ(settings::Read("MP_1_MAP_2_Protocal"), "0");
  EXPECT_EQ(settings::Read("MP_1_MAP_2_ForwardIPAddress"), "12");
}

TEST_F(EditingTest, EachTextThatCanNotBeReadIsToldWithItsPlaceAndTheGridStaysOpenUntilItIsMended) {
  Open({"Game"});
  OpenGrid("Game");
  ASSERT_TRUE(window.Click("ctlMappingEditor.cmdShowAdvance"));
  struct Unreadable {
    std::string box, column, text, mended;
  };
  for (const Unreadable& unreadable :
       {Unreadable{"txtBeginRange(0)", "Begin", "99999999999", "1000"},
        Unreadable{"txtEndRange(0)", "End", "2147483648", "1001"},
        Unreadable{"txtTargetIP(0)", "IP", "10.0.0.5", ""}, Unreadable{"txtTargetIP(0)", "IP", "abc", ""},
        Unreadable{"txtTargetIP(0)", "IP", "32768", "7"}}) {
    SCOPED_TRACE(unreadable.text);
    ASSERT_TRUE(window.Fill("ctlMappingEditor." + unreadable.box, unreadable.text));
    // Leaving the end with a begin above it would turn the range round.
    if (unreadable.column == "Begin") {
      ASSERT_TRUE(window.Click("ctlMappingEditor.txtDescription(0)"));
    }
    ASSERT_TRUE(window.Click("ctlMappingEditor.cmdAccept"));
    const std::string told = AnswerBox("OK");
    EXPECT_THAT(told, testing::StartsWith("Row 1, " + unreadable.column + ": \"" + unreadable.text + "\""));
    EXPECT_TRUE(WaitFor([&] { return Focus() == unreadable.box; })) << Focus();
    EXPECT_EQ(MainWindow::TextOf("ctlMappingEditor." + unreadable.box), unreadable.text);
    EXPECT_EQ(MainWindow::TextOf("ctlMappingEditor.txtDescription(0)"), "Mapping of Game");
    EXPECT_FALSE(program.FindBox()) << "one box";
    if (unreadable.mended.empty()) {
      SendMessageA(MainWindow::Control("ctlMappingEditor." + unreadable.box), WM_SETTEXT, 0,
                   reinterpret_cast<LPARAM>(""));
    } else {
      ASSERT_TRUE(window.Fill("ctlMappingEditor." + unreadable.box, unreadable.mended));
    }
  }
  ASSERT_TRUE(window.Click("ctlMappingEditor.cmdAccept"));
  ASSERT_TRUE(window.Click("ctlProfile.cmdAccept"));
  ASSERT_TRUE(MainWindow::Shows(kList));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_MapCount"), "1");
  EXPECT_EQ(settings::Read("MP_1_MAP_1_BeginPort"), "1000");
  EXPECT_EQ(settings::Read("MP_1_MAP_1_EndPort"), "1001");
  EXPECT_EQ(settings::Read("MP_1_MAP_1_ForwardIPAddress"), "7");
}

TEST_F(EditingTest, AProfileWithMoreMappingsThanTheGridHasRowsKeepsThemAll) {
  StoreProfiles({"Game"});
  settings::Write("MP_1_MapCount", "11");
  for (int mapping = 1; mapping <= 11; ++mapping) {
    const std::string prefix = "MP_1_MAP_" + std::to_string(mapping) + "_";
    settings::Write(prefix + "Description", "m" + std::to_string(mapping));
    settings::Write(prefix + "BeginPort", std::to_string(mapping));
    settings::Write(prefix + "EndPort", std::to_string(mapping));
    settings::Write(prefix + "Protocal", "2");
    settings::Write(prefix + "ForwardIPAddress", "-1");
  }
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(window.Open());
  ASSERT_TRUE(window.OpenPage("Profiles", kList));
  ASSERT_TRUE(window.ClickItem(kList, "Game"));
  ASSERT_TRUE(window.ClickItem(kTools, kEdit));
  ASSERT_TRUE(window.Click("ctlProfile.cmdMappingAssignments"));
  EXPECT_THAT(AnswerBox("OK"), testing::AllOf(HasSubstr("11"), HasSubstr("10")));
  ASSERT_TRUE(window.Fill("ctlProfile.txtDescription", "eleven"));
  ASSERT_TRUE(window.Click("ctlProfile.cmdAccept"));
  ASSERT_TRUE(MainWindow::Shows(kList));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Description"), "eleven");
  EXPECT_EQ(settings::Read("MP_1_MapCount"), "11");
  EXPECT_EQ(settings::Read("MP_1_MAP_11_BeginPort"), "11");
}

}  // namespace
