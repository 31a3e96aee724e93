#include <gmock/gmock.h>

#include "base/Error.h"
#include "shell/modCommon.h"
#include "support/RouterLogTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RouterLogPage : public support::RouterLogTest {
 protected:
  RouterLogPage() {
    router = SelectRouter();
    OpenPage();
    page->Reset();
    router->calls.clear();
    world.toolkit.choosePopup = [this](ui::Menu& menu) {
      popup = menu.Name();
      return choice;
    };
  }

  ui::CheckBox& Filter() { return Find<ui::CheckBox>("chkFilterOutProfiles"); }
  ui::Menu& Remove() { return Find<ui::Menu>("mnuRemove"); }
  ui::Menu& ClearLog() { return Find<ui::Menu>("mnuClearLog"); }
  void AddRows(int count) {
    for (int row = 1; row <= count; ++row) RaiseLog("in", "s", row, "d", 80, "m");
  }

  /// A menu opens only on a window that is loaded.
  void RightClick() {
    window.Load();
    List().UserRightButtonUp();
  }

  std::shared_ptr<support::Script> router;
  std::string popup;
  ui::Menu* choice = nullptr;
};

TEST_F(RouterLogPage, HasItsCaptionsAndColumns) {
  EXPECT_EQ(Find<ui::Label>("lblTitle").Caption(), "Activity Log");
  EXPECT_EQ(Enable().Caption(), "&Enable");
  EXPECT_EQ(Filter().Caption(), "&Filter out Profiles");
  EXPECT_EQ(Clear().Caption(), "&Clear Log");
  EXPECT_EQ(Find<ui::Menu>("mnuPopUpLog").Caption(), "Log");
  EXPECT_EQ(ClearLog().Caption(), "Clear Log");
  EXPECT_EQ(Remove().Caption(), "Remove");
  std::vector<std::string> captions;
  std::vector<ui::Twips> widths;
  for (const ui::ListView::Column& column : List().Columns()) {
    EXPECT_EQ(column.key, column.text);
    captions.push_back(column.text);
    widths.push_back(column.width);
  }
  EXPECT_THAT(captions,
              ElementsAre("Time", "Type", "Dest URL/IP", "Dest Port", "Source", "Src Port", "Misc."));
  EXPECT_THAT(widths, ElementsAre(1000, 500, 1000, 500, 1000, 500, 2000));
}

TEST_F(RouterLogPage, HasItsColoursFontsAndHelp) {
  EXPECT_EQ(page->HelpContextID(), 1000);
  EXPECT_EQ(List().HelpContextID(), 1000);
  EXPECT_EQ(Find<ui::Label>("lblTitle").ForeColor(), modCommon::ColorTitle());
  EXPECT_EQ(Find<ui::Label>("lblTitle").Font(), ui::TitleFont());
  EXPECT_EQ(Find<ui::TextBox>("txtError").ForeColor(), modCommon::ColorDarkRed());
  EXPECT_TRUE(Find<ui::TextBox>("txtError").Locked());
  EXPECT_TRUE(Find<ui::TextBox>("txtError").GetStyle().verticalScrollBar);
  EXPECT_TRUE(List().GetStyle().multiSelect);
}

TEST_F(RouterLogPage, PassesItsBackgroundOnToItsControls) {
  page->BackgroundColor(modCommon::ColorBackground());
  EXPECT_EQ(page->BackgroundColor(), modCommon::ColorBackground());
  for (const char* name : {"chkEnable", "chkFilterOutProfiles", "txtError", "lblTitle"}) {
    EXPECT_EQ(Find<ui::Control>(name).BackColor(), modCommon::ColorBackground()) << name;
  }
  EXPECT_EQ(List().BackColor(), ui::Rgb(243, 225, 190));
  EXPECT_EQ(Clear().BackColor(), ui::kDefaultColor);
}

TEST_F(RouterLogPage, SubtractsTheShadeOfTheListAsOneNumber) {
  page->BackgroundColor(ui::kBlack);
  EXPECT_EQ(List().BackColor(), -ui::Rgb(10, 10, 10));
}

TEST_F(RouterLogPage, ShowsTheStateOfThePlugInAndOfTheSettings) {
  router->Answer("IServer_EnableLog", true);
  g_Registry->FilterOutProfiles = true;
  page->RefreshData();
  EXPECT_TRUE(Enable().Checked());
  EXPECT_TRUE(Filter().Checked());
  EXPECT_TRUE(g_Registry->FilterOutProfiles);
}

