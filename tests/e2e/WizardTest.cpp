#include "support/MainWindow.h"
#include "support/Scene.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The first start, on which the Setup Wizard opens by itself.
class WizardTest : public Scene {
 protected:
  static constexpr char kQuestion[] =
      "Setup Wizard has not completed. Are you sure you want to cancel the Setup Wizard?\r\n\r\n"
      "(You can always choose to run Setup Wizard at a later date)";

  bool IsUp() const { return IsWindowVisible(program.Find("frmWizard")) != FALSE; }
  bool TitleIsUp() const { return IsWindowVisible(program.Find("frmSplash")) != FALSE; }
  bool WaitForWizard() const {
    return WaitFor([this] { return IsUp(); }) && MainWindow::Shows("frmWizard.cmdNext");
  }
  static std::string Instructions() { return MainWindow::TextOf("frmWizard.rtInstructions"); }
  static bool Says(const std::string& heading) {
    return WaitFor([&] { return Instructions().rfind(heading, 0) == 0; });
  }
  /// Answers the question whether to leave the wizard; false when it isn't asked in its words.
  bool Answer(const std::string& button) const {
    const auto box = program.WaitForBox();
    if (!box) return false;
    EXPECT_EQ(box->title, "Harbourline");
    EXPECT_EQ(box->text, kQuestion);
    EXPECT_THAT(box->buttons, ElementsAre("Yes", "No"));
    return Program::Press(*box, button);
  }

  MainWindow window{program};
};

TEST_F(WizardTest, ItLeadsForwardAndBackThroughItsStepsToTheSelectedRouterAndItsLog) {
  settings::Write("RouterPlugIn_1", Recording::kClass);
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(WaitForWizard());
  EXPECT_TRUE(
      WaitFor([this] { return desktop::TextOf(program.Find("frmWizard")) == "Harbourline - Setup Wizard"; }));
  EXPECT_TRUE(Says("Welcome to the Setup Wizard for Harbourline"));
  EXPECT_FALSE(MainWindow::IsEnabled("frmWizard.cmdBack"));
  EXPECT_TRUE(MainWindow::IsEnabled("frmWizard.cmdNext"));

  ASSERT_TRUE(window.Click("frmWizard.cmdNext"));
  ASSERT_TRUE(Says("Select Your Router"));
  EXPECT_FALSE(MainWindow::IsEnabled("frmWizard.cmdNext")) << "nothing is configured yet";
  EXPECT_TRUE(MainWindow::IsEnabled("frmWizard.cmdBack"));
  ASSERT_TRUE(window.Click("frmWizard.cmdBack"));
  ASSERT_TRUE(Says("Welcome"));
  ASSERT_TRUE(window.Click("frmWizard.cmdNext"));
  ASSERT_TRUE(MainWindow::Choose("frmWizard.cbRouterSelection", std::string("Router ") + Recording::kClass));
  EXPECT_FALSE(MainWindow::IsEnabled("frmWizard.cmdNext"));
  ASSERT_TRUE(window.Click("frmWizard.cmdConfigureRouter"));

  ASSERT_TRUE(Says("Enable Logging")) << "a finished configuration leads on by itself";
  EXPECT_EQ(recording.Calls("IServer_Configure").size(), 1u);
  EXPECT_FALSE(MainWindow::IsChecked("frmWizard.chkEnableLogging"));
  const std::size_t before = recording.Lines().size();
  ASSERT_TRUE(window.Click("frmWizard.chkEnableLogging"));
  ASSERT_TRUE(WaitFor([&] { return recording.LinesFrom(before).size() >= 2; }));
  EXPECT_THAT(recording.LinesFrom(before),
              ElementsAre("Harbourline.Recording IServer_EnableLog PUT (BOOL True)",
                          "Harbourline.Recording IServer_SetLogging METHOD+GET (BYREF+BSTR \"" +
                              LocalAddress() + "\")"));
  ASSERT_TRUE(window.Click("frmWizard.cmdNext"));
  ASSERT_TRUE(Says("Setup Complete"));
  EXPECT_EQ(MainWindow::TextOf("frmWizard.cmdNext"), "&Finish");
  ASSERT_TRUE(window.Click("frmWizard.cmdBack"));
  ASSERT_TRUE(Says("Enable Logging"));
  EXPECT_EQ(MainWindow::TextOf("frmWizard.cmdNext"), "&Next >");
  ASSERT_TRUE(window.Click("frmWizard.cmdNext"));
  ASSERT_TRUE(Says("Setup Complete"));
  ASSERT_TRUE(window.Click("frmWizard.cmdNext"));
  EXPECT_TRUE(WaitFor([this] { return !IsUp(); })) << "the end asks nothing";
  EXPECT_FALSE(program.FindBox());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("RouterClass"), Recording::kClass);
}

