#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "base/Error.h"
#include "editing/modListViewHelper.h"
#include "ui/Form.h"
#include "ui/ListView.h"

namespace {

using modListViewHelper::GetListItemSortKey;
using modListViewHelper::SortListView;
using modListViewHelper::SortOnColumnClick;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr std::int32_t kAscending = 0;
constexpr std::int32_t kDescending = 1;
constexpr std::int16_t kNone = -1;
/// A kind without a name of its own: the whole text is a number.
constexpr std::int32_t kWholeNumber = 0;

class ModListViewSort : public testing::Test {
 protected:
  ModListViewSort()
      : window("frmTest", "Test", {}, 100, 100), list(&window, "lvTest", {.multiSelect = true}) {}

  void Add(std::vector<std::string_view> cells) {
    list.AddRow("K" + std::to_string(list.RowCount() + 1), cells);
  }
  void AddAll(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) Add({text});
  }
  std::vector<std::string> Column(std::size_t column) const {
    std::vector<std::string> texts;
    for (std::size_t row = 0; row < list.RowCount(); ++row) texts.emplace_back(list.Text(row, column));
    return texts;
  }
  std::vector<std::string> Keys() const {
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < list.RowCount(); ++row) keys.emplace_back(list.Key(row));
    return keys;
  }
  std::string KeyOf(std::string_view text, std::int32_t eSortType) {
    list.ClearRows();
    Add({text});
    return GetListItemSortKey(list, 0, 1, eSortType);
  }
  std::int32_t FailureOf(std::string_view text, std::int32_t eSortType) {
    try {
      KeyOf(text, eSortType);
      return 0;
    } catch (const base::Error& error) {
      return error.Number();
    }
  }

  ui::Form window;
  ui::ListView list;
};

TEST_F(ModListViewSort, WritesANumberAsFifteenDigitsAPointAndFour) {
  EXPECT_EQ(KeyOf("9", kWholeNumber), "000000000000009.0000");
  EXPECT_EQ(KeyOf("10", kWholeNumber), "000000000000010.0000");
  EXPECT_EQ(KeyOf("0", kWholeNumber), "000000000000000.0000");
  EXPECT_EQ(KeyOf("1.5", kWholeNumber), "000000000000001.5000");
  EXPECT_EQ(KeyOf("0.00006", kWholeNumber), "000000000000000.0001");
  EXPECT_EQ(KeyOf("0.00004", kWholeNumber), "000000000000000.0000");
  EXPECT_EQ(KeyOf("999999999999999", kWholeNumber), "999999999999999.0000");
  EXPECT_EQ(KeyOf(" 42 ", kWholeNumber), "000000000000042.0000");
}

TEST_F(ModListViewSort, WritesANumberThatNeedsMoreDigitsWithMore) {
  EXPECT_EQ(KeyOf("1000000000000000", kWholeNumber), "1000000000000000.0000");
  EXPECT_EQ(KeyOf("1e20", kWholeNumber), "100000000000000000000.0000");
  EXPECT_EQ(KeyOf("1e308", kWholeNumber).size(), 309u + 5u);
}

TEST_F(ModListViewSort, PutsAMinusSignInFrontOfANegativeNumber) {
  EXPECT_EQ(KeyOf("-9", kWholeNumber), "-000000000000009.0000");
  EXPECT_EQ(KeyOf("-1e20", kWholeNumber), "-100000000000000000000.0000");
}

TEST_F(ModListViewSort, KeepsTheDigitsAmongOtherCharacters) {
  EXPECT_EQ(KeyOf("1,024 KB", SortType::kDigits), "000000000001024.0000");
  EXPECT_EQ(KeyOf("8080", SortType::kDigits), "000000000008080.0000");
  EXPECT_EQ(KeyOf("-5", SortType::kDigits), "000000000000005.0000");
  EXPECT_EQ(KeyOf("v1.5b", SortType::kDigits), "000000000000001.5000");
}

TEST_F(ModListViewSort, FailsForATextWithoutADigit) {
  EXPECT_EQ(FailureOf("KB", SortType::kDigits), base::ErrorNumber::kTypeMismatch);
  EXPECT_EQ(FailureOf("", SortType::kDigits), base::ErrorNumber::kTypeMismatch);
  EXPECT_EQ(FailureOf(".", SortType::kDigits), base::ErrorNumber::kTypeMismatch);
  EXPECT_EQ(FailureOf("192.168.1.2", SortType::kDigits), base::ErrorNumber::kTypeMismatch);
  EXPECT_EQ(FailureOf(std::string(400, '9'), SortType::kDigits), base::ErrorNumber::kOverflow);
}