TEST_F(RouterLogPage, WritesAStateThatItHadNotShownBackToThePlugIn) {
  router->Answer("IServer_EnableLog", true);
  page->RefreshData();
  EXPECT_THAT(router->calls, ElementsAre("get IServer_EnableLog", "put IServer_EnableLog = True",
                                         "call IServer_SetLogging(&\"192.168.1.7\")"));
  router->calls.clear();
  page->RefreshData();
  EXPECT_THAT(router->calls, ElementsAre("get IServer_EnableLog"));
}

TEST_F(RouterLogPage, StaysUncheckedWithoutARouterAndAClickCallsNobody) {
  g_Registry->Router = nullptr;
  page->Reset();
  EXPECT_FALSE(Enable().Checked());
  router->calls.clear();
  Enable().UserClick();
  EXPECT_TRUE(Enable().Checked());
  EXPECT_THAT(router->calls, IsEmpty());
}

TEST_F(RouterLogPage, SwitchesTheLogOnAndOff) {
  Enable().UserClick();
  EXPECT_THAT(router->calls,
              ElementsAre("put IServer_EnableLog = True", "call IServer_SetLogging(&\"192.168.1.7\")"));
  EXPECT_TRUE(Enable().Checked());
  router->calls.clear();
  Enable().UserClick();
  EXPECT_THAT(router->calls,
              ElementsAre("put IServer_EnableLog = False", "call IServer_SetLogging(&\"192.168.1.7\")"));
  EXPECT_FALSE(Enable().Checked());
}

TEST_F(RouterLogPage, UnchecksTheBoxWhenLoggingIsRefusedAndTellsThePlugInNothing) {
  router->Answer("IServer_SetLogging", true);
  Enable().UserClick();
  EXPECT_FALSE(Enable().Checked());
  EXPECT_THAT(router->calls,
              ElementsAre("put IServer_EnableLog = True", "call IServer_SetLogging(&\"192.168.1.7\")"));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  router->Answer("IServer_SetLogging", false);
  Enable().UserClick();
  EXPECT_TRUE(Enable().Checked()) << "the guard was left up";
}

TEST_F(RouterLogPage, TellsAFailureOfThePlugInAndGoesOn) {
  router->Fail("IServer_SetLogging", 1000, "no answer");
  Enable().UserClick();
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, "no answer (1000)");
  router->Answer("IServer_SetLogging", false);
  Enable().UserClick();
  EXPECT_FALSE(Enable().Checked());
}

TEST_F(RouterLogPage, KeepsTheFilterInTheSettingsAndLeavesTheRows) {
  AddRows(1);
  Filter().UserClick();
  EXPECT_TRUE(g_Registry->FilterOutProfiles);
  Filter().UserClick();
  EXPECT_FALSE(g_Registry->FilterOutProfiles);
  EXPECT_EQ(List().RowCount(), 1u);
}

TEST_F(RouterLogPage, AsksBeforeItClears) {
  AddRows(3);
  world.toolkit.answers = {ui::MessageResult::kYes};
  Clear().UserClick();
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  const ui::Message& question = world.toolkit.messages[0];
  EXPECT_EQ(question.text, "Are you sure you want to clear the log?");
  EXPECT_EQ(question.buttons, ui::MessageButtons::kYesNo);
  EXPECT_EQ(question.icon, ui::MessageIcon::kWarning);
  EXPECT_EQ(question.title, "Harbourline");
  EXPECT_EQ(List().RowCount(), 0u);
  EXPECT_FALSE(Clear().Enabled());
}

TEST_F(RouterLogPage, LeavesEverythingWhenTheQuestionIsRefused) {
  AddRows(3);
  world.toolkit.answers = {ui::MessageResult::kNo};
  Clear().UserClick();
  EXPECT_THAT(Keys(), ElementsAre("K1", "K2", "K3"));
  EXPECT_TRUE(Clear().Enabled());
}

TEST_F(RouterLogPage, ClearsByTheMenuToo) {
  AddRows(2);
  List().UserSelect(0, true);
  world.toolkit.answers = {ui::MessageResult::kYes};
  choice = &ClearLog();
  RightClick();
  EXPECT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(List().RowCount(), 0u);
  EXPECT_FALSE(Clear().Enabled());
}

