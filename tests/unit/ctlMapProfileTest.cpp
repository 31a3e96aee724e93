#include "editing/ctlMapProfile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/FindControl.h"
#include "support/RecordingToolkit.h"
#include "support/Shell.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t kF2 = 113;

class ctlMapProfileTest : public testing::Test, protected support::Shell {
 protected:
  /// The page is open, with a profile for each name.
  void Open(const std::vector<std::string>& names) {
    SelectRouter();
    for (std::size_t i = 0; i < names.size(); ++i) {
      StoreProfile(static_cast<int>(i) + 1, names[i], false);
    }
    Store("LastMenuLocation", "PortForwardingProfiles");
    Start();
    main->Show();
    Page().ProfileChange.Connect([this] { ++changes; });
  }

  ctlMapProfile& Page() { return support::FindControl<ctlMapProfile>(*main, "ctlMapProfile"); }
  template <typename Kind>
  Kind& Get(const std::string& name) {
    for (ui::Control* control : Page().Children()) {
      if (control->Name() == name) return dynamic_cast<Kind&>(*control);
    }
    return support::FindControl<Kind>(Get<ui::Menu>("mnuProfile"), name);
  }
  ui::ListView& Rows() { return Get<ui::ListView>("lvProfiles"); }
  ui::ToolBar& ToolBar() { return Get<ui::ToolBar>("tbProfiles"); }
  ctlProfile& Editor() { return Get<ctlProfile>("ctlProfile"); }
  template <typename Kind>
  Kind& InEditor(const std::string& name) {
    for (ui::Control* control : Editor().Children()) {
      if (control->Name() == name) return dynamic_cast<Kind&>(*control);
    }
    throw std::logic_error("The editor has no " + name);
  }

  std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (std::size_t row = 0; row < Rows().RowCount(); ++row) texts.emplace_back(Rows().Text(row));
    return texts;
  }
  static std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& profile : g_Registry->ccMapProfiles()) names.push_back(profile->sName);
    return names;
  }
  std::string Selected() {
    const auto row = Rows().SelectedRow();
    return row ? std::string(Rows().Text(*row)) : "none";
  }
  /// Which buttons of the tool bar can be pressed.
  std::string Buttons() {
    std::string enabled;
    for (const auto& button : ToolBar().Buttons()) enabled += button.enabled ? button.key.substr(0, 1) : "-";
    return enabled;
  }
  void SelectRow(const std::string& name) {
    for (std::size_t row = 0; row < Rows().RowCount(); ++row) {
      if (Rows().Text(row) == name) Rows().UserSelect(row, true);
    }
    Rows().UserItemClick();
  }
  /// The user ends a label edit of the selected row with that text.
  void Rename(const std::string& text) {
    ASSERT_TRUE(Rows().UserLabelEditStart(*Rows().SelectedRow()));
    Rows().UserLabelEditEnd(text);
  }
  void Popup(const std::string& entry) {
    world.toolkit.choosePopup = [entry](ui::Menu& menu) { return Find(menu, entry); };
    Rows().UserRightButtonUp();
  }
  bool EditorIsOpen() {
    EXPECT_NE(Editor().IsSeen(), Rows().IsSeen());
    for (const char* name : {"tbProfiles", "lblHelp", "lblTitle"}) {
      EXPECT_EQ(Get<ui::Control>(name).IsSeen(), Rows().IsSeen()) << name;
    }
    return Editor().IsSeen();
  }

  int changes = 0;
};

TEST_F(ctlMapProfileTest, ListsTheProfilesByNameWithTheSmallestSelected) {
  Open({"b", "Game", "A"});
  EXPECT_THAT(Texts(), ElementsAre("A", "Game", "b"));
  EXPECT_EQ(Selected(), "A");
  EXPECT_EQ(Rows().Text(1, 1), "Game");
  EXPECT_THAT(Rows().SubItemKeys(), ElementsAre("Name"));
  EXPECT_EQ(Rows().Key(1), (*std::next(g_Registry->ccMapProfiles().begin()))->sKey());
  EXPECT_EQ(Buttons(), "ADE");
}

TEST_F(ctlMapProfileTest, AnActiveProfileShowsItsPlainNameHere) {
  SelectRouter();
  StoreProfile(1, "Game", true);
  Store("LastMenuLocation", "PortForwardingProfiles");
  Start();
  EXPECT_THAT(Texts(), ElementsAre("Game"));
  EXPECT_EQ(Rows().CellColor(0, 0), ui::kDefaultColor);
}

