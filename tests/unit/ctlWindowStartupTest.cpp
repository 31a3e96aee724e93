#include "shell/ctlWindowStartup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/FindControl.h"
#include "support/Shell.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The page on a window of its own.
class ctlWindowStartupTest : public testing::Test {
 protected:
  ~ctlWindowStartupTest() override {
    page.reset();
    g_Registry.reset();
  }

  void Store(const std::string& key, const std::string& value) { world.settings.Values()[key] = value; }
  void Open() {
    page.reset();
    g_Registry = std::make_unique<CRegistry>();
    page = std::make_unique<ctlWindowStartup>(&window, "ctlWinStartup");
    world.journal.clear();
  }
  template <typename Kind>
  Kind& Get(const std::string& name) {
    return support::FindControl<Kind>(*page, name);
  }
  ui::CheckBox& Load() { return Get<ui::CheckBox>("chkLoadOnStartup"); }
  ui::CheckBox& Splash() { return Get<ui::CheckBox>("chkShowSplash"); }
  ui::ComboBox& Tray() { return Get<ui::ComboBox>("cbSystemTray"); }

  support::World world;
  ui::Form window{"frmTest", "Test", {}, 8000, 6000};
  std::unique_ptr<ctlWindowStartup> page;
};

TEST_F(ctlWindowStartupTest, ItsControlsHaveTheirTextsFontsAndColours) {
  Open();
  EXPECT_EQ(page->Width(), 7140);
  EXPECT_EQ(page->Height(), 3600);
  EXPECT_EQ(page->HelpContextID(), 4000);
  const auto& title = Get<ui::Label>("lblTitle");
  EXPECT_EQ(title.Caption(), "Windows Configuration");
  EXPECT_EQ(title.Font(), (ui::Font{"Comic Sans MS", 20.25, false}));
  EXPECT_EQ(title.ForeColor(), ui::Rgb(51, 153, 102));
  EXPECT_TRUE(title.Transparent());
  EXPECT_EQ(Load().Caption(), "&Load on Startup");
  EXPECT_EQ(Splash().Caption(), "&Show Title Window on Startup");
  EXPECT_EQ(Get<ui::Label>("lblSystemTray").Caption(), "System Tray:");
  EXPECT_TRUE(Get<ui::Label>("lblSystemTray").Transparent());
  EXPECT_EQ(Tray().ForeColor(), ui::Rgb(0, 0, 192));
}

TEST_F(ctlWindowStartupTest, TheListHasThreeEntriesWithTheirNumbersInOrder) {
  Open();
  ASSERT_EQ(Tray().ListCount(), 3);
  EXPECT_EQ(Tray().List(0), "Activity Lights");
  EXPECT_EQ(Tray().ItemData(0), 1);
  EXPECT_EQ(Tray().List(1), "Speed Bar");
  EXPECT_EQ(Tray().ItemData(1), 2);
  EXPECT_EQ(Tray().List(2), "Logo (nothing blinks)");
  EXPECT_EQ(Tray().ItemData(2), 3);
}

TEST_F(ctlWindowStartupTest, TheBackgroundGoesToTheTwoCheckBoxesOnly) {
  Open();
  const ui::Color color = ui::Rgb(10, 20, 30);
  page->BackgroundColor(color);
  EXPECT_EQ(page->BackgroundColor(), color);
  EXPECT_EQ(Load().BackColor(), color);
  EXPECT_EQ(Splash().BackColor(), color);
  for (const char* name : {"lblTitle", "lblSystemTray", "cbSystemTray"}) {
    EXPECT_EQ(Get<ui::Control>(name).BackColor(), ui::kDefaultColor) << name;
  }
}

TEST_F(ctlWindowStartupTest, ItShowsTheStoredChoicesAndChangesNoneOfThem) {
  for (const bool load : {false, true}) {
    for (const bool splash : {false, true}) {
      for (const std::int32_t lights : {1, 2, 3}) {
        Store("LoadOnStartup", load ? "True" : "False");
        Store("ShowSplashOnStartup", splash ? "True" : "False");
        Store("TrayLights", std::to_string(lights));
        Open();
        EXPECT_EQ(Load().Checked(), load);
        EXPECT_EQ(Splash().Checked(), splash);
        EXPECT_EQ(Tray().ListIndex(), lights - 1);
        EXPECT_EQ(g_Registry->LoadOnStartup, load);
        EXPECT_EQ(g_Registry->ShowSplashOnStartup, splash);
        EXPECT_EQ(g_Registry->TrayLights, lights);
      }
    }
  }
}

