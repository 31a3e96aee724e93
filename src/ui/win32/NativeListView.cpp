#include "ui/win32/NativeListView.h"

#include <algorithm>

#include "platform/win32/Text.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {
namespace {

/// Room on both sides of a cell's text.
constexpr Twips kCellPadding = 180;
constexpr UINT kSelectedAndFocused = LVIS_SELECTED | LVIS_FOCUSED;

/// A tenth darker.
COLORREF Shaded(COLORREF color) {
  const auto part = [](BYTE value) { return static_cast<BYTE>(value * 9 / 10); };
  return RGB(part(GetRValue(color)), part(GetGValue(color)), part(GetBValue(color)));
}

DWORD StyleOf(const ListView::Style& style) {
  DWORD result = LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS;
  if (!style.columnHeaders) result |= LVS_NOCOLUMNHEADER;
  if (!style.multiSelect) result |= LVS_SINGLESEL;
  if (style.labelEdit) result |= LVS_EDITLABELS;
  return result;
}

int Row(std::size_t row) {
  return static_cast<int>(row);
}

}  // namespace

NativeListView::NativeListView(ListView& list, Surroundings& surroundings)
    : ChildPeer(list, surroundings), list_(list), widths_(list) {
  const Writing writing(writing_);
  CreateNative(WC_LISTVIEWA, StyleOf(list_.GetStyle()), WS_EX_CLIENTEDGE, std::string());
  DWORD extended = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
  if (list_.GetStyle().checkBoxes) {
    extended |= LVS_EX_CHECKBOXES;
    Send(LVM_SETCALLBACKMASK, LVIS_STATEIMAGEMASK);
  }
  Send(LVM_SETEXTENDEDLISTVIEWSTYLE, extended, static_cast<LPARAM>(extended));
  ShowColors();
  SyncLater();
}

