#include "driver/Input.h"
#include "support/Scene.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// The submenu opens on its first entry, "Clear All"; the key passes over the line between it and the
// profiles.
constexpr char kClearAll[] = "{ENTER}";
constexpr char kFirstProfile[] = "{DOWN}{ENTER}";

class MenuTest : public Scene {};

std::optional<std::string> ClipboardText() {
  std::optional<std::string> text;
  if (!OpenClipboard(nullptr)) return text;
  if (const HANDLE data = GetClipboardData(CF_TEXT)) {
    text = static_cast<const char*>(GlobalLock(data));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return text;
}

TEST_F(MenuTest, AClickOnAProfileSwitchesItOnAndAnotherSwitchesItOff) {
  SelectRecording();
  StoreProfiles({"Game", "Voice"});
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Choose("p", kFirstProfile));
  ASSERT_TRUE(WaitFor([&] { return Activations().size() == 2; }));
  EXPECT_EQ(
      Activations()[1],
      "METHOD+GET (BYREF+ARRAY+DISPATCH [0..0] {sProfileName=BSTR \"Game\"; sDescription=BSTR \"Mapping of "
      "Game\"; lBeginPort=I4 1000; lEndPort=I4 1001; bUDP=BOOL True; bTCP=BOOL True; iForwardIPAddress=I2 " +
          LastOctet() + "; bClearEntry=BOOL False}, BYREF+I2 " + LastOctet() + ")");
  ASSERT_TRUE(program.Choose("p", kFirstProfile));
  ASSERT_TRUE(WaitFor([&] { return Activations().size() == 3; }));
  EXPECT_EQ(Activations()[2], EmptyRequest());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "False");
}

TEST_F(MenuTest, AProfileThatIsOnIsSavedAsEnabled) {
  SelectRecording();
  StoreProfiles({"Game"});
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Choose("p", kFirstProfile));
  ASSERT_TRUE(WaitFor([&] { return Activations().size() == 2; }));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "True");
}

TEST_F(MenuTest, ClearAllTakesEveryProfileOff) {
  SelectRecording();
  StoreProfiles({"+Game", "+Voice"});
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_EQ(Activations().size(), 1u);
  EXPECT_THAT(Activations()[0], HasSubstr("[0..1]"));
  ASSERT_TRUE(program.Choose("p", kClearAll));
  ASSERT_TRUE(WaitFor([&] { return Activations().size() == 2; }));
  EXPECT_EQ(Activations()[1], EmptyRequest());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "False");
  EXPECT_EQ(settings::Read("MP_2_Enabled"), "False");
}

TEST_F(MenuTest, ClearingAProfileWithAForeignMappingSendsItForRemoval) {
  SelectRecording();
  StoreProfiles({"+Game"});
  settings::Write("MP_1_MAP_1_ForwardIPAddress", "200");
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Choose("p", kFirstProfile));
  ASSERT_TRUE(WaitFor([&] { return Activations().size() == 2; }));
  EXPECT_THAT(Activations()[1],
              AllOf(HasSubstr("iForwardIPAddress=I2 200"), HasSubstr("bClearEntry=BOOL True")));
  EXPECT_TRUE(program.Exit());
}

TEST_F(MenuTest, AProfileThatFollowsItsProgramRefusesWithItsName) {
  SelectRecording();
  settings::Write({{"MapProfileCount", "1"}, {"AutomaticActivation", "True"}});
  settings::WriteProfile(1, "Game", 1000, false, true);
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Choose("p", kFirstProfile));
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Harbourline");
  EXPECT_THAT(box->buttons, ElementsAre("OK"));
  EXPECT_EQ(
      box->text,
      "\"Game\" can not be enabled/disabled manually.\r\nDisable Auto Activate for this profile if you want "
      "manual control.");
  ASSERT_TRUE(Program::Press(*box, "OK"));
  EXPECT_EQ(Activations().size(), 1u);
  EXPECT_TRUE(program.Exit());
}

TEST_F(MenuTest, ARefusingRouterBringsUpTheWholeMessageAndKeepsTheProfileAsWanted) {
  SelectRecording();
  StoreProfiles({"Game"});
  ASSERT_TRUE(program.StartAndWait());
  // A number that isn't zero counts as true, whatever its kind.
  Recording::Script("Result_IServer_SetPortForwarding", "int32:70000");
  ASSERT_TRUE(program.Choose("p", kFirstProfile));
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->text,
            "An error occurred during profile activation.\r\n\r\nPossible causes: \r\n\r\n"
            "   1) Router exceeded the maximum number of port forwarding mappings.\r\n"
            "   2) A Network communication error. \r\n"
            "   3) Router too busy to handle the request. \r\n"
            "   4) Plug-in you are using is not compatable with your router.\r\n"
            "   5) Router has not been setup. Need to run Setup Wizard again.");
  ASSERT_TRUE(Program::Press(*box, "OK"));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "True");
}

