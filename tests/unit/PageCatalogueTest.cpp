#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "editing/ctlExport.h"
#include "editing/ctlMapProfile.h"
#include "setup/ctlAbout.h"
#include "setup/ctlHelp.h"
#include "setup/ctlSetupWizard.h"
#include "shell/ctlWindowStartup.h"
#include "support/FindControl.h"
#include "support/Shell.h"

namespace {

constexpr ui::Color kPage = ui::Rgb(200, 150, 100);
constexpr ui::Color kList = ui::Rgb(190, 140, 90);
constexpr ui::Color kTitle = ui::Rgb(51, 153, 102);
constexpr ui::Color kHelp = ui::Rgb(0, 128, 128);
constexpr ui::Color kDarkRed = ui::Rgb(128, 0, 0);

struct Page {
  std::string name;
  ui::Twips width;
  ui::Twips height;
  std::int32_t topic;
  std::string title;
  bool transparentTitle;
  /// The controls that take the colour of the page; those on a page inside it are that page's own.
  std::vector<std::string> coloured;
  std::function<std::unique_ptr<ui::UserControl>(ui::Control*)> make;
};

template <typename Kind>
std::unique_ptr<ui::UserControl> Make(ui::Control* parent) {
  return std::make_unique<Kind>(parent, "page");
}

const std::vector<Page>& Pages() {
  static const std::vector<Page> pages = {
      {"ctlRouterConfig",
       6660,
       3270,
       2000,
       "Router Configuration",
       true,
       {"lblRouterSelection", "lblStatus", "lblStatusLabel", "lblVersion", "lblVersionLabel", "lblHelp"},
       &Make<ctlRouterConfig>},
      {"ctlWindowStartup",
       7140,
       3600,
       4000,
       "Windows Configuration",
       true,
       {"chkLoadOnStartup", "chkShowSplash"},
       &Make<ctlWindowStartup>},
      {"ctlMapProfile",
       8100,
       6990,
       9000,
       "Port Forwarding Profiles",
       true,
       {"lblHelp", "ctlProfile", "lvProfiles"},
       &Make<ctlMapProfile>},
      {"ctlExport",
       7770,
       3615,
       7000,
       "Title",
       false,
       {"lblTitle", "lblHelp", "lvProfiles", "lblError"},
       &Make<ctlExport>},
      {"ctlProfile",
       6495,
       9510,
       9010,
       "Profile Information",
       true,
       {"lblTitle", "lblName", "lblDescription", "lblWindowClass", "lblWindowTitle", "framAutoActivate",
        "ctlMappingEditor", "chkEnabled", "lblHelp", "lblRunning", "lblAuto", "txtWindowTitle",
        "txtWindowClass"},
       &Make<ctlProfile>},
      {"ctlRouterLog",
       6810,
       5850,
       1000,
       "Activity Log",
       false,
       {"lvRouterLog", "chkEnable", "chkFilterOutProfiles", "txtError", "lblTitle"},
       &Make<ctlRouterLog>},
      {"ctlAutomatic",
       7605,
       4230,
       6000,
       "Automatic Profile Activation",
       false,
       {"lblTitle", "lblHelp", "chkEnable", "lvProfiles", "lblError"},
       &Make<ctlAutomatic>},
      {"ctlMappingEditor",
       10305,
       7320,
       9030,
       "Mapping Assignments",
       true,
       {"chkTCP", "chkUDP", "framMappings", "lblError", "lblBeginRange", "lblDescription", "lblEndRange",
        "lblIP"},
       &Make<ctlMappingEditor>},
      {"ctlHelp", 4800, 3600, 0, "Help", false, {"lblTitle", "lblHelp"}, &Make<ctlHelp>},
      {"ctlAbout", 8145, 5700, 0, "About", false, {"lblTitle", "rtInfo"}, &Make<ctlAbout>},
      {"ctlSetupWizard",
       5880,
       5475,
       3000,
       "Setup Wizard",
       false,
       {"lblTitle", "rtInfo"},
       &Make<ctlSetupWizard>},
  };
  return pages;
}

const Page* PageOf(const std::string& name) {
  const auto found = std::ranges::find(Pages(), name, &Page::name);
  return found == Pages().end() ? nullptr : &*found;
}

/// The name of an array's control without its index.
std::string Stem(const ui::Control& control) {
  return control.Name().substr(0, control.Name().find('('));
}

using Colors = std::map<const ui::Control*, ui::Color>;

void CollectColors(const ui::Control& control, Colors& colors) {
  colors[&control] = control.BackColor();
  for (const ui::Control* child : control.Children()) CollectColors(*child, colors);
}

/// Every page, each on a window of its own.
class PageCatalogueTest : public testing::Test, protected support::Shell {
 protected:
  PageCatalogueTest() { g_Registry = std::make_unique<CRegistry>(); }
  ~PageCatalogueTest() override { g_Registry.reset(); }

