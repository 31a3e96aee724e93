// The tree of the main window and its pages.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/FindControl.h"
#include "support/Shell.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class frmMainTreeTest : public testing::Test, protected support::Shell {
 protected:
  void Open(const std::string& place = {}) {
    SelectRouter();
    if (!place.empty()) Store("LastMenuLocation", place);
    Start();
    main->Show();
  }
  template <typename Kind>
  Kind& Get(const std::string& name) {
    return support::FindControl<Kind>(*main, name);
  }
  ui::TreeView& Tree() { return Get<ui::TreeView>("tvCategories"); }
  ui::Frame& Frame() { return Get<ui::Frame>("framConfig"); }
  /// The names of what shows in the frame.
  std::vector<std::string> Seen() {
    std::vector<std::string> names;
    for (ui::Control* page : Frame().Children()) {
      if (page->Visible()) names.push_back(page->Name());
    }
    return names;
  }
  std::string Title() { return support::FindControl<ui::Label>(Frame(), "lblTitle").Caption(); }
};

TEST_F(frmMainTreeTest, HasItsNodesInOrderUnderFourBoldGroups) {
  Open();
  std::vector<std::string> nodes;
  for (const auto& node : Tree().Nodes()) {
    nodes.push_back(node.parent + "/" + node.key + "/" + node.text);
    EXPECT_EQ(node.bold, node.parent.empty()) << node.key;
    EXPECT_EQ(node.expanded, node.parent.empty()) << node.key;
    EXPECT_EQ(node.color, node.parent.empty() ? ui::Rgb(51, 153, 102) : ui::kDefaultColor) << node.key;
  }
  EXPECT_THAT(
      nodes,
      ElementsAre("/PortForwardingGroup/Port Forwarding",
                  "PortForwardingGroup/PortForwardingProfiles/Profiles",
                  "PortForwardingGroup/PortForwardingAuto/Automatic",
                  "PortForwardingGroup/PortForwardingImport/Import",
                  "PortForwardingGroup/PortForwardingExport/Export", "/WindowsGroup/Configuration",
                  "WindowsGroup/RouterConfiguration/Router", "WindowsGroup/WindowsConfiguration/Windows",
                  "WindowsGroup/Wizard/Setup Wizard", "/LoggingGroup/Activity Log",
                  "LoggingGroup/LogConfiguration/Log", "/RegisterGroup/Harbourline",
                  "RegisterGroup/About/About", "RegisterGroup/License/License", "RegisterGroup/Help/Help"));
  EXPECT_TRUE(Tree().Visible());
}

TEST_F(frmMainTreeTest, ANodeShowsItsPageAloneUnderItsHelpTopicAndIsRemembered) {
  struct Place {
    std::string key;
    std::string page;
    std::int32_t topic;
  };
  Open();
  for (const Place& place : std::vector<Place>{{"WindowsConfiguration", "ctlWinStartup", 4000},
                                               {"RouterConfiguration", "ctlRouter", 2000},
                                               {"PortForwardingProfiles", "ctlMapProfile", 9000},
                                               {"PortForwardingExport", "ctlExport", 7000},
                                               {"PortForwardingImport", "ctlExport", 8000},
                                               {"PortForwardingAuto", "ctlAutomatic", 6000},
                                               {"LogConfiguration", "ctlRouterLog", 1000},
                                               {"Wizard", "ctlSetupWizard", 3000},
                                               {"License", "rtGeneral", 0},
                                               {"Help", "ctlHelp", 0},
                                               {"About", "ctlAbout", 0}}) {
    Tree().UserSelect(place.key);
    EXPECT_THAT(Seen(), ElementsAre(place.page)) << place.key;
    EXPECT_EQ(main->HelpContextID(), place.topic) << place.key;
    EXPECT_EQ(g_Registry->LastMenuLocation, place.key);
  }
}

TEST_F(frmMainTreeTest, AGroupShowsItsTextAndNoPage) {
  Open();
  Tree().UserSelect("WindowsGroup");
  EXPECT_THAT(Seen(), ElementsAre("lblTitle"));
  EXPECT_EQ(Title(), "Configure Harbourline");
  Tree().UserSelect("PortForwardingGroup");
  EXPECT_THAT(Seen(), ElementsAre("lblTitle"));
  EXPECT_EQ(Title(), "Define port forwarding mappings for your DSL/Cable router");
  Tree().UserSelect("LoggingGroup");
  EXPECT_THAT(Seen(), ElementsAre("lblTitle"));
  EXPECT_EQ(Title(), "Monitor Internet access to and from your DSL/Cable router");
  Tree().UserSelect("RegisterGroup");
  EXPECT_THAT(Seen(), UnorderedElementsAre("lblTitle", "imgChickens"));
  EXPECT_EQ(Title(), "Harbourline Information");
  EXPECT_EQ(main->HelpContextID(), 0);
  EXPECT_EQ(g_Registry->LastMenuLocation, "RegisterGroup");
}

TEST_F(frmMainTreeTest, ImportAndExportAreOnePageWithOneTopicOfItsOwn) {
  StoreProfile(1, "Game", false);
  Open("PortForwardingImport");
  EXPECT_EQ(Get<ctlExport>("ctlExport").TransferType(), 1);
  EXPECT_EQ(Get<ctlExport>("ctlExport").HelpContextID(), 7000);
  Tree().UserSelect("PortForwardingExport");
  EXPECT_EQ(Get<ctlExport>("ctlExport").TransferType(), 0);
  EXPECT_EQ(Get<ctlExport>("ctlExport").HelpContextID(), 7000);
}