TEST_F(MenuTest, TheDMZHostIsThisComputersLastOctetAndZeroClearsIt) {
  SelectRecording();
  ASSERT_TRUE(program.StartAndWait());
  // Several entries have the keys S and C, so the arrows lead to them.
  ASSERT_TRUE(program.OpenMenu());
  ASSERT_TRUE(desktop::Type("{DOWN}{DOWN}{DOWN}{ENTER}"));
  ASSERT_TRUE(WaitFor([&] { return recording.Calls("IServer_DMZ").size() == 1; }));
  ASSERT_TRUE(program.OpenMenu());
  ASSERT_TRUE(desktop::Type("{DOWN}{DOWN}{ENTER}"));
  ASSERT_TRUE(WaitFor([&] { return recording.Calls("IServer_DMZ").size() == 2; }));
  EXPECT_THAT(recording.Calls("IServer_DMZ"), ElementsAre("PUT (I4 " + LastOctet() + ")", "PUT (I4 0)"));
  EXPECT_TRUE(program.Exit());
}

TEST_F(MenuTest, TheWANAddressGoesToTheClipboard) {
  SelectRecording();
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.OpenMenu());
  Recording::Script("Result_IServer_WANIP", "text:203.0.113.77");
  ASSERT_TRUE(desktop::Type("{DOWN}{ENTER}"));
  EXPECT_TRUE(WaitFor([] { return ClipboardText() == "203.0.113.77"; }));
  EXPECT_TRUE(program.Exit());
}

TEST_F(MenuTest, AFeatureIsCalledByItsIdentifierWhateverTheBoundsOfItsArrays) {
  SelectRecording();
  Recording::Script("Features", "Reboot=7;Log page=-3");
  Recording::Script("FeatureBase", "4");
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Choose("f", "{DOWN}{ENTER}"));
  ASSERT_TRUE(WaitFor([&] { return recording.Calls("IServer_ActivateFeaure").size() == 1; }));
  EXPECT_EQ(recording.Calls("IServer_ActivateFeaure")[0],
            "METHOD+GET (BYREF+BSTR \"" + LocalAddress() + "\", BYREF+I2 -3)");
  EXPECT_TRUE(program.Exit());
}

TEST_F(MenuTest, AMissingMemberIsToldByItsNameOnceAndTheMenuOpens) {
  SelectRecording();
  ASSERT_TRUE(program.StartAndWait());
  Recording::Script("Missing_IServer_GetFeatures", "1");
  ASSERT_TRUE(Program::ClickIcon());
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Harbourline");
  EXPECT_THAT(box->text, HasSubstr("IServer_GetFeatures"));
  ASSERT_TRUE(Program::Press(*box, "OK"));
  ASSERT_TRUE(WaitFor([&] { return program.OpenMenus() == 1; })) << "behind the box";
  ASSERT_TRUE(desktop::Type("{ESC}"));
  ASSERT_TRUE(WaitFor([&] { return program.OpenMenus() == 0; }));
  EXPECT_TRUE(program.Exit()) << "without a second box";
}

TEST_F(MenuTest, AnErrorThatThePlugInRaisesIsToldInItsWords) {
  SelectRecording();
  StoreProfiles({"Game"});
  ASSERT_TRUE(program.StartAndWait());
  Recording::Script("Fail_IServer_SetPortForwarding", "The router is on fire");
  ASSERT_TRUE(program.Choose("p", kFirstProfile));
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->text, "The router is on fire (-2147220991)");
  ASSERT_TRUE(Program::Press(*box, "OK"));
  EXPECT_TRUE(program.Exit());
}

TEST_F(MenuTest, ArgumentsThatThePlugInOverwritesChangeNothingForTheProgram) {
  SelectRecording();
  StoreProfiles({"Game"});
  Recording::Script("ChangeArguments", "1");
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Choose("p", kFirstProfile));
  ASSERT_TRUE(WaitFor([&] { return Activations().size() == 2; }));
  EXPECT_THAT(recording.Calls("IServer_SetLogging"),
              testing::Each("METHOD+GET (BYREF+BSTR \"" + LocalAddress() + "\")"));
  EXPECT_THAT(Activations()[1], AllOf(HasSubstr("1000"), Not(HasSubstr("99"))));
  EXPECT_TRUE(program.Exit());
}

TEST_F(MenuTest, SetupShowsTheMainWindowAndItsCloseBoxHidesItAgain) {
  // Without the Setup Wizard, which keeps the user from other windows.
  settings::Write("Version", HARBOURLINE_VERSION);
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.OpenMenu());
  // Two entries have the key S, so the arrows lead to the fourth entry.
  ASSERT_TRUE(desktop::Type("{DOWN}{DOWN}{DOWN}{DOWN}{ENTER}"));
  const HWND window = program.Find("frmMain");
  ASSERT_TRUE(window);
  EXPECT_TRUE(WaitFor([&] { return IsWindowVisible(window) != FALSE; }));
  EXPECT_EQ(desktop::TextOf(window), "Harbourline");
  PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
  EXPECT_TRUE(WaitFor([&] { return IsWindowVisible(window) == FALSE; }));
  EXPECT_FALSE(program.HasEnded());
  EXPECT_TRUE(program.Exit());
}

}  // namespace
