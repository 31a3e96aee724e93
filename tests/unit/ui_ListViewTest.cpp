#include "ui/ListView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UiListView : public support::InterfaceTest {
 protected:
  UiListView()
      : window("frmTest", "Test", {}, 100, 100),
        list(&window, "lvMany", {.checkBoxes = true, .multiSelect = true, .labelEdit = true}),
        single(&window, "lvSingle") {
    window.Load();
    for (const char* key : {"a", "b", "c", "d"}) {
      list.AddRow(key, std::string("text ") + key);
      single.AddRow(key, key);
    }
  }

  static std::vector<std::string> Keys(const ui::ListView& lv) {
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < lv.RowCount(); ++row) keys.emplace_back(lv.Key(row));
    return keys;
  }
  static std::vector<std::string> SelectedKeys(const ui::ListView& lv) {
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < lv.RowCount(); ++row) {
      if (lv.Selected(row)) keys.emplace_back(lv.Key(row));
    }
    return keys;
  }

  ui::Form window;
  ui::ListView list;
  ui::ListView single;
};

TEST_F(UiListView, HasColumnsThatAreFittedAndCleared) {
  list.AddColumn("time", "Time");
  list.AddColumn("", "Type", 500);
  ASSERT_EQ(list.Columns().size(), 2u);
  EXPECT_EQ(list.Columns()[0].key, "time");
  EXPECT_EQ(list.Columns()[0].width, ui::ListView::kDefaultColumnWidth);
  EXPECT_EQ(list.Columns()[1].text, "Type");
  EXPECT_EQ(list.Columns()[1].width, 500);
  list.ColumnWidth(1, 700);
  EXPECT_EQ(list.Columns()[1].width, 700);
  list.UserColumnWidth(1, 800);
  list.UserColumnWidth(2, 900);
  EXPECT_EQ(list.Columns()[1].width, 800);
  EXPECT_TRUE(list.FitColumn(1, true));
  EXPECT_FALSE(list.FitColumn(2, true));
  EXPECT_EQ(support::ErrorTextOf([&] { list.ColumnWidth(2, 5); }), "There is no column 2 in frmTest.lvMany");
  list.ClearColumns();
  EXPECT_THAT(list.Columns(), IsEmpty());
  EXPECT_EQ(list.RowCount(), 4u);
}

TEST_F(UiListView, FindsARowByItsKeyAndRefusesATakenOne) {
  EXPECT_EQ(list.Find("c"), 2u);
  EXPECT_EQ(list.Find("x"), std::nullopt);
  EXPECT_EQ(support::ErrorOf([&] { list.AddRow("c", "again"); }), base::ErrorNumber::kKeyTaken);
  EXPECT_EQ(list.RowCount(), 4u);
  EXPECT_EQ(list.AddRow("e", "new"), 4u);
}

TEST_F(UiListView, SubItemsStandBehindTheTextUnderTheirKeys) {
  list.AddSubItem(0, "Name", "first");
  list.AddSubItem(0, "", "second");
  list.AddSubItem(1, "Name", "third");
  EXPECT_THAT(list.SubItemKeys(), ElementsAre("Name", ""));
  EXPECT_EQ(list.Text(0, 1), "first");
  EXPECT_EQ(list.Text(0, 2), "second");
  EXPECT_EQ(list.Text(1, 1), "third");
  EXPECT_EQ(list.Text(1, 2), "");
}

TEST_F(UiListView, ARowThatWasAddedWithoutCellsTakesSubItems) {
  const std::size_t row = list.AddRow("bare", std::span<const std::string_view>());
  list.AddSubItem(row, "Name", "first");
  EXPECT_EQ(list.Text(row, 0), "");
  EXPECT_EQ(list.Text(row, 1), "first");
  EXPECT_THAT(list.SubItemKeys(), ElementsAre("Name"));
}

TEST_F(UiListView, SelectingByCodeInASingleListLeavesNoOther) {
  EXPECT_EQ(single.SelectedRow(), std::nullopt);
  single.Select(1);
  single.Select(3);
  EXPECT_EQ(single.SelectedRow(), 3u);
  EXPECT_THAT(SelectedKeys(single), ElementsAre("d"));
  EXPECT_EQ(single.SelectedCount(), 1u);
}

