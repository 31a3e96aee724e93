#include "editing/ctlProfile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/FindControl.h"
#include "support/World.h"
#include "ui/Form.h"
#include "ui/ListBox.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ctlProfileTest : public testing::Test {
 protected:
  ctlProfileTest() {
    page.Accept.Connect([this] { ++accepts; });
    page.Cancel.Connect([this] { ++cancels; });
    window.Show();
    stored.sName = "Game";
    stored.sDescription = "Ports for the game";
  }

  template <typename Kind>
  Kind& Get(const std::string& name) {
    // The grid has controls of the same names.
    for (ui::Control* control : page.Children()) {
      if (control->Name() == name) return dynamic_cast<Kind&>(*control);
    }
    return support::FindControl<Kind>(support::FindControl<ui::Frame>(page, "framAutoActivate"), name);
  }
  template <typename Kind>
  Kind& InGrid(const std::string& name) {
    return support::FindControl<Kind>(Get<ui::Control>("ctlMappingEditor"), name);
  }
  ui::TextBox& Box(const std::string& name) { return Get<ui::TextBox>(name); }
  void Press(const std::string& name) { Get<ui::Button>(name).UserClick(); }
  void PressInGrid(const std::string& name) { InGrid<ui::Button>(name).UserClick(); }
  bool CanAccept() { return Get<ui::Button>("cmdAccept").Enabled(); }

  void AddMappings(int count) {
    for (int i = 0; i < count; ++i) {
      const auto mapping = std::make_shared<CMapping>();
      mapping->lBeginPort(100 + i);
      mapping->lEndPort(100 + i);
      stored.AddMapping(mapping);
    }
  }
  static std::vector<std::int32_t> Ports(const CMapProfile& profile) {
    std::vector<std::int32_t> ports;
    for (const auto& mapping : profile.ccMappings()) ports.push_back(mapping->lBeginPort());
    return ports;
  }
  /// Lets the user choose the entry in the window that Browse opens, and leave by the button.
  void Browse(const std::string& entry, const std::string& button) {
    world.toolkit.whenIdle = [&, entry, button] {
      ui::Form& browser = *ui::Form::LoadedForms().back();
      ASSERT_EQ(browser.Name(), "frmClassBrowser");
      auto& list = support::FindControl<ui::ListBox>(browser, "lslAvailableClasses");
      for (std::int32_t i = 0; i < list.ListCount(); ++i) {
        if (list.List(i) == entry) list.UserSelect(i);
      }
      if (button == "close box") {
        browser.UserClose(ui::CloseReason::kUser);
      } else {
        support::FindControl<ui::Button>(browser, button).UserClick();
      }
    };
    Press("cmdBrowse");
    world.toolkit.whenIdle = {};
  }

  support::World world;
  ui::Form window{"frmTest", "Test", {}, 12000, 12000};
  ctlProfile page{&window, "ctlProfile"};
  CMapProfile stored;
  int accepts = 0;
  int cancels = 0;
};

TEST_F(ctlProfileTest, ShowsTheProfileWithAcceptDisabled) {
  stored.sWindowTitle = "The Game";
  stored.sWindowClass = "GameWindow";
  stored.bAutoActivate = true;
  page.Populate(stored);
  EXPECT_EQ(Box("txtName").Text(), "Game");
  EXPECT_EQ(Box("txtDescription").Text(), "Ports for the game");
  EXPECT_EQ(Box("txtWindowTitle").Text(), "The Game");
  EXPECT_EQ(Box("txtWindowClass").Text(), "GameWindow");
  EXPECT_TRUE(Get<ui::CheckBox>("chkEnabled").Checked());
  EXPECT_FALSE(CanAccept());
}

TEST_F(ctlProfileTest, TheProfileStaysAsItIsUntilTheHostTakesTheCopy) {
  page.Populate(stored);
  Box("txtName").UserText("Other");
  Press("cmdCancel");
  EXPECT_EQ(cancels, 1);
  EXPECT_EQ(accepts, 0);
  EXPECT_EQ(stored.sName, "Game");
}

