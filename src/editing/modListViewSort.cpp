// The members of modListViewHelper that sort.

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/Conversions.h"
#include "base/Error.h"
#include "editing/SortKey.h"
#include "editing/modListViewHelper.h"
#include "ui/ListView.h"

namespace modListViewHelper {
namespace {

constexpr std::int32_t kDescending = 1;
constexpr std::int16_t kNoColumn = -1;
/// In front of a second key, the first fills so many characters: it is cut, or padded with blanks.
constexpr std::size_t kFieldLength = 100;

std::string_view CellText(const ui::ListView& lv, std::size_t row, std::int16_t iColumn) {
  return iColumn < 1 ? std::string_view() : lv.Text(row, static_cast<std::size_t>(iColumn - 1));
}

int Sign(int comparison) {
  return (comparison > 0) - (comparison < 0);
}

/// By character code; a text that begins another stands before it.
int Compare(std::string_view a, std::string_view b) {
  return Sign(a.compare(b));
}

/// As fields of kFieldLength characters.
int CompareAsFields(std::string_view a, std::string_view b) {
  a = a.substr(0, kFieldLength);
  b = b.substr(0, kFieldLength);
  const std::size_t common = std::min(a.size(), b.size());
  if (const int order = Compare(a.substr(0, common), b.substr(0, common))) return order;
  for (const char c : a.substr(common)) {
    if (c != ' ') return static_cast<unsigned char>(c) > ' ' ? 1 : -1;
  }
  for (const char c : b.substr(common)) {
    if (c != ' ') return static_cast<unsigned char>(c) > ' ' ? -1 : 1;
  }
  return 0;
}

using Comparison = int (*)(std::string_view, std::string_view);

/// For each text its place among all that differ, in the order of `compare`.
std::vector<std::uint64_t> Ranks(const std::vector<std::string_view>& texts, Comparison compare) {
  std::unordered_map<std::string_view, std::uint64_t> ranks;
  for (const std::string_view text : texts) ranks.try_emplace(text);
  std::vector<std::string_view> sorted;
  sorted.reserve(ranks.size());
  for (const auto& [text, rank] : ranks) sorted.push_back(text);
  std::sort(sorted.begin(), sorted.end(),
            [compare](std::string_view a, std::string_view b) { return compare(a, b) < 0; });
  std::uint64_t rank = 0;
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    if (i > 0 && compare(sorted[i - 1], sorted[i]) != 0) ++rank;
    ranks[sorted[i]] = rank;
  }
  std::vector<std::uint64_t> result;
  result.reserve(texts.size());
  for (const std::string_view text : texts) result.push_back(ranks[text]);
  return result;
}

/// For each row a number; these sort as the rows' keys do, and are equal when those are. No column gives no
/// numbers.
std::vector<std::uint64_t> KeyNumbers(const ui::ListView& lv, std::int16_t iColumn, std::int32_t eSortType,
                                      Comparison compare) {
  std::vector<std::uint64_t> numbers;
  if (iColumn == kNoColumn) return numbers;
  std::vector<std::string_view> texts;
  if (eSortType == SortType::kText) {
    texts.reserve(lv.RowCount());
    for (std::size_t row = 0; row < lv.RowCount(); ++row) texts.push_back(CellText(lv, row, iColumn));
    return Ranks(texts, compare);
  }
  numbers.reserve(lv.RowCount());
  for (std::size_t row = 0; row < lv.RowCount(); ++row) {
    const auto digits = SortKey::Digits(SortKey::Read(CellText(lv, row, iColumn), eSortType));
    if (!digits) break;
    numbers.push_back(*digits);
  }
  if (numbers.size() == lv.RowCount()) return numbers;
  // Some have keys that don't sort as their numbers do.
  std::vector<std::string> keys;
  keys.reserve(lv.RowCount());
  for (std::size_t row = 0; row < lv.RowCount(); ++row) {
    keys.push_back(GetListItemSortKey(lv, row, iColumn, eSortType));
  }
  texts.assign(keys.begin(), keys.end());
  return Ranks(texts, compare);
}

struct Entry {
  std::uint64_t first;
  std::uint64_t second;
  std::uint32_t row;
};

bool IsBefore(const Entry& a, const Entry& b) {
  return a.first != b.first ? a.first < b.first : a.second < b.second;
}

}  // namespace

std::string GetListItemSortKey(const ui::ListView& lv, std::size_t row, std::int16_t iColumn,
                               std::int32_t eSortType) {
  const std::string_view text = CellText(lv, row, iColumn);
  if (eSortType == SortType::kText) return std::string(text);
  return SortKey::Text(SortKey::Read(text, eSortType));
}

void SortListView(ui::ListView& lv, std::int16_t iColumn, std::int32_t lSortOrder, std::int32_t eSortType,
                  std::int16_t iSecondColumn, std::int32_t eSecondType) {
  // Behind itself a column tells nothing new, as long as no character of its keys stands before a blank.
  if (iSecondColumn == iColumn && eSecondType == eSortType && eSortType != SortType::kText) {
    iSecondColumn = kNoColumn;
  }
  const auto first =
      KeyNumbers(lv, iColumn, eSortType, iSecondColumn == kNoColumn ? Compare : CompareAsFields);
  const auto second = KeyNumbers(lv, iSecondColumn, eSecondType, Compare);
  std::vector<Entry> entries;
  entries.reserve(first.size());
  for (std::size_t row = 0; row < first.size(); ++row) {
    entries.push_back({first[row], second.empty() ? 0 : second[row], static_cast<std::uint32_t>(row)});
  }
  if (lSortOrder == kDescending) {
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return IsBefore(b, a); });
  } else {
    std::stable_sort(entries.begin(), entries.end(), IsBefore);
  }
  std::vector<std::uint32_t> order(entries.size());
  std::transform(entries.begin(), entries.end(), order.begin(), [](const Entry& entry) { return entry.row; });
  lv.SortOrder(lSortOrder);
  lv.Reorder(order);
}

void SortOnColumnClick(ui::ListView& lv, std::int32_t lColumnHeader, std::span<const std::int32_t> SortTypes,
                       std::int16_t& iLastColumn, std::int16_t iSecondColumn, std::int32_t eSecondType) {
  if (lColumnHeader < 1 || static_cast<std::size_t>(lColumnHeader) > SortTypes.size()) {
    throw base::Error(base::ErrorNumber::kSubscript, "There is no column " + base::ToText(lColumnHeader));
  }
  const auto iColumn = static_cast<std::int16_t>(lColumnHeader);
  const std::int32_t lSortOrder = iLastColumn != 0 && iLastColumn == iColumn ? 1 - lv.SortOrder() : 0;
  SortListView(lv, iColumn, lSortOrder, SortTypes[static_cast<std::size_t>(lColumnHeader - 1)], iSecondColumn,
               eSecondType);
  iLastColumn = iColumn;
}

}  // namespace modListViewHelper