TEST_F(frmMainTreeTest, AtTheVeryFirstStartItOpensOnHelp) {
  Open();
  EXPECT_EQ(Tree().SelectedKey(), "Help");
  EXPECT_THAT(Seen(), ElementsAre("ctlHelp"));
}

TEST_F(frmMainTreeTest, OpensOnThePlaceThatWasOpenLast) {
  Open("PortForwardingAuto");
  EXPECT_EQ(Tree().SelectedKey(), "PortForwardingAuto");
  EXPECT_THAT(Seen(), ElementsAre("ctlAutomatic"));
  Tree().UserSelect("About");
  End();
  EXPECT_EQ(world.settings.Values()["LastMenuLocation"], "About");
}

TEST_F(frmMainTreeTest, AStoredPlaceThatTheTreeDoesNotHaveOpensHelp) {
  Open("NoSuchPage");
  EXPECT_EQ(Tree().SelectedKey(), "Help");
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(frmMainTreeTest, ANamedPlaceGoesBeforeTheLastOne) {
  Open("PortForwardingAuto");
  main->PopulateCategories("LogConfiguration");
  EXPECT_EQ(Tree().SelectedKey(), "LogConfiguration");
  EXPECT_EQ(g_Registry->LastMenuLocation, "LogConfiguration");
  EXPECT_EQ(Tree().Nodes().size(), 15u);
}

TEST_F(frmMainTreeTest, TheLicenceIsReadAnewEachTimeAndAMissingOneLeavesThePageEmpty) {
  world.folder.Write("License.rtf", "{\\rtf1 Take it.}");
  Open("License");
  auto& text = Get<ui::RichTextBox>("rtGeneral");
  EXPECT_EQ(text.Document(), "{\\rtf1 Take it.}");
  world.folder.Remove("License.rtf");
  Tree().UserSelect("License");
  EXPECT_EQ(text.Document(), "");
  EXPECT_EQ(text.Text(), "");
  EXPECT_THAT(Seen(), ElementsAre("rtGeneral"));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(frmMainTreeTest, AProfileThatComesOrGoesOnItsPageComesOrGoesInTheMenu) {
  Open("PortForwardingProfiles");
  auto& menu = Get<ui::Menu>("mnuPortForwarding");
  EXPECT_FALSE(menu.Visible());
  Get<ui::ToolBar>("tbProfiles").UserClick("Add");
  EXPECT_TRUE(menu.Visible());
  support::FindControl<ui::Button>(Get<ui::Control>("ctlProfile"), "cmdCancel").UserClick();
  world.toolkit.answers = {ui::MessageResult::kYes};
  Get<ui::ToolBar>("tbProfiles").UserClick("Delete");
  EXPECT_FALSE(menu.Visible());
}

TEST_F(frmMainTreeTest, AProfileThatWasEditedStandsInTheMenuUnderItsNewNameAndKey) {
  StoreProfile(1, "Game", false);
  Open("PortForwardingProfiles");
  Get<ui::ToolBar>("tbProfiles").UserClick("Edit");
  Get<ui::TextBox>("txtName").UserText("Chess");
  support::FindControl<ui::Button>(Get<ui::Control>("ctlMapProfile"), "cmdAccept").UserClick();
  OpenMenu([](ui::Menu& menu) { return Find(menu, "mnuProfiles(3)"); });
  EXPECT_EQ(Get<ui::Menu>("mnuProfiles(3)").Caption(), "Chess");
  EXPECT_TRUE((*g_Registry->ccMapProfiles().begin())->bEnabled);
}

TEST_F(frmMainTreeTest, LaysOutTheTreeAndTheFrameWithAMarginOf100) {
  Open();
  main->UserResize({0, 0, 8880, 5895});
  EXPECT_EQ(Tree().Left(), 100);
  EXPECT_EQ(Tree().Top(), 100);
  EXPECT_EQ(Tree().Height(), 5895 - 200);
  EXPECT_EQ(Frame().Left(), Tree().Right() + 100);
  EXPECT_EQ(Frame().Right(), 8880 - 100);
  EXPECT_EQ(Frame().Bottom(), 5895 - 100);
  const ui::Twips width = Tree().Width();
  main->UserResize({0, 0, 12000, 9000});
  EXPECT_EQ(Tree().Width(), width);
  for (const char* name : {"ctlHelp", "ctlMapProfile", "ctlExport", "ctlRouter", "rtGeneral"}) {
    const ui::Control& page = *support::TryFindControl(Frame(), name);
    EXPECT_EQ(page.GetBounds(), (ui::Bounds{0, 0, Frame().Width(), Frame().Height()})) << name;
  }
  const auto& title = support::FindControl<ui::Label>(Frame(), "lblTitle");
  EXPECT_EQ(title.GetBounds(), (ui::Bounds{100, 100, Frame().Width() - 200, Frame().Height() - 200}));
  EXPECT_EQ(Get<ui::Image>("imgChickens").Right(), Frame().Width());
  EXPECT_EQ(Get<ui::Image>("imgChickens").Bottom(), Frame().Height());
}

TEST_F(frmMainTreeTest, AWindowWithoutASizeHarmsNothing) {
  Open("PortForwardingProfiles");
  main->UserResize({0, 0, 0, 0});
  main->UserResize({0, 0, 8880, 5895});
  EXPECT_TRUE(Frame().Visible());
  EXPECT_THAT(Seen(), ElementsAre("ctlMapProfile"));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

}  // namespace