TEST_F(ctlProfileTest, SaveGivesTheCopyWithWhatTheFormHolds) {
  stored.bEnabled = true;
  stored.bClear = true;
  stored.bSet = true;
  AddMappings(2);
  page.Populate(stored);
  Box("txtName").UserText("Other");
  Box("txtDescription").UserText("Changed");
  Get<ui::CheckBox>("chkEnabled").UserClick();
  Press("cmdAccept");
  EXPECT_EQ(accepts, 1);
  const auto copy = page.Save();
  EXPECT_EQ(copy->sName, "Other");
  EXPECT_EQ(copy->sDescription, "Changed");
  EXPECT_TRUE(copy->bAutoActivate);
  EXPECT_TRUE(copy->bEnabled);
  EXPECT_TRUE(copy->bClear);
  EXPECT_TRUE(copy->bSet);
  EXPECT_NE(copy->sKey(), stored.sKey());
  EXPECT_THAT(Ports(*copy), ElementsAre(100, 101));
  EXPECT_FALSE(stored.bAutoActivate);
}

TEST_F(ctlProfileTest, AnyChangeEnablesAcceptAndItStaysSo) {
  for (const char* name : {"txtName", "txtDescription"}) {
    page.Populate(stored);
    Box(name).UserText("x");
    EXPECT_TRUE(CanAccept()) << name;
    Press("cmdAccept");
    EXPECT_TRUE(CanAccept()) << name;
  }
  for (const char* name : {"txtWindowTitle", "txtWindowClass"}) {
    page.Populate(stored);
    Box(name).Text("x");
    EXPECT_TRUE(CanAccept()) << name;
  }
  page.Populate(stored);
  Get<ui::CheckBox>("chkEnabled").UserClick();
  EXPECT_TRUE(CanAccept());
}

TEST_F(ctlProfileTest, NothingCanBeAcceptedBeforeAProfileIsShown) {
  EXPECT_FALSE(CanAccept());
  Press("cmdAccept");
  EXPECT_EQ(accepts, 0);
}

