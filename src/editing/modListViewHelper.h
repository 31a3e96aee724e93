#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "editing/SortKey.h"
#include "ui/Geometry.h"
#include "ui/ListView.h"

/// What a list view needs besides its own members. Columns count from 0 where they are fitted, and from 1
/// where rows are sorted by them.
namespace modListViewHelper {

/// Makes the column as wide as its contents, and as its header when `bUseHeader` is set and that is wider.
/// False when the list didn't: it has no such column.
bool AutoSizeListViewColumn(ui::ListView& lv, std::int32_t lColumn, bool bUseHeader);
/// Does that with every column.
void AutoSizeListViewColumns(ui::ListView& lv, bool bUseHeader);

/// Adds a column at the end, after removing all others when `bClear` is set. A negative width leaves the
/// default.
void AddListViewColumn(ui::ListView& lv, std::string sKey, std::string sText, bool bClear, ui::Twips lWidth);

/// The text by whose character codes the row is sorted when it is sorted by that column as one of that
/// SortType. A text that doesn't read as its kind is a failure.
std::string GetListItemSortKey(const ui::ListView& lv, std::size_t row, std::int16_t iColumn,
                               std::int32_t eSortType);
/// Sorts the rows by the keys of a column; rows of equal keys by those of the second column, unless that is
/// -1; rows that are equal then stay as they stand. `lSortOrder` 0 is ascending, 1 descending, for both. With
/// a second column, only the first 100 characters of the first key count. A text that doesn't read as its
/// kind is a failure and leaves the list as it was.
void SortListView(ui::ListView& lv, std::int16_t iColumn, std::int32_t lSortOrder, std::int32_t eSortType,
                  std::int16_t iSecondColumn, std::int32_t eSecondType);
/// Sorts by the clicked column, whose kind is SortTypes[lColumnHeader - 1]: ascending, or the other way round
/// when it is `iLastColumn`, the column of the click before; 0 for none. The caller keeps that.
void SortOnColumnClick(ui::ListView& lv, std::int32_t lColumnHeader, std::span<const std::int32_t> SortTypes,
                       std::int16_t& iLastColumn, std::int16_t iSecondColumn, std::int32_t eSecondType);

}  // namespace modListViewHelper