TEST_F(ctlMapProfileTest, WithAnEmptyListOnlyAddDoesAnything) {
  Open({});
  EXPECT_EQ(Buttons(), "A--");
  ToolBar().UserClick("Edit");
  ToolBar().UserClick("Delete");
  for (const char* entry : {"mnuRenameProfile", "mnuEditProfile", "mnuDeleteProfile"}) Popup(entry);
  Rows().UserDblClick();
  Rows().UserKeyUp(kF2);
  Rows().UserFocus(true);
  EXPECT_FALSE(EditorIsOpen());
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_EQ(changes, 0);
}

TEST_F(ctlMapProfileTest, AddMakesAProfileAndOpensIt) {
  Open({"A", "Z"});
  ToolBar().UserClick("Add");
  EXPECT_TRUE(EditorIsOpen());
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(Names(), ElementsAre("A", "New Profile", "Z"));
  EXPECT_EQ(Selected(), "New Profile");
  EXPECT_EQ(InEditor<ui::TextBox>("txtName").Text(), "New Profile");
  EXPECT_TRUE(InEditor<ui::TextBox>("txtName").HasFocus());
  EXPECT_FALSE(InEditor<ui::Button>("cmdAccept").Enabled());
  EXPECT_EQ(Buttons(), "ADE");
}

TEST_F(ctlMapProfileTest, AddingTwiceNumbersTheSecond) {
  Open({});
  Popup("mnuAddProfile");
  InEditor<ui::Button>("cmdCancel").UserClick();
  Popup("mnuAddProfile");
  EXPECT_THAT(Names(), ElementsAre("New Profile", "New Profile(1)"));
  EXPECT_EQ(Selected(), "New Profile(1)");
}

TEST_F(ctlMapProfileTest, CancelRightAfterAddKeepsTheNewEmptyProfile) {
  Open({});
  ToolBar().UserClick("Add");
  InEditor<ui::TextBox>("txtName").UserText("Other");
  InEditor<ui::Button>("cmdCancel").UserClick();
  EXPECT_FALSE(EditorIsOpen());
  EXPECT_THAT(Names(), ElementsAre("New Profile"));
  EXPECT_EQ((*g_Registry->ccMapProfiles().begin())->ccMappings().Count(), 0u);
  EXPECT_EQ(changes, 1);
  EXPECT_TRUE(Rows().HasFocus());
}

TEST_F(ctlMapProfileTest, EveryWayToEditOpensTheSelectedProfile) {
  Open({"A", "Game"});
  SelectRow("Game");
  const std::vector<std::function<void()>> ways{[this] { ToolBar().UserClick("Edit"); },
                                                [this] { Popup("mnuEditProfile"); },
                                                [this] { Rows().UserDblClick(); }};
  for (const auto& way : ways) {
    way();
    EXPECT_TRUE(EditorIsOpen());
    EXPECT_EQ(InEditor<ui::TextBox>("txtName").Text(), "Game");
    InEditor<ui::Button>("cmdCancel").UserClick();
    EXPECT_FALSE(EditorIsOpen());
  }
  EXPECT_EQ(changes, 0);
}

TEST_F(ctlMapProfileTest, AcceptReplacesTheProfileAndItsKeyAndSortsItAnew) {
  Open({"A", "Game", "M"});
  SelectRow("A");
  const std::string before(Rows().Key(0));
  ToolBar().UserClick("Edit");
  InEditor<ui::TextBox>("txtName").UserText("Z");
  InEditor<ui::Button>("cmdAccept").UserClick();
  EXPECT_FALSE(EditorIsOpen());
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(Names(), ElementsAre("Game", "M", "Z"));
  EXPECT_EQ(Selected(), "Z");
  const auto row = Rows().SelectedRow();
  EXPECT_NE(Rows().Key(*row), before);
  EXPECT_EQ(g_Registry->GetMapProfileByKey(Rows().Key(*row))->sName, "Z");
  EXPECT_EQ(Rows().RowCount(), 3u);
}

TEST_F(ctlMapProfileTest, AcceptNumbersANameThatIsTakenAndShowsItSo) {
  Open({"A", "Game"});
  SelectRow("A");
  ToolBar().UserClick("Edit");
  InEditor<ui::TextBox>("txtName").UserText("Game");
  InEditor<ui::Button>("cmdAccept").UserClick();
  EXPECT_THAT(Names(), ElementsAre("Game", "Game(1)"));
  EXPECT_EQ(Selected(), "Game(1)");
}