TEST_F(ctlWindowStartupTest, WithoutStoredChoicesBothBoxesAreCheckedAndTheLightsAreOn) {
  Open();
  EXPECT_TRUE(Load().Checked());
  EXPECT_TRUE(Splash().Checked());
  EXPECT_EQ(Tray().Text(), "Activity Lights");
}

TEST_F(ctlWindowStartupTest,
       AStoredKindOfPictureThatIsNotInTheListSelectsNothingAndStaysUntilTheUserChooses) {
  for (const char* stored : {"0", "4", "-1", "32767", "-32768"}) {
    SCOPED_TRACE(stored);
    Store("TrayLights", stored);
    Open();
    EXPECT_EQ(Tray().ListIndex(), -1);
    EXPECT_EQ(Tray().Text(), "");
    EXPECT_EQ(std::to_string(g_Registry->TrayLights), stored);
    Load().UserClick();
    Splash().UserClick();
    g_Registry->Save();
    EXPECT_EQ(world.settings.Values()["TrayLights"], stored);
    Tray().UserSelect(1);
    EXPECT_EQ(g_Registry->TrayLights, 2);
  }
}

TEST_F(ctlWindowStartupTest, AClickOnABoxChangesItsOwnChoiceAtOnceAndBack) {
  Open();
  Load().UserClick();
  EXPECT_FALSE(g_Registry->LoadOnStartup);
  EXPECT_TRUE(g_Registry->ShowSplashOnStartup);
  Splash().UserClick();
  EXPECT_FALSE(g_Registry->ShowSplashOnStartup);
  Load().UserClick();
  EXPECT_TRUE(g_Registry->LoadOnStartup);
  EXPECT_FALSE(g_Registry->ShowSplashOnStartup);
  Splash().UserClick();
  EXPECT_TRUE(g_Registry->ShowSplashOnStartup);
  EXPECT_EQ(g_Registry->TrayLights, 1);
}

TEST_F(ctlWindowStartupTest, AChoiceInTheListIsTheNumberOfItsEntry) {
  Open();
  for (const std::int32_t row : {2, 1, 0, 2}) {
    Tray().UserSelect(row);
    EXPECT_EQ(g_Registry->TrayLights, row + 1);
  }
  EXPECT_TRUE(g_Registry->LoadOnStartup);
  EXPECT_TRUE(g_Registry->ShowSplashOnStartup);
}

TEST_F(ctlWindowStartupTest, NothingIsStoredAndNoLogonEntryChangesBeforeTheNextSave) {
  Open();
  world.systemHelper.entries["Harbourline"] = "as before";
  Load().UserClick();
  Splash().UserClick();
  Tray().UserSelect(2);
  EXPECT_THAT(world.journal, IsEmpty());
  EXPECT_TRUE(world.systemHelper.entries.contains("Harbourline"));
  g_Registry->Save();
  EXPECT_EQ(world.settings.Values()["LoadOnStartup"], "False");
  EXPECT_EQ(world.settings.Values()["ShowSplashOnStartup"], "False");
  EXPECT_EQ(world.settings.Values()["TrayLights"], "3");
  EXPECT_FALSE(world.systemHelper.entries.contains("Harbourline"));
}