  void ForEachPage(const std::function<void(const Page&, ui::UserControl&)>& look) {
    for (const Page& page : Pages()) {
      SCOPED_TRACE(page.name);
      const auto control = page.make(&window);
      look(page, *control);
    }
  }

  /// What stands on `control` has the colour that `page` gives it, and all else the one from before.
  void ExpectColors(const Page& page, const ui::Control& control, const Colors& before) {
    for (const ui::Control* child : control.Children()) {
      const bool taken = std::ranges::count(page.coloured, Stem(*child)) > 0;
      const ui::Color wanted = child->GetKind() == ui::Kind::kListView ? kList : kPage;
      EXPECT_EQ(child->BackColor(), taken ? wanted : before.at(child)) << child->Path();
      const Page* const inner = PageOf(child->Name());
      ExpectColors(taken && inner ? *inner : page, *child, before);
    }
  }

  /// The fonts of the control and of all that stands on it.
  void ExpectFonts(const ui::Control& control, const std::string& page) {
    ui::Font font{"Comic Sans MS", 9.75, false};
    if (control.Name() == "lblTitle") font.points = 20.25;
    if (control.Name() == "rtInfo") font.name = "MS Sans Serif";
    if (control.Name() == "framAutoActivate" || control.Name() == "lblAuto") font.bold = true;
    EXPECT_EQ(control.Font(), font) << page << " " << control.Path();
    for (const ui::Control* child : control.Children()) ExpectFonts(*child, page);
  }

  ui::Form window{"frmTest", "Test", {}, 12'000, 10'000};
};

TEST_F(PageCatalogueTest, EveryPageBeginsWithItsSizeItsTopicAndItsTitle) {
  ForEachPage([](const Page& page, ui::UserControl& control) {
    EXPECT_EQ(control.Width(), page.width);
    EXPECT_EQ(control.Height(), page.height);
    EXPECT_EQ(control.HelpContextID(), page.topic);
    const auto& title = support::FindControl<ui::Label>(control, "lblTitle");
    EXPECT_EQ(title.Caption(), page.title);
    EXPECT_EQ(title.Transparent(), page.transparentTitle);
    EXPECT_EQ(title.ForeColor(), kTitle);
    EXPECT_EQ(title.Font().points, 20.25);
  });
}

TEST_F(PageCatalogueTest, AllTextHasTheOneFaceInItsSizeButForTheFewThatDiffer) {
  ForEachPage([this](const Page& page, ui::UserControl& control) { ExpectFonts(control, page.name); });
}

TEST_F(PageCatalogueTest, TheBackgroundReachesTheControlsThatTakeItOnPagesInsidePagesTooAndNoOther) {
  ForEachPage([this](const Page& page, ui::UserControl& control) {
    Colors before;
    CollectColors(control, before);
    control.BackgroundColor(kPage);
    EXPECT_EQ(control.BackgroundColor(), kPage);
    EXPECT_EQ(control.BackColor(), kPage);
    ExpectColors(page, control, before);
    for (const std::string& name : page.coloured) {
      Colors colors;
      CollectColors(control, colors);
      EXPECT_TRUE(std::ranges::any_of(
          colors, [&](const auto& entry) { return Stem(*entry.first) == name && entry.first != &control; }))
          << "there is no " << name;
    }
  });
}

TEST_F(PageCatalogueTest, GuidanceAndErrorsHaveTheirColoursOnEveryPage) {
  ForEachPage([](const Page&, ui::UserControl& control) {
    if (const auto* help = support::TryFindControl(control, "lblHelp")) {
      EXPECT_EQ(help->ForeColor(), kHelp);
    }
    for (const char* name : {"lblError", "txtError"}) {
      if (const auto* error = support::TryFindControl(control, name)) {
        EXPECT_EQ(error->ForeColor(), kDarkRed);
      }
    }
  });
}

TEST_F(PageCatalogueTest, InTheProgramEveryPageHasTheBackgroundFromTheStart) {
  Start();
  for (const char* name :
       {"ctlRouter", "ctlWinStartup", "ctlMapProfile", "ctlProfile", "ctlMappingEditor", "ctlExport",
        "ctlRouterLog", "ctlAutomatic", "ctlAbout", "ctlSetupWizard", "ctlHelp", "framConfig"}) {
    EXPECT_EQ(support::FindControl<ui::Control>(*main, name).BackColor(), ui::Rgb(253, 235, 200)) << name;
  }
  EXPECT_EQ(support::FindControl<ui::Control>(support::FindControl<ui::Control>(*main, "ctlAutomatic"),
                                              "lvProfiles")
                .BackColor(),
            ui::Rgb(243, 225, 190));
  End();
}

/// The three pages of information, control by control.
class InformationPagesTest : public PageCatalogueTest {
 protected:
  struct Look {
    const char* name;
    std::string text;
    ui::Color color;
  };

