#include "ui/ListRows.h"

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

namespace {

using testing::ElementsAre;
using ui::Color;
using ui::ListRows;

std::vector<std::string_view> Views(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

void Add(ListRows& rows, std::string_view key, const std::vector<std::string>& cells,
         Color color = ui::kDefaultColor) {
  rows.Add(key, Views(cells), color);
}

std::vector<std::string> Keys(const ListRows& rows) {
  std::vector<std::string> keys;
  for (std::size_t row = 0; row < rows.Count(); ++row) keys.emplace_back(rows.Key(row));
  return keys;
}

TEST(UiListRows, KeepTheirTextsKeysAndColours) {
  ListRows rows;
  Add(rows, "k1", {"one", "", "drei"}, ui::Rgb(128, 0, 0));
  Add(rows, "k2", {""});
  ASSERT_EQ(rows.Count(), 2u);
  EXPECT_EQ(rows.Key(0), "k1");
  EXPECT_EQ(rows.CellCount(0), 3u);
  EXPECT_EQ(rows.Cell(0, 0), "one");
  EXPECT_EQ(rows.Cell(0, 1), "");
  EXPECT_EQ(rows.Cell(0, 2), "drei");
  EXPECT_EQ(rows.Cell(0, 3), "") << "a cell that isn't there";
  EXPECT_EQ(rows.CellColor(0, 2), ui::Rgb(128, 0, 0));
  EXPECT_EQ(rows.CellColor(1, 0), ui::kDefaultColor);
  EXPECT_EQ(rows.Cell(1, 0), "");
}

TEST(UiListRows, ARowWithoutCellsHasItsEmptyOwnText) {
  ListRows rows;
  rows.Add("k", {}, ui::Rgb(1, 2, 3));
  EXPECT_EQ(rows.CellCount(0), 1u);
  EXPECT_EQ(rows.Cell(0, 0), "");
  EXPECT_EQ(rows.CellColor(0, 0), ui::Rgb(1, 2, 3));
}

TEST(UiListRows, TheEmptyKeyIsAKeyLikeAnyOther) {
  ListRows rows;
  Add(rows, "", {"a"});
  EXPECT_EQ(rows.Find(""), 0u);
  EXPECT_EQ(support::ErrorOf([&] { Add(rows, "", {"b"}); }), base::ErrorNumber::kKeyTaken);
}

TEST(UiListRows, KeysDifferByCase) {
  ListRows rows;
  Add(rows, "Key", {"a"});
  Add(rows, "key", {"b"});
  EXPECT_EQ(rows.Find("Key"), 0u);
  EXPECT_EQ(rows.Find("key"), 1u);
  EXPECT_EQ(rows.Find("KEY"), std::nullopt);
}

TEST(UiListRows, ATakenKeyIsAFailureThatNamesItAndChangesNothing) {
  ListRows rows;
  Add(rows, "k1", {"one"});
  EXPECT_EQ(support::ErrorTextOf([&] { Add(rows, "k1", {"two"}); }),
            "This key is already associated with a row: \"k1\"");
  EXPECT_EQ(rows.Count(), 1u);
  EXPECT_EQ(rows.Cell(0, 0), "one");
}

TEST(UiListRows, ACellMayBeSetFromItsOwnRow) {
  ListRows rows;
  Add(rows, "k1", {"one", "two"});
  rows.SetCell(0, 0, rows.Cell(0, 1));
  rows.AddCell(0, rows.Key(0));
  EXPECT_EQ(rows.Cell(0, 0), "two");
  EXPECT_EQ(rows.Cell(0, 2), "k1");
}

TEST(UiListRows, ACellBeyondTheOthersLeavesEmptyOnesBetween) {
  ListRows rows;
  Add(rows, "k1", {"one"}, ui::Rgb(9, 9, 9));
  rows.SetCell(0, 3, "four");
  EXPECT_EQ(rows.CellCount(0), 4u);
  EXPECT_EQ(rows.Cell(0, 1), "");
  EXPECT_EQ(rows.Cell(0, 2), "");
  EXPECT_EQ(rows.Cell(0, 3), "four");
  EXPECT_EQ(rows.CellColor(0, 3), ui::Rgb(9, 9, 9)) << "in the row's colour";
}

TEST(UiListRows, TheColourOfACellThatIsNotThereIsNotSet) {
  ListRows rows;
  Add(rows, "k1", {"one"});
  rows.SetCellColor(0, 1, 5);
  EXPECT_EQ(rows.CellCount(0), 1u);
  EXPECT_EQ(rows.CellColor(0, 1), ui::kDefaultColor);
}

TEST(UiListRows, ARowTakesNoMoreCellsThanItCanCount) {
  ListRows rows;
  const std::vector<std::string_view> most(65535, "x");
  rows.Add("most", most, 0);
  EXPECT_EQ(rows.CellCount(0), 65535u);
  EXPECT_EQ(rows.Cell(0, 65534), "x");
  EXPECT_EQ(support::ErrorOf([&] { rows.AddCell(0, "x"); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(rows.CellCount(0), 65535u);
  const std::vector<std::string_view> tooMany(65536, "x");
  EXPECT_EQ(support::ErrorOf([&] { rows.Add("more", tooMany, 0); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(rows.Count(), 1u);
  EXPECT_EQ(rows.Find("more"), std::nullopt);
  Add(rows, "k", {"one"});
  EXPECT_EQ(support::ErrorOf([&] { rows.SetCell(1, 65535, "x"); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(support::ErrorOf([&] { rows.SetCell(1, SIZE_MAX, "x"); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(rows.CellCount(1), 1u);
}

TEST(UiListRows, TextsBeyondWhatABlockCountsAreRefused) {
  if (sizeof(std::size_t) < 8) GTEST_SKIP() << "so much text can't be named here";
  ListRows rows;
  const std::string part(std::size_t{64} * 1024 * 1024, 'x');
  const std::vector<std::string_view> cells(64, part);
  EXPECT_EQ(support::ErrorOf([&] { rows.Add("k", cells, 0); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(rows.Count(), 0u);
  EXPECT_EQ(rows.Find("k"), std::nullopt);
}

TEST(UiListRows, HoldTextsOfMegabytes) {
  ListRows rows;
  const std::string key(1 << 20, 'k');
  const std::string big(5 << 20, 'b');
  Add(rows, key, {big, "small", big + "!"});
  EXPECT_EQ(rows.Find(key), 0u);
  EXPECT_EQ(rows.Key(0), key);
  EXPECT_EQ(rows.Cell(0, 2), big + "!");
  rows.SetCell(0, 0, "");
  EXPECT_EQ(rows.Cell(0, 0), "");
  EXPECT_EQ(rows.Cell(0, 1), "small");
  EXPECT_EQ(rows.Cell(0, 2), big + "!");
}

TEST(UiListRows, TextsMayHoldAnyBytes) {
  ListRows rows;
  const std::string odd("\0\xFF\r\n", 4);
  Add(rows, odd, {odd});
  EXPECT_EQ(rows.Find(odd), 0u);
  EXPECT_EQ(rows.Cell(0, 0), odd);
}

TEST(UiListRows, ARowThatIsNotThereIsAFailure) {
  ListRows rows;
  Add(rows, "k", {"one"});
  const auto fails = [](auto&& action) { return support::ErrorOf(action) == base::ErrorNumber::kSubscript; };
  EXPECT_TRUE(fails([&] { rows.Key(1); }));
  EXPECT_TRUE(fails([&] { rows.Cell(1, 0); }));
  EXPECT_TRUE(fails([&] { rows.CellCount(SIZE_MAX); }));
  EXPECT_TRUE(fails([&] { rows.CellColor(1, 0); }));
  EXPECT_TRUE(fails([&] { rows.SetCell(1, 0, "x"); }));
  EXPECT_TRUE(fails([&] { rows.AddCell(1, "x"); }));
  EXPECT_TRUE(fails([&] { rows.SetCellColor(1, 0, 5); }));
  EXPECT_TRUE(fails([&] { rows.Checked(1); }));
  EXPECT_TRUE(fails([&] { rows.Selected(1, true); }));
  EXPECT_TRUE(fails([&] { rows.RemoveAt(1); }));
  EXPECT_EQ(support::ErrorTextOf([&] { rows.Key(1); }), "There is no row 1");
}

TEST(UiListRows, AddingAfterAllWereRemovedLooksAtNoOldPlace) {
  // The index still holds the places of the removed rows; some of the new keys meet them.
  for (int round = 0; round < 50; ++round) {
    ListRows rows;
    for (int i = 0; i < 200; ++i) Add(rows, "old" + std::to_string(i), {"x"});
    rows.RemoveIf([](std::size_t) { return true; });
    const std::string key = "new" + std::to_string(round);
    Add(rows, key, {"y"});
    ASSERT_EQ(rows.Find(key), 0u);
    ASSERT_EQ(rows.Find("old0"), std::nullopt);
  }
}

TEST(UiListRows, AnOrderMustNameEachRowOnce) {
  ListRows rows;
  for (const char* key : {"a", "b", "c"}) Add(rows, key, {key});
  const auto fails = [&](std::vector<std::uint32_t> order) {
    return support::ErrorOf([&] { rows.Reorder(order); }) == base::ErrorNumber::kInvalidCall;
  };
  EXPECT_TRUE(fails({0, 1}));
  EXPECT_TRUE(fails({0, 1, 2, 3}));
  EXPECT_TRUE(fails({0, 1, 1}));
  EXPECT_TRUE(fails({0, 1, 3}));
  EXPECT_THAT(Keys(rows), ElementsAre("a", "b", "c"));
  rows.Reorder(std::vector<std::uint32_t>{2, 0, 1});
  EXPECT_THAT(Keys(rows), ElementsAre("c", "a", "b"));
}

/// The rows as anybody would write them down.
struct PlainRow {
  std::string key;
  std::vector<std::string> cells;
  std::vector<Color> colors;
  bool checked = false;
  bool selected = false;
};

/// Does the same at random to the rows and to a plain list of rows.
class RandomRows {
 public:
  explicit RandomRows(unsigned seed) : random_(seed) {}

  void Step() {
    switch (Below(14)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return Add();
      case 4:
        return SetCell();
      case 5:
        return AddCell();
      case 6:
        return SetColor();
      case 7:
        return Flags();
      case 8:
        return RemoveAt();
      case 9:
        return Reorder();
      case 10:
        return Below(4) == 0 ? RemoveSome() : Flags();
      case 11:
        return Below(40) == 0 ? Clear() : Add();
      default:
        return Find();
    }
  }

  void Compare() const {
    ASSERT_EQ(rows_.Count(), plain_.size());
    for (std::size_t row = 0; row < plain_.size(); ++row) {
      const PlainRow& plain = plain_[row];
      ASSERT_EQ(rows_.Key(row), plain.key);
      ASSERT_EQ(rows_.CellCount(row), plain.cells.size());
      ASSERT_EQ(rows_.Checked(row), plain.checked);
      ASSERT_EQ(rows_.Selected(row), plain.selected);
      for (std::size_t cell = 0; cell < plain.cells.size(); ++cell) {
        ASSERT_EQ(rows_.Cell(row, cell), plain.cells[cell]);
        ASSERT_EQ(rows_.CellColor(row, cell), plain.colors[cell]);
      }
    }
  }

 private:
  std::size_t Below(std::size_t limit) { return random_() % limit; }
  std::string Text() {
    return std::string(Below(3) == 0 ? 0 : Below(40), static_cast<char>('a' + Below(26)));
  }
  std::string Key() { return "k" + std::to_string(Below(120)); }
  Color AnyColor() { return static_cast<Color>(Below(1 << 24)); }
  std::optional<std::size_t> AnyRow() {
    if (plain_.empty()) return std::nullopt;
    return Below(plain_.size());
  }
  auto Known(const std::string& key) {
    return std::find_if(plain_.begin(), plain_.end(), [&](const PlainRow& row) { return row.key == key; });
  }

  void Add() {
    PlainRow row;
    row.key = Key();
    for (std::size_t i = 0, count = 1 + Below(5); i < count; ++i) row.cells.push_back(Text());
    const Color color = AnyColor();
    row.colors.assign(row.cells.size(), color);
    const bool taken = Known(row.key) != plain_.end();
    ASSERT_EQ(support::ErrorOf([&] { rows_.Add(row.key, Views(row.cells), color); }),
              taken ? base::ErrorNumber::kKeyTaken : 0);
    if (!taken) plain_.push_back(row);
  }
  void SetCell() {
    if (const auto row = AnyRow()) {
      const std::size_t cell = Below(8);
      const std::string text = Text();
      rows_.SetCell(*row, cell, text);
      Widen(plain_[*row], cell + 1);
      plain_[*row].cells[cell] = text;
    }
  }
  void AddCell() {
    if (const auto row = AnyRow()) {
      const std::string text = Text();
      rows_.AddCell(*row, text);
      Widen(plain_[*row], plain_[*row].cells.size() + 1);
      plain_[*row].cells.back() = text;
    }
  }
  static void Widen(PlainRow& row, std::size_t count) {
    if (row.cells.size() >= count) return;
    row.colors.resize(count, row.colors[0]);
    row.cells.resize(count);
  }
  void SetColor() {
    if (const auto row = AnyRow()) {
      const std::size_t cell = Below(plain_[*row].cells.size());
      const Color color = AnyColor();
      rows_.SetCellColor(*row, cell, color);
      plain_[*row].colors[cell] = color;
    }
  }
  void Flags() {
    if (const auto row = AnyRow()) {
      const bool on = Below(2) == 0;
      if (Below(2) == 0) {
        rows_.Checked(*row, on);
        plain_[*row].checked = on;
      } else {
        rows_.Selected(*row, on);
        plain_[*row].selected = on;
      }
    }
  }
  void RemoveAt() {
    if (const auto row = AnyRow()) {
      rows_.RemoveAt(*row);
      plain_.erase(plain_.begin() + static_cast<std::ptrdiff_t>(*row));
    }
  }
  void RemoveSome() {
    const std::size_t removed = rows_.RemoveIf([this](std::size_t row) { return rows_.Selected(row); });
    ASSERT_EQ(removed, std::erase_if(plain_, [](const PlainRow& row) { return row.selected; }));
  }
  void Reorder() {
    std::vector<std::uint32_t> order(plain_.size());
    std::iota(order.begin(), order.end(), 0u);
    std::shuffle(order.begin(), order.end(), random_);
    rows_.Reorder(order);
    std::vector<PlainRow> ordered;
    for (const std::uint32_t row : order) ordered.push_back(plain_[row]);
    plain_ = std::move(ordered);
  }
  void Clear() {
    rows_.Clear();
    plain_.clear();
  }
  void Find() {
    const std::string key = Key();
    const auto known = Known(key);
    const auto found = rows_.Find(key);
    ASSERT_EQ(found.has_value(), known != plain_.end());
    if (found) {
      ASSERT_EQ(*found, static_cast<std::size_t>(known - plain_.begin()));
    }
  }

  std::mt19937 random_;
  ListRows rows_;
  std::vector<PlainRow> plain_;
};

TEST(UiListRows, AreWhatAPlainListWouldBeAfterAnythingAtRandom) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(seed);
    RandomRows both(seed);
    for (int step = 0; step < 600; ++step) {
      both.Step();
      both.Compare();
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TEST(UiListRows, FindARowThatWasAppendedWithoutALook) {
  ListRows rows;
  const auto append = [&rows](int number) {
    const std::vector<std::string> cells{"text", std::to_string(number)};
    rows.Append("K" + std::to_string(number), Views(cells), number);
  };
  for (int number = 0; number < 100; ++number) append(number);
  EXPECT_EQ(rows.Find("K99"), 99u);
  EXPECT_THROW(Add(rows, "K5", {"x"}), base::Error);
  for (int number = 100; number < 200; ++number) append(number);
  rows.RemoveAt(0);
  append(200);
  Add(rows, "other", {"x"});
  append(201);
  EXPECT_EQ(rows.Find("K0"), std::nullopt);
  EXPECT_EQ(rows.Find("K1"), 0u);
  EXPECT_EQ(rows.Find("K199"), 198u);
  EXPECT_EQ(rows.Find("K200"), 199u);
  EXPECT_EQ(rows.Find("other"), 200u);
  EXPECT_EQ(rows.Find("K201"), 201u);
  EXPECT_EQ(rows.Cell(201, 1), "201");
  EXPECT_EQ(rows.CellColor(201, 1), 201);
}

TEST(UiListRows, GiveAllTextsOfARowAndWhereEachEnds) {
  ListRows rows;
  Add(rows, "key", {"one", "", "three"});
  Add(rows, "bare", {});
  EXPECT_EQ(rows.Cells(0).text, "onethree");
  EXPECT_THAT(rows.Cells(0).ends, ElementsAre(3u, 3u, 8u));
  EXPECT_EQ(rows.Cells(1).text, "");
  EXPECT_THAT(rows.Cells(1).ends, ElementsAre(0u));
}

TEST(UiListRows, KeepTextsAndColoursWhenOneCellGetsAColourOfItsOwn) {
  ListRows rows;
  Add(rows, "key", {"a", "b", "c"}, 1);
  rows.Selected(0, true);
  rows.SetCellColor(0, 1, 2);
  rows.SetCellColor(0, 2, 3);
  EXPECT_EQ(rows.CellColor(0, 0), 1);
  EXPECT_EQ(rows.CellColor(0, 1), 2);
  EXPECT_EQ(rows.CellColor(0, 2), 3);
  rows.AddCell(0, "d");
  EXPECT_EQ(rows.CellColor(0, 3), 1);
  rows.SetCellColor(0, 1, 1);
  rows.SetCellColor(0, 2, 1);
  rows.SetCell(0, 0, "A");
  for (std::size_t cell = 0; cell < 4; ++cell) EXPECT_EQ(rows.CellColor(0, cell), 1) << cell;
  EXPECT_EQ(rows.Cells(0).text, "Abcd");
  EXPECT_EQ(rows.Key(0), "key");
  EXPECT_TRUE(rows.Selected(0));
}

}  // namespace
