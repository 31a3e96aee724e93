#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/RouterConfigTest.h"
#include "support/Shell.h"

namespace {

using support::Join;
using support::kLook;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class ctlRouterConfigTest : public support::RouterConfigTest {};

TEST_F(ctlRouterConfigTest, ItsControlsHaveTheirTextsFontsAndColours) {
  Open();
  EXPECT_EQ(page->Width(), 6660);
  EXPECT_EQ(page->Height(), 3270);
  EXPECT_EQ(page->HelpContextID(), 2000);
  EXPECT_EQ(Caption("lblTitle"), "Router Configuration");
  EXPECT_EQ(Get<ui::Label>("lblTitle").Font(), (ui::Font{"Comic Sans MS", 20.25, false}));
  EXPECT_EQ(Get<ui::Label>("lblTitle").ForeColor(), ui::Rgb(51, 153, 102));
  EXPECT_TRUE(Get<ui::Label>("lblTitle").Transparent());
  EXPECT_EQ(Caption("lblRouterSelection"), "Your Router:");
  EXPECT_EQ(Caption("lblVersionLabel"), "Version:");
  EXPECT_EQ(Caption("lblStatusLabel"), "Status:");
  for (const char* name : {"lblRouterSelection", "lblVersionLabel", "lblStatusLabel"}) {
    EXPECT_EQ(Get<ui::Label>(name).GetAlignment(), ui::Alignment::kRight) << name;
  }
  EXPECT_EQ(Configure().Caption(), "&Configure");
  ASSERT_TRUE(Configure().Picture());
  EXPECT_EQ(Configure().Picture()->resource, "CONFIGURE");
  EXPECT_EQ(Caption("lblHelp"), "Select your router then press 'Configure'");
  EXPECT_EQ(Get<ui::Label>("lblHelp").ForeColor(), ui::Rgb(0, 128, 128));
  EXPECT_EQ(Get<ui::Label>("lblError").ForeColor(), ui::Rgb(128, 0, 0));
  EXPECT_TRUE(Get<ui::Label>("lblError").Transparent());
  EXPECT_EQ(Caption("lblError"), "Label1") << "until there is something to say";
  for (const char* name : {"cbRouterSelection", "lblVersion", "lblStatus"}) {
    EXPECT_EQ(Get<ui::Control>(name).ForeColor(), ui::Rgb(0, 0, 192)) << name;
  }
}

TEST_F(ctlRouterConfigTest, TheBackgroundGoesToTheLabelsThatHaveAGroundOfTheirOwn) {
  Open();
  const ui::Color color = ui::Rgb(10, 20, 30);
  page->BackgroundColor(color);
  EXPECT_EQ(page->BackgroundColor(), color);
  for (const char* name :
       {"lblRouterSelection", "lblStatus", "lblStatusLabel", "lblVersion", "lblVersionLabel", "lblHelp"}) {
    EXPECT_EQ(Get<ui::Control>(name).BackColor(), color) << name;
  }
  for (const char* name : {"lblTitle", "lblError", "cbRouterSelection", "cmdConfigureRouter"}) {
    EXPECT_EQ(Get<ui::Control>(name).BackColor(), ui::kDefaultColor) << name;
  }
}

TEST_F(ctlRouterConfigTest, OpeningThePageAsksNoPlugInUntilItIsFilled) {
  KnowTwo();
  Open();
  EXPECT_THAT(Happened(), IsEmpty());
  EXPECT_THAT(Titles(), IsEmpty());
}

TEST_F(ctlRouterConfigTest, FillingSelectsTheRouterAndLooksAtItOnceForTheSelectionAndOnceForThePage) {
  KnowTwo();
  Open();
  page->Populate();
  const std::vector<std::string> fill = {
      "get IServer_ServerTitle",  // the first entry
      "get IServer_ServerTitle",  // the selected router, to compare
      "get IServer_Functional",   // the selection's question
  };
  const std::vector<std::string> rest = {"get IServer_ServerTitle", "get IServer_ServerTitle"};
  EXPECT_THAT(Happened(), ElementsAreArray(Join(Join(Join(fill, kLook), rest), kLook)));
  EXPECT_THAT(Titles(), ElementsAre("First", "Second"));
  EXPECT_EQ(List().Text(), "First");
  EXPECT_TRUE(Configure().Enabled());
  ExpectSelectionShown(true);
  ExpectStatus("1.0", "Online");
}

TEST_F(ctlRouterConfigTest, FillingAgainGivesTheSameListAndKeepsTheSelection) {
  KnowTwo();
  OpenFilled();
  page->Populate();
  EXPECT_THAT(Titles(), ElementsAre("First", "Second"));
  EXPECT_EQ(List().Text(), "First");
  EXPECT_TRUE(Configure().Enabled());
}

TEST_F(ctlRouterConfigTest, FillingTakesUpAWaitingPlugInBeforeTheListIsMade) {
  KnowTwo();
  OpenFilled();
  world.objects.AddPlugIn("New.Router", "New");
  Store("RouterPlugIn_7", "New.Router");
  page->Populate();
  EXPECT_THAT(Titles(), ElementsAre("First", "Second", "New"));
  EXPECT_FALSE(world.settings.Contains("RouterPlugIn_7"));
}

TEST_F(ctlRouterConfigTest, WithoutPlugInsTheWholeMessageStandsInPlaceOfTheSelection) {
  Open();
  page->Populate();
  EXPECT_EQ(Caption("lblError"), kNoPlugIns);
  ExpectSelectionShown(false);
  EXPECT_FALSE(Configure().Enabled());
  EXPECT_THAT(Happened(), ElementsAre("changed \"WAN N/A\" False"));
  ExpectStatus("N/A", "Offline");
}

TEST_F(ctlRouterConfigTest, WithoutPlugInsAndWithoutInternetTheEventTellsTheLatter) {
  world.network.connected = false;
  Open();
  page->Populate();
  EXPECT_THAT(Happened(), ElementsAre("changed \"Not Connected to Internet\" False"));
}

TEST_F(ctlRouterConfigTest, TheFirstPlugInThatComesBringsTheSelectionBack) {
  OpenFilled();
  world.objects.AddPlugIn("New.Router", "New");
  Store("RouterPlugIn_1", "New.Router");
  page->Populate();
  ExpectSelectionShown(true);
  EXPECT_THAT(Titles(), ElementsAre("New"));
  EXPECT_FALSE(Configure().Enabled());
  List().UserSelect(0);
  EXPECT_TRUE(Configure().Enabled());
}

TEST_F(ctlRouterConfigTest, AWaitingPlugInThatCantBeMadeLeavesTheListEmptyWithoutAMessageBox) {
  Open();
  Store("RouterPlugIn_1", "Gone.Router");
  page->Populate();
  EXPECT_EQ(Caption("lblError"), kNoPlugIns);
  ExpectSelectionShown(false);
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(ctlRouterConfigTest, AFilledListWithoutASelectionShowsNotAvailableAndCantBeConfigured) {
  Know("First.Router", "First");
  Open();
  page->Populate();
  EXPECT_THAT(Happened(), ElementsAre("get IServer_ServerTitle", "changed \"WAN N/A\" False"));
  EXPECT_EQ(List().ListIndex(), -1);
  EXPECT_FALSE(Configure().Enabled());
  Configure().UserClick();
  EXPECT_THAT(Happened(), IsEmpty());
  ExpectSelectionShown(true);
  ExpectStatus("N/A", "Offline");
}

TEST_F(ctlRouterConfigTest, AfterAChangeOfVersionNothingIsSelected) {
  KnowTwo();
  Store("Version", "0.0.0");
  Open();
  page->Populate();
  EXPECT_EQ(List().Text(), "");
  EXPECT_FALSE(Configure().Enabled());
}

TEST_F(ctlRouterConfigTest, AChoiceSelectsTheRouterAndLooksAtIt) {
  KnowTwo();
  second->Answer("IServer_Version", "2.5");
  OpenFilled();
  List().UserSelect(1);
  EXPECT_THAT(Happened(), ElementsAreArray(Join({"get IServer_Functional"}, kLook)));
  EXPECT_EQ(g_Registry->Router, g_Registry->GetRouterByTitle("Second"));
  EXPECT_TRUE(Configure().Enabled());
  ExpectStatus("2.5", "Online");
}

TEST_F(ctlRouterConfigTest, ChoosingTheSameRouterAgainLooksAtItAgain) {
  KnowTwo();
  OpenFilled();
  first->Answer("IServer_Version", "3.0");
  List().UserSelect(0);
  EXPECT_THAT(Happened(), ElementsAreArray(Join({"get IServer_Functional"}, kLook)));
  ExpectStatus("3.0", "Online");
}

TEST_F(ctlRouterConfigTest, AChoiceIsStoredAtTheNextSave) {
  KnowTwo();
  OpenFilled();
  List().UserSelect(1);
  EXPECT_EQ(world.settings.Values()["RouterClass"], "First.Router");
  g_Registry->Save();
  EXPECT_EQ(world.settings.Values()["RouterClass"], "Second.Router");
}

TEST_F(ctlRouterConfigTest, ChoosingARouterThatDoesNotWorkShowsNotAvailableAndAsksItNothingMore) {
  KnowTwo();
  OpenFilled();
  second->Answer("IServer_Functional", false);
  List().UserSelect(1);
  EXPECT_THAT(Happened(), ElementsAre("get IServer_Functional", "changed \"N/A\" False"));
  EXPECT_EQ(g_Registry->Router, g_Registry->GetRouterByTitle("Second"));
  EXPECT_TRUE(Configure().Enabled());
  ExpectStatus("N/A", "Offline");
}

TEST_F(ctlRouterConfigTest, FillingWithASelectedRouterThatDoesNotWorkClearsAndThenLooksAllTheSame) {
  first = Know("First.Router", "First");
  Select("First.Router");
  first->Answer("IServer_Functional", false);
  Open();
  page->Populate();
  EXPECT_THAT(Happened(),
              ElementsAre("get IServer_ServerTitle", "get IServer_ServerTitle", "get IServer_Functional",
                          "changed \"N/A\" False", "get IServer_Version", "get IServer_WANIP",
                          "get IServer_Functional", "changed \"WAN 203.0.113.9\" False",
                          "get IServer_Functional", "call IServer_SetLogging(&\"192.168.1.7\")"));
  EXPECT_TRUE(Configure().Enabled());
  ExpectStatus("1.0", "Offline");
}

TEST_F(ctlRouterConfigTest, ARouterWithAnEmptyTitleCanBeChosenButNotConfigured) {
  KnowTwo();
  Know("Nameless.Router", "");
  OpenFilled();
  List().UserSelect(2);
  EXPECT_TRUE(g_Registry->RouterValid());
  EXPECT_EQ(g_Registry->Router, g_Registry->GetRouterByTitle(""));
  EXPECT_FALSE(Configure().Enabled());
  List().UserSelect(0);
  EXPECT_TRUE(Configure().Enabled());
}

TEST_F(ctlRouterConfigTest, AGoodConfigurationIsLookedAtAndThenTold) {
  KnowTwo();
  OpenFilled();
  Configure().UserClick();
  EXPECT_THAT(Happened(), ElementsAreArray(Join(Join({"call IServer_Configure()"}, kLook), {"successful"})));
}

TEST_F(ctlRouterConfigTest, AConfigurationThatIsNotGoodDoesNothingMore) {
  KnowTwo();
  first->Answer("IServer_Configure", true);
  OpenFilled();
  Configure().UserClick();
  EXPECT_THAT(Happened(), ElementsAre("call IServer_Configure()"));
  ExpectStatus("1.0", "Online");
}

TEST_F(ctlRouterConfigTest, WhatTheConfigurationChangesIsShownAfterIt) {
  KnowTwo();
  first->Answer("IServer_Functional", false);
  OpenFilled();
  ExpectStatus("1.0", "Offline");
  first->Do("IServer_Configure", [this](auto) -> base::Variant {
    first->Answer("IServer_Functional", true);
    first->Answer("IServer_Version", "1.1");
    return false;
  });
  Configure().UserClick();
  ExpectStatus("1.1", "Online");
}

TEST_F(ctlRouterConfigTest, AConfigurationOfARouterThatStaysOfflineIsSuccessfulToo) {
  KnowTwo();
  first->Answer("IServer_Functional", false);
  OpenFilled();
  Configure().UserClick();
  EXPECT_EQ(Happened().back(), "successful");
  ExpectStatus("1.0", "Offline");
}

TEST_F(ctlRouterConfigTest, WithoutInternetTheAddressIsNotAskedFor) {
  KnowTwo();
  OpenFilled();
  world.network.connected = false;
  page->UpdateStatus();
  EXPECT_THAT(Happened(), ElementsAre("get IServer_Version", "get IServer_Functional",
                                      "changed \"Not Connected to Internet\" True", "get IServer_Functional",
                                      "call IServer_SetLogging(&\"192.168.1.7\")"));
  ExpectStatus("1.0", "Online");
}

TEST_F(ctlRouterConfigTest, OnlyTheMachinesAnswerCountsForTheConnectionNotItsKind) {
  KnowTwo();
  OpenFilled();
  world.network.flags = 0;
  page->UpdateStatus();
  EXPECT_THAT(Happened(), ElementsAreArray(kLook));
}

TEST_F(ctlRouterConfigTest, EveryLookRepeatsTheLoggingWithTheAddressOfThatMoment) {
  KnowTwo();
  OpenFilled();
  page->UpdateStatus();
  world.network.localIP = "10.0.0.4";
  page->UpdateStatus();
  std::vector<std::string> calls = Happened();
  std::erase_if(calls, [](const std::string& call) { return call.find("SetLogging") == call.npos; });
  EXPECT_THAT(calls, ElementsAre("call IServer_SetLogging(&\"192.168.1.7\")",
                                 "call IServer_SetLogging(&\"10.0.0.4\")"));
}

TEST_F(ctlRouterConfigTest, ALoggingThatDoesNotComeAboutChangesNothing) {
  KnowTwo();
  first->Answer("IServer_SetLogging", true);
  Open();
  page->Populate();
  ExpectStatus("1.0", "Online");
  Configure().UserClick();
  EXPECT_EQ(Happened().back(), "successful");
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(ctlRouterConfigTest, TheHostIsToldAfterTheVersionIsShownAndBeforeTheStatusIs) {
  KnowTwo();
  OpenFilled();
  first->Answer("IServer_Version", "9");
  first->Answer("IServer_Functional", false);
  page->UpdateStatus();
  EXPECT_EQ(seenInEvent, "9/Online");
  ExpectStatus("9", "Offline");
  first->Answer("IServer_Functional", true);
  page->UpdateStatus();
  page->ClearStatus();
  EXPECT_EQ(seenInEvent, "N/A/Online");
  ExpectStatus("N/A", "Offline");
}

TEST_F(ctlRouterConfigTest, ClearingTheStatusAsksNoPlugIn) {
  KnowTwo();
  OpenFilled();
  page->ClearStatus();
  EXPECT_THAT(Happened(), ElementsAre("changed \"N/A\" False"));
  ExpectStatus("N/A", "Offline");
}

TEST_F(ctlRouterConfigTest, AtAnySizeItsControlsStayInOrderWithoutAFailure) {
  Open();
  for (const ui::Twips width : {0, 100, 6660, 20'000}) {
    page->Move(0, 0, width, 5000);
    EXPECT_LE(Get<ui::Control>("lblTitle").Bottom(), List().Top()) << width;
    EXPECT_LE(List().Bottom(), Get<ui::Control>("lblVersion").Top()) << width;
    EXPECT_LE(Get<ui::Control>("lblVersion").Bottom(), Get<ui::Control>("lblStatus").Top()) << width;
    EXPECT_LE(Get<ui::Control>("lblStatus").Bottom(), Configure().Top()) << width;
    EXPECT_EQ(Get<ui::Control>("lblHelp").Bottom(), 4900) << width;
  }
  for (const char* name :
       {"lblTitle", "lblError", "cbRouterSelection", "lblVersion", "lblStatus", "lblHelp"}) {
    EXPECT_LE(Get<ui::Control>(name).Right(), page->Width()) << name;
  }
}

/// The page in the whole program.
class ctlRouterConfigInMainTest : public testing::Test, protected support::Shell {
 protected:
  std::string ToolTip() const { return world.notificationArea.calls.back().data.szTip.data(); }
  template <typename Kind>
  Kind& Get(const std::string& name) {
    return support::FindControl<Kind>(support::FindControl<ctlRouterConfig>(*main, "ctlRouter"), name);
  }
};

TEST_F(ctlRouterConfigInMainTest, TheIconsTipIsTheStatusOfTheRouter) {
  SelectRouter();
  Start();
  EXPECT_EQ(ToolTip(), "WAN 203.0.113.9");
  world.network.connected = false;
  Get<ui::Button>("cmdConfigureRouter").UserClick();
  EXPECT_EQ(ToolTip(), "Not Connected to Internet");
}

TEST_F(ctlRouterConfigInMainTest, TheIconsTipIsNotAvailableAfterTheChoiceOfARouterThatDoesNotWork) {
  SelectRouter();
  Store("RouterCount", "2");
  Store("Router_2", "Other.Router");
  world.objects.AddPlugIn("Other.Router", "Other Router")->Answer("IServer_Functional", false);
  Start();
  Get<ui::ComboBox>("cbRouterSelection").UserSelect(1);
  EXPECT_EQ(ToolTip(), "N/A");
}

}  // namespace