void NativeListView::Show(Aspect aspect) {
  switch (aspect) {
    case Aspect::kColors:
      ShowColors();
      break;
    case Aspect::kFont:
      ChildPeer::Show(aspect);
      widths_.FontChanged(NativeFont());
      break;
    case Aspect::kColumns:
      columnsStale_ = true;
      SyncLater();
      break;
    case Aspect::kItems:
      widths_.RowsReplaced();
      rowsStale_ = countStale_ = selectionStale_ = true;
      rowToShow_.reset();
      SyncLater();
      break;
    case Aspect::kSelection:
      selectionStale_ = true;
      SyncLater();
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void NativeListView::ScaleChanged() {
  ChildPeer::ScaleChanged();
  Show(Aspect::kColumns);
}

void NativeListView::RowsAdded(std::size_t first, std::size_t count) {
  if (!Window()) return;
  widths_.RowsAdded(first, count);
  countStale_ = true;
  SyncLater();
}

void NativeListView::RowChanged(std::size_t row) {
  if (!Window()) return;
  widths_.RowChanged(row);
  const auto [first, last] = changedRows_.value_or(std::pair(row, row));
  changedRows_ = {std::min(first, row), std::max(last, row)};
  SyncLater();
}

void NativeListView::EnsureVisible(std::size_t row) {
  if (!Window()) return;
  rowToShow_ = row;
  SyncLater();
}

void NativeListView::StartLabelEdit(std::size_t row) {
  if (!Window()) return;
  ::SetFocus(Window());
  Send(LVM_EDITLABELA, row);
}

bool NativeListView::FitColumn(std::size_t column, bool useHeader) {
  if (!Window() || column >= list_.Columns().size()) return false;
  if (FillsItsWidth()) {
    FillWidth();
    return true;
  }
  int width = widths_.Widest(column);
  if (useHeader) width = std::max(width, widths_.HeaderWidth(column));
  width += FormScale().Pixels(kCellPadding);
  if (column == 0 && list_.GetStyle().checkBoxes) {
    int tickWidth = 0;
    int tickHeight = 0;
    const auto ticks = reinterpret_cast<HIMAGELIST>(Send(LVM_GETIMAGELIST, LVSIL_STATE));
    if (ImageList_GetIconSize(ticks, &tickWidth, &tickHeight)) width += tickWidth;
  }
  if (!columnsStale_ && FormScale().Pixels(list_.Columns()[column].width) == width) return true;
  const Writing writing(writing_);
  Send(LVM_SETCOLUMNWIDTH, column, MAKELPARAM(width, 0));
  list_.UserColumnWidth(column, FormScale().ToTwips(width));
  return true;
}

int NativeListView::ColumnCount() const {
  const auto header = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
  return static_cast<int>(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0));
}

void NativeListView::ShowColors() {
  Send(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(Ground()));
  Send(LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(Ground()));
  Send(LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(TextColor()));
  InvalidateRect(Window(), nullptr, TRUE);
}

void NativeListView::Sync() {
  const Writing writing(writing_);
  if (rowsStale_ && Send(LVM_GETEDITCONTROL)) {
    const Writing cancelling(cancelsEdit_);
    Send(LVM_CANCELEDITLABEL);
  }
  if (columnsStale_) SyncColumns();
  if (countStale_) {
    const LPARAM flags = LVSICF_NOSCROLL | (rowsStale_ ? 0 : LVSICF_NOINVALIDATEALL);
    Send(LVM_SETITEMCOUNT, list_.RowCount(), flags);
    if (FillsItsWidth()) FillWidth();
  }
  if (selectionStale_) SyncSelection();
  if (rowToShow_ && *rowToShow_ < list_.RowCount()) Send(LVM_ENSUREVISIBLE, *rowToShow_, FALSE);
  // Last, so that the scrolling leaves nothing undrawn.
  if (rowsStale_) {
    InvalidateRect(Window(), nullptr, TRUE);
  } else if (changedRows_) {
    Send(LVM_REDRAWITEMS, changedRows_->first, static_cast<LPARAM>(changedRows_->second));
  }
  columnsStale_ = rowsStale_ = countStale_ = selectionStale_ = false;
  changedRows_.reset();
  rowToShow_.reset();
}

void NativeListView::SyncColumns() {
  const std::vector<ListView::Column>& columns = list_.Columns();
  // Rows need a column, also where the control has none.
  const int wanted = std::max(1, Row(columns.size()));
  while (ColumnCount() > wanted) Send(LVM_DELETECOLUMN, static_cast<WPARAM>(ColumnCount() - 1));
  for (int i = 0; i < wanted; ++i) {
    LVCOLUMNA native{};
    native.mask = LVCF_TEXT | LVCF_SUBITEM | LVCF_FMT;
    native.fmt = LVCFMT_LEFT;
    native.iSubItem = i;
    std::string text;
    if (!columns.empty()) {
      text = columns[static_cast<std::size_t>(i)].text;
      native.mask |= LVCF_WIDTH;
      native.cx = FormScale().Pixels(columns[static_cast<std::size_t>(i)].width);
    }
    native.pszText = text.data();
    Send(i < ColumnCount() ? LVM_SETCOLUMNA : LVM_INSERTCOLUMNA, static_cast<WPARAM>(i),
         reinterpret_cast<LPARAM>(&native));
  }
  if (FillsItsWidth()) FillWidth();
}

void NativeListView::FillWidth() {
  RECT inner{};
  GetClientRect(Window(), &inner);
  if (ColumnCount() == 0 || WidthOf(0) == inner.right) return;
  const Writing writing(writing_);
  Send(LVM_SETCOLUMNWIDTH, 0, MAKELPARAM(inner.right, 0));
  list_.UserColumnWidth(0, FormScale().ToTwips(inner.right));
}

void NativeListView::SetState(int row, UINT state, UINT mask) const {
  LVITEMA item{};
  item.state = state;
  item.stateMask = mask;
  Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

void NativeListView::SyncSelection() {
  constexpr int kAllRows = -1;
  const DrawingPause pause(Window());
  const std::size_t selected = list_.SelectedCount();
  const auto focused = list_.SelectedRow();
  if (selected > 0 && selected == list_.RowCount() && list_.GetStyle().multiSelect) {
    SetState(kAllRows, LVIS_SELECTED, LVIS_SELECTED);
  } else {
    SetState(kAllRows, 0, LVIS_SELECTED);
    std::size_t left = selected;
    // With single selection the one row is known.
    for (std::size_t row = list_.GetStyle().multiSelect ? 0 : focused.value_or(list_.RowCount());
         left > 0 && row < list_.RowCount(); ++row) {
      if (!list_.Selected(row)) continue;
      SetState(Row(row), LVIS_SELECTED, LVIS_SELECTED);
      --left;
    }
  }
  if (focused && *focused < list_.RowCount()) SetState(Row(*focused), LVIS_FOCUSED, LVIS_FOCUSED);
}

LRESULT NativeListView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = Window();
  if (message == WM_NOTIFY) {
    // The header tells the list, not the list's parent.
    const LRESULT result = PassOn(message, wParam, lParam);
    if (IsAlive(window, this)) OnHeader(*reinterpret_cast<const NMHEADERA*>(lParam));
    return result;
  }
  if (message == WM_CONTEXTMENU && lParam == -1) {
    // The key for the menu; the mouse's own way is the notification.
    Surroundings& around = Around();
    around.menuPlace = MenuPlace();
    list_.UserRightButtonUp();
    around.menuPlace.reset();
    return 0;
  }
  if (message == WM_KEYDOWN && wParam == 'A' && GetKeyState(VK_CONTROL) < 0 && list_.GetStyle().multiSelect) {
    list_.UserSelectAll(true);
    selectionStale_ = true;
    SyncLater();
    return 0;
  }
  const bool key = message == WM_KEYDOWN || message == WM_CHAR;
  if (key) selectedByKey_ = false;
  const LRESULT result = PassOn(message, wParam, lParam);
  if (!IsAlive(window, this)) return result;
  if (message == WM_SIZE && FillsItsWidth()) FillWidth();
  if (key && selectedByKey_) {
    selectedByKey_ = false;
    list_.UserItemClick();
  } else if (message == WM_KEYUP) {
    list_.UserKeyUp(static_cast<std::int32_t>(wParam));
  }
  return result;
}

POINT NativeListView::MenuPlace() const {
  POINT place{};
  if (const auto row = list_.SelectedRow()) {
    Send(LVM_ENSUREVISIBLE, *row, FALSE);
    RECT label{};
    label.left = LVIR_LABEL;
    Send(LVM_GETITEMRECT, *row, reinterpret_cast<LPARAM>(&label));
    place = {std::max<LONG>(0, label.left), label.bottom};
  }
  ClientToScreen(Window(), &place);
  return place;
}

LRESULT NativeListView::OnNotify(NMHDR& header) {
  switch (header.code) {
    case LVN_GETDISPINFOA:
      OnDisplay(reinterpret_cast<NMLVDISPINFOA&>(header).item);
      return 0;
    case NM_CUSTOMDRAW:
      return OnDraw(reinterpret_cast<NMLVCUSTOMDRAW&>(header));
    case LVN_ITEMCHANGED:
      OnStateChanged(reinterpret_cast<const NMLISTVIEW&>(header));
      return 0;
    case LVN_ODSTATECHANGED: {
      const auto& range = reinterpret_cast<const NMLVODSTATECHANGE&>(header);
      if (writing_ || ((range.uOldState ^ range.uNewState) & LVIS_SELECTED) == 0) return 0;
      for (int row = range.iFrom; row <= range.iTo; ++row) {
        list_.UserSelect(static_cast<std::size_t>(row), (range.uNewState & LVIS_SELECTED) != 0);
      }
      return 0;
    }
    case NM_CLICK:
    case NM_DBLCLK:
      OnClick(reinterpret_cast<const NMITEMACTIVATE&>(header), header.code == NM_DBLCLK);
      return 0;
    case NM_RCLICK:
      list_.UserRightButtonUp();
      return 1;
    case LVN_KEYDOWN:
      if (reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey == VK_SPACE && list_.GetStyle().checkBoxes) {
        const int row = Send<int>(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
        if (row >= 0) ToggleTick(static_cast<std::size_t>(row));
      }
      return 0;
    case LVN_COLUMNCLICK:
      list_.UserColumnClick(reinterpret_cast<const NMLISTVIEW&>(header).iSubItem + 1);
      return 0;
    case LVN_ODFINDITEMA: {
      const auto& find = reinterpret_cast<const NMLVFINDITEMA&>(header);
      return OnFind(find.lvfi.flags, find.lvfi.psz ? find.lvfi.psz : "", find.iStart);
    }
    case LVN_ODFINDITEMW: {
      const auto& find = reinterpret_cast<const NMLVFINDITEMW&>(header);
      const std::wstring_view text = find.lvfi.psz ? find.lvfi.psz : L"";
      return OnFind(find.lvfi.flags, platform::win32::FromUtf16(text), find.iStart);
    }
    case LVN_BEGINLABELEDITA:
      return OnLabelEditStart(reinterpret_cast<const NMLVDISPINFOA&>(header).item);
    case LVN_ENDLABELEDITA:
      OnLabelEditEnd(reinterpret_cast<const NMLVDISPINFOA&>(header).item);
      return 0;
    default:
      return 0;
  }
}

void NativeListView::OnDisplay(LVITEMA& item) {
  const auto row = static_cast<std::size_t>(item.iItem);
  const bool there = item.iItem >= 0 && row < list_.RowCount();
  if (item.mask & LVIF_TEXT) {
    shownText_ = there ? list_.Text(row, static_cast<std::size_t>(item.iSubItem)) : std::string_view();
    item.pszText = shownText_.data();
  }
  if ((item.mask & LVIF_STATE) && list_.GetStyle().checkBoxes) {
    item.state = INDEXTOSTATEIMAGEMASK(there && list_.Checked(row) ? 2u : 1u);
  }
}

LRESULT NativeListView::OnDraw(NMLVCUSTOMDRAW& draw) const {
  switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      return CDRF_NOTIFYSUBITEMDRAW;
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM: {
      const auto row = static_cast<std::size_t>(draw.nmcd.dwItemSpec);
      const Color color = row < list_.RowCount()
                              ? list_.CellColor(row, static_cast<std::size_t>(draw.iSubItem))
                              : kDefaultColor;
      draw.clrText =
          color == kDefaultColor || !list_.Enabled() ? TextColor() : NativeColor(color, COLOR_WINDOWTEXT);
      draw.clrTextBk = Ground();
      if ((draw.nmcd.uItemState & CDIS_SELECTED) && GetFocus() != Window()) {
        // A selected row keeps its colour while the focus is elsewhere: the colour tells something.
        draw.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED);
        draw.clrTextBk = Shaded(Ground());
      }
      return CDRF_NEWFONT;
    }
    default:
      return CDRF_DODEFAULT;
  }
}