  static std::string TextOf(ui::Control& control) {
    if (const auto* label = dynamic_cast<ui::Label*>(&control)) return label->Caption();
    if (const auto* button = dynamic_cast<ui::Button*>(&control)) return button->Caption();
    if (const auto* rich = dynamic_cast<ui::RichTextBox*>(&control)) return rich->Text();
    return "(no text)";
  }
  template <typename Kind>
  void Expect(std::initializer_list<Look> looks) {
    Kind page(&window, "page");
    for (const Look& look : looks) {
      auto& control = support::FindControl<ui::Control>(page, look.name);
      EXPECT_EQ(TextOf(control), look.text) << look.name;
      EXPECT_EQ(control.ForeColor(), look.color) << look.name;
    }
    EXPECT_EQ(page.Children().size(), looks.size()) << "a control that isn't in the list";
  }
};

TEST_F(InformationPagesTest, TheHelpPageSaysHowToGetHelp) {
  Expect<ctlHelp>(
      {{"lblTitle", "Help", kTitle},
       {"lblHelp",
        "You can press the 'F1' key at anytime to bring up context sensitive help for that subject. "
        "By pressing the \"Help\x85\" button below, you will be taken to the help menu.",
        kHelp},
       {"cmdHelp", "&Help...", ui::kDefaultColor}});
}

TEST_F(InformationPagesTest, TheWizardPageSaysWhatTheWizardIsFor) {
  Expect<ctlSetupWizard>(
      {{"lblTitle", "Setup Wizard", kTitle},
       {"rtInfo",
        "Use the Setup Wizard tool to step you through the required configuration procedures of Harbourline. "
        "You are only required to run the Setup Wizard once, however, there may be times when rerunning the "
        "Setup Wizard will cause potential configuration issues to go away.\r\n\r\n"
        "If you are looking for additional Profiles to import into this program, check our website.",
        ui::kDefaultColor},
       {"cmdWizard", "&Activate the Setup Wizard", ui::kDefaultColor}});
  ctlSetupWizard page(&window, "page");
  for (const auto& run : support::FindControl<ui::RichTextBox>(page, "rtInfo").Runs()) {
    EXPECT_FALSE(run.bold);
    EXPECT_EQ(run.color, ui::kBlack);
  }
}

TEST_F(InformationPagesTest, TheAboutPageNamesTheProgramInBoldAndItsVersionByTwoNumbersAndOnePoint) {
  ctlAbout page(&window, "page");
  const auto& runs = support::FindControl<ui::RichTextBox>(page, "rtInfo").Runs();
  ASSERT_GE(runs.size(), 2u);
  EXPECT_EQ(runs[0].text, "Harbourline");
  EXPECT_TRUE(runs[0].bold);
  const std::string rest = support::FindControl<ui::RichTextBox>(page, "rtInfo").Text().substr(11);
  const std::string version = rest.substr(0, rest.find("\r\n"));
  ASSERT_THAT(version, testing::StartsWith(" Version "));
  const std::string numbers = version.substr(9);
  EXPECT_EQ(numbers.find_first_not_of("0123456789."), numbers.npos) << numbers;
  EXPECT_EQ(numbers.find('.'), numbers.rfind('.')) << numbers;
  EXPECT_GT(numbers.find('.'), 0u) << numbers;
  EXPECT_LT(numbers.find('.') + 1, numbers.size()) << numbers;
  EXPECT_EQ(version, " Version " + modCommon::GetVersionString().substr(0, version.size() - 9));
  for (const auto& run : runs) {
    EXPECT_EQ(run.bold, &run == &runs[0]) << run.text;
    EXPECT_EQ(run.color, ui::kBlack);
  }
  EXPECT_EQ(support::FindControl<ui::Button>(page, "cmdGoToWebSite").Caption(), "&Go to Website");
  EXPECT_TRUE(support::FindControl<ui::Control>(page, "imgLogo").Visible());
  EXPECT_EQ(page.Children().size(), 4u);
}

}  // namespace
