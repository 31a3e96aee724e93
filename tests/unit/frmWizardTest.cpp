#include "setup/frmWizard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FindControl.h"
#include "support/Shell.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kQuestion =
    "Setup Wizard has not completed. Are you sure you want to cancel the Setup Wizard?\r\n\r\n"
    "(You can always choose to run Setup Wizard at a later date)";

class frmWizardTest : public testing::Test, protected support::Shell {
 protected:
  frmWizardTest() { SelectRouter(); }

  /// Starts the program when that wasn't done yet, and runs `use` in the wizard that the Setup Wizard's page
  /// opens. A wizard that `use` leaves open is ended by code.
  void Run(const std::function<void()>& use) {
    if (!main) Start();
    world.toolkit.whenIdle = [&] {
      world.toolkit.whenIdle = nullptr;
      router->calls.clear();
      use();
      if (wizard.IsLoaded()) wizard.Unload();
    };
    support::FindControl<ui::Button>(*main, "cmdWizard").UserClick();
    ASSERT_FALSE(wizard.IsLoaded());
  }

  template <typename Kind>
  Kind& Get(const std::string& name) {
    return support::FindControl<Kind>(wizard, name);
  }
  ui::Button& Back() { return Get<ui::Button>("cmdBack"); }
  ui::Button& Next() { return Get<ui::Button>("cmdNext"); }
  ui::Button& Cancel() { return Get<ui::Button>("cmdCancel"); }
  ui::CheckBox& Logging() { return Get<ui::CheckBox>("chkEnableLogging"); }
  std::string Instructions() { return Get<ui::RichTextBox>("rtInstructions").Text(); }
  std::string Major() { return Get<ui::RichTextBox>("rtMajor").Text(); }
  void Configure() { Get<ui::Button>("cmdConfigureRouter").UserClick(); }
  void AnswerYes() { world.toolkit.answers.push_back(ui::MessageResult::kYes); }

  /// The names of those of the changing parts that are seen.
  std::vector<std::string> Shown() {
    std::vector<std::string> names;
    for (const char* name :
         {"imgMajor", "imgMinor", "rtInstructions", "ctlRouterConfig", "framEnableLogging"}) {
      if (Get<ui::Control>(name).IsSeen()) names.emplace_back(name);
    }
    return names;
  }

  frmWizard& wizard = frmWizard::Shared();
};

TEST_F(frmWizardTest, TheWindowIsAWhiteDialogOfFixedSize) {
  EXPECT_EQ(wizard.Caption(), "Harbourline - Setup Wizard");
  EXPECT_EQ(wizard.BackColor(), ui::Rgb(255, 255, 255));
  EXPECT_EQ(wizard.Width(), 7560);
  EXPECT_EQ(wizard.Height(), 5430);
  EXPECT_FALSE(wizard.GetStyle().resizable);
  EXPECT_FALSE(wizard.GetStyle().minimiseAndMaximise);
  EXPECT_FALSE(wizard.GetStyle().inTaskBar);
  EXPECT_TRUE(wizard.GetStyle().centreOnScreen);
  EXPECT_TRUE(Next().Default());
  EXPECT_TRUE(Cancel().Cancel());
  EXPECT_FALSE(Get<ui::Control>("rtInstructions").TabStop());
  EXPECT_FALSE(Get<ui::Control>("rtMajor").TabStop());
}

TEST_F(frmWizardTest, OnTheWelcomeStepThereIsNoWayBack) {
  Run([this] {
    EXPECT_EQ(wizard.Step, 0);
    EXPECT_FALSE(Back().Enabled());
    EXPECT_TRUE(Next().Enabled());
    EXPECT_EQ(Next().Caption(), "&Next >");
    EXPECT_THAT(Shown(), ElementsAre("imgMajor", "rtInstructions"));
    EXPECT_EQ(Instructions(),
              "Welcome to the Setup Wizard for Harbourline\r\n\r\n"
              "The Setup Wizard will allow you to configure Harbourline. \r\n\r\n"
              "Harbourline is a utility that helps you control and monitor your router's firewall "
              "capabilites without sacrificing protection for convenience of use.\r\n\r\n"
              "To continue, click Next.\r\n\r\n\r\n");
    const auto& runs = Get<ui::RichTextBox>("rtInstructions").Runs();
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_TRUE(runs[0].bold);
    EXPECT_FALSE(runs[1].bold);
  });
}