TEST_F(ctlProfileTest, ANameMayBeAnything) {
  for (const std::string& name :
       {std::string(), std::string(10'000, 'n'), std::string("R&D \"x\""), std::string("two\r\nlines")}) {
    page.Populate(stored);
    Box("txtName").UserText(name);
    EXPECT_EQ(page.Save()->sName, name);
  }
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(ctlProfileTest, NameAndDescriptionAreSelectedWhenTheyGetTheFocus) {
  page.Populate(stored);
  for (const char* name : {"txtName", "txtDescription"}) {
    Box(name).UserFocus(true);
    EXPECT_EQ(Box(name).SelLength(), static_cast<std::int32_t>(Box(name).Text().size()));
  }
}

TEST_F(ctlProfileTest, TheWindowsBoxesAreForReadingAndOffTheTabKeysWay) {
  page.Populate(stored);
  for (const char* name : {"txtWindowTitle", "txtWindowClass"}) {
    Box(name).UserText("typed");
    EXPECT_EQ(Box(name).Text(), "");
    EXPECT_FALSE(Box(name).TabStop());
  }
}

TEST_F(ctlProfileTest, TheGridTakesTheWholeFormAndShowsTheCopy) {
  AddMappings(1);
  page.Populate(stored);
  EXPECT_FALSE(Get<ui::Control>("ctlMappingEditor").Visible());
  Press("cmdMappingAssignments");
  EXPECT_TRUE(Get<ui::Control>("ctlMappingEditor").IsSeen());
  EXPECT_EQ(Get<ui::Control>("ctlMappingEditor").GetBounds(),
            (ui::Bounds{0, 0, page.Width(), page.Height()}));
  for (const char* name :
       {"lblTitle", "lblName", "txtName", "lblDescription", "txtDescription", "cmdMappingAssignments",
        "cmdAccept", "cmdCancel", "lblHelp", "framAutoActivate"}) {
    EXPECT_FALSE(Get<ui::Control>(name).Visible()) << name;
  }
  EXPECT_EQ(InGrid<ui::TextBox>("txtBeginRange(0)").Text(), "100");
  EXPECT_TRUE(InGrid<ui::TextBox>("txtDescription(0)").HasFocus());
}

TEST_F(ctlProfileTest, AcceptingTheGridChangesTheCopyAloneAndEnablesAccept) {
  page.Populate(stored);
  Press("cmdMappingAssignments");
  InGrid<ui::TextBox>("txtBeginRange(0)").UserText("7");
  InGrid<ui::CheckBox>("chkTCP(0)").UserClick();
  EXPECT_FALSE(CanAccept());
  PressInGrid("cmdAccept");
  EXPECT_FALSE(Get<ui::Control>("ctlMappingEditor").Visible());
  EXPECT_TRUE(Box("txtName").IsSeen());
  EXPECT_TRUE(CanAccept());
  EXPECT_THAT(Ports(*page.Save()), ElementsAre(7));
  EXPECT_THAT(Ports(stored), IsEmpty());
}

TEST_F(ctlProfileTest, AcceptingTheGridAndThenCancellingTheProfileLosesTheGridsChanges) {
  AddMappings(1);
  page.Populate(stored);
  Press("cmdMappingAssignments");
  InGrid<ui::CheckBox>("chkTCP(0)").UserClick();
  PressInGrid("cmdAccept");
  Press("cmdCancel");
  EXPECT_THAT(Ports(stored), ElementsAre(100));
  page.Populate(stored);
  EXPECT_THAT(Ports(*page.Save()), ElementsAre(100));
}

TEST_F(ctlProfileTest, WhatWasTypedInTheGridAndCancelledIsGone) {
  AddMappings(1);
  page.Populate(stored);
  Press("cmdMappingAssignments");
  InGrid<ui::TextBox>("txtBeginRange(0)").UserText("7");
  PressInGrid("cmdCancel");
  EXPECT_TRUE(Box("txtName").IsSeen());
  EXPECT_FALSE(CanAccept());
  Press("cmdMappingAssignments");
  EXPECT_EQ(InGrid<ui::TextBox>("txtBeginRange(0)").Text(), "100");
}

TEST_F(ctlProfileTest, AGridThatCannotBeReadStaysOpenWithItsText) {
  AddMappings(1);
  page.Populate(stored);
  Press("cmdMappingAssignments");
  PressInGrid("cmdShowAdvance");
  InGrid<ui::TextBox>("txtTargetIP(0)").UserText("192.168.1.12");
  PressInGrid("cmdAccept");
  ASSERT_THAT(world.toolkit.messages, SizeIs(1));
  EXPECT_TRUE(InGrid<ui::TextBox>("txtTargetIP(0)").HasFocus());
  EXPECT_EQ(InGrid<ui::TextBox>("txtTargetIP(0)").Text(), "192.168.1.12");
  EXPECT_FALSE(CanAccept());
  EXPECT_THAT(Ports(*page.Save()), ElementsAre(100));
}

TEST_F(ctlProfileTest, TenMappingsAreEdited) {
  AddMappings(10);
  page.Populate(stored);
  Press("cmdMappingAssignments");
  EXPECT_TRUE(Get<ui::Control>("ctlMappingEditor").Visible());
  EXPECT_EQ(InGrid<ui::TextBox>("txtBeginRange(9)").Text(), "109");
}

TEST_F(ctlProfileTest, MoreMappingsThanTheGridEditsAreToldAndAllKept) {
  AddMappings(12);
  page.Populate(stored);
  EXPECT_EQ(Box("txtName").Text(), "Game");
  EXPECT_FALSE(CanAccept());
  Press("cmdMappingAssignments");
  ASSERT_THAT(world.toolkit.messages, SizeIs(1));
  EXPECT_EQ(world.toolkit.messages[0].text,
            "This profile has 12 mappings, and the grid edits 10. They all stay as they are.");
  EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kInformation);
  EXPECT_FALSE(Get<ui::Control>("ctlMappingEditor").Visible());
  EXPECT_TRUE(Box("txtName").IsSeen());
  Box("txtName").UserText("Other");
  EXPECT_THAT(page.Save()->ccMappings().Count(), 12u);
}

TEST_F(ctlProfileTest, ThePickedProgramFillsTheBoxesAndSwitchesAutomaticActivationOn) {
  world.windows.windows = {{1, "ChessWindow", "Chess"}};
  page.Populate(stored);
  Browse("Chess::ChessWindow", "cmdAccept");
  ASSERT_THAT(world.toolkit.messages, SizeIs(1));
  EXPECT_EQ(world.toolkit.messages[0].text,
            "Make sure the application that you want to recognized is running before continuing");
  EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kInformation);
  EXPECT_EQ(world.toolkit.messages[0].title, "Harbourline");
  EXPECT_EQ(Box("txtWindowTitle").Text(), "Chess");
  EXPECT_EQ(Box("txtWindowClass").Text(), "ChessWindow");
  EXPECT_TRUE(Get<ui::CheckBox>("chkEnabled").Checked());
  EXPECT_TRUE(CanAccept());
  const auto copy = page.Save();
  EXPECT_EQ(copy->sWindowTitle, "Chess");
  EXPECT_EQ(copy->sWindowClass, "ChessWindow");
}

TEST_F(ctlProfileTest, ATitleWithoutAClassSwitchesAutomaticActivationOnToo) {
  world.windows.windows = {{1, "", "Chess"}};
  page.Populate(stored);
  Browse("Chess::", "cmdAccept");
  EXPECT_EQ(Box("txtWindowClass").Text(), "");
  EXPECT_TRUE(Get<ui::CheckBox>("chkEnabled").Checked());
}

TEST_F(ctlProfileTest, PickingNoProgramSwitchesAutomaticActivationOff) {
  stored.sWindowTitle = "Chess";
  stored.bAutoActivate = true;
  page.Populate(stored);
  Browse("[None]", "cmdAccept");
  EXPECT_EQ(Box("txtWindowTitle").Text(), "");
  EXPECT_FALSE(Get<ui::CheckBox>("chkEnabled").Checked());
  EXPECT_TRUE(CanAccept());
}

TEST_F(ctlProfileTest, LeavingThePickerByCancelChangesNothing) {
  world.windows.windows = {{1, "ChessWindow", "Chess"}};
  stored.sWindowClass = "GameWindow";
  page.Populate(stored);
  Browse("Chess::ChessWindow", "cmdCancel");
  EXPECT_EQ(Box("txtWindowTitle").Text(), "");
  EXPECT_EQ(Box("txtWindowClass").Text(), "GameWindow");
  EXPECT_FALSE(Get<ui::CheckBox>("chkEnabled").Checked());
  EXPECT_FALSE(CanAccept());
}

TEST_F(ctlProfileTest, ThePickersCloseBoxTakesThePickedProgram) {
  world.windows.windows = {{1, "ChessWindow", "Chess"}};
  stored.sWindowClass = "GameWindow";
  page.Populate(stored);
  Browse("Chess::ChessWindow", "close box");
  EXPECT_EQ(Box("txtWindowTitle").Text(), "Chess");
  EXPECT_EQ(Box("txtWindowClass").Text(), "ChessWindow");
  EXPECT_TRUE(Get<ui::CheckBox>("chkEnabled").Checked());
  EXPECT_TRUE(CanAccept());
}

TEST_F(ctlProfileTest, ThePickerStartsFromTheProfilesProgram) {
  stored.sWindowTitle = "Chess";
  stored.sWindowClass = "ChessWindow";
  page.Populate(stored);
  std::string title;
  std::string className;
  world.toolkit.whenIdle = [&] {
    ui::Form& browser = *ui::Form::LoadedForms().back();
    title = support::FindControl<ui::TextBox>(browser, "txtWindowTitle").Text();
    className = support::FindControl<ui::TextBox>(browser, "txtWindowClass").Text();
    EXPECT_EQ(browser.Owner(), &window);
    browser.UserClose(ui::CloseReason::kUser);
  };
  Press("cmdBrowse");
  EXPECT_EQ(title, "Chess");
  EXPECT_EQ(className, "ChessWindow");
}

TEST_F(ctlProfileTest, ATitleWithTheSeparatorInItIsCutAtTheFirstOne) {
  world.windows.windows = {{1, "Editor", "a::b"}};
  page.Populate(stored);
  Browse("a::b::Editor", "cmdAccept");
  EXPECT_EQ(Box("txtWindowTitle").Text(), "a");
  EXPECT_EQ(Box("txtWindowClass").Text(), "b::Editor");
}

TEST_F(ctlProfileTest, ClearingTheTickByHandKeepsTitleAndClass) {
  stored.sWindowTitle = "Chess";
  stored.sWindowClass = "ChessWindow";
  stored.bAutoActivate = true;
  page.Populate(stored);
  Get<ui::CheckBox>("chkEnabled").UserClick();
  EXPECT_FALSE(page.Save()->bAutoActivate);
  EXPECT_EQ(page.Save()->sWindowTitle, "Chess");
  EXPECT_EQ(page.Save()->sWindowClass, "ChessWindow");
}

TEST_F(ctlProfileTest, RunningBlinksOnceASecondWhileTheProgramRuns) {
  stored.sWindowClass = "ChessWindow";
  world.windows.windows = {{1, "ChessWindow", "Chess"}};
  page.Populate(stored);
  ui::Label& running = Get<ui::Label>("lblRunning");
  EXPECT_FALSE(running.Visible());
  std::vector<bool> seen;
  for (int i = 0; i < 4; ++i) {
    world.toolkit.Advance(500);
    seen.push_back(running.Visible());
  }
  EXPECT_THAT(seen, ElementsAre(true, false, true, false));
  world.windows.windows.clear();
  for (int i = 0; i < 4; ++i) {
    world.toolkit.Advance(500);
    EXPECT_FALSE(running.Visible());
  }
}

TEST_F(ctlProfileTest, WithoutTitleAndClassRunningStaysHidden) {
  world.windows.windows = {{1, "ChessWindow", "Chess"}};
  page.Populate(stored);
  for (int i = 0; i < 4; ++i) {
    world.toolkit.Advance(500);
    EXPECT_FALSE(Get<ui::Label>("lblRunning").Visible());
  }
}

TEST_F(ctlProfileTest, TheTimerRunsFromTheFirstProfileOnAndRestsWhileTheGridIsOpen) {
  auto& timer = Get<ui::Timer>("timerBlink");
  EXPECT_EQ(timer.Interval(), 500);
  EXPECT_FALSE(timer.Enabled());
  page.Move(0, 0, 5000, 5000);
  EXPECT_FALSE(timer.Enabled());
  page.Populate(stored);
  EXPECT_TRUE(timer.Enabled());
  Press("cmdMappingAssignments");
  EXPECT_FALSE(timer.Enabled());
  PressInGrid("cmdCancel");
  EXPECT_TRUE(timer.Enabled());
  Press("cmdCancel");
  page.Visible(false);
  EXPECT_TRUE(timer.Enabled());
}

TEST_F(ctlProfileTest, ResizingKeepsTheSideThatIsOpen) {
  page.Populate(stored);
  Press("cmdMappingAssignments");
  page.Move(0, 0, 7000, 8000);
  EXPECT_TRUE(Get<ui::Control>("ctlMappingEditor").Visible());
  EXPECT_FALSE(Box("txtName").Visible());
  PressInGrid("cmdCancel");
  page.Move(0, 0, 0, 0);
  page.Move(0, 0, 6180, 5695);
  EXPECT_FALSE(Get<ui::Control>("ctlMappingEditor").Visible());
  EXPECT_TRUE(Box("txtName").Visible());
  ui::Twips bottom = 0;
  for (const char* name :
       {"lblTitle", "txtName", "txtDescription", "framAutoActivate", "cmdMappingAssignments", "cmdAccept"}) {
    EXPECT_GE(Get<ui::Control>(name).Top(), bottom) << name;
    bottom = Get<ui::Control>(name).Bottom();
  }
  EXPECT_LE(bottom, page.Height());
}

TEST_F(ctlProfileTest, HasItsCaptionsAndColours) {
  const auto caption = [this](const char* name) { return Get<ui::Label>(name).Caption(); };
  EXPECT_EQ(caption("lblTitle"), "Profile Information");
  EXPECT_EQ(caption("lblName"), "Name:");
  EXPECT_EQ(caption("lblDescription"), "Description:");
  EXPECT_EQ(caption("lblAuto"), "Auto Activate Configurations");
  EXPECT_EQ(caption("lblWindowTitle"), "Window Title:");
  EXPECT_EQ(caption("lblWindowClass"), "Window Class:");
  EXPECT_EQ(caption("lblRunning"), "Running");
  EXPECT_EQ(caption("lblHelp"), "");
  EXPECT_EQ(Get<ui::Frame>("framAutoActivate").Caption(), "Auto Activate Coniguration");
  EXPECT_FALSE(Get<ui::Frame>("framAutoActivate").Border());
  EXPECT_TRUE(Get<ui::Label>("lblAuto").Font().bold);
  EXPECT_EQ(Get<ui::Button>("cmdBrowse").Caption(), "&Browse...");
  EXPECT_EQ(Get<ui::CheckBox>("chkEnabled").Caption(), "&Enable");
  EXPECT_EQ(Get<ui::Button>("cmdMappingAssignments").Caption(), "&Mapping Assignments");
  EXPECT_EQ(Get<ui::Button>("cmdAccept").Caption(), "&Accept");
  EXPECT_EQ(Get<ui::Button>("cmdCancel").Caption(), "&Cancel");
  EXPECT_EQ(Get<ui::Label>("lblTitle").ForeColor(), ui::Rgb(51, 153, 102));
  EXPECT_EQ(Get<ui::Label>("lblHelp").ForeColor(), ui::Rgb(0, 128, 128));
  EXPECT_EQ(Get<ui::Label>("lblRunning").ForeColor(), ui::Rgb(0, 128, 0));
  for (const char* name : {"txtName", "txtDescription", "txtWindowTitle", "txtWindowClass"}) {
    EXPECT_EQ(Box(name).ForeColor(), ui::Rgb(0, 0, 128)) << name;
  }
  EXPECT_EQ(page.HelpContextID(), 9010);
}

TEST_F(ctlProfileTest, ItsColourMakesTheWindowsBoxesLookLikeTheForm) {
  page.BackgroundColor(ui::Rgb(1, 2, 3));
  for (const char* name : {"lblTitle", "lblName", "lblDescription", "lblWindowClass", "lblWindowTitle",
                           "framAutoActivate", "ctlMappingEditor", "chkEnabled", "lblHelp", "lblRunning",
                           "lblAuto", "txtWindowTitle", "txtWindowClass"}) {
    EXPECT_EQ(Get<ui::Control>(name).BackColor(), ui::Rgb(1, 2, 3)) << name;
  }
  EXPECT_EQ(InGrid<ui::Frame>("framMappings").BackColor(), ui::Rgb(1, 2, 3));
  EXPECT_EQ(Box("txtName").BackColor(), ui::kDefaultColor);
  for (const char* name : {"txtWindowTitle", "txtWindowClass"}) EXPECT_FALSE(Box(name).GetStyle().border);
  for (const char* name : {"txtName", "txtDescription"}) EXPECT_TRUE(Box(name).GetStyle().border);
}

/// A screen reader takes the label that stands before a field for its name.
TEST_F(ctlProfileTest, EachLabelStandsDirectlyBeforeItsField) {
  for (ui::Control* parent : {static_cast<ui::Control*>(&page), &Get<ui::Control>("framAutoActivate")}) {
    const auto& children = parent->Children();
    for (std::size_t i = 1; i < children.size(); ++i) {
      if (children[i]->GetKind() != ui::Kind::kTextBox) continue;
      EXPECT_EQ(children[i - 1]->Name(), "lbl" + children[i]->Name().substr(3));
    }
  }
}

}  // namespace