TEST_F(WizardTest, LeavingItAsksAndNoLeavesTheStepAsItIs) {
  settings::Write("RouterPlugIn_1", Recording::kClass);
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(WaitForWizard());
  ASSERT_TRUE(window.Click("frmWizard.cmdNext"));
  ASSERT_TRUE(Says("Select Your Router"));
  const std::string text = Instructions();
  ASSERT_TRUE(window.Click("frmWizard.cmdCancel"));
  ASSERT_TRUE(Answer("No"));
  EXPECT_TRUE(IsUp());
  EXPECT_EQ(Instructions(), text);
  ASSERT_TRUE(window.Type("{ESC}"));
  ASSERT_TRUE(Answer("No")) << "the escape key is the cancel button";
  PostMessageA(program.Find("frmWizard"), WM_SYSCOMMAND, SC_CLOSE, 0);
  ASSERT_TRUE(Answer("Yes")) << "and the close box asks the same";
  EXPECT_TRUE(WaitFor([this] { return !IsUp(); }));
  EXPECT_TRUE(program.Exit());
}

TEST_F(WizardTest, AfterACancelledWizardTheNextStartHasNone) {
  settings::Clear();
  settings::Write("ShowSplashOnStartup", "False");
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(WaitForWizard());
  ASSERT_TRUE(window.Click("frmWizard.cmdCancel"));
  ASSERT_TRUE(Answer("Yes"));
  ASSERT_TRUE(WaitFor([this] { return !IsUp(); }));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("Version"), HARBOURLINE_VERSION);
  ASSERT_TRUE(program.StartAndWait());
  constexpr ULONGLONG kLongEnough = 1'000;
  EXPECT_TRUE(StaysSo(kLongEnough, [this] { return !IsUp(); }));
  EXPECT_TRUE(program.Exit());
}

TEST_F(WizardTest, TheFirstStartWithoutAPlugInShowsTheWizardBeforeTheTitleWindow) {
  settings::Clear();
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(WaitForWizard());
  EXPECT_FALSE(TitleIsUp());
  ASSERT_TRUE(window.Click("frmWizard.cmdNext"));
  ASSERT_TRUE(Says("Select Your Router"));
  EXPECT_TRUE(MainWindow::Shows("frmWizard.lblError"));
  EXPECT_THAT(MainWindow::TextOf("frmWizard.lblError"), HasSubstr("No plug-ins have been installed."));
  EXPECT_FALSE(TitleIsUp());
  ASSERT_TRUE(window.Click("frmWizard.cmdCancel"));
  ASSERT_TRUE(Answer("Yes"));
  EXPECT_TRUE(WaitFor([this] { return TitleIsUp(); }));
  EXPECT_FALSE(IsUp());
  EXPECT_TRUE(WaitFor([this] { return !TitleIsUp(); }));
  ASSERT_TRUE(window.Open()) << "the menu has its setup";
  EXPECT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("RouterCount"), "0");
  EXPECT_FALSE(settings::Read("RouterClass"));
}

/// A program that is killed writes nothing.
class KilledTest : public Scene {};

TEST_F(KilledTest, AKilledProgramLeavesTheStoreAsItWasAndTheNextStartLoadsIt) {
  SelectRecording();
  StoreProfiles({"Game", "+Voice"});
  const auto before = settings::All();
  ASSERT_TRUE(StartWithRouter());
  ASSERT_TRUE(program.Choose("p", "{DOWN}{ENTER}"));
  ASSERT_TRUE(WaitFor([&] { return Activations().size() == 2; })) << "something has changed meanwhile";
  program.Kill();
  EXPECT_EQ(settings::All(), before);
  EXPECT_THAT(recording.Calls("IServer_SaveSettings"), ElementsAre());

  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_1_Enabled"), "False");
  EXPECT_EQ(settings::Read("MP_2_Enabled"), "True");
}

}  // namespace
