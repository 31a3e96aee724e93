#include "support/Scene.h"

namespace {

using testing::ElementsAre;

class StartTest : public Scene {};

TEST_F(StartTest, AFirstStartFindsNoSettingsAndLeavesTheDefaults) {
  settings::Clear();
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(program.ExitCode(), 0u);
  EXPECT_EQ(settings::All(), (settings::Values{{"RouterCount", "0"},
                                               {"Version", HARBOURLINE_VERSION},
                                               {"LoadOnStartup", "True"},
                                               {"ShowSplashOnStartup", "True"},
                                               {"TrayLights", "1"},
                                               {"MapProfileCount", "0"},
                                               {"ExportProfiles", "True"},
                                               {"LastMenuLocation", "Help"},
                                               {"AutomaticActivation", "False"},
                                               {"FilterOutProfiles", "False"}}));
  EXPECT_EQ(settings::AutoStart(), program.Executable());
}

TEST_F(StartTest, AnAnnouncedPlugInIsTakenInAndItsValueIsGoneAtOnce) {
  settings::Write("RouterPlugIn_7", Recording::kClass);
  ASSERT_TRUE(program.StartAndWait());
  EXPECT_FALSE(settings::Read("RouterPlugIn_7"));
  EXPECT_THAT(recording.Lines(), testing::Contains("Harbourline.Recording created"));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("RouterCount"), "1");
  EXPECT_EQ(settings::Read("Router_1"), Recording::kClass);
  // A first start selects none: the wizard does.
  EXPECT_FALSE(settings::Read("RouterClass"));
}

TEST_F(StartTest, AnAnnouncedClassThatDoesNotExistIsConsumedWithoutAWord) {
  settings::Write("RouterPlugIn_57", "Harbourline.NoSuchClass");
  ASSERT_TRUE(program.StartAndWait());
  EXPECT_FALSE(program.FindBox());
  EXPECT_FALSE(settings::Read("RouterPlugIn_57"));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("RouterCount"), "0");
}

TEST_F(StartTest, AnAnnouncedPlugInOfTheWrongWidthIsConsumedWithoutAWord) {
  ASSERT_TRUE(Recording::RegisterOfOtherWidth("Harbourline.OtherWidth", program.Folder() + "\\Other.dll"));
  settings::Write("RouterPlugIn_1", "Harbourline.OtherWidth");
  settings::Write("RouterPlugIn_2", Recording::kClass);
  ASSERT_TRUE(program.StartAndWait());
  EXPECT_FALSE(program.FindBox());
  EXPECT_FALSE(settings::Read("RouterPlugIn_1"));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("RouterCount"), "1");
  EXPECT_EQ(settings::Read("Router_1"), Recording::kClass);
}

TEST_F(StartTest, ThreeStoredProfilesComeBackInTheOrderOfTheirNames) {
  settings::Write("MapProfileCount", "3");
  settings::WriteProfile(1, "Voice", 3784, false);
  settings::WriteProfile(2, "game", 27015, false);
  settings::WriteProfile(3, "Chess \xE9", 5000, true);
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MapProfileCount"), "3");
  EXPECT_EQ(settings::Read("MP_1_Name"), "Chess \xE9");
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "True");
  EXPECT_EQ(settings::Read("MP_1_MAP_1_BeginPort"), "5000");
  EXPECT_EQ(settings::Read("MP_2_Name"), "Voice");
  EXPECT_EQ(settings::Read("MP_3_Name"), "game");
  EXPECT_EQ(settings::Read("MP_3_MAP_1_EndPort"), "27016");
}

TEST_F(StartTest, TwoStoredProfilesOfOneNameAreToldApartByANumber) {
  settings::Write("MapProfileCount", "2");
  settings::WriteProfile(1, "Game", 1, false);
  settings::WriteProfile(2, "Game", 2, false);
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Name"), "Game");
  EXPECT_EQ(settings::Read("MP_2_Name"), "Game(1)");
}

TEST_F(StartTest, AProfileStoredAsEnabledIsSentAgainAtTheStart) {
  SelectRecording();
  settings::Write("MapProfileCount", "2");
  settings::WriteProfile(1, "Game", 27015, true);
  settings::WriteProfile(2, "Voice", 3784, false);
  settings::Write("MP_1_MAP_1_ForwardIPAddress", "12");
  ASSERT_TRUE(program.StartAndWait());
  const auto calls = recording.Calls("IServer_SetPortForwarding");
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_THAT(
      calls[0],
      testing::StartsWith("METHOD+GET (BYREF+ARRAY+DISPATCH [0..0] {sProfileName=BSTR \"Game\"; "
                          "sDescription=BSTR \"Mapping of Game\"; lBeginPort=I4 27015; lEndPort=I4 27016; "
                          "bUDP=BOOL True; bTCP=BOOL True; iForwardIPAddress=I2 12; bClearEntry=BOOL False}, "
                          "BYREF+I2 "));
  EXPECT_TRUE(program.Exit());
}

