#include <windows.h>

#include <commctrl.h>

#include "support/ListViewTest.h"
#include "ui/Menu.h"
#include "ui/TextBox.h"

namespace {

/// What the user types and clicks in a list view.
class UiListViewInputTest : public support::ListViewTest {};

TEST_F(UiListViewInputTest, ALabelIsEditedInPlaceHoweverLongItIs) {
  auto list = Make({.columnHeaders = false, .labelEdit = true});
  const std::string name(10'000, 'n');
  list->AddRow("K", name);
  std::string told;
  list->AfterLabelEdit.Connect([&](bool&, const std::string&, const std::string& text) { told = text; });
  list->StartLabelEdit(0);
  const auto edit = reinterpret_cast<HWND>(SendMessageA(Native(*list), LVM_GETEDITCONTROL, 0, 0));
  ASSERT_NE(edit, nullptr);
  EXPECT_EQ(support::TextOf(edit), name);
  SendMessageA(edit, EM_SETSEL, 10'000, 10'000);
  SendMessageA(edit, WM_CHAR, '!', 1);
  SendMessageA(edit, WM_KEYDOWN, VK_RETURN, 1);
  EXPECT_EQ(told, name + "!");
  EXPECT_EQ(list->Text(0), name + "!");
}

TEST_F(UiListViewInputTest, ALabelEditMayBeRefusedBeforeAndAfter) {
  auto list = Make({.columnHeaders = false, .labelEdit = true});
  list->AddRow("K", "name");
  bool refuseStart = true;
  list->BeforeLabelEdit.Connect([&](bool& cancel) { cancel = refuseStart; });
  list->AfterLabelEdit.Connect([](bool& cancel, const std::string&, const std::string&) { cancel = true; });
  const HWND native = Native(*list);
  list->StartLabelEdit(0);
  EXPECT_EQ(SendMessageA(native, LVM_GETEDITCONTROL, 0, 0), 0);
  refuseStart = false;
  list->StartLabelEdit(0);
  const auto edit = reinterpret_cast<HWND>(SendMessageA(native, LVM_GETEDITCONTROL, 0, 0));
  ASSERT_NE(edit, nullptr);
  SetWindowTextA(edit, "other");
  SendMessageA(edit, WM_KEYDOWN, VK_RETURN, 1);
  EXPECT_EQ(list->Text(0), "name");
}

TEST_F(UiListViewInputTest, ALabelEditThatEndsByTheFocusGoesToTheRowThatItBeganIn) {
  ui::TextBox next(&form_, "txtNext");
  next.Move(0, 4000, 2000, 400);
  auto list = Make({.columnHeaders = false, .labelEdit = true});
  Fill(*list, 3);
  list->Select(1);
  std::string told;
  list->AfterLabelEdit.Connect(
      [&](bool&, const std::string& key, const std::string& text) { told = key + " " + text; });
  ui::TheInterface().toolkit->ProcessPendingEvents();
  list->StartLabelEdit(1);
  const auto edit = reinterpret_cast<HWND>(SendMessageA(Native(*list), LVM_GETEDITCONTROL, 0, 0));
  ASSERT_NE(edit, nullptr);
  SendMessageA(edit, WM_CHAR, 'q', 1);
  // As a command does that adds a row and opens a form.
  list->AddRow("K3", "row 3");
  list->Select(3);
  next.SetFocus();
  EXPECT_EQ(told, "K1 q");
  EXPECT_EQ(list->Text(*list->Find("K1")), "q");
  EXPECT_EQ(list->Text(*list->Find("K2")), "row 2");
  EXPECT_EQ(list->Text(*list->Find("K3")), "row 3");
}

TEST_F(UiListViewInputTest, RowsThatChangeEndTheEditing) {
  auto list = Make({.columnHeaders = false, .labelEdit = true});
  Fill(*list, 3);
  int ended = 0;
  list->AfterLabelEdit.Connect([&](bool&, const std::string&, const std::string&) { ++ended; });
  list->StartLabelEdit(1);
  ASSERT_NE(SendMessageA(Native(*list), LVM_GETEDITCONTROL, 0, 0), 0);
  list->Remove("K0");
  ui::TheInterface().toolkit->ProcessPendingEvents();
  EXPECT_EQ(SendMessageA(Native(*list), LVM_GETEDITCONTROL, 0, 0), 0);
  EXPECT_EQ(ended, 0);
}

TEST_F(UiListViewInputTest, ClicksKeysAndHeadersAreReported) {
  auto list = Make({});
  Fill(*list, 5);
  const HWND native = Native(*list);
  std::vector<std::string> told;
  list->DblClick.Connect([&] { told.push_back("double"); });
  list->RightButtonUp.Connect([&] { told.push_back("right"); });
  list->KeyUp.Connect([&](std::int32_t key) { told.push_back("key " + std::to_string(key)); });
  list->ColumnClick.Connect([&](std::int32_t column) { told.push_back("column " + std::to_string(column)); });
  const POINT place = PlaceOf(native, 1);
  PostMessageA(native, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(place.x, place.y));
  PostMessageA(native, WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
  ui::TheInterface().toolkit->ProcessPendingEvents();
  Click(native, PlaceOf(native, 3), 0, true);
  EXPECT_EQ(list->SelectedRow(), 3u) << "the right button selects too";
  Key(native, VK_F2);
  SendMessageA(native, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(native), -1);
  const auto header = reinterpret_cast<HWND>(SendMessageA(native, LVM_GETHEADER, 0, 0));
  const LPARAM onSecond = MAKELPARAM(SendMessageA(native, LVM_GETCOLUMNWIDTH, 0, 0) + 20, 5);
  PostMessageA(header, WM_LBUTTONDOWN, MK_LBUTTON, onSecond);
  PostMessageA(header, WM_LBUTTONUP, 0, onSecond);
  ui::TheInterface().toolkit->ProcessPendingEvents();
  EXPECT_EQ(told, (std::vector<std::string>{"double", "right", "key 113", "right", "column 2"}));
}

TEST_F(UiListViewInputTest, TheKeyForTheMenuOpensItBelowTheSelectedRow) {
  auto list = Make({});
  Fill(*list, 100);
  list->Select(50);
  ui::Menu menu(&form_, "mnuTest", "Test");
  ui::Menu entry(&menu, "mnuEntry", "Entry");
  list->RightButtonUp.Connect([&] { menu.ShowAsPopup(); });
  ui::TheInterface().toolkit->ProcessPendingEvents();
  const HWND native = Native(*list);
  SetCursorPos(0, 0);
  const auto placeOfMenu = [&](auto open) {
    RECT place{};
    const support::Bystander bystander([&] {
      const HWND window = support::WaitFor([] { return support::FindOwnWindow("#32768"); });
      support::WaitFor([&] { return IsWindowVisible(window) && GetWindowRect(window, &place); });
      support::PressKey(VK_ESCAPE);
    });
    open();
    return place;
  };
  const auto byKey = [&] { SendMessageA(native, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(native), -1); };
  RECT menuPlace = placeOfMenu(byKey);
  RECT row{};
  row.left = LVIR_LABEL;
  SendMessageA(native, LVM_GETITEMRECT, 50, reinterpret_cast<LPARAM>(&row));
  MapWindowPoints(native, nullptr, reinterpret_cast<POINT*>(&row), 2);
  RECT inner{};
  GetWindowRect(native, &inner);
  EXPECT_NEAR(menuPlace.left, row.left, 4);
  EXPECT_NEAR(menuPlace.top, row.bottom, 4);
  EXPECT_GE(row.top, inner.top) << "the row has come into view";
  EXPECT_LE(row.bottom, inner.bottom);

  list->UserSelectAll(false);
  list->UserSelect(50, false);
  menuPlace = placeOfMenu(byKey);
  EXPECT_NEAR(menuPlace.left, inner.left, 6) << "without a selected row, at the list's corner";
  EXPECT_NEAR(menuPlace.top, inner.top, 6);

  SetCursorPos(300, 200);
  menuPlace = placeOfMenu([&] { list->UserRightButtonUp(); });
  EXPECT_NEAR(menuPlace.left, 300, 4) << "by the mouse, at the mouse";
  EXPECT_NEAR(menuPlace.top, 200, 4);
}

TEST_F(UiListViewInputTest, LettersFindTheRowThatBeginsWithThem) {
  auto list = Make({});
  for (const char* name : {"alpha", "Beta", "gamma"}) list->AddRow(name, name);
  const HWND native = Native(*list);
  LVFINDINFOA find{};
  find.flags = LVFI_STRING | LVFI_PARTIAL;
  find.psz = "be";
  EXPECT_EQ(SendMessageA(native, LVM_FINDITEMA, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&find)), 1);
  find.psz = "delta";
  EXPECT_EQ(SendMessageA(native, LVM_FINDITEMA, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&find)),
            -1);
  Click(native, PlaceOf(native, 0));
  PostMessageA(native, WM_CHAR, 'g', 1);
  ui::TheInterface().toolkit->ProcessPendingEvents();
  EXPECT_EQ(list->SelectedRow(), 2u);
}

}  // namespace
