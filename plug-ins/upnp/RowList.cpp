#include "RowList.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "HarbourlinePlugIn.h"

namespace upnp {

using harbourline::Look;

void RowList::Create(HWND parent, int id, std::vector<std::wstring> captions) {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
  captions_ = std::move(captions);
  widest_.assign(captions_.size(), 0);
  handle_ = CreateWindowExW(0, WC_LISTVIEWW, L"",
                            WS_CHILD | WS_VISIBLE | WS_BORDER | WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA |
                                LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER,
                            0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                            harbourline::module::Handle(), nullptr);
  ListView_SetExtendedListViewStyle(handle_, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  ListView_SetTextColor(handle_, harbourline::kNavy);
  for (std::size_t i = 0; i < captions_.size(); ++i) {
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = captions_[i].data();
    column.iSubItem = static_cast<int>(i);
    SendMessageW(handle_, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
  }
}

void RowList::Show(std::vector<Row> rows, const Look& look) {
  if (rows == rows_) return;
  rows_ = std::move(rows);
  // The widest of the first is wide enough for the rest, and measuring takes time.
  constexpr std::size_t kMeasured = 300;
  for (std::size_t column = 0; column < captions_.size(); ++column) {
    int width = look.Measure(look.Text(), captions_[column]).cx;
    for (std::size_t row = 0; row < std::min(rows_.size(), kMeasured); ++row) {
      width = std::max<int>(width, look.Measure(look.Text(), rows_[row][column]).cx);
    }
    widest_[column] = width;
  }
  ListView_SetItemCountEx(handle_, static_cast<int>(rows_.size()), LVSICF_NOSCROLL);
  InvalidateRect(handle_, nullptr, FALSE);
  FitColumns(look);
}

void RowList::FitColumns(const Look& look) {
  RECT client = {};
  GetClientRect(handle_, &client);
  const int padding = look.Px(14);
  int room = client.right;
  for (const int width : widest_) room -= width + padding;
  // Room for the vertical bar, so that it never brings a horizontal one along.
  if (!(GetWindowLongW(handle_, GWL_STYLE) & WS_VSCROLL)) room -= GetSystemMetrics(SM_CXVSCROLL);
  for (std::size_t i = 0; i < widest_.size(); ++i) {
    const bool last = i + 1 == widest_.size();
    ListView_SetColumnWidth(handle_, static_cast<int>(i),
                            widest_[i] + padding + (last ? std::max(0, room) : 0));
  }
}

bool RowList::OnNotify(LPARAM lParam) {
  auto& info = *reinterpret_cast<NMLVDISPINFOW*>(lParam);
  if (info.hdr.hwndFrom != handle_ || info.hdr.code != LVN_GETDISPINFOW) return false;
  LVITEMW& item = info.item;
  if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0) return true;
  const auto row = static_cast<std::size_t>(item.iItem);
  const auto column = static_cast<std::size_t>(item.iSubItem);
  if (row >= rows_.size() || column >= rows_[row].size()) return true;
  const std::wstring& text = rows_[row][column];
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
  std::memcpy(item.pszText, text.c_str(), length * sizeof(wchar_t));
  item.pszText[length] = L'\0';
  return true;
}

int RowList::Selected() const {
  return ListView_GetNextItem(handle_, -1, LVNI_SELECTED);
}

void RowList::Select(int row) {
  constexpr UINT kState = LVIS_SELECTED | LVIS_FOCUSED;
  ListView_SetItemState(handle_, row, kState, kState);
}

}  // namespace upnp
