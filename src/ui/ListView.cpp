#include "ui/ListView.h"

#include "base/Error.h"

namespace ui {

ListView::ListView(Control* parent, std::string name, Style style)
    : Control(Kind::kListView, parent, std::move(name)), style_(style) {}

void ListView::AddColumn(std::string key, std::string text, Twips width) {
  columns_.push_back({std::move(key), std::move(text), width, Fit::kNothing});
  Notify(Aspect::kColumns);
}

void ListView::ClearColumns() {
  columns_.clear();
  Notify(Aspect::kColumns);
}

void ListView::ColumnWidth(std::size_t column, Twips width) {
  if (column >= columns_.size()) {
    throw base::Error(base::ErrorNumber::kSubscript,
                      "There is no column " + std::to_string(column) + " in " + Path());
  }
  columns_[column].fit = Fit::kNothing;
  if (columns_[column].width == width) return;
  columns_[column].width = width;
  Notify(Aspect::kColumns);
}

bool ListView::FitColumn(std::size_t column, bool useHeader) {
  if (column >= columns_.size()) return false;
  if (RowPeer()) return RowPeer()->FitColumn(column, useHeader);
  columns_[column].fit = useHeader ? Fit::kContentsAndHeader : Fit::kContents;
  return true;
}

void ListView::OnPeerAttached() {
  for (std::size_t i = 0; RowPeer() && i < columns_.size(); ++i) {
    if (columns_[i].fit == Fit::kNothing) continue;
    RowPeer()->FitColumn(i, columns_[i].fit == Fit::kContentsAndHeader);
    columns_[i].fit = Fit::kNothing;
  }
  if (RowPeer() && rowToShow_) RowPeer()->EnsureVisible(*rowToShow_);
  rowToShow_.reset();
}

void ListView::RowsMoved() {
  rowToShow_.reset();
  Notify(Aspect::kItems);
}

std::size_t ListView::AddRow(std::string_view key, std::span<const std::string_view> cells, Color color) {
  rows_.Add(key, cells, color);
  const std::size_t row = rows_.Count() - 1;
  if (RowPeer()) RowPeer()->RowsAdded(row, 1);
  return row;
}

std::size_t ListView::AppendRow(std::string_view key, std::span<const std::string_view> cells, Color color) {
  rows_.Append(key, cells, color);
  const std::size_t row = rows_.Count() - 1;
  if (RowPeer()) RowPeer()->RowsAdded(row, 1);
  return row;
}

std::size_t ListView::AddRow(std::string_view key, std::string_view text) {
  return AddRow(key, std::span(&text, 1));
}

void ListView::AddSubItem(std::size_t row, std::string_view key, std::string_view text) {
  const std::size_t place = rows_.CellCount(row) - 1;
  if (place >= subItemKeys_.size()) subItemKeys_.resize(place + 1);
  subItemKeys_[place] = key;
  rows_.AddCell(row, text);
  if (RowPeer()) RowPeer()->RowChanged(row);
}

void ListView::Text(std::size_t row, std::size_t cell, std::string_view text) {
  if (cell < rows_.CellCount(row) && rows_.Cell(row, cell) == text) return;
  rows_.SetCell(row, cell, text);
  if (RowPeer()) RowPeer()->RowChanged(row);
}

void ListView::CellColor(std::size_t row, std::size_t cell, Color color) {
  if (rows_.CellColor(row, cell) == color) return;
  rows_.SetCellColor(row, cell, color);
  if (RowPeer()) RowPeer()->RowChanged(row);
}

void ListView::Checked(std::size_t row, bool checked) {
  if (rows_.Checked(row) == checked) return;
  rows_.Checked(row, checked);
  if (RowPeer()) RowPeer()->RowChanged(row);
}

void ListView::Remove(std::string_view key) {
  const auto row = rows_.Find(key);
  if (!row) {
    throw base::Error(base::ErrorNumber::kKeyUnknown,
                      "There is no row with the key \"" + std::string(key) + "\"");
  }
  MarkSelected(*row, false);
  rows_.RemoveAt(*row);
  if (selectedRow_ && *selectedRow_ > *row) --*selectedRow_;
  RowsMoved();
}

void ListView::ClearRows() {
  rows_.Clear();
  selectedRow_.reset();
  selectedCount_ = 0;
  RowsMoved();
}

std::size_t ListView::RemoveSelected() {
  const std::size_t removed = rows_.RemoveIf([this](std::size_t row) { return rows_.Selected(row); });
  selectedRow_.reset();
  selectedCount_ = 0;
  if (removed > 0) RowsMoved();
  return removed;
}

void ListView::Reorder(std::span<const std::uint32_t> order) {
  const auto before = selectedRow_;
  rows_.Reorder(order);
  for (std::size_t row = 0; before && row < order.size(); ++row) {
    if (order[row] == *before) {
      selectedRow_ = row;
      break;
    }
  }
  RowsMoved();
}

void ListView::MarkSelected(std::size_t row, bool selected) {
  if (rows_.Selected(row) == selected) return;
  rows_.Selected(row, selected);
  selectedCount_ = selected ? selectedCount_ + 1 : selectedCount_ - 1;
  if (!selected && selectedRow_ == row) selectedRow_.reset();
}

void ListView::Select(std::size_t row) {
  if (rows_.Selected(row) && selectedRow_ == row) return;
  if (!style_.multiSelect && selectedRow_ && *selectedRow_ != row) MarkSelected(*selectedRow_, false);
  MarkSelected(row, true);
  selectedRow_ = row;
  Notify(Aspect::kSelection);
}

void ListView::EnsureVisible(std::size_t row) {
  if (RowPeer()) {
    RowPeer()->EnsureVisible(row);
  } else {
    rowToShow_ = row;
  }
}

void ListView::StartLabelEdit(std::size_t row) {
  if (RowPeer() && style_.labelEdit) RowPeer()->StartLabelEdit(row);
}

void ListView::UserSelect(std::size_t row, bool selected) {
  if (row >= rows_.Count()) return;
  if (selected && !style_.multiSelect && selectedRow_ && *selectedRow_ != row)
    MarkSelected(*selectedRow_, false);
  MarkSelected(row, selected);
  if (selected) selectedRow_ = row;
}

void ListView::UserSelectAll(bool selected) {
  if (selected && !style_.multiSelect) return;
  for (std::size_t row = 0; row < rows_.Count(); ++row) rows_.Selected(row, selected);
  selectedCount_ = selected ? rows_.Count() : 0;
  if (!selected) selectedRow_.reset();
}

void ListView::UserCheck(std::size_t row, bool checked) {
  if (row >= rows_.Count() || rows_.Checked(row) == checked) return;
  rows_.Checked(row, checked);
  FromUser("ItemCheck", [this] { ItemCheck.Raise(); });
}

bool ListView::UserLabelEditStart(std::size_t row) {
  if (row >= rows_.Count()) return false;
  editedKey_ = Key(row);
  bool cancel = !style_.labelEdit;
  FromUser("BeforeLabelEdit", [&] { BeforeLabelEdit.Raise(cancel); });
  return !cancel;
}

void ListView::UserLabelEditEnd(const std::string& text) {
  // The handler may start another edit.
  const std::string key = editedKey_;
  if (!Find(key)) return;
  bool accepted = false;
  FromUser("AfterLabelEdit", [&] {
    bool cancel = false;
    AfterLabelEdit.Raise(cancel, key, text);
    accepted = !cancel;
  });
  if (!accepted) return;
  if (const auto edited = Find(key)) Text(*edited, 0, text);
}

void ListView::UserItemClick() {
  FromUser("ItemClick", [this] { ItemClick.Raise(); });
}

void ListView::UserDblClick() {
  FromUser("DblClick", [this] { DblClick.Raise(); });
}

void ListView::UserRightButtonUp() {
  FromUser("RightButtonUp", [this] { RightButtonUp.Raise(); });
}

void ListView::UserKeyUp(std::int32_t key) {
  FromUser("KeyUp", [&] { KeyUp.Raise(key); });
}

void ListView::UserColumnClick(std::int32_t column) {
  FromUser("ColumnClick", [&] { ColumnClick.Raise(column); });
}

void ListView::UserColumnWidth(std::size_t column, Twips width) {
  if (column < columns_.size()) columns_[column].width = width;
}

}  // namespace ui
