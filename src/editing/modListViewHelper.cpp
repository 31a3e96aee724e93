#include "editing/modListViewHelper.h"

#include <cstddef>
#include <utility>

namespace modListViewHelper {

bool AutoSizeListViewColumn(ui::ListView& lv, std::int32_t lColumn, bool bUseHeader) {
  return lColumn >= 0 && lv.FitColumn(static_cast<std::size_t>(lColumn), bUseHeader);
}

void AutoSizeListViewColumns(ui::ListView& lv, bool bUseHeader) {
  const auto count = static_cast<std::int32_t>(lv.Columns().size());
  for (std::int32_t column = 0; column < count; ++column) AutoSizeListViewColumn(lv, column, bUseHeader);
}

void AddListViewColumn(ui::ListView& lv, std::string sKey, std::string sText, bool bClear, ui::Twips lWidth) {
  if (bClear) lv.ClearColumns();
  lv.AddColumn(std::move(sKey), std::move(sText), lWidth >= 0 ? lWidth : ui::ListView::kDefaultColumnWidth);
}

}  // namespace modListViewHelper
