#include "ui/win32/ColumnWidths.h"

#include <algorithm>

#include "ui/ListView.h"

namespace ui::win32 {

void ColumnWidths::RowsAdded(std::size_t first, std::size_t count) {
  if (!complete_) return;
  for (std::size_t row = first; row < first + count; ++row) Measure(row);
}

int ColumnWidths::Widest(std::size_t column) {
  if (!complete_) {
    widest_.clear();
    complete_ = true;
    RowsAdded(0, list_.RowCount());
  }
  return column < widest_.size() ? widest_[column] : 0;
}

int ColumnWidths::HeaderWidth(std::size_t column) const {
  return characters_.Of(list_.Columns()[column].text);
}

void ColumnWidths::Measure(std::size_t row) {
  const std::size_t cells = list_.Rows().CellCount(row);
  if (cells > widest_.size()) widest_.resize(cells);
  for (std::size_t cell = 0; cell < cells; ++cell) {
    widest_[cell] = std::max(widest_[cell], characters_.Of(list_.Text(row, cell)));
  }
}

}  // namespace ui::win32