TEST_F(RouterLogPage, OffersToRemoveTheSelectedItem) {
  AddRows(3);
  List().UserSelect(1, true);
  RightClick();
  EXPECT_EQ(popup, "mnuPopUpLog");
  EXPECT_EQ(Remove().Caption(), "Remove selected item from log");
  EXPECT_TRUE(Remove().Enabled());
  EXPECT_TRUE(ClearLog().Enabled());
}

TEST_F(RouterLogPage, OffersToRemoveThreeSelectedItems) {
  AddRows(4);
  for (const std::size_t row : {0u, 1u, 3u}) List().UserSelect(row, true);
  RightClick();
  EXPECT_EQ(Remove().Caption(), "Remove 3 selected items from log");
}

TEST_F(RouterLogPage, OffersNothingWithoutASelection) {
  AddRows(2);
  RightClick();
  EXPECT_EQ(popup, "mnuPopUpLog");
  EXPECT_EQ(Remove().Caption(), "Remove selected item from log");
  EXPECT_FALSE(Remove().Enabled());
  EXPECT_FALSE(ClearLog().Enabled());
  EXPECT_TRUE(Clear().Enabled());
}

TEST_F(RouterLogPage, RemovesTheSelectedRowsWithoutAQuestion) {
  AddRows(5);
  for (const std::size_t row : {0u, 2u, 4u}) List().UserSelect(row, true);
  choice = &Remove();
  RightClick();
  EXPECT_THAT(Keys(), ElementsAre("K2", "K4"));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_TRUE(List().Visible());
  EXPECT_EQ(List().SelectedCount(), 0u);
}

TEST_F(RouterLogPage, KeepsClearingPossibleWhenTheLastRowIsRemoved) {
  AddRows(1);
  List().UserSelect(0, true);
  choice = &Remove();
  RightClick();
  EXPECT_THAT(Keys(), IsEmpty());
  EXPECT_TRUE(Clear().Enabled());
}