TEST_F(frmWizardTest, OnTheRoutersStepNextWaitsForAConfiguration) {
  Run([this] {
    Next().UserClick();
    EXPECT_EQ(wizard.Step, 1);
    EXPECT_FALSE(Next().Enabled());
    EXPECT_TRUE(Back().Enabled());
    EXPECT_THAT(Shown(), ElementsAre("imgMinor", "rtInstructions", "ctlRouterConfig"));
    EXPECT_EQ(Instructions(),
              "Select Your Router\r\n\tSelect your router model from the list, then press Configure.");
  });
}

TEST_F(frmWizardTest, AGoodConfigurationMovesTheWizardOnByItself) {
  Run([this] {
    Next().UserClick();
    Configure();
    EXPECT_EQ(wizard.Step, 2);
    EXPECT_EQ(wizard.RouterConfigured, -1);
    EXPECT_THAT(Shown(), ElementsAre("imgMinor", "rtInstructions", "framEnableLogging"));
    EXPECT_TRUE(Logging().IsSeen());
    EXPECT_EQ(Instructions(), "Enable Logging\r\n\tMonitoring of incoming and outgoing Internet access.");
    EXPECT_EQ(Major(),
              "Depending on your router model, Harbourline can monitor all Internet activity inbound and "
              "outbound of your router. By having the log enabled, you can see who is attempting to access "
              "your computer from the Internet as well as see whether there is any activity indicating that "
              "you might have Spyware installed on your computer.\r\n\r\n"
              "You can turn this feature on or off at anytime.");
  });
}

TEST_F(frmWizardTest, AConfigurationThatIsNotGoodStaysOnItsStep) {
  router->Answer("IServer_Configure", true);
  Run([this] {
    Next().UserClick();
    Configure();
    EXPECT_EQ(wizard.Step, 1);
    EXPECT_FALSE(Next().Enabled());
  });
}

TEST_F(frmWizardTest, BackOnTheRoutersStepNextStaysEnabledAfterAConfiguration) {
  Run([this] {
    Next().UserClick();
    Configure();
    Back().UserClick();
    EXPECT_EQ(wizard.Step, 1);
    EXPECT_TRUE(Next().Enabled());
  });
}

TEST_F(frmWizardTest, AnotherChoiceOfRouterDisablesNextUntilTheNextConfiguration) {
  world.objects.AddPlugIn("Other.Router", "Other Router");
  Store("RouterCount", "2");
  Store("Router_2", "Other.Router");
  Run([this] {
    Next().UserClick();
    Configure();
    Back().UserClick();
    auto& list = Get<ui::ComboBox>("cbRouterSelection");
    ASSERT_EQ(list.ListCount(), 2);
    list.UserSelect(1 - list.ListIndex());
    EXPECT_FALSE(Next().Enabled());
    EXPECT_EQ(wizard.RouterConfigured, 0);
    Configure();
    EXPECT_EQ(wizard.Step, 2);
  });
}

TEST_F(frmWizardTest, TheLastStepFinishesWithoutAQuestion) {
  Run([this] {
    Next().UserClick();
    Configure();
    Next().UserClick();
    EXPECT_EQ(wizard.Step, 3);
    EXPECT_EQ(Next().Caption(), "&Finish");
    EXPECT_EQ(Instructions(), "Setup Complete\r\n\tYou have completed Harbourline Setup Wizard.");
    EXPECT_EQ(Major(),
              "All essential information has been entered. \r\n\r\n"
              "Thank you for using this program. To continue, click Finish.");
    EXPECT_FALSE(Logging().IsSeen());
    Next().UserClick();
    EXPECT_FALSE(wizard.IsLoaded());
    EXPECT_EQ(wizard.Step, 4);
    EXPECT_EQ(wizard.Cancelled, 0);
  });
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(frmWizardTest, CancelAsksOnEveryStepAlsoOnTheLast) {
  for (int step = 0; step <= 3; ++step) {
    world.toolkit.messages.clear();
    Run([&] {
      if (step > 0) Next().UserClick();
      if (step > 1) Configure();
      if (step > 2) Next().UserClick();
      ASSERT_EQ(wizard.Step, step);
      AnswerYes();
      Cancel().UserClick();
      EXPECT_FALSE(wizard.IsLoaded());
      EXPECT_EQ(wizard.Cancelled, -1);
    });
    ASSERT_EQ(world.toolkit.messages.size(), 1u) << step;
    EXPECT_EQ(world.toolkit.messages[0].text, kQuestion);
    EXPECT_EQ(world.toolkit.messages[0].title, "Harbourline");
    EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kWarning);
    EXPECT_EQ(world.toolkit.messages[0].buttons, ui::MessageButtons::kYesNo);
  }
}

