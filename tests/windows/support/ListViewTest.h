#pragma once

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "support/Ui.h"
#include "ui/ListView.h"

namespace support {

/// Tests with the native window of a list view.
class ListViewTest : public UiTest {
 protected:
  HWND Native(const ui::ListView& list) const { return reinterpret_cast<HWND>(list.GetPeer()->Handle()); }

  /// Puts the list on the window, with three columns.
  std::unique_ptr<ui::ListView> Make(ui::ListView::Style style) {
    auto list = std::make_unique<ui::ListView>(&form_, "lvTest", style);
    list->Move(0, 0, 6000, 4000);
    if (style.columnHeaders) {
      list->AddColumn("a", "First", 1500);
      list->AddColumn("b", "Second", 1500);
      list->AddColumn("c", "Third", 1500);
    }
    form_.Show();
    list->SetFocus();
    return list;
  }

  static void Fill(ui::ListView& list, int rows) {
    for (int i = 0; i < rows; ++i) {
      const std::string number = std::to_string(i);
      const std::string first = "row " + number;
      const std::string second = "cell " + number;
      list.AddRow("K" + number, std::array<std::string_view, 3>{first, second, "x"});
    }
  }

  static std::string NativeText(HWND list, int row, int column) {
    char text[256] = "";
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = sizeof text;
    SendMessageA(list, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
  }
  static LRESULT Count(HWND list) { return SendMessageA(list, LVM_GETITEMCOUNT, 0, 0); }
  static bool IsSelected(HWND list, int row) {
    return SendMessageA(list, LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_SELECTED) != 0;
  }
  static UINT TickState(HWND list, int row) {
    return static_cast<UINT>(
               SendMessageA(list, LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK)) >>
           12;
  }
  /// Every row is selected in the native list exactly when it is in ours.
  static void ExpectSameSelection(const ui::ListView& list, HWND native) {
    for (std::size_t row = 0; row < list.RowCount(); ++row) {
      EXPECT_EQ(IsSelected(native, static_cast<int>(row)), list.Selected(row)) << "row " << row;
    }
    EXPECT_EQ(SendMessageA(native, LVM_GETSELECTEDCOUNT, 0, 0), static_cast<LRESULT>(list.SelectedCount()));
  }

  static POINT PlaceOf(HWND list, int row, int part = LVIR_LABEL) {
    RECT place{};
    place.left = part;
    SendMessageA(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    return {place.left + 5, (place.top + place.bottom) / 2};
  }
  /// The whole click is in the queue before the list handles its first half.
  static void Click(HWND list, POINT place, WPARAM keys = 0, bool right = false) {
    const LPARAM where = MAKELPARAM(place.x, place.y);
    PostMessageA(list, right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, keys | (right ? MK_RBUTTON : MK_LBUTTON),
                 where);
    PostMessageA(list, right ? WM_RBUTTONUP : WM_LBUTTONUP, keys, where);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  static void Key(HWND list, WPARAM key) {
    PostMessageA(list, WM_KEYDOWN, key, 1);
    PostMessageA(list, WM_KEYUP, key, 0xC0000001);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }

  TestForm form_{"frmTest", {}, 6000, 4000};
};

}  // namespace support