TEST_F(ctlMapProfileTest, AnEditedProfileThatWasActiveStaysMarkedActive) {
  SelectRouter();
  StoreProfile(1, "Game", true);
  Store("LastMenuLocation", "PortForwardingProfiles");
  Start();
  ToolBar().UserClick("Edit");
  InEditor<ui::TextBox>("txtDescription").UserText("x");
  router->calls.clear();
  InEditor<ui::Button>("cmdAccept").UserClick();
  EXPECT_TRUE((*g_Registry->ccMapProfiles().begin())->bEnabled);
  EXPECT_THAT(Calls("SetPortForwarding"), IsEmpty());
}

TEST_F(ctlMapProfileTest, AProfileOfTwelveMappingsKeepsThemAllWhenItIsRenamedInTheEditor) {
  SelectRouter();
  StoreProfile(1, "Game", false);
  Store("MP_1_MapCount", "12");
  Store("LastMenuLocation", "PortForwardingProfiles");
  Start();
  ToolBar().UserClick("Edit");
  InEditor<ui::Button>("cmdMappingAssignments").UserClick();
  ASSERT_THAT(world.toolkit.messages, SizeIs(1));
  EXPECT_THAT(world.toolkit.messages[0].text, HasSubstr("12 mappings"));
  InEditor<ui::TextBox>("txtName").UserText("Renamed");
  InEditor<ui::Button>("cmdAccept").UserClick();
  EXPECT_THAT(Names(), ElementsAre("Renamed"));
  EXPECT_EQ((*g_Registry->ccMapProfiles().begin())->ccMappings().Count(), 12u);
}

TEST_F(ctlMapProfileTest, AnEditorThatIsOpenWhileAnotherPageShowsStillReplacesItsOwnProfile) {
  Open({"A", "Game"});
  SelectRow("Game");
  ToolBar().UserClick("Edit");
  InEditor<ui::TextBox>("txtName").UserText("Changed");
  auto& tree = support::FindControl<ui::TreeView>(*main, "tvCategories");
  tree.UserSelect("Help");
  tree.UserSelect("PortForwardingProfiles");
  EXPECT_TRUE(EditorIsOpen());
  EXPECT_EQ(InEditor<ui::TextBox>("txtName").Text(), "Changed");
  InEditor<ui::Button>("cmdAccept").UserClick();
  EXPECT_THAT(Names(), ElementsAre("A", "Changed"));
}

TEST_F(ctlMapProfileTest, ARenameKeepsTheKeyAndThePlaceOfTheRow) {
  Open({"A", "Game", "Z"});
  SelectRow("A");
  const std::string key(Rows().Key(0));
  Rename("Q");
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(Texts(), ElementsAre("Q", "Game", "Z"));
  EXPECT_EQ(Rows().Key(0), key);
  EXPECT_EQ(g_Registry->GetMapProfileByKey(key)->sName, "Q");
  EXPECT_THAT(Names(), ElementsAre("Game", "Q", "Z"));
}

TEST_F(ctlMapProfileTest, ARenameToANameThatIsTakenShowsTheTypedTextUntilTheListIsFilledAgain) {
  Open({"A", "Game"});
  SelectRow("A");
  Rename("Game");
  EXPECT_THAT(Texts(), ElementsAre("Game", "Game"));
  EXPECT_THAT(Names(), ElementsAre("Game", "Game(1)"));
  Page().Populate();
  EXPECT_THAT(Texts(), ElementsAre("Game", "Game(1)"));
}

TEST_F(ctlMapProfileTest, ARenameToItsOwnNameKeepsTheName) {
  Open({"Game"});
  Rename("Game");
  EXPECT_THAT(Names(), ElementsAre("Game"));
}