TEST_F(StartTest, AnUpgradeForgetsTheSelectedRouterAndKeepsTheProfiles) {
  SelectRecording();
  settings::Write("Version", "0.9.0");
  settings::Write("MapProfileCount", "1");
  settings::WriteProfile(1, "Game", 27015, true);
  ASSERT_TRUE(program.StartAndWait());
  EXPECT_THAT(recording.Calls("IServer_SetPortForwarding"), ElementsAre());
  ASSERT_TRUE(program.Exit());
  EXPECT_FALSE(settings::Read("RouterClass"));
  EXPECT_EQ(settings::Read("Router_1"), Recording::kClass);
  EXPECT_EQ(settings::Read("MP_1_Name"), "Game");
  EXPECT_EQ(settings::Read("Version"), HARBOURLINE_VERSION);
}

TEST_F(StartTest, ARefusingRouterAtTheStartBringsUpTheFiveCauses) {
  SelectRecording();
  Recording::Script("Result_IServer_SetPortForwarding", "bool:True");
  program.Start();
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Harbourline");
  EXPECT_THAT(box->buttons, ElementsAre("OK"));
  EXPECT_THAT(box->text, testing::HasSubstr("An error occurred during profile activation."));
  EXPECT_THAT(box->text,
              testing::HasSubstr("   4) Plug-in you are using is not compatable with your router."));
  EXPECT_THAT(box->text,
              testing::HasSubstr("   5) Router has not been setup. Need to run Setup Wizard again."));
  ASSERT_TRUE(Program::Press(*box, "OK"));
  EXPECT_TRUE(program.Exit());
}

TEST_F(StartTest, WhatThePlugInSeesFromStartToExitIsTheSettledListOfCalls) {
  SelectRecording();
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Exit());
  const std::string local = LocalAddress();
  const auto call = [](const std::string& member, const std::string& arguments = "()") {
    return std::string(Recording::kClass) + " " + member + " METHOD+GET " + arguments;
  };
  const std::string advised = std::string(Recording::kClass) + " advised";
  const std::string unadvised = std::string(Recording::kClass) + " unadvised";
  const std::string setLogging = call("IServer_SetLogging", "(BYREF+BSTR \"" + local + "\")");
  EXPECT_THAT(
      recording.Lines(),
      ElementsAre(std::string(Recording::kClass) + " created",
                  // The list of known routers, and the selected one among them.
                  call("IServer_ServerTitle"), call("IServer_ClassName"),
                  // The router page fills its list, which selects the router: a first look at it.
                  call("IServer_ServerTitle"), call("IServer_ServerTitle"), call("IServer_Functional"),
                  call("IServer_Version"), call("IServer_WANIP"), call("IServer_Functional"),
                  call("IServer_EventHandler"), advised, call("IServer_EnableLog"),
                  call("IServer_Functional"), setLogging,
                  // The page is filled: a second look.
                  call("IServer_Version"), call("IServer_WANIP"), call("IServer_Functional"),
                  // The same router is bound again, and the binding before it ends when the new one is there.
                  call("IServer_EventHandler"), advised, unadvised, call("IServer_EnableLog"),
                  call("IServer_Functional"), setLogging,
                  // The log binds to the router, and the active profiles, of which there are none, are sent.
                  call("IServer_EventHandler"), advised, unadvised, call("IServer_EnableLog"),
                  call("IServer_SetPortForwarding",
                       "(BYREF+ARRAY+DISPATCH [10..10] null, BYREF+I2 " + LastOctet() + ")"),
                  // The menu for the exit.
                  call("IServer_WANIP"),
                  call("IServer_GetFeatures", "(BYREF+ARRAY+BSTR [0..-1], BYREF+ARRAY+I2 [0..-1])"),
                  // The exit.
                  call("IServer_ApplicationExiting", "(BSTR \"" + local + "\")"), unadvised,
                  call("IServer_ClassName"), call("IServer_ClassName"), call("IServer_SaveSettings"),
                  std::string(Recording::kClass) + " released"));
}

}  // namespace
