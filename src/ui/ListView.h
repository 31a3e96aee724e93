#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ui/Control.h"
#include "ui/ListRows.h"

namespace ui {

/// What the peer of a list view learns about single rows, so that a long list is never looked through.
class ListViewPeer : public Peer {
 public:
  virtual void RowsAdded(std::size_t first, std::size_t count) = 0;
  virtual void RowChanged(std::size_t row) = 0;
  virtual void EnsureVisible(std::size_t row) = 0;
  virtual void StartLabelEdit(std::size_t row) = 0;
  /// Makes the column as wide as its widest text, or its header where that counts and is wider, and reports
  /// the width.
  virtual bool FitColumn(std::size_t column, bool useHeader) = 0;
};

/// A list of rows with a key, a text and sub-items, in report form or as plain rows. Rows and cells as in
/// ListRows.
class ListView : public Control {
 public:
  struct Style {
    bool columnHeaders = true;
    bool checkBoxes = false;
    bool multiSelect = false;
    bool labelEdit = false;
  };
  enum class Fit { kNothing, kContents, kContentsAndHeader };
  struct Column {
    std::string key;
    std::string text;
    Twips width = 0;
    /// What the column is fitted to as soon as there is a screen to fit it on.
    Fit fit = Fit::kNothing;
  };
  static constexpr Twips kDefaultColumnWidth = 1440;

  ListView(Control* parent, std::string name) : ListView(parent, std::move(name), Style{}) {}
  ListView(Control* parent, std::string name, Style style);

  const Style& GetStyle() const { return style_; }

  const std::vector<Column>& Columns() const { return columns_; }
  void AddColumn(std::string key, std::string text, Twips width = kDefaultColumnWidth);
  void ClearColumns();
  /// A column that isn't there is a failure.
  void ColumnWidth(std::size_t column, Twips width);
  /// Fits the column to its contents, and to its header when `useHeader` is set; while there is no peer, that
  /// waits until there is one. False for a column that isn't there.
  bool FitColumn(std::size_t column, bool useHeader);

  const ListRows& Rows() const { return rows_; }
  std::size_t RowCount() const { return rows_.Count(); }
  /// Adds at the end and returns the row. A taken key is a failure. The first of `cells` is the row's own
  /// text.
  std::size_t AddRow(std::string_view key, std::span<const std::string_view> cells,
                     Color color = kDefaultColor);
  std::size_t AddRow(std::string_view key, std::string_view text);
  /// The same for a caller whose keys are all different, and who adds a million of them.
  std::size_t AppendRow(std::string_view key, std::span<const std::string_view> cells, Color color);
  void AddSubItem(std::size_t row, std::string_view key, std::string_view text);
  /// The keys of the sub-items, the first being that of cell 1; all rows share them.
  const std::vector<std::string>& SubItemKeys() const { return subItemKeys_; }
  void SubItemKeys(std::vector<std::string> keys) { subItemKeys_ = std::move(keys); }
  std::optional<std::size_t> Find(std::string_view key) const { return rows_.Find(key); }
  std::string_view Key(std::size_t row) const { return rows_.Key(row); }
  std::string_view Text(std::size_t row, std::size_t cell = 0) const { return rows_.Cell(row, cell); }
  void Text(std::size_t row, std::size_t cell, std::string_view text);
  Color CellColor(std::size_t row, std::size_t cell) const { return rows_.CellColor(row, cell); }
  void CellColor(std::size_t row, std::size_t cell, Color color);
  bool Checked(std::size_t row) const { return rows_.Checked(row); }
  void Checked(std::size_t row, bool checked);

  /// An unknown key is a failure.
  void Remove(std::string_view key);
  void ClearRows();
  /// Linear in the number of rows, however many go.
  std::size_t RemoveSelected();
  /// As ListRows::Reorder; the selection and the ticks go with their rows.
  void Reorder(std::span<const std::uint32_t> order);
  /// How the rows were sorted last: 0 ascending, 1 descending. Only who sorts writes it, and reads it again.
  std::int32_t SortOrder() const { return sortOrder_; }
  void SortOrder(std::int32_t order) { sortOrder_ = order; }

  /// The row that has the selection's focus; with single selection, the one selected row.
  std::optional<std::size_t> SelectedRow() const { return selectedRow_; }
  /// Selects the row, and with single selection no other.
  void Select(std::size_t row);
  bool Selected(std::size_t row) const { return rows_.Selected(row); }
  std::size_t SelectedCount() const { return selectedCount_; }
  /// Scrolls the row into view; while there is no peer, that waits until there is one, for the last such row.
  void EnsureVisible(std::size_t row);
  /// Starts editing the row's own text in place, where the style allows it.
  void StartLabelEdit(std::size_t row);

  base::Event<> ItemClick;
  base::Event<> DblClick;
  base::Event<> RightButtonUp;
  base::Event<std::int32_t> KeyUp;
  /// With the column, counted from 1.
  base::Event<std::int32_t> ColumnClick;
  base::Event<> ItemCheck;
  /// The handler may set the argument to cancel the edit before it starts.
  base::Event<bool&> BeforeLabelEdit;
  /// With the key of the row whose label was edited, which need not be the selected one by now, and the new
  /// text; the handler may cancel, and its failure cancels too.
  base::Event<bool&, const std::string&, const std::string&> AfterLabelEdit;

  /// What is reported of a row that has gone meanwhile is ignored.
  void UserSelect(std::size_t row, bool selected);
  void UserSelectAll(bool selected);
  void UserCheck(std::size_t row, bool checked);
  /// True when the edit may go on.
  bool UserLabelEditStart(std::size_t row);
  /// Ends the edit that was started last. Rows may have come and gone since.
  void UserLabelEditEnd(const std::string& text);
  void UserItemClick();
  void UserDblClick();
  void UserRightButtonUp();
  void UserKeyUp(std::int32_t key);
  void UserColumnClick(std::int32_t column);
  void UserColumnWidth(std::size_t column, Twips width);

 protected:
  void OnPeerAttached() override;

 private:
  ListViewPeer* RowPeer() const { return static_cast<ListViewPeer*>(GetPeer()); }
  void MarkSelected(std::size_t row, bool selected);
  /// Rows have gone or changed places.
  void RowsMoved();

  Style style_;
  std::vector<Column> columns_;
  std::vector<std::string> subItemKeys_;
  ListRows rows_;
  std::optional<std::size_t> selectedRow_;
  std::size_t selectedCount_ = 0;
  std::int32_t sortOrder_ = 0;
  /// The row that a peer to come scrolls into view.
  std::optional<std::size_t> rowToShow_;
  /// The key of the row whose label is edited.
  std::string editedKey_;
};

}  // namespace ui
