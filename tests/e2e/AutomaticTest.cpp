#include "support/Scene.h"
#include "support/WindowProgram.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char kClass[] = "HarbourlineGameWindow";
constexpr char kTitle[] = "The game";
constexpr ULONGLONG kTick = 2'000;
// A tick, and the time that a loaded machine takes to act on it.
constexpr ULONGLONG kLatest = kTick + 1'500;
// A tick that would have been, and some more.
constexpr ULONGLONG kLongEnough = kTick + 500;

/// Profiles follow the window of another program while nobody looks.
class AutomaticTest : public Scene {
 protected:
  AutomaticTest() {
    SelectRecording();
    settings::Write("AutomaticActivation", "True");
  }

  /// Stores the next profile; its ports count from 1000 by tens.
  void Follow(const std::string& name, const std::string& windowClass, const std::string& windowTitle,
              bool automatic = true, bool enabled = false) {
    ++count_;
    settings::WriteProfile(count_, name, 990 + 10 * count_, enabled, automatic);
    settings::Write("MP_" + std::to_string(count_) + "_WindowClass", windowClass);
    settings::Write("MP_" + std::to_string(count_) + "_WindowTitle", windowTitle);
    settings::Write("MapProfileCount", std::to_string(count_));
  }
  bool WaitForActivations(std::size_t count) const {
    return WaitFor([&] { return Activations().size() >= count; });
  }
  bool NoMoreActivationsThan(std::size_t count) const {
    return StaysSo(kLongEnough, [&] { return Activations().size() == count; });
  }
  static std::string Mapping(const std::string& profile) { return "{sProfileName=BSTR \"" + profile + "\";"; }

 private:
  int count_ = 0;
};

TEST_F(AutomaticTest, AProfileIsOnWhileItsProgramRuns) {
  Follow("Game", kClass, kTitle);
  ASSERT_TRUE(StartWithRouter());
  {
    WindowProgram game(kClass, kTitle);
    ASSERT_TRUE(game.Runs());
    const ULONGLONG started = GetTickCount64();
    ASSERT_TRUE(WaitForActivations(2));
    EXPECT_LT(GetTickCount64() - started, kLatest);
    EXPECT_EQ(Activations()[1],
              "METHOD+GET (BYREF+ARRAY+DISPATCH [0..0] {sProfileName=BSTR \"Game\"; sDescription=BSTR "
              "\"Mapping of Game\"; lBeginPort=I4 1000; lEndPort=I4 1001; bUDP=BOOL True; bTCP=BOOL True; "
              "iForwardIPAddress=I2 " +
                  LastOctet() + "; bClearEntry=BOOL False}, BYREF+I2 " + LastOctet() + ")");
    ASSERT_TRUE(game.Close());
  }
  const ULONGLONG ended = GetTickCount64();
  ASSERT_TRUE(WaitForActivations(3));
  EXPECT_LT(GetTickCount64() - ended, kLatest);
  EXPECT_EQ(Activations()[2], EmptyRequest());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "False");
  EXPECT_EQ(settings::Read("AutomaticActivation"), "True");
}

TEST_F(AutomaticTest, ClassAndTitleCountAsAWholeAndAnEmptyOneDoesNotCount) {
  Follow("A class", kClass, "");
  Follow("A title", "", kTitle);
  Follow("Both", kClass, kTitle);
  Follow("Longer title", kClass, std::string(kTitle) + "!");
  Follow("Shorter title", "", "The gam");
  Follow("Other class", "HarbourlineGame", kTitle);
  Follow("By hand", kClass, kTitle, false);
  Follow("Neither", "", "", true, true);
  ASSERT_TRUE(StartWithRouter());
  // At the first tick, what follows nothing goes off.
  ASSERT_TRUE(WaitForActivations(2));
  EXPECT_THAT(Activations()[0], HasSubstr(Mapping("Neither")));
  EXPECT_EQ(Activations()[1], EmptyRequest());

  WindowProgram game(kClass, kTitle);
  ASSERT_TRUE(WaitForActivations(3));
  EXPECT_THAT(Activations()[2], AllOf(HasSubstr("[0..2]"), HasSubstr(Mapping("A class")),
                                      HasSubstr(Mapping("A title")), HasSubstr(Mapping("Both"))));
  ASSERT_TRUE(game.Close());
  ASSERT_TRUE(WaitForActivations(4));
  EXPECT_EQ(Activations()[3], EmptyRequest());
  EXPECT_EQ(Activations().size(), 4u) << "each tick sends its changes in one call";
}

TEST_F(AutomaticTest, WhileItsProgramRunsAProfileThatWasClearedComesBack) {
  Follow("Game", kClass, kTitle);
  const WindowProgram game(kClass, kTitle);
  ASSERT_TRUE(StartWithRouter());
  ASSERT_TRUE(WaitForActivations(2));
  // The submenu opens on "Clear All".
  ASSERT_TRUE(program.Choose("p", "{ENTER}"));
  ASSERT_TRUE(WaitForActivations(4));
  EXPECT_EQ(Activations()[2], EmptyRequest());
  EXPECT_EQ(Activations()[3], Activations()[1]);
}

TEST_F(AutomaticTest, ARefusingRouterIsAskedOnceAndBringsUpNoBox) {
  Follow("Game", kClass, kTitle);
  ASSERT_TRUE(StartWithRouter());
  Recording::Script("Result_IServer_SetPortForwarding", "bool:True");
  WindowProgram game(kClass, kTitle);
  ASSERT_TRUE(WaitForActivations(2));
  EXPECT_TRUE(NoMoreActivationsThan(2));
  EXPECT_FALSE(program.FindBox());
  ASSERT_TRUE(game.Close());
  ASSERT_TRUE(WaitForActivations(3)) << "the next change tries again";
}

TEST_F(AutomaticTest, SwitchedOffItFollowsNothing) {
  settings::Write("AutomaticActivation", "False");
  Follow("Game", kClass, kTitle);
  Follow("On", "", "", true, true);
  const WindowProgram game(kClass, kTitle);
  ASSERT_TRUE(StartWithRouter());
  EXPECT_TRUE(NoMoreActivationsThan(1));
  EXPECT_THAT(Activations()[0], AllOf(HasSubstr(Mapping("On")), Not(HasSubstr(Mapping("Game")))));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "False");
  EXPECT_EQ(settings::Read("MP_2_Enabled"), "True");
}

TEST_F(AutomaticTest, AfterAStartThatTheRouterRefusedItWaitsForAnActivationThatSucceeds) {
  Follow("Game", kClass, kTitle);
  Follow("By hand", "", "", false);
  const WindowProgram game(kClass, kTitle);
  Recording::Script("Result_IServer_SetPortForwarding", "bool:True");
  program.Start();
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  ASSERT_TRUE(Program::Press(*box, "OK"));
  Recording::Script("Result_IServer_SetPortForwarding", "bool:False");
  EXPECT_TRUE(NoMoreActivationsThan(1));
  ASSERT_TRUE(program.Choose("p", "{DOWN}{ENTER}"));
  ASSERT_TRUE(WaitForActivations(3));
  EXPECT_THAT(Activations()[1], AllOf(HasSubstr(Mapping("By hand")), Not(HasSubstr(Mapping("Game")))));
  EXPECT_THAT(Activations()[2], AllOf(HasSubstr(Mapping("By hand")), HasSubstr(Mapping("Game"))));
}

}  // namespace