TEST_F(UiListView, SelectingByTheUserInASingleListLeavesNoOtherInWhicheverOrderItIsReported) {
  single.UserSelect(1, true);
  single.UserSelect(3, true);
  single.UserSelect(1, false);
  EXPECT_THAT(SelectedKeys(single), ElementsAre("d"));
  EXPECT_EQ(single.SelectedRow(), 3u);
  single.UserSelect(3, false);
  single.UserSelect(0, true);
  EXPECT_THAT(SelectedKeys(single), ElementsAre("a"));
  single.UserSelectAll(true);
  EXPECT_THAT(SelectedKeys(single), ElementsAre("a"));
  single.UserSelectAll(false);
  EXPECT_EQ(single.SelectedRow(), std::nullopt);
  EXPECT_EQ(single.SelectedCount(), 0u);
}

TEST_F(UiListView, ManyRowsMayBeSelected) {
  list.UserSelect(0, true);
  list.Select(2);
  EXPECT_EQ(list.SelectedRow(), 2u);
  EXPECT_THAT(SelectedKeys(list), ElementsAre("a", "c"));
  EXPECT_EQ(list.SelectedCount(), 2u);
  list.UserSelect(2, true);
  EXPECT_EQ(list.SelectedCount(), 2u);
  list.UserSelect(2, false);
  EXPECT_EQ(list.SelectedRow(), std::nullopt);
  EXPECT_EQ(list.SelectedCount(), 1u);
  list.UserSelectAll(true);
  EXPECT_EQ(list.SelectedCount(), 4u);
  list.UserSelectAll(false);
  EXPECT_EQ(list.SelectedCount(), 0u);
  EXPECT_THAT(SelectedKeys(list), IsEmpty());
}

TEST_F(UiListView, ARowThatIsNotThereCanNotBeSelected) {
  EXPECT_EQ(support::ErrorOf([&] { list.Select(4); }), base::ErrorNumber::kSubscript);
  EXPECT_EQ(list.SelectedRow(), std::nullopt);
  EXPECT_EQ(list.SelectedCount(), 0u);
}

