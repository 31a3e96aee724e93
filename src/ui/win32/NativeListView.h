#pragma once

#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <string>

#include "ui/ListView.h"
#include "ui/win32/ChildWindow.h"
#include "ui/win32/ColumnWidths.h"

namespace ui::win32 {

/// A list view that asks our rows for what it shows, so that any number of rows is there at once. What code
/// changes reaches the native list before it handles its next message.
class NativeListView : public ChildPeer<ListViewPeer> {
 public:
  NativeListView(ListView& list, Surroundings& surroundings);

  void ScaleChanged() override;
  void RowsAdded(std::size_t first, std::size_t count) override;
  void RowChanged(std::size_t row) override;
  void EnsureVisible(std::size_t row) override;
  void StartLabelEdit(std::size_t row) override;
  bool FitColumn(std::size_t column, bool useHeader) override;

 protected:
  void Show(Aspect aspect) override;
  void Sync() override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  LRESULT OnNotify(NMHDR& header) override;
  COLORREF DefaultGround() const override { return GetSysColor(COLOR_WINDOW); }

 private:
  bool FillsItsWidth() const { return !list_.GetStyle().columnHeaders && list_.Columns().size() < 2; }
  int ColumnCount() const;
  void ShowColors();
  void SyncColumns();
  void SyncSelection();
  void FillWidth();
  int WidthOf(std::size_t column) const { return Send<int>(LVM_GETCOLUMNWIDTH, column); }
  void SetState(int row, UINT state, UINT mask) const;

  /// Where the key for the menu opens it: below the selected row.
  POINT MenuPlace() const;

  void OnDisplay(LVITEMA& item);
  LRESULT OnDraw(NMLVCUSTOMDRAW& draw) const;
  void OnStateChanged(const NMLISTVIEW& change);
  void OnClick(const NMITEMACTIVATE& click, bool isDouble);
  LRESULT OnFind(UINT flags, const std::string& beginning, int start) const;
  LRESULT OnLabelEditStart(const LVITEMA& item);
  void OnLabelEditEnd(const LVITEMA& item);
  void OnHeader(const NMHEADERA& header);
  bool ToggleTickAt(POINT place);
  void ToggleTick(std::size_t row);

  ListView& list_;
  ColumnWidths widths_;
  /// What the native list was handed last; it reads it after the call.
  std::string shownText_;
  bool writing_ = false;
  /// The native list may hand over the text of an edit that is cancelled.
  bool cancelsEdit_ = false;
  bool columnsStale_ = true;
  bool rowsStale_ = true;
  bool countStale_ = true;
  bool selectionStale_ = true;
  bool selectedByKey_ = false;
  /// Changed rows that aren't drawn anew yet: from the first to the last.
  std::optional<std::pair<std::size_t, std::size_t>> changedRows_;
  std::optional<std::size_t> rowToShow_;
};

}  // namespace ui::win32