TEST_F(frmWizardTest, TheCloseBoxAsksTheSameOnce) {
  Run([this] {
    AnswerYes();
    wizard.UserClose(ui::CloseReason::kUser);
    EXPECT_FALSE(wizard.IsLoaded());
    EXPECT_EQ(wizard.Cancelled, 0);
  });
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, kQuestion);
}

TEST_F(frmWizardTest, AfterNoToTheQuestionStepAndTextsAreWhatTheyWere) {
  Run([this] {
    Next().UserClick();
    Configure();
    const std::string instructions = Instructions();
    const std::string major = Major();
    for (const auto& close : {std::function<void()>([this] { Cancel().UserClick(); }),
                              std::function<void()>([this] { wizard.UserClose(ui::CloseReason::kUser); })}) {
      world.toolkit.answers.push_back(ui::MessageResult::kNo);
      close();
      EXPECT_TRUE(wizard.IsLoaded());
      EXPECT_EQ(wizard.Step, 2);
      EXPECT_EQ(wizard.Cancelled, 0);
      EXPECT_EQ(Instructions(), instructions);
      EXPECT_EQ(Major(), major);
    }
  });
}

TEST_F(frmWizardTest, TheLogsSwitchGoesToThePlugInAtTheClickWhateverItSays) {
  Run([this] {
    Logging().UserClick();
    EXPECT_THAT(router->calls,
                ElementsAre("put IServer_EnableLog = True", "call IServer_SetLogging(&\"192.168.1.7\")"));
    router->calls.clear();
    Logging().UserClick();
    EXPECT_THAT(router->calls,
                ElementsAre("put IServer_EnableLog = False", "call IServer_SetLogging(&\"192.168.1.7\")"));
  });
}

TEST_F(frmWizardTest, APlugInWhoseLogIsOnIsToldSoAgainAtEachLoadOfTheSession) {
  router->Answer("IServer_EnableLog", true);
  Start();
  for (const char* run : {"first", "second"}) {
    SCOPED_TRACE(run);
    router->calls.clear();
    world.toolkit.whenIdle = [this] { wizard.Unload(); };
    wizard.ShowModal(main.get());
    EXPECT_TRUE(Logging().Checked());
    ASSERT_GE(router->calls.size(), 3u);
    EXPECT_THAT(std::vector<std::string>(router->calls.end() - 3, router->calls.end()),
                ElementsAre("get IServer_EnableLog", "put IServer_EnableLog = True",
                            "call IServer_SetLogging(&\"192.168.1.7\")"));
  }
}

TEST_F(frmWizardTest, ALogThatWasSwitchedOffElsewhereIsNotSwitchedByTheNextLoad) {
  router->Answer("IServer_EnableLog", true);
  Start();
  world.toolkit.whenIdle = [this] { wizard.Unload(); };
  wizard.ShowModal(main.get());
  ASSERT_TRUE(Logging().Checked());
  router->Answer("IServer_EnableLog", false);
  auto& page = support::FindControl<ctlRouterLog>(*main, "ctlRouterLog");
  support::FindControl<ui::CheckBox>(page, "chkEnable").UserClick();
  router->calls.clear();
  wizard.ShowModal(main.get());
  EXPECT_FALSE(Logging().Checked());
  EXPECT_THAT(router->calls, testing::Not(testing::Contains(StartsWith("put"))));
  EXPECT_EQ(router->calls.back(), "get IServer_EnableLog");
}