TEST_F(ModListViewSort, ReadsAWholeTextAsANumberForAnyKindThatHasNoName) {
  for (const std::int32_t kind : {0, 6, -1, 2147483647}) {
    EXPECT_EQ(KeyOf("12", kind), "000000000000012.0000");
    EXPECT_EQ(FailureOf("12 KB", kind), base::ErrorNumber::kTypeMismatch);
    EXPECT_EQ(FailureOf("", kind), base::ErrorNumber::kTypeMismatch);
  }
}

TEST_F(ModListViewSort, LeavesTextAsItStands) {
  EXPECT_EQ(KeyOf(" Abc ", SortType::kText), " Abc ");
  EXPECT_EQ(KeyOf("", SortType::kText), "");
}

TEST_F(ModListViewSort, CountsTheDaysOfADate) {
  // Days since 30 December 1899, as every spreadsheet counts them.
  EXPECT_EQ(KeyOf("01/01/2000", SortType::kDate), "000000000036526.0000");
  EXPECT_EQ(KeyOf("01/01/00", SortType::kDate), "000000000036526.0000");
  EXPECT_EQ(KeyOf("2/29/2024", SortType::kDate), "000000000045351.0000");
  EXPECT_EQ(KeyOf("12/31/1899", SortType::kDate), "000000000000001.0000");
}

TEST_F(ModListViewSort, TakesTwoDigitsOfAYearUpTo29ForThisCentury) {
  EXPECT_EQ(KeyOf("06/15/29", SortType::kDate), KeyOf("06/15/2029", SortType::kDate));
  EXPECT_EQ(KeyOf("06/15/30", SortType::kDate), KeyOf("06/15/1930", SortType::kDate));
  EXPECT_EQ(KeyOf("06/15/99", SortType::kDate), KeyOf("06/15/1999", SortType::kDate));
}

TEST_F(ModListViewSort, ReadsATimeAsTheFractionOfADay) {
  EXPECT_EQ(KeyOf("00:00", SortType::kTime), "000000000000000.0000");
  EXPECT_EQ(KeyOf("06:00", SortType::kTime), "000000000000000.2500");
  EXPECT_EQ(KeyOf("18:00:00", SortType::kTime), "000000000000000.7500");
  EXPECT_EQ(KeyOf("6:00:00 PM", SortType::kTime), "000000000000000.7500");
  EXPECT_EQ(KeyOf("12:00 am", SortType::kTime), "000000000000000.0000");
  EXPECT_EQ(KeyOf("12:00 PM", SortType::kTime), "000000000000000.5000");
  EXPECT_EQ(KeyOf("23:59", SortType::kTime), "000000000000000.9993");
}

TEST_F(ModListViewSort, ReadsADateWithATime) {
  EXPECT_EQ(KeyOf("01/01/00 06:00", SortType::kDateTime), "000000000036526.2500");
  EXPECT_EQ(KeyOf("01/01/00", SortType::kDateTime), "000000000036526.0000");
  EXPECT_EQ(KeyOf("01/01/00  6:00:00 PM", SortType::kDateTime), "000000000036526.7500");
}

TEST_F(ModListViewSort, FailsForWhatIsNoDateAndNoTime) {
  for (const char* text : {"", "x", "1/1", "1/1/2", "1/1/200", "13/01/20", "00/01/20", "02/30/24", "02/29/23",
                           "1/1/20x", "1-1-20", "001/01/20", "01/001/20", "01/01/99999", "/1/20", "1//20"}) {
    EXPECT_EQ(FailureOf(text, SortType::kDate), base::ErrorNumber::kTypeMismatch) << text;
  }
  for (const char* text : {"", "x", "24:00", "12:60", "12:00:60", "12", "12:", ":12", "13:00 PM", "0:00 AM",
                           "12:00 XM", "12:00:00:00", "99999:00"}) {
    EXPECT_EQ(FailureOf(text, SortType::kTime), base::ErrorNumber::kTypeMismatch) << text;
  }
  for (const char* text : {"", "12:00", "01/01/00 x", "01/01/00 25:00", "x 12:00"}) {
    EXPECT_EQ(FailureOf(text, SortType::kDateTime), base::ErrorNumber::kTypeMismatch) << text;
  }
}

