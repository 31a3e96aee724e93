#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <string>
#include <vector>

#include "HarbourlineLook.h"

namespace upnp {

/// A list view of texts that asks for what it shows, so that ten thousand rows open at once. Its owner passes
/// WM_NOTIFY on.
class RowList {
 public:
  using Row = std::vector<std::wstring>;

  void Create(HWND parent, int id, std::vector<std::wstring> captions);
  HWND Handle() const { return handle_; }
  /// Keeps the selection and the place where the list stands.
  void Show(std::vector<Row> rows, const harbourline::Look& look);
  void FitColumns(const harbourline::Look& look);
  /// Answers LVN_GETDISPINFOW of this list; false for anything else.
  bool OnNotify(LPARAM lParam);

  /// -1 for none.
  int Selected() const;
  void Select(int row);

 private:
  HWND handle_ = nullptr;
  std::vector<std::wstring> captions_;
  std::vector<Row> rows_;
  std::vector<int> widest_;
};

}  // namespace upnp