void NativeListView::OnStateChanged(const NMLISTVIEW& change) {
  if (writing_ || !(change.uChanged & LVIF_STATE)) return;
  if (((change.uOldState ^ change.uNewState) & LVIS_SELECTED) == 0) return;
  const bool selected = (change.uNewState & LVIS_SELECTED) != 0;
  if (change.iItem < 0) {
    list_.UserSelectAll(selected);
    return;
  }
  list_.UserSelect(static_cast<std::size_t>(change.iItem), selected);
  selectedByKey_ = selectedByKey_ || selected;
}

void NativeListView::OnClick(const NMITEMACTIVATE& click, bool isDouble) {
  if (ToggleTickAt(click.ptAction)) return;
  if (isDouble) {
    list_.UserDblClick();
  } else if (click.iItem >= 0) {
    list_.UserItemClick();
  }
}

bool NativeListView::ToggleTickAt(POINT place) {
  if (!list_.GetStyle().checkBoxes) return false;
  LVHITTESTINFO hit{};
  hit.pt = place;
  if (Send<int>(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)) < 0 || !(hit.flags & LVHT_ONITEMSTATEICON) ||
      (hit.flags & LVHT_ONITEMLABEL)) {
    return false;
  }
  ToggleTick(static_cast<std::size_t>(hit.iItem));
  return true;
}