TEST_F(UiListView, AReportOfARowThatHasGoneIsIgnored) {
  int checks = 0;
  list.ItemCheck.Connect([&] { ++checks; });
  list.UserSelect(4, true);
  list.UserCheck(4, true);
  list.UserLabelEditEnd("new");
  EXPECT_EQ(list.SelectedCount(), 0u);
  EXPECT_EQ(list.SelectedRow(), std::nullopt);
  EXPECT_EQ(checks, 0);
  EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(UiListView, TheSelectionFollowsItsRowWhenOthersGo) {
  list.Select(2);
  list.Remove("a");
  EXPECT_EQ(list.SelectedRow(), 1u);
  EXPECT_THAT(SelectedKeys(list), ElementsAre("c"));
  list.Remove("d");
  EXPECT_EQ(list.SelectedRow(), 1u);
  list.Remove("c");
  EXPECT_EQ(list.SelectedRow(), std::nullopt);
  EXPECT_EQ(list.SelectedCount(), 0u);
  EXPECT_THAT(Keys(list), ElementsAre("b"));
}

TEST_F(UiListView, AnUnknownKeyCanNotBeRemoved) {
  EXPECT_EQ(support::ErrorOf([&] { list.Remove("x"); }), base::ErrorNumber::kKeyUnknown);
  list.Remove(list.Key(1));
  EXPECT_THAT(Keys(list), ElementsAre("a", "c", "d"));
}

TEST_F(UiListView, RemovingTheSelectedRowsKeepsTheOrderOfTheOthers) {
  list.UserSelect(0, true);
  list.UserSelect(2, true);
  EXPECT_EQ(list.RemoveSelected(), 2u);
  EXPECT_THAT(Keys(list), ElementsAre("b", "d"));
  EXPECT_EQ(list.SelectedCount(), 0u);
  EXPECT_EQ(list.RemoveSelected(), 0u);
  list.UserSelectAll(true);
  EXPECT_EQ(list.RemoveSelected(), 2u);
  EXPECT_EQ(list.RowCount(), 0u);
  list.AddRow("b", "again");
  EXPECT_EQ(list.Find("b"), 0u);
  EXPECT_FALSE(list.Selected(0));
}

TEST_F(UiListView, ReorderingTakesEverythingAlong) {
  list.Select(1);
  list.Checked(3, true);
  list.CellColor(0, 0, 77);
  list.Reorder(std::vector<std::uint32_t>{3, 2, 1, 0});
  EXPECT_THAT(Keys(list), ElementsAre("d", "c", "b", "a"));
  EXPECT_EQ(list.SelectedRow(), 2u);
  EXPECT_TRUE(list.Checked(0));
  EXPECT_EQ(list.CellColor(3, 0), 77);
  EXPECT_EQ(list.Find("a"), 3u);
}

TEST_F(UiListView, ClearingTakesRowsAndSelectionAndLeavesColumns) {
  list.AddColumn("", "Time");
  list.UserSelectAll(true);
  list.ClearRows();
  EXPECT_EQ(list.RowCount(), 0u);
  EXPECT_EQ(list.SelectedCount(), 0u);
  EXPECT_EQ(list.SelectedRow(), std::nullopt);
  EXPECT_EQ(list.Columns().size(), 1u);
  list.AddRow("a", "again");
  EXPECT_EQ(list.Find("a"), 0u);
}

TEST_F(UiListView, ATickIsToldWhenTheUserChangesItOnly) {
  int checks = 0;
  list.ItemCheck.Connect([&] { ++checks; });
  list.Checked(0, true);
  EXPECT_EQ(checks, 0);
  list.UserCheck(0, true);
  EXPECT_EQ(checks, 0);
  list.UserCheck(0, false);
  EXPECT_EQ(checks, 1);
  EXPECT_FALSE(list.Checked(0));
}

TEST_F(UiListView, TellsWhatTheUserDoes) {
  std::vector<std::string> told;
  list.ItemClick.Connect([&] { told.push_back("click"); });
  list.DblClick.Connect([&] { told.push_back("double"); });
  list.RightButtonUp.Connect([&] { told.push_back("right"); });
  list.KeyUp.Connect([&](std::int32_t key) { told.push_back("key " + std::to_string(key)); });
  list.ColumnClick.Connect([&](std::int32_t column) { told.push_back("column " + std::to_string(column)); });
  list.UserItemClick();
  list.UserDblClick();
  list.UserRightButtonUp();
  list.UserKeyUp(113);
  list.UserColumnClick(6);
  EXPECT_THAT(told, ElementsAre("click", "double", "right", "key 113", "column 6"));
}

TEST_F(UiListView, ARowThatIsToBeSeenBeforeThereIsAWindowIsScrolledToWhenThereIsOne) {
  ui::ListView early(&window, "lvEarly");
  for (const char* key : {"a", "b", "c"}) early.EnsureVisible(early.AddRow(key, key));
  window.Unload();
  window.Load();
  EXPECT_THAT(toolkit.TakeRows(early), ElementsAre("see 2"));
  window.Unload();
  window.Load();
  EXPECT_THAT(toolkit.TakeRows(early), IsEmpty()) << "it has been shown";
}

TEST_F(UiListView, ARowThatHasMovedBeforeThereIsAWindowIsNotScrolledTo) {
  ui::ListView early(&window, "lvEarly");
  early.EnsureVisible(early.AddRow("a", "a"));
  early.Remove("a");
  window.Unload();
  window.Load();
  EXPECT_THAT(toolkit.TakeRows(early), IsEmpty());
}

TEST_F(UiListView, ALabelEditMayBeCancelledBeforeItStarts) {
  EXPECT_TRUE(list.UserLabelEditStart(0));
  EXPECT_FALSE(list.UserLabelEditStart(4)) << "there is no such row";
  EXPECT_FALSE(single.UserLabelEditStart(0));
  list.BeforeLabelEdit.Connect([](bool& cancel) { cancel = true; });
  EXPECT_FALSE(list.UserLabelEditStart(0));
}

TEST_F(UiListView, ALabelEditGivesTheRowItsNewText) {
  std::string told;
  list.AfterLabelEdit.Connect([&](bool&, const std::string& key, const std::string& text) {
    told = key + " " + text;
    EXPECT_EQ(list.Text(1), "text b") << "the handler sees the old text";
  });
  list.UserLabelEditStart(1);
  list.UserLabelEditEnd("New Name");
  EXPECT_EQ(told, "b New Name");
  EXPECT_EQ(list.Text(1), "New Name");
  EXPECT_EQ(list.Key(1), "b");
  EXPECT_THAT(toolkit.TakeRows(list), testing::Contains("changed 1"));
}

TEST_F(UiListView, ALabelEditThatIsCancelledOrFailsLeavesTheText) {
  bool cancels = true;
  list.AfterLabelEdit.Connect([&](bool& cancel, const std::string&, const std::string&) {
    cancel = cancels;
    if (!cancels) throw base::Error(5, "No");
  });
  list.UserLabelEditStart(1);
  list.UserLabelEditEnd("New Name");
  EXPECT_EQ(list.Text(1), "text b");
  cancels = false;
  list.UserLabelEditStart(1);
  list.UserLabelEditEnd("New Name");
  EXPECT_EQ(list.Text(1), "text b");
  EXPECT_THAT(Messages(), ElementsAre("No (5)"));
}

TEST_F(UiListView, ALabelEditGoesToItsRowWhereverThatIsByThen) {
  list.AfterLabelEdit.Connect([&](bool&, const std::string&, const std::string&) {
    list.Reorder(std::vector<std::uint32_t>{1, 0, 2, 3});
  });
  list.UserLabelEditStart(1);
  list.UserLabelEditEnd("New Name");
  EXPECT_EQ(list.Text(0), "New Name");
  EXPECT_EQ(list.Text(1), "text a");
  list.AfterLabelEdit.Connect([&](bool&, const std::string&, const std::string&) { list.Remove("c"); });
  list.UserLabelEditStart(2);
  list.UserLabelEditEnd("Lost");
  EXPECT_THAT(Keys(list), testing::UnorderedElementsAre("a", "b", "d"));
  for (std::size_t row = 0; row < list.RowCount(); ++row) EXPECT_NE(list.Text(row), "Lost");
}

TEST_F(UiListView, ALabelEditGoesToTheRowThatItBeganInThoughRowsHaveMovedSince) {
  list.Select(2);
  list.UserLabelEditStart(2);
  list.Remove("a");
  list.Select(2);
  list.UserLabelEditEnd("New Name");
  EXPECT_EQ(list.Text(1), "New Name");
  EXPECT_EQ(list.Key(1), "c");
  EXPECT_EQ(list.Text(2), "text d");
}

TEST_F(UiListView, ALabelEditOfARowThatHasGoneIsNotReported) {
  int reported = 0;
  list.AfterLabelEdit.Connect([&](bool&, const std::string&, const std::string&) { ++reported; });
  list.UserLabelEditStart(1);
  list.Remove("b");
  list.UserLabelEditEnd("Lost");
  EXPECT_EQ(reported, 0);
  for (std::size_t row = 0; row < list.RowCount(); ++row) EXPECT_NE(list.Text(row), "Lost");
}

TEST_F(UiListView, HoldsTextsOfMegabytesAndEmptyOnes) {
  const std::string big(3 << 20, 'x');
  const std::size_t row = list.AddRow("big", big);
  list.AddSubItem(row, "", "");
  list.AddSubItem(row, "", big);
  EXPECT_EQ(list.Text(row, 2), big);
  list.Text(row, 0, "");
  EXPECT_EQ(list.Text(row, 0), "");
  EXPECT_EQ(list.Text(row, 2).size(), big.size());
}

/// Does the same at random to a list view and to plain rows.
class RandomList {
 public:
  RandomList(unsigned seed, bool many)
      : random_(seed), many_(many), list_(nullptr, "lvTest", {.checkBoxes = true, .multiSelect = many}) {}

  void Step() {
    switch (Below(12)) {
      case 0:
      case 1:
      case 2:
        return Add();
      case 3:
        return Remove();
      case 4:
      case 5:
      case 6:
        return Select();
      case 7:
        return UserSelectAll();
      case 8:
        return Reorder();
      case 9:
        return Below(6) == 0 ? RemoveSelected() : Add();
      case 10:
        return Below(30) == 0 ? Clear() : SetText();
      default:
        return Deselect();
    }
  }

  void Compare() const {
    ASSERT_EQ(list_.RowCount(), plain_.size());
    std::size_t selected = 0;
    for (std::size_t row = 0; row < plain_.size(); ++row) {
      ASSERT_EQ(list_.Key(row), plain_[row].key);
      ASSERT_EQ(list_.Text(row), plain_[row].text);
      ASSERT_EQ(list_.Selected(row), plain_[row].selected);
      ASSERT_EQ(list_.Find(plain_[row].key), row);
      if (plain_[row].selected) ++selected;
    }
    ASSERT_EQ(list_.SelectedCount(), selected);
    const auto row = list_.SelectedRow();
    ASSERT_EQ(row ? std::string(list_.Key(*row)) : "", current_);
  }

 private:
  struct Row {
    std::string key;
    std::string text;
    bool selected = false;
  };

  std::size_t Below(std::size_t limit) { return random_() % limit; }

  void Add() {
    const std::string key = "k" + std::to_string(Below(80));
    const bool taken =
        std::any_of(plain_.begin(), plain_.end(), [&](const Row& row) { return row.key == key; });
    ASSERT_EQ(support::ErrorOf([&] { list_.AddRow(key, "t" + key); }),
              taken ? base::ErrorNumber::kKeyTaken : 0);
    if (!taken) plain_.push_back({key, "t" + key});
  }
  void Remove() {
    if (plain_.empty()) return;
    const std::size_t row = Below(plain_.size());
    list_.Remove(plain_[row].key);
    if (plain_[row].key == current_) current_.clear();
    plain_.erase(plain_.begin() + static_cast<std::ptrdiff_t>(row));
  }
  void Select() {
    if (plain_.empty()) return;
    const std::size_t row = Below(plain_.size());
    if (Below(2) == 0) {
      list_.Select(row);
    } else {
      list_.UserSelect(row, true);
    }
    if (!many_) {
      for (Row& other : plain_) other.selected = false;
    }
    plain_[row].selected = true;
    current_ = plain_[row].key;
  }
  void Deselect() {
    if (plain_.empty()) return;
    const std::size_t row = Below(plain_.size());
    list_.UserSelect(row, false);
    plain_[row].selected = false;
    if (plain_[row].key == current_) current_.clear();
  }
  void UserSelectAll() {
    const bool selected = Below(2) == 0;
    list_.UserSelectAll(selected);
    if (selected && !many_) return;
    for (Row& row : plain_) row.selected = selected;
    if (!selected) current_.clear();
  }
  void RemoveSelected() {
    const std::size_t removed = list_.RemoveSelected();
    ASSERT_EQ(removed, std::erase_if(plain_, [](const Row& row) { return row.selected; }));
    current_.clear();
  }
  void Reorder() {
    std::vector<std::uint32_t> order(plain_.size());
    std::iota(order.begin(), order.end(), 0u);
    std::shuffle(order.begin(), order.end(), random_);
    list_.Reorder(order);
    std::vector<Row> ordered;
    for (const std::uint32_t row : order) ordered.push_back(plain_[row]);
    plain_ = std::move(ordered);
  }
  void Clear() {
    list_.ClearRows();
    plain_.clear();
    current_.clear();
  }
  void SetText() {
    if (plain_.empty()) return;
    const std::size_t row = Below(plain_.size());
    plain_[row].text = std::string(Below(30), 'z');
    list_.Text(row, 0, plain_[row].text);
  }

  std::mt19937 random_;
  bool many_;
  ui::ListView list_;
  std::vector<Row> plain_;
  /// Key of the selected row, as SelectedRow tells it; empty for none.
  std::string current_;
};

TEST(UiListViewAtRandom, IsWhatPlainRowsWouldBe) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(seed);
    RandomList both(seed, seed % 2 == 0);
    for (int step = 0; step < 600; ++step) {
      both.Step();
      both.Compare();
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

}  // namespace