TEST_F(ModListViewSort, SortsNineBeforeTen) {
  AddAll({"10", "9", "100", "1"});
  SortListView(list, 1, kAscending, SortType::kDigits, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre("1", "9", "10", "100"));
  SortListView(list, 1, kDescending, SortType::kDigits, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre("100", "10", "9", "1"));
}

TEST_F(ModListViewSort, SortsNegativeNumbersFirstAndAmongThemselvesInReverse) {
  AddAll({"3", "-1", "0", "-2", "-10"});
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre("-1", "-2", "-10", "0", "3"));
}

TEST_F(ModListViewSort, SortsNumbersOfMoreThanFifteenDigitsAsTheirKeysStand) {
  AddAll({"999999999999999", "1000000000000000", "2", "5000000000000000"});
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre("2", "1000000000000000", "5000000000000000", "999999999999999"));
}

TEST_F(ModListViewSort, SortsTextByCharacterCode) {
  AddAll({"b", "a", "B", "\xE4", "", "ab", "A", " "});
  SortListView(list, 1, kAscending, SortType::kText, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre("", " ", "A", "B", "a", "ab", "b", "\xE4"));
}

TEST_F(ModListViewSort, SortsLongTextsThatBeginAlike) {
  const std::string stem(150, 'x');
  AddAll({stem + "b", stem + "a", stem});
  SortListView(list, 1, kAscending, SortType::kText, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre(stem, stem + "a", stem + "b"));
}

TEST_F(ModListViewSort, SortsMomentsAcrossTheTurnOfTheCentury) {
  AddAll({"01/01/00 00:00", "12/31/99 23:59", "02/01/00 00:01", "01/01/00 00:01"});
  SortListView(list, 1, kAscending, SortType::kDateTime, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre("12/31/99 23:59", "01/01/00 00:00", "01/01/00 00:01", "02/01/00 00:01"));
}

TEST_F(ModListViewSort, SortsEqualKeysByTheSecondColumnInTheSameDirection) {
  Add({"01/02/26 00:00", "7"});
  Add({"01/01/26 00:00", "7"});
  Add({"01/03/26 00:00", "5"});
  SortListView(list, 2, kAscending, SortType::kDigits, 1, SortType::kDateTime);
  EXPECT_THAT(Column(0), ElementsAre("01/03/26 00:00", "01/01/26 00:00", "01/02/26 00:00"));
  SortListView(list, 2, kDescending, SortType::kDigits, 1, SortType::kDateTime);
  EXPECT_THAT(Column(0), ElementsAre("01/02/26 00:00", "01/01/26 00:00", "01/03/26 00:00"));
}

TEST_F(ModListViewSort, SortsEqualTextsByASecondColumnOfText) {
  Add({"z", "same"});
  Add({"a", "same"});
  Add({"m", "other"});
  SortListView(list, 2, kAscending, SortType::kText, 1, SortType::kText);
  EXPECT_THAT(Column(0), ElementsAre("m", "a", "z"));
}

TEST_F(ModListViewSort, CutsTheFirstKeyTo100CharactersInFrontOfASecond) {
  const std::string stem(100, 'x');
  Add({stem + "a", "2"});
  Add({stem + "b", "1"});
  SortListView(list, 1, kAscending, SortType::kText, 2, SortType::kDigits);
  EXPECT_THAT(Column(1), ElementsAre("1", "2"));
  SortListView(list, 1, kAscending, SortType::kText, kNone, 0);
  EXPECT_THAT(Column(1), ElementsAre("2", "1"));
}

TEST_F(ModListViewSort, PadsTheFirstKeyWithBlanksInFrontOfASecond) {
  // A tabulator has a smaller code than a blank.
  Add({"a", "1"});
  Add({"a\t", "2"});
  Add({"a ", "3"});
  Add({"a b", "4"});
  SortListView(list, 1, kAscending, SortType::kText, 2, SortType::kDigits);
  EXPECT_THAT(Column(1), ElementsAre("2", "1", "3", "4"));
  SortListView(list, 1, kAscending, SortType::kText, kNone, 0);
  EXPECT_THAT(Column(1), ElementsAre("1", "2", "3", "4"));
  // Also when the second is the same column.
  SortListView(list, 1, kAscending, SortType::kText, 1, SortType::kText);
  EXPECT_THAT(Column(1), ElementsAre("2", "1", "3", "4"));
}