TEST_F(frmWizardTest, TheRoutersStateBecomesTheTipOfTheIcon) {
  world.network.connected = true;
  Run([this] {
    router->Answer("IServer_WANIP", "203.0.113.77");
    Next().UserClick();
    Configure();
  });
  ASSERT_FALSE(world.notificationArea.calls.empty());
  EXPECT_THAT(world.notificationArea.calls.back().data.szTip.data(), HasSubstr("WAN 203.0.113.77"));
}

TEST_F(frmWizardTest, ItRunsFromItsFirstStepAgain) {
  Run([this] {
    Next().UserClick();
    Configure();
  });
  Run([this] {
    EXPECT_EQ(wizard.Step, 0);
    EXPECT_EQ(wizard.RouterConfigured, 0);
    EXPECT_THAT(Instructions(), StartsWith("Welcome to"));
  });
}

TEST_F(frmWizardTest, AnotherVersionInTheSettingsShowsItBeforeAnythingElse) {
  Store("Version", "0.0.1");
  int steps = 0;
  world.toolkit.whenIdle = [&] {
    ++steps;
    wizard.Unload();
  };
  Start();
  EXPECT_EQ(steps, 1);
}

TEST_F(frmWizardTest, WithoutAPlugInTheSwitchHasNoEffectAndNothingIsTold) {
  world.settings.Values().clear();
  Store("Version", modCommon::GetVersionString());
  Run([this] {
    Next().UserClick();
    EXPECT_FALSE(Get<ui::Button>("cmdConfigureRouter").IsSeen());
    EXPECT_THAT(Get<ui::Label>("lblError").Caption(), StartsWith("No plug-ins have been installed."));
    Logging().UserClick();
    EXPECT_THAT(router->calls, IsEmpty());
  });
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(frmWizardTest, APlugInThatFailsInEachMemberIsToldAndTheWizardStays) {
  Start();
  for (const char* member : {"IServer_Version", "IServer_Functional", "IServer_WANIP", "IServer_EnableLog",
                             "IServer_SetLogging", "IServer_Configure"}) {
    router->Fail(member, 5, std::string(member) + " is broken");
    world.toolkit.messages.clear();
    Run([&] {
      EXPECT_TRUE(wizard.IsLoaded());
      Next().UserClick();
      Configure();
      Logging().UserClick();
      EXPECT_TRUE(wizard.IsLoaded());
    });
    if (std::string(member) != "IServer_WANIP" || world.network.connected) {
      EXPECT_FALSE(world.toolkit.messages.empty()) << member;
    }
    router->Answer(member, false);
    ui::EventGuard::Reset();
  }
}

TEST_F(frmWizardTest, ThePartsStandWhereEachStepNeedsThem) {
  Run([this] {
    EXPECT_EQ(Get<ui::Control>("framButtons").Bottom(), wizard.Height());
    EXPECT_EQ(Get<ui::Control>("framButtons").Width(), wizard.Width());
    EXPECT_EQ(Get<ui::Control>("imgMajor").Left(), 0);
    EXPECT_EQ(Get<ui::Control>("rtInstructions").Left(), Get<ui::Control>("imgMajor").Right() + 100);
    EXPECT_LE(Get<ui::Control>("imgMajor").Bottom(), Get<ui::Control>("framButtons").Top());
    Next().UserClick();
    EXPECT_EQ(Get<ui::Control>("imgMinor").Right(), wizard.Width());
    EXPECT_EQ(Get<ui::Control>("imgMinor").Top(), 0);
    EXPECT_LT(Get<ui::Control>("rtInstructions").Right(), Get<ui::Control>("imgMinor").Left());
    EXPECT_EQ(Get<ui::Control>("ctlRouterConfig").Bottom(), Get<ui::Control>("framButtons").Top());
    Configure();
    EXPECT_EQ(Logging().Left(), 100);
    EXPECT_EQ(Get<ui::Control>("rtMajor").Bottom() + 100, Logging().Top());
    Next().UserClick();
    EXPECT_EQ(Get<ui::Control>("rtMajor").Bottom() + 100, Get<ui::Control>("framEnableLogging").Height());
  });
}

}  // namespace
