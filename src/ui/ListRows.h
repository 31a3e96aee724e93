#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ui/Color.h"

namespace ui {

/// The rows of a list, packed: all texts of a row stand in one block, so that a log of a million rows stays
/// small. Rows count from 0. Cell 0 is the row's own text, cell n its n-th sub-item. A row is found by its
/// key in constant time; adding at the end keeps that, removing costs one pass at the next search by key. A
/// row that isn't there is a failure; so is a row of more than kMostCells cells or of more text than 4 GB.
class ListRows {
 public:
  static constexpr std::size_t kMostCells = 65535;

  std::size_t Count() const { return rows_.size(); }

  /// Adds at the end, each cell in `color`; without cells the row's own text is empty. A key that is taken is
  /// a failure.
  void Add(std::string_view key, std::span<const std::string_view> cells, Color color);
  /// The same for a caller whose keys are all different: nothing is looked up, and the key is found all the
  /// same.
  void Append(std::string_view key, std::span<const std::string_view> cells, Color color);
  void RemoveAt(std::size_t row);
  /// Removes every row for which `isGone` holds, in one pass that keeps the order of the others.
  template <typename Predicate>
  std::size_t RemoveIf(Predicate isGone);
  void Clear();
  std::optional<std::size_t> Find(std::string_view key) const;

  std::string_view Key(std::size_t row) const;
  std::size_t CellCount(std::size_t row) const;
  /// Empty for a cell that the row doesn't have.
  std::string_view Cell(std::size_t row, std::size_t cell) const;
  /// The texts of all cells side by side, and where each of them ends.
  struct CellTexts {
    std::string_view text;
    std::span<const std::uint32_t> ends;
  };
  CellTexts Cells(std::size_t row) const;
  void SetCell(std::size_t row, std::size_t cell, std::string_view text);
  /// Puts one more cell behind the others, in the row's colour.
  void AddCell(std::size_t row, std::string_view text);
  /// The colour of the row's own text for a cell that the row doesn't have.
  Color CellColor(std::size_t row, std::size_t cell) const;
  /// Does nothing for a cell that the row doesn't have.
  void SetCellColor(std::size_t row, std::size_t cell, Color color);

  bool Checked(std::size_t row) const { return Flag(row, kChecked); }
  void Checked(std::size_t row, bool checked) { SetFlag(row, kChecked, checked); }
  bool Selected(std::size_t row) const { return Flag(row, kSelected); }
  void Selected(std::size_t row, bool selected) { SetFlag(row, kSelected, selected); }

  /// Puts the rows in the order that `order` gives: row i becomes what was row order[i]. An order that
  /// doesn't name each row once is a failure and changes nothing.
  void Reorder(std::span<const std::uint32_t> order);

 private:
  using Block = std::unique_ptr<std::byte[]>;
  enum : std::uint8_t { kChecked = 1, kSelected = 2 };

  static Block Pack(std::string_view key, std::span<const std::string_view> cells,
                    std::span<const Color> colors, std::uint8_t flags);
  const std::byte* At(std::size_t row) const;
  void Repack(std::size_t row, std::span<const std::string_view> cells, std::span<const Color> colors);
  bool Flag(std::size_t row, std::uint8_t flag) const;
  void SetFlag(std::size_t row, std::uint8_t flag, bool on);

  void CatchUpIndex() const;
  void ForgetIndex();
  std::size_t Slot(std::string_view key) const;

  std::vector<Block> rows_;
  /// Open addressing over the keys of the first indexed_ rows: row + 1, 0 for free. A search takes up the
  /// others.
  mutable std::vector<std::uint32_t> slots_;
  mutable std::size_t indexed_ = 0;
};

template <typename Predicate>
std::size_t ListRows::RemoveIf(Predicate isGone) {
  std::size_t kept = 0;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (isGone(row)) continue;
    if (kept != row) rows_[kept] = std::move(rows_[row]);
    ++kept;
  }
  const std::size_t removed = rows_.size() - kept;
  rows_.resize(kept);
  if (removed > 0) ForgetIndex();
  return removed;
}

}  // namespace ui