TEST_F(ModListViewSort, LeavesRowsOfEqualKeysInTheirOrder) {
  Add({"1", "x"});
  Add({"01", "y"});
  Add({"0", "z"});
  Add({"1.0", "w"});
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  EXPECT_THAT(Column(1), ElementsAre("z", "x", "y", "w"));
  SortListView(list, 1, kDescending, kWholeNumber, kNone, 0);
  EXPECT_THAT(Column(1), ElementsAre("x", "y", "w", "z"));
}

TEST_F(ModListViewSort, ComparesExactlyAsTheWrittenKeysDo) {
  std::mt19937 random(5);
  const std::vector<std::string> numbers{"0",       "-1",    "9999999999999999",
                                         "7",       "1e15",  "-3e16",
                                         "0.00004", "12.5",  "-0",
                                         "1e99",    "1.0",   "7.0",
                                         "-1.0",    "1e120", "2e119",
                                         "3"};
  for (int round = 0; round < 50; ++round) {
    list.ClearRows();
    for (int row = 0; row < 60; ++row) {
      const std::string text(random() % 3 == 0 ? 98 + random() % 4 : random() % 10, 'a');
      const char last[] = {" \t!b"[random() % 4], 0};
      Add({numbers[random() % numbers.size()], text + last, numbers[random() % numbers.size()]});
    }
    for (const std::int16_t iColumn : {std::int16_t{1}, std::int16_t{2}}) {
      const std::int32_t eSortType = iColumn == 2 ? SortType::kText : kWholeNumber;
      for (const std::int16_t iSecond : {kNone, std::int16_t{1}, std::int16_t{2}, std::int16_t{3}}) {
        const std::int32_t eSecondType = iSecond == 2 ? SortType::kText : kWholeNumber;
        std::vector<std::pair<std::string, std::string>> expected;
        for (std::size_t row = 0; row < list.RowCount(); ++row) {
          std::string key = GetListItemSortKey(list, row, iColumn, eSortType);
          if (iSecond != kNone) {
            key.resize(100, ' ');
            key += GetListItemSortKey(list, row, iSecond, eSecondType);
          }
          expected.emplace_back(key, list.Key(row));
        }
        std::stable_sort(expected.begin(), expected.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        SortListView(list, iColumn, kAscending, eSortType, iSecond, eSecondType);
        for (std::size_t row = 0; row < expected.size(); ++row) {
          ASSERT_EQ(list.Key(row), expected[row].second) << "column " << iColumn << ", second " << iSecond;
        }
      }
    }
  }
}

TEST_F(ModListViewSort, MovesWholeRowsWithTheirKeysAndTheirSelection) {
  Add({"2", "two"});
  Add({"1", "one"});
  list.UserSelect(0, true);
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  EXPECT_THAT(Keys(), ElementsAre("K2", "K1"));
  EXPECT_THAT(Column(1), ElementsAre("one", "two"));
  EXPECT_FALSE(list.Selected(0));
  EXPECT_TRUE(list.Selected(1));
  EXPECT_EQ(list.SelectedRow(), 1u);
  EXPECT_EQ(list.Find("K1"), 1u);
}

TEST_F(ModListViewSort, LeavesColumnsAndSubItemsAsManyAsBefore) {
  list.AddColumn("a", "A");
  list.AddColumn("b", "B");
  Add({"2", "x"});
  Add({"1", "y"});
  SortListView(list, 1, kAscending, kWholeNumber, 2, SortType::kText);
  EXPECT_EQ(list.Columns().size(), 2u);
  EXPECT_EQ(list.Rows().CellCount(0), 2u);
  EXPECT_EQ(list.Rows().CellCount(1), 2u);
}

TEST_F(ModListViewSort, LeavesAHiddenListHiddenAndAVisibleOneVisible) {
  AddAll({"2", "1"});
  list.Visible(false);
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  EXPECT_FALSE(list.Visible());
  list.Visible(true);
  SortListView(list, 1, kDescending, kWholeNumber, kNone, 0);
  EXPECT_TRUE(list.Visible());
}

TEST_F(ModListViewSort, SortsAnEmptyListAndAListOfOneRow) {
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  SortListView(list, 1, kDescending, SortType::kText, 2, SortType::kDate);
  EXPECT_THAT(Keys(), IsEmpty());
  AddAll({"1"});
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  EXPECT_THAT(Keys(), ElementsAre("K1"));
}

TEST_F(ModListViewSort, LeavesTheRowsAndTheirVisibilityWhenATextDoesNotReadAsItsKind) {
  AddAll({"3", "x", "1"});
  try {
    SortListView(list, 1, kDescending, kWholeNumber, kNone, 0);
    ADD_FAILURE() << "a text was sorted as a number";
  } catch (const base::Error& error) {
    EXPECT_EQ(error.Number(), base::ErrorNumber::kTypeMismatch);
    EXPECT_EQ(error.Text(), "Type mismatch: \"x\"");
  }
  EXPECT_THAT(Column(0), ElementsAre("3", "x", "1"));
  EXPECT_EQ(list.SortOrder(), kAscending);
  EXPECT_TRUE(list.Visible());
  SortListView(list, 1, kAscending, SortType::kText, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre("1", "3", "x"));
}

TEST_F(ModListViewSort, LeavesTheRowsWhenATextOfTheSecondColumnDoesNotReadAsItsKind) {
  Add({"2", "x"});
  Add({"1", "01/01/26"});
  EXPECT_THROW(SortListView(list, 1, kAscending, kWholeNumber, 2, SortType::kDate), base::Error);
  EXPECT_THAT(Keys(), ElementsAre("K1", "K2"));
}

TEST_F(ModListViewSort, ANewRowStaysAtTheEndUntilTheNextSort) {
  AddAll({"3", "1"});
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  Add({"2"});
  EXPECT_THAT(Column(0), ElementsAre("1", "3", "2"));
  SortListView(list, 1, kAscending, kWholeNumber, kNone, 0);
  EXPECT_THAT(Column(0), ElementsAre("1", "2", "3"));
}

class ModListViewColumnClick : public ModListViewSort {
 protected:
  ModListViewColumnClick() {
    Add({"b", "1"});
    Add({"a", "3"});
    Add({"c", "2"});
  }

  void Click(std::int32_t column) { SortOnColumnClick(list, column, kinds, last, kNone, 0); }

  const std::vector<std::int32_t> kinds{SortType::kText, SortType::kDigits};
  std::int16_t last = 0;
};

TEST_F(ModListViewColumnClick, SortsAscendingAndTheSecondClickReverses) {
  Click(1);
  EXPECT_THAT(Column(0), ElementsAre("a", "b", "c"));
  EXPECT_EQ(last, 1);
  Click(1);
  EXPECT_THAT(Column(0), ElementsAre("c", "b", "a"));
  Click(1);
  EXPECT_THAT(Column(0), ElementsAre("a", "b", "c"));
}

TEST_F(ModListViewColumnClick, SortsAnotherColumnAscending) {
  Click(1);
  Click(1);
  Click(2);
  EXPECT_THAT(Column(1), ElementsAre("1", "2", "3"));
  EXPECT_EQ(last, 2);
  Click(1);
  EXPECT_THAT(Column(0), ElementsAre("a", "b", "c"));
}

TEST_F(ModListViewColumnClick, GoesByTheOrderThatTheListHasNow) {
  Click(1);
  SortListView(list, 2, kDescending, SortType::kDigits, kNone, 0);
  Click(1);
  EXPECT_THAT(Column(0), ElementsAre("a", "b", "c"));
}

TEST_F(ModListViewColumnClick, RemembersNothingOfAClickThatFailed) {
  Click(1);
  list.Text(0, 1, "none");
  EXPECT_THROW(Click(2), base::Error);
  EXPECT_EQ(last, 1);
  EXPECT_THAT(Column(0), ElementsAre("a", "b", "c"));
  Click(1);
  EXPECT_THAT(Column(0), ElementsAre("c", "b", "a"));
}

TEST_F(ModListViewColumnClick, FailsForAColumnWithoutAKind) {
  for (const std::int32_t column : {0, -1, 3, 100000}) {
    try {
      Click(column);
      ADD_FAILURE() << column;
    } catch (const base::Error& error) {
      EXPECT_EQ(error.Number(), base::ErrorNumber::kSubscript);
    }
  }
  EXPECT_THAT(Column(0), ElementsAre("b", "a", "c"));
}

}  // namespace