TEST_F(RouterLogPage, RemovesEveryRowOfALongLog) {
  AddRows(50'000);
  List().UserSelectAll(true);
  choice = &Remove();
  RightClick();
  EXPECT_THAT(Keys(), IsEmpty());
  AddRows(1);
  EXPECT_THAT(Keys(), ElementsAre("K50001"));
}

TEST_F(RouterLogPage, SortsPortsAsNumbersAndEqualPortsByTheirTime) {
  const auto add = [this](std::int32_t hour, std::int32_t port) {
    world.clock.now.hour = hour;
    RaiseLog("in", "s", port, "d", 80, "m");
  };
  add(3, 10);
  add(2, 9);
  add(1, 10);
  add(0, 100);
  List().UserColumnClick(6);
  EXPECT_THAT(Keys(), ElementsAre("K2", "K3", "K1", "K4"));
  List().UserColumnClick(6);
  EXPECT_THAT(Keys(), ElementsAre("K4", "K1", "K3", "K2"));
}

TEST_F(RouterLogPage, SortsEachColumnByItsKind) {
  const auto add = [this](const platform::DateTime& time, const char* type, const char* destination,
                          std::int32_t port, const char* sourceIP, const char* miscellaneous) {
    world.clock.now = time;
    RaiseLog(type, sourceIP, port, destination, port, miscellaneous);
  };
  add({2026, 1, 5, 0, 0, 0}, "out", "b", 9, "20", "b");
  add({2025, 12, 31, 0, 0, 0}, "in", "a", 10, "3", "a");
  const std::vector<std::pair<int, std::string>> firstKeys{{1, "K2"}, {2, "K2"}, {3, "K2"}, {4, "K1"},
                                                           {5, "K1"}, {6, "K1"}, {7, "K2"}};
  for (const auto& [column, key] : firstKeys) {
    List().UserColumnClick(column);
    EXPECT_EQ(Keys()[0], key) << column;
  }
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(RouterLogPage, TellsATimeThatDoesNotReadAsOneAndLeavesTheRows) {
  page.reset();
  OpenPage(
      " 2\r\nyesterday\r\nin\r\nd\r\n2\r\ns\r\n1\r\nm\r\n07/09/26 08:05\r\nin\r\nd\r\n1\r\ns\r\n1\r\nm\r\n");
  List().UserColumnClick(4);
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, "Type mismatch: \"yesterday\" (13)");
  EXPECT_THAT(Column(3), ElementsAre("2", "1"));
  EXPECT_TRUE(List().Visible());
}

TEST_F(RouterLogPage, FitsItsColumnsWhenItIsMade) {
  support::WatchedPeers peers(window);
  EXPECT_THAT(peers.toolkit.TakeRows(List()),
              ElementsAre("fit 0 header", "fit 1 header", "fit 2 header", "fit 3 header", "fit 4 header",
                          "fit 5 header", "fit 6 header"));
}

TEST_F(RouterLogPage, ShowsTheLastRowOfTheLoadedLogFirst) {
  page.reset();
  OpenPage(" 2 \r\nt\r\nin\r\nd\r\n1\r\ns\r\n2\r\nm\r\nt\r\nin\r\nd\r\n1\r\ns\r\n2\r\nm\r\n");
  ASSERT_EQ(List().RowCount(), 2u);
  support::WatchedPeers peers(window);
  EXPECT_THAT(peers.toolkit.TakeRows(List()), testing::Contains("see 1"));
}

TEST_F(RouterLogPage, CancelsTheEditingOfARow) {
  AddRows(1);
  EXPECT_FALSE(List().UserLabelEditStart(0));
}

TEST_F(RouterLogPage, ScrollsToTheRowThatIsClicked) {
  AddRows(3);
  support::WatchedPeers peers(window);
  peers.toolkit.TakeRows(List());
  List().UserSelect(2, true);
  List().UserItemClick();
  EXPECT_THAT(peers.toolkit.TakeRows(List()), ElementsAre("see 2"));
}

TEST_F(RouterLogPage, DoesNothingForAClickOnAnEmptyList) {
  List().UserItemClick();
  RightClick();
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(RouterLogPage, PlacesItsControlsWithAMarginAndTheListAboveTheSwitches) {
  page->Move(0, 0, 9000, 7000);
  const ui::ListView& list = List();
  EXPECT_EQ(list.Left(), 100);
  EXPECT_EQ(list.Width(), 8800);
  EXPECT_EQ(list.Top(), Find<ui::Label>("lblTitle").Bottom() + 100);
  EXPECT_EQ(list.Bottom(), Enable().Top() - 100);
  EXPECT_EQ(Enable().Top(), Filter().Top());
  EXPECT_EQ(Enable().Top(), Clear().Top());
  EXPECT_EQ(Find<ui::TextBox>("txtError").Bottom(), 6900);
  EXPECT_LE(Enable().Right(), Filter().Left());
  EXPECT_LE(Filter().Right(), Clear().Left());
  EXPECT_EQ(Clear().Right(), 8900);
}

TEST_F(RouterLogPage, HidesAndShowsItsControlsAroundALayout) {
  support::WatchedPeers peers(window);
  const std::vector<std::string> names{"lblTitle", "chkEnable", "chkFilterOutProfiles",
                                       "cmdClear", "txtError",  "lvRouterLog"};
  for (const std::string& name : names) peers.toolkit.TakeChanges(Find<ui::Control>(name));
  page->Move(0, 0, 9000, 7000);
  for (const std::string& name : names) {
    const auto changes = peers.toolkit.TakeChanges(Find<ui::Control>(name));
    ASSERT_FALSE(changes.empty()) << name;
    EXPECT_EQ(changes.front(), ui::Aspect::kVisible) << name;
    EXPECT_EQ(changes.back(), ui::Aspect::kVisible) << name;
    EXPECT_EQ(std::count(changes.begin(), changes.end(), ui::Aspect::kVisible), 2) << name;
    EXPECT_TRUE(Find<ui::Control>(name).Visible()) << name;
  }
}

TEST_F(RouterLogPage, MakesNothingNegativeOnASmallPage) {
  for (const ui::Twips size : {1000, 200, 100, 1, 0}) {
    page->Move(0, 0, size, size);
    for (const ui::Control* control : page->Children()) {
      EXPECT_GE(control->Width(), 0) << control->Name();
      EXPECT_GE(control->Height(), 0) << control->Name();
    }
  }
}

}  // namespace
