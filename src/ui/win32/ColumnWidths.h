#pragma once

#include <cstddef>
#include <vector>

#include "ui/win32/CharacterWidths.h"

namespace ui {
class ListView;
}

namespace ui::win32 {

/// The width of the widest text of each column of a list, kept up to date by looking only at rows that are
/// new or changed. When rows have gone, all are measured again at the next question.
class ColumnWidths {
 public:
  explicit ColumnWidths(const ListView& list) : list_(list) {}

  void FontChanged(HFONT font) {
    characters_ = CharacterWidths(font);
    RowsReplaced();
  }
  void RowsAdded(std::size_t first, std::size_t count);
  void RowChanged(std::size_t row) { RowsAdded(row, 1); }
  void RowsReplaced() { complete_ = false; }

  /// In pixels.
  int Widest(std::size_t column);
  int HeaderWidth(std::size_t column) const;

 private:
  void Measure(std::size_t row);

  const ListView& list_;
  CharacterWidths characters_{static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT))};
  std::vector<int> widest_;
  bool complete_ = false;
};

}  // namespace ui::win32