TEST_F(ctlMapProfileTest, AnyTextIsAName) {
  for (const std::string& text :
       {std::string(), std::string(10'000, 'n'), std::string("R&D \"x\""), std::string("two\r\nlines")}) {
    Open({"Game"});
    Rename(text);
    EXPECT_THAT(Names(), ElementsAre(text));
    EXPECT_THAT(world.toolkit.messages, IsEmpty());
    End();
  }
}

TEST_F(ctlMapProfileTest, ARenameGoesToTheRowWhoseLabelWasEditedAlsoWhenTheToolBarAddsBeforeItEnds) {
  Open({"Game", "Zoo"});
  SelectRow("Game");
  const std::string key(Rows().Key(0));
  ASSERT_TRUE(Rows().UserLabelEditStart(0));
  ToolBar().UserClick("Add");
  ASSERT_EQ(Selected(), "New Profile");
  Rows().UserLabelEditEnd("Typed");
  EXPECT_THAT(Names(), ElementsAre("New Profile", "Typed", "Zoo"));
  EXPECT_EQ(g_Registry->GetMapProfileByKey(key)->sName, "Typed");
  EXPECT_EQ(Rows().Text(*Rows().Find(key)), "Typed");
  EXPECT_EQ(Selected(), "New Profile");
  EXPECT_EQ(InEditor<ui::TextBox>("txtName").Text(), "New Profile");
}

TEST_F(ctlMapProfileTest, ARenameOfARowThatIsNotSelectedAnyMoreIsKept) {
  Open({"A", "Game"});
  SelectRow("Game");
  ASSERT_TRUE(Rows().UserLabelEditStart(1));
  Rows().UserSelect(1, false);
  Rows().UserLabelEditEnd("Other");
  EXPECT_THAT(Texts(), ElementsAre("A", "Other"));
  EXPECT_THAT(Names(), ElementsAre("A", "Other"));
  EXPECT_EQ(changes, 1);
}

TEST_F(ctlMapProfileTest, DeleteAsksWithTheNameInQuotesAndNoQuestionMark) {
  Open({"Game"});
  ToolBar().UserClick("Delete");
  ASSERT_THAT(world.toolkit.messages, SizeIs(1));
  EXPECT_EQ(world.toolkit.messages[0].text, "Are you sure you want to delete \"Game\"");
  EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kWarning);
  EXPECT_EQ(world.toolkit.messages[0].buttons, ui::MessageButtons::kYesNo);
  EXPECT_EQ(world.toolkit.messages[0].title, "Harbourline");
  EXPECT_THAT(Names(), ElementsAre("Game"));
  EXPECT_EQ(changes, 0);
}

TEST_F(ctlMapProfileTest, DeleteTakesTheProfileAndItsRowAway) {
  Open({"A", "Game", "Z"});
  SelectRow("Game");
  world.toolkit.answers = {ui::MessageResult::kYes};
  Popup("mnuDeleteProfile");
  EXPECT_THAT(Names(), ElementsAre("A", "Z"));
  EXPECT_THAT(Texts(), ElementsAre("A", "Z"));
  EXPECT_EQ(changes, 1);
}

TEST_F(ctlMapProfileTest, AfterADeleteTheNextRowIsAtHandUntilNoneIsLeft) {
  Open({"A", "B", "C"});
  SelectRow("B");
  world.toolkit.answers = {ui::MessageResult::kYes, ui::MessageResult::kYes, ui::MessageResult::kYes};
  ToolBar().UserClick("Delete");
  EXPECT_EQ(Selected(), "C");
  EXPECT_EQ(Buttons(), "ADE");
  ToolBar().UserClick("Delete");
  EXPECT_EQ(Selected(), "A");
  ToolBar().UserClick("Delete");
  EXPECT_EQ(Selected(), "none");
  EXPECT_EQ(Buttons(), "A--");
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ctlMapProfileTest, DeletingAnActiveProfileLeavesTheRouterAlone) {
  SelectRouter();
  StoreProfile(1, "Game", true);
  Store("LastMenuLocation", "PortForwardingProfiles");
  Start();
  router->calls.clear();
  world.toolkit.answers = {ui::MessageResult::kYes};
  ToolBar().UserClick("Delete");
  EXPECT_THAT(Names(), IsEmpty());
  EXPECT_THAT(Calls("SetPortForwarding"), IsEmpty());
}

TEST_F(ctlMapProfileTest, TheToolBarIsUpToDateAfterAnAddButNotAfterAMereClick) {
  Open({"Game"});
  Rows().UserSelect(0, false);
  Page().Populate();
  EXPECT_EQ(Buttons(), "ADE");
  Rows().UserSelect(0, false);
  Rows().UserItemClick();
  EXPECT_EQ(Buttons(), "ADE");
  ToolBar().UserClick("Edit");
  ToolBar().UserClick("Delete");
  EXPECT_FALSE(EditorIsOpen());
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(ctlMapProfileTest, F2AndTheMenuStartEditingTheSelectedLabelInPlace) {
  support::RecordingToolkit recording;
  Open({"A", "Game"});
  SelectRow("Game");
  recording.TakeRows(Rows());
  Rows().UserKeyUp(kF2);
  EXPECT_THAT(recording.TakeRows(Rows()), ElementsAre("edit 1"));
  Rows().UserKeyUp(kF2 + 1);
  EXPECT_THAT(recording.TakeRows(Rows()), IsEmpty());
  Get<ui::Menu>("mnuRenameProfile").UserClick();
  EXPECT_THAT(recording.TakeRows(Rows()), ElementsAre("edit 1"));
  End();
}

TEST_F(ctlMapProfileTest, TheListShowsItsSelectedRowWhenItGetsTheFocus) {
  support::RecordingToolkit recording;
  Open({"A", "Game"});
  SelectRow("Game");
  recording.TakeRows(Rows());
  Rows().UserFocus(true);
  EXPECT_THAT(recording.TakeRows(Rows()), ElementsAre("see 1"));
  End();
}

TEST_F(ctlMapProfileTest, HasItsCaptionsColoursAndTips) {
  Open({});
  EXPECT_EQ(Get<ui::Label>("lblTitle").Caption(), "Port Forwarding Profiles");
  EXPECT_EQ(Get<ui::Label>("lblHelp").Caption(), "Add, Edit or Delete your profiles here.");
  EXPECT_EQ(Get<ui::Label>("lblTitle").ForeColor(), ui::Rgb(51, 153, 102));
  EXPECT_EQ(Get<ui::Label>("lblHelp").ForeColor(), ui::Rgb(0, 128, 128));
  EXPECT_EQ(Rows().ForeColor(), ui::Rgb(0, 0, 128));
  EXPECT_EQ(Rows().BackColor(), ui::Rgb(243, 225, 190));
  EXPECT_EQ(Get<ui::Label>("lblHelp").BackColor(), ui::Rgb(253, 235, 200));
  EXPECT_EQ(Editor().BackgroundColor(), ui::Rgb(253, 235, 200));
  EXPECT_FALSE(Rows().GetStyle().columnHeaders);
  EXPECT_TRUE(Rows().GetStyle().labelEdit);
  EXPECT_EQ(Page().HelpContextID(), 9000);
  EXPECT_EQ(Rows().HelpContextID(), 9000);
  std::vector<std::string> tips;
  for (const auto& button : ToolBar().Buttons()) tips.push_back(button.key + ": " + button.toolTip);
  EXPECT_THAT(tips, ElementsAre("Add: Add a Profile", "Delete: Delete a Profile", "Edit: Edit a Profile"));
}

TEST_F(ctlMapProfileTest, TheMenuHasItsEntriesInOrder) {
  Open({});
  std::vector<std::string> captions;
  for (ui::Control* entry : Get<ui::Menu>("mnuProfile").Children()) {
    captions.push_back(static_cast<ui::Menu*>(entry)->Caption());
  }
  EXPECT_THAT(captions,
              ElementsAre("&Rename Profile", "-", "&Add Profile", "&Edit Profile...", "&Delete Profile"));
}

TEST_F(ctlMapProfileTest, ResizingKeepsTheSideThatIsOpen) {
  Open({"Game"});
  Page().Move(0, 0, 0, 0);
  EXPECT_FALSE(EditorIsOpen());
  Page().Move(0, 0, 6180, 5695);
  EXPECT_EQ(Rows().Left(), 100);
  EXPECT_EQ(Get<ui::Control>("lblTitle").Top(), 100);
  EXPECT_EQ(ToolBar().Top(), Get<ui::Control>("lblTitle").Bottom() + 100);
  EXPECT_EQ(Rows().Top(), ToolBar().Bottom() + 100);
  EXPECT_EQ(Get<ui::Control>("lblHelp").Top(), Rows().Bottom() + 100);
  EXPECT_EQ(Get<ui::Control>("lblHelp").Bottom(), 5695 - 100);
  ToolBar().UserClick("Edit");
  Page().Move(0, 0, 7000, 6000);
  EXPECT_TRUE(EditorIsOpen());
  EXPECT_EQ(Editor().GetBounds(), (ui::Bounds{0, 0, 7000, 6000}));
}

}  // namespace
