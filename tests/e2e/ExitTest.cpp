#include "support/Scene.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ExitTest : public Scene {};

TEST_F(ExitTest, TheQuestionIsAskedInTheSettledWordsAndNoLeavesEverythingRunning) {
  SelectRecording();
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Choose("e"));
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Harbourline");
  EXPECT_EQ(box->text, "Are you sure you want to exit Harbourline?");
  EXPECT_THAT(box->buttons, ElementsAre("Yes", "No"));
  ASSERT_TRUE(Program::Press(*box, "No"));
  EXPECT_FALSE(program.HasEnded());
  EXPECT_TRUE(Program::Icon());
  EXPECT_TRUE(recording.Calls("IServer_ApplicationExiting").empty());
  EXPECT_TRUE(program.Exit());
  EXPECT_TRUE(WaitFor([] { return !Program::Icon(); }));
}

TEST_F(ExitTest, ALogOffSavesTwiceBeforeTheProgramIsGone) {
  SelectRecording();
  StoreProfiles({"+Game"});
  ASSERT_TRUE(program.StartAndWait());
  const std::size_t before = recording.Lines().size();
  const HWND window = program.Find("frmMain");
  ASSERT_TRUE(window);
  EXPECT_EQ(SendMessageA(window, WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF), TRUE);
  EXPECT_EQ(recording.Calls("IServer_SaveSettings").size(), 1u);
  EXPECT_EQ(settings::Read("MP_1_Name"), "Game");
  SendMessageTimeoutA(window, WM_ENDSESSION, TRUE, ENDSESSION_LOGOFF, SMTO_NORMAL, 5000, nullptr);
  ASSERT_TRUE(program.WaitForEnd());
  std::vector<std::string> members;
  for (const std::string& line : recording.LinesFrom(before)) {
    if (line.find("IServer_") != line.npos)
      members.push_back(line.substr(line.find("IServer_"), line.find(" (") - line.find("IServer_")));
  }
  EXPECT_THAT(members, ElementsAre("IServer_ClassName METHOD+GET", "IServer_ClassName METHOD+GET",
                                   "IServer_SaveSettings METHOD+GET", "IServer_ApplicationExiting METHOD+GET",
                                   "IServer_ClassName METHOD+GET", "IServer_ClassName METHOD+GET",
                                   "IServer_SaveSettings METHOD+GET"));
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "True");
}

TEST_F(ExitTest, ALogOffThatIsCalledOffLeavesTheProgramRunning) {
  SelectRecording();
  ASSERT_TRUE(program.StartAndWait());
  const HWND window = program.Find("frmMain");
  ASSERT_TRUE(window);
  EXPECT_EQ(SendMessageA(window, WM_QUERYENDSESSION, 0, 0), TRUE);
  SendMessageA(window, WM_ENDSESSION, FALSE, 0);
  EXPECT_FALSE(program.HasEnded());
  EXPECT_TRUE(program.Exit());
  EXPECT_EQ(recording.Calls("IServer_SaveSettings").size(), 2u);
}

TEST_F(ExitTest, ASecondCopyActivatesSaysItIsRunningAndSavesOnItsWayOut) {
  SelectRecording();
  StoreProfiles({"+Game"});
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_EQ(Activations().size(), 1u);
  program.Start();
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Harbourline");
  EXPECT_EQ(box->text, "This program is already running!");
  EXPECT_THAT(box->buttons, ElementsAre("OK"));
  EXPECT_EQ(Activations().size(), 2u);
  EXPECT_EQ(Activations()[0], Activations()[1]);
  EXPECT_TRUE(recording.Calls("IServer_SaveSettings").empty());
  ASSERT_TRUE(Program::Press(*box, "OK"));
  ASSERT_TRUE(program.WaitForEnd());
  EXPECT_EQ(recording.Calls("IServer_ApplicationExiting").size(), 1u);
  EXPECT_EQ(recording.Calls("IServer_SaveSettings").size(), 1u);
  EXPECT_EQ(program.Running(), 1);
}

TEST_F(ExitTest, TheLogonEntryIsInQuotesOnlyWhenItsPathHasABlankAndGoesWhenItIsNotWanted) {
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::AutoStart(), program.Executable());
  settings::Write("LoadOnStartup", "False");
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Exit());
  EXPECT_FALSE(settings::AutoStart());
}

class BadSettingsTest : public Scene,
                        public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(BadSettingsTest, AValueThatCanNotBeReadIsToldWithItsPlaceAndNothingIsSaved) {
  SelectRecording();
  StoreProfiles({"Game"});
  const auto [name, value] = GetParam();
  settings::Write(name, value);
  const auto before = settings::All();
  program.Start();
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Harbourline");
  EXPECT_THAT(box->text, HasSubstr(name));
  EXPECT_THAT(box->text, HasSubstr(value));
  EXPECT_THAT(box->text, HasSubstr("HKEY_CURRENT_USER\\Software\\Harbourline\\RouterSection"));
  ASSERT_TRUE(Program::Press(*box, "OK"));
  ASSERT_TRUE(program.WaitForEnd());
  EXPECT_EQ(program.ExitCode(), 1u);
  EXPECT_EQ(settings::All(), before);
  EXPECT_TRUE(recording.Calls("IServer_SaveSettings").empty());
}

INSTANTIATE_TEST_SUITE_P(Values, BadSettingsTest,
                         testing::Values(std::pair("RouterCount", "abc"), std::pair("TrayLights", "40000"),
                                         std::pair("MapProfileCount", "2147483648"),
                                         std::pair("MP_1_MAP_1_BeginPort", "2147483648"),
                                         std::pair("MP_1_MAP_1_ForwardIPAddress", "40000"),
                                         std::pair("MP_1_Enabled", "perhaps"),
                                         std::pair("AutomaticActivation", "J\xE4")));

}  // namespace