TEST_F(ctlWindowStartupTest, EachControlStandsAHundredTwipsBelowTheOneBeforeAtAnyWidth) {
  Open();
  for (const ui::Twips width : {2000, 3000, 4000, 4699, 4700, 7140, 20'000}) {
    SCOPED_TRACE(width);
    page->Move(0, 0, width, 3600);
    const auto& title = Get<ui::Control>("lblTitle");
    const auto& label = Get<ui::Control>("lblSystemTray");
    EXPECT_EQ(title.Width(), width - 100);
    EXPECT_EQ(Load().Top(), title.Bottom() + 100);
    EXPECT_EQ(Splash().Top(), Load().Bottom() + 100);
    EXPECT_EQ(label.Top(), Splash().Bottom() + 100);
    EXPECT_GE(Tray().Left(), label.Right());
    EXPECT_EQ(Tray().Top(), Splash().Bottom() + 100);
    EXPECT_LE(Tray().Right(), width - 100);
    EXPECT_GT(Tray().Width(), 0);
  }
}

TEST_F(ctlWindowStartupTest, APageWithoutRoomIsLaidOutWithoutAFailure) {
  Open();
  for (const ui::Twips width : {50, 0}) {
    page->Move(0, 0, width, 0);
    EXPECT_EQ(Get<ui::Control>("lblTitle").Width(), 0);
  }
}

/// The page in the whole program.
class ctlWindowStartupInMainTest : public testing::Test, protected support::Shell {
 protected:
  template <typename Kind>
  Kind& Get(const std::string& name) {
    return support::FindControl<Kind>(support::FindControl<ctlWindowStartup>(*main, "ctlWinStartup"), name);
  }
  void Show(const std::string& node) {
    support::FindControl<ui::TreeView>(*main, "tvCategories").UserSelect(node);
  }
  /// The picture in the notification area after the next tick, with a packet out. The same traffic at every
  /// tick fills the speed bar.
  std::string PictureOfTheNextTick() {
    ++world.network.statistics.outSegments;
    world.toolkit.Advance(333);
    const ui::PictureRef& icon = Tray().Icon();
    return icon ? icon->resource : "none";
  }
};

TEST_F(ctlWindowStartupInMainTest, TheNextTickShowsTheChosenKindOfPicture) {
  SelectRouter();
  Store("TrayLights", "3");
  Start();
  PictureOfTheNextTick();
  std::vector<std::string> pictures{PictureOfTheNextTick()};
  for (const std::int32_t row : {0, 1, 2}) {
    Get<ui::ComboBox>("cbSystemTray").UserSelect(row);
    pictures.push_back(PictureOfTheNextTick());
  }
  EXPECT_THAT(pictures, ElementsAre("HARBOURLINE", "NETLIGHT02", "NETLIGHT14", "HARBOURLINE"));
}

TEST_F(ctlWindowStartupInMainTest, ItKeepsWhatItReadAtTheStartWhenItIsShownAgain) {
  SelectRouter();
  Start();
  main->Show();
  Show("WindowsConfiguration");
  g_Registry->LoadOnStartup = false;
  g_Registry->ShowSplashOnStartup = true;
  g_Registry->TrayLights = 3;
  Show("About");
  Show("WindowsConfiguration");
  EXPECT_TRUE(Get<ui::CheckBox>("chkLoadOnStartup").IsSeen());
  EXPECT_TRUE(Get<ui::CheckBox>("chkLoadOnStartup").Checked());
  EXPECT_FALSE(Get<ui::CheckBox>("chkShowSplash").Checked()) << "off when it was read";
  EXPECT_EQ(Get<ui::ComboBox>("cbSystemTray").Text(), "Activity Lights");
  EXPECT_FALSE(g_Registry->LoadOnStartup);
  EXPECT_EQ(g_Registry->TrayLights, 3);
}

TEST_F(ctlWindowStartupInMainTest, UncheckingLoadOnStartupAndExitingRemovesTheLogonEntry) {
  SelectRouter();
  Start();
  world.systemHelper.entries["Harbourline"] = "as before";
  Get<ui::CheckBox>("chkLoadOnStartup").UserClick();
  EXPECT_TRUE(world.systemHelper.entries.contains("Harbourline"));
  End();
  EXPECT_FALSE(world.systemHelper.entries.contains("Harbourline"));
}

TEST_F(ctlWindowStartupInMainTest, CheckingItAgainAndExitingWritesTheLogonEntry) {
  SelectRouter();
  Store("LoadOnStartup", "False");
  Start();
  Get<ui::CheckBox>("chkLoadOnStartup").UserClick();
  EXPECT_FALSE(world.systemHelper.entries.contains("Harbourline"));
  End();
  EXPECT_TRUE(world.systemHelper.entries.contains("Harbourline"));
}

}  // namespace