void NativeListView::ToggleTick(std::size_t row) {
  if (row >= list_.RowCount()) return;
  Send(LVM_REDRAWITEMS, row, static_cast<LPARAM>(row));
  list_.UserCheck(row, !list_.Checked(row));
}

LRESULT NativeListView::OnFind(UINT flags, const std::string& beginning, int start) const {
  constexpr LRESULT kNone = -1;
  if (!(flags & (LVFI_STRING | LVFI_PARTIAL))) return kNone;
  const std::size_t count = list_.RowCount();
  for (std::size_t step = 0; step < count; ++step) {
    const std::size_t row = (static_cast<std::size_t>(std::max(start, 0)) + step) % count;
    const std::string_view text = list_.Text(row).substr(0, beginning.size());
    if (CompareStringA(LOCALE_USER_DEFAULT, NORM_IGNORECASE, text.data(), Row(text.size()), beginning.data(),
                       Row(beginning.size())) == CSTR_EQUAL) {
      return Row(row);
    }
  }
  return kNone;
}

LRESULT NativeListView::OnLabelEditStart(const LVITEMA& item) {
  constexpr LRESULT kRefuse = TRUE;
  const HWND window = Window();
  const auto row = static_cast<std::size_t>(item.iItem);
  if (!list_.UserLabelEditStart(row) || !IsAlive(window, this) || row >= list_.RowCount()) return kRefuse;
  // The native list itself hands over no more than the beginning of a long text.
  const auto edit = reinterpret_cast<HWND>(Send(LVM_GETEDITCONTROL));
  SendMessageA(edit, EM_SETLIMITTEXT, 0, 0);
  SetWindowTextA(edit, std::string(list_.Text(row)).c_str());
  return FALSE;
}

void NativeListView::OnLabelEditEnd(const LVITEMA& item) {
  if (cancelsEdit_ || !item.pszText) return;
  const auto edit = reinterpret_cast<HWND>(Send(LVM_GETEDITCONTROL));
  std::string text = item.pszText;
  if (edit) {
    text.assign(static_cast<std::size_t>(GetWindowTextLengthA(edit)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(edit, text.data(), static_cast<int>(text.size()))));
  }
  list_.UserLabelEditEnd(text);
}

void NativeListView::OnHeader(const NMHEADERA& header) {
  const bool changed = header.hdr.code == HDN_ITEMCHANGEDA || header.hdr.code == HDN_ITEMCHANGEDW;
  if (writing_ || !changed || !header.pitem || !(header.pitem->mask & HDI_WIDTH) || header.iItem < 0) return;
  const auto column = static_cast<std::size_t>(header.iItem);
  list_.UserColumnWidth(column, FormScale().ToTwips(WidthOf(column)));
}

}  // namespace ui::win32
