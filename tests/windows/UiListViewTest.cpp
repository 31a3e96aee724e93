#include "ui/ListView.h"

#include <windows.h>

#include <commctrl.h>

#include <array>

#include "support/ListViewTest.h"

namespace {

class UiListViewTest : public support::ListViewTest {};

TEST_F(UiListViewTest, ShowsColumnsAndRowsAsTheControlHoldsThem) {
  auto list = Make({});
  Fill(*list, 3);
  const HWND native = Native(*list);
  EXPECT_EQ(support::ControlNameOf(native), "lvTest");
  EXPECT_EQ(Count(native), 3);
  EXPECT_EQ(NativeText(native, 1, 0), "row 1");
  EXPECT_EQ(NativeText(native, 1, 1), "cell 1");
  EXPECT_EQ(NativeText(native, 2, 2), "x");
  list->Text(1, 1, "changed");
  EXPECT_EQ(NativeText(native, 1, 1), "changed");
  list->Remove("K0");
  EXPECT_EQ(Count(native), 2);
  EXPECT_EQ(NativeText(native, 0, 1), "changed");
  list->ClearRows();
  EXPECT_EQ(Count(native), 0);
  const auto header = reinterpret_cast<HWND>(SendMessageA(native, LVM_GETHEADER, 0, 0));
  EXPECT_EQ(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0), 3);
  list->AddColumn("d", "Fourth");
  EXPECT_EQ(SendMessageA(native, LVM_GETCOLUMNWIDTH, 3, 0) > 0, true);
  list->ClearColumns();
  list->AddColumn("only", "Only");
  SendMessageA(native, LVM_GETITEMCOUNT, 0, 0);
  EXPECT_EQ(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0), 1);
}

TEST_F(UiListViewTest, RowsThatWereThereBeforeTheWindowAreShown) {
  ui::ListView list(&form_, "lvTest");
  list.AddColumn("a", "First");
  Fill(list, 5);
  list.Select(3);
  form_.Show();
  EXPECT_EQ(Count(Native(list)), 5);
  EXPECT_EQ(NativeText(Native(list), 4, 0), "row 4");
  ExpectSameSelection(list, Native(list));
}

TEST_F(UiListViewTest, ARowThatWasToBeSeenBeforeTheWindowWasThereIsInView) {
  ui::ListView list(&form_, "lvTest");
  list.Move(0, 0, 6000, 4000);
  list.AddColumn("a", "First", 1500);
  list.BackColor(ui::Rgb(243, 225, 190));
  Fill(list, 500);
  list.EnsureVisible(499);
  // As the main window, which is there for a while before it is shown.
  form_.Load();
  RunFor(50);
  form_.Show();
  RunFor(200);
  const LRESULT first = SendMessageA(Native(list), LVM_GETTOPINDEX, 0, 0);
  EXPECT_GT(first, 0);
  EXPECT_EQ(first + SendMessageA(Native(list), LVM_GETCOUNTPERPAGE, 0, 0), 500);
  // What was scrolled is drawn, too.
  const POINT place = PlaceOf(Native(list), 495, LVIR_BOUNDS);
  const HDC context = GetDC(Native(list));
  EXPECT_EQ(GetPixel(context, place.x + 2000 / 15, place.y), RGB(243, 225, 190));
  ReleaseDC(Native(list), context);
}

TEST_F(UiListViewTest, AMillionRowsAreThereAtOnce) {
  auto list = std::make_unique<ui::ListView>(&form_, "lvTest", ui::ListView::Style{.multiSelect = true});
  list->Move(0, 0, 6000, 4000);
  list->AddColumn("a", "First");
  list->AddColumn("b", "Second");
  for (int i = 0; i < 1'000'000; ++i) {
    const std::string text = std::to_string(i);
    list->AppendRow(text, std::array<std::string_view, 2>{text, "second"}, ui::kDefaultColor);
  }
  const ULONGLONG start = GetTickCount64();
  form_.Show();
  UpdateWindow(Native(*list));
  EXPECT_EQ(Count(Native(*list)), 1'000'000);
  EXPECT_LT(GetTickCount64() - start, 1000u);
  EXPECT_EQ(NativeText(Native(*list), 999'999, 0), "999999");

  ULONGLONG before = GetTickCount64();
  EXPECT_TRUE(list->FitColumn(0, true));
  EXPECT_LT(GetTickCount64() - before, 1000u) << "all rows are measured once";
  list->AddRow("the first that is looked for by its key", "first");
  before = GetTickCount64();
  for (int i = 1; i < 100; ++i) {
    const std::string text = "live " + std::to_string(i);
    list->AddRow(text, text);
    list->FitColumn(0, true);
  }
  EXPECT_LT(GetTickCount64() - before, 200u) << "but never again for a row that is added";
  EXPECT_EQ(Count(Native(*list)), 1'000'100);

  before = GetTickCount64();
  BYTE keys[256]{};
  keys[VK_CONTROL] = 0x80;
  SetKeyboardState(keys);
  SendMessageA(Native(*list), WM_KEYDOWN, 'A', 1);
  keys[VK_CONTROL] = 0;
  SetKeyboardState(keys);
  EXPECT_EQ(list->SelectedCount(), 1'000'100u);
  EXPECT_EQ(SendMessageA(Native(*list), LVM_GETSELECTEDCOUNT, 0, 0), 1'000'100);
  EXPECT_LT(GetTickCount64() - before, 5000u) << "most of it in the native list's own pass";
}

TEST_F(UiListViewTest, TheUserSelectsOneRow) {
  auto list = Make({});
  Fill(*list, 10);
  const HWND native = Native(*list);
  int clicks = 0;
  list->ItemClick.Connect([&] { ++clicks; });
  Click(native, PlaceOf(native, 2));
  EXPECT_EQ(list->SelectedRow(), 2u);
  EXPECT_EQ(clicks, 1);
  Click(native, PlaceOf(native, 4));
  EXPECT_EQ(list->SelectedRow(), 4u);
  EXPECT_EQ(list->SelectedCount(), 1u);
  ExpectSameSelection(*list, native);
  Key(native, VK_DOWN);
  EXPECT_EQ(list->SelectedRow(), 5u);
  EXPECT_EQ(clicks, 3);
  ExpectSameSelection(*list, native);
}

TEST_F(UiListViewTest, CodeSelectsOneRow) {
  auto list = Make({});
  Fill(*list, 200);
  const HWND native = Native(*list);
  list->Select(150);
  list->EnsureVisible(150);
  ExpectSameSelection(*list, native);
  EXPECT_LE(SendMessageA(native, LVM_GETTOPINDEX, 0, 0), 150);
  EXPECT_GT(SendMessageA(native, LVM_GETTOPINDEX, 0, 0), 100);
  list->Select(3);
  ExpectSameSelection(*list, native);
  EXPECT_EQ(SendMessageA(native, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED), 3);
}

TEST_F(UiListViewTest, SeveralRowsAreSelectedByTheKeysThatAreHeld) {
  auto list = Make({.multiSelect = true});
  Fill(*list, 12);
  const HWND native = Native(*list);
  BYTE keys[256]{};
  Click(native, PlaceOf(native, 2));
  keys[VK_SHIFT] = 0x80;
  SetKeyboardState(keys);
  Click(native, PlaceOf(native, 6), MK_SHIFT);
  ExpectSameSelection(*list, native);
  EXPECT_EQ(list->SelectedCount(), 5u);
  keys[VK_SHIFT] = 0;
  keys[VK_CONTROL] = 0x80;
  SetKeyboardState(keys);
  Click(native, PlaceOf(native, 4), MK_CONTROL);
  Click(native, PlaceOf(native, 9), MK_CONTROL);
  keys[VK_CONTROL] = 0;
  SetKeyboardState(keys);
  ExpectSameSelection(*list, native);
  EXPECT_EQ(list->SelectedCount(), 5u);
  EXPECT_FALSE(list->Selected(4));
  EXPECT_TRUE(list->Selected(9));
  Click(native, PlaceOf(native, 0));
  ExpectSameSelection(*list, native);
  EXPECT_EQ(list->SelectedCount(), 1u);
}

TEST_F(UiListViewTest, AllRowsSelectedAtOnceArriveAsOneChange) {
  auto list = Make({.multiSelect = true});
  Fill(*list, 12);
  LVITEMA all{};
  all.state = all.stateMask = LVIS_SELECTED;
  SendMessageA(Native(*list), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&all));
  EXPECT_EQ(list->SelectedCount(), 12u);
  ExpectSameSelection(*list, Native(*list));
  all.state = 0;
  SendMessageA(Native(*list), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&all));
  EXPECT_EQ(list->SelectedCount(), 0u);
}

TEST_F(UiListViewTest, SelectedRowsGoAndTheOthersAreNoLongerSelected) {
  auto list = Make({.multiSelect = true});
  Fill(*list, 10);
  for (const std::size_t row : {1u, 2u, 7u}) list->Select(row);
  const HWND native = Native(*list);
  ExpectSameSelection(*list, native);
  EXPECT_EQ(list->RemoveSelected(), 3u);
  EXPECT_EQ(Count(native), 7);
  ExpectSameSelection(*list, native);
  EXPECT_EQ(list->SelectedCount(), 0u);
}

TEST_F(UiListViewTest, ARowThatMovesKeepsItsSelection) {
  auto list = Make({});
  Fill(*list, 5);
  Click(Native(*list), PlaceOf(Native(*list), 1));
  const std::array<std::uint32_t, 5> order{4, 3, 2, 1, 0};
  list->Reorder(order);
  EXPECT_EQ(NativeText(Native(*list), 3, 0), "row 1");
  EXPECT_EQ(list->SelectedRow(), 3u);
  ExpectSameSelection(*list, Native(*list));
  list->Remove("K4");
  ExpectSameSelection(*list, Native(*list));
}

TEST_F(UiListViewTest, TicksFollowAndAreSetByClickAndBlank) {
  auto list = Make({.columnHeaders = false, .checkBoxes = true});
  Fill(*list, 4);
  list->Checked(1, true);
  const HWND native = Native(*list);
  EXPECT_EQ(TickState(native, 0), 1u);
  EXPECT_EQ(TickState(native, 1), 2u);
  int ticks = 0;
  list->ItemCheck.Connect([&] { ++ticks; });
  POINT place = PlaceOf(native, 2, LVIR_BOUNDS);
  place.x += 3;
  Click(native, place);
  EXPECT_TRUE(list->Checked(2));
  EXPECT_EQ(TickState(native, 2), 2u);
  EXPECT_EQ(ticks, 1);
  Click(native, PlaceOf(native, 3));
  EXPECT_FALSE(list->Checked(3)) << "a click on the text selects only";
  Key(native, VK_SPACE);
  EXPECT_TRUE(list->Checked(3));
  Key(native, VK_SPACE);
  EXPECT_FALSE(list->Checked(3));
  EXPECT_EQ(ticks, 3);
}

TEST_F(UiListViewTest, EachCellHasItsColourOnTheListsGround) {
  auto list = Make({});
  list->BackColor(ui::Rgb(243, 225, 190));
  list->ForeColor(ui::Rgb(0, 0, 128));
  // Thick enough to have pixels of the pure colour.
  list->Font({"Comic Sans MS", 20.25, true});
  const std::string_view blocks = "MMMMMMMM";
  list->AddRow("plain", std::array<std::string_view, 2>{blocks, blocks});
  list->AddRow("coloured", std::array<std::string_view, 2>{blocks, blocks}, ui::Rgb(128, 0, 0));
  list->CellColor(1, 1, ui::Rgb(0, 128, 0));
  RunFor(100);
  const HWND native = Native(*list);
  UpdateWindow(native);
  const HDC context = GetDC(native);
  const auto shows = [&](int row, int column, COLORREF wanted) {
    RECT place{};
    place.top = column;
    place.left = LVIR_BOUNDS;
    SendMessageA(native, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    const LONG right = column == 0 ? place.left + 90 : place.right;
    for (LONG y = place.top; y < place.bottom; ++y) {
      for (LONG x = place.left; x < right; ++x) {
        if (GetPixel(context, x, y) == wanted) return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(shows(0, 0, RGB(0, 0, 128)));
  EXPECT_TRUE(shows(1, 0, RGB(128, 0, 0)));
  EXPECT_TRUE(shows(1, 1, RGB(0, 128, 0)));
  EXPECT_FALSE(shows(1, 1, RGB(128, 0, 0)));
  EXPECT_TRUE(shows(1, 1, RGB(243, 225, 190)));
  RECT inner;
  GetClientRect(native, &inner);
  EXPECT_EQ(GetPixel(context, inner.right - 3, inner.bottom - 3), static_cast<COLORREF>(RGB(243, 225, 190)));
  ReleaseDC(native, context);
}

TEST_F(UiListViewTest, AFittedColumnHoldsItsWidestTextOrItsHeader) {
  auto list = Make({});
  const HWND native = Native(*list);
  const auto room = [&](const char* text) {
    return SendMessageA(native, LVM_GETSTRINGWIDTHA, 0, reinterpret_cast<LPARAM>(text));
  };
  const auto width = [&](int column) {
    return SendMessageA(native, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0);
  };
  list->AddRow("K", std::array<std::string_view, 2>{"a text that is wider than its header", "i"});
  EXPECT_TRUE(list->FitColumn(0, true));
  EXPECT_TRUE(list->FitColumn(1, true));
  EXPECT_TRUE(list->FitColumn(2, false));
  EXPECT_FALSE(list->FitColumn(3, true));
  EXPECT_GT(width(0), room("a text that is wider than its header"));
  EXPECT_LT(width(0), room("a text that is wider than its header") + 30);
  EXPECT_GT(width(1), room("Second"));
  EXPECT_LT(width(1), room("Second") + 30);
  EXPECT_LT(width(2), room("Third"));
  list->AddRow("L", "this one is even wider than the text that was wider than its header");
  EXPECT_TRUE(list->FitColumn(0, false));
  EXPECT_GT(width(0), room("this one is even wider than the text that was wider than its header"));
  list->Remove("L");
  EXPECT_TRUE(list->FitColumn(0, false));
  EXPECT_LT(width(0), room("a text that is wider than its header") + 30);
  EXPECT_NEAR(static_cast<double>(list->Columns()[0].width),
              static_cast<double>(width(0)) * ui::TheInterface().screen->TwipsPerPixelX(), 1.0);
}

TEST_F(UiListViewTest, AColumnThatWasFittedBeforeTheWindowIsFittedWhenItIsThere) {
  ui::ListView list(&form_, "lvTest");
  list.AddColumn("a", "First");
  list.AddColumn("b", "Second");
  list.AddRow("K", "a text that is wider than the width that every column starts with");
  list.FitColumn(0, true);
  form_.Show();
  const char* text = "a text that is wider than the width that every column starts with";
  EXPECT_GT(SendMessageA(Native(list), LVM_GETCOLUMNWIDTH, 0, 0),
            SendMessageA(Native(list), LVM_GETSTRINGWIDTHA, 0, reinterpret_cast<LPARAM>(text)));
}

TEST_F(UiListViewTest, APlainListFillsItsWidthWhateverItsSize) {
  auto list = Make({.columnHeaders = false});
  Fill(*list, 2);
  const HWND native = Native(*list);
  const auto gap = [&] {
    RECT inner;
    GetClientRect(native, &inner);
    return inner.right - SendMessageA(native, LVM_GETCOLUMNWIDTH, 0, 0);
  };
  EXPECT_EQ(gap(), 0);
  list->Move(0, 0, 3000, 3000);
  EXPECT_EQ(gap(), 0);
  Fill(*list, 0);
  for (int i = 2; i < 300; ++i) list->AddRow("K" + std::to_string(i), "text");
  SendMessageA(native, LVM_GETITEMCOUNT, 0, 0);
  EXPECT_EQ(gap(), 0) << "the scroll bar takes its part";
}

TEST_F(UiListViewTest, AColumnThatTheUserDragsIsRemembered) {
  auto list = Make({});
  const HWND native = Native(*list);
  const auto header = reinterpret_cast<HWND>(SendMessageA(native, LVM_GETHEADER, 0, 0));
  const auto edge = static_cast<short>(SendMessageA(native, LVM_GETCOLUMNWIDTH, 0, 0));
  PostMessageA(header, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(edge, 5));
  PostMessageA(header, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(edge + 40, 5));
  PostMessageA(header, WM_LBUTTONUP, 0, MAKELPARAM(edge + 40, 5));
  ui::TheInterface().toolkit->ProcessPendingEvents();
  const auto width = SendMessageA(native, LVM_GETCOLUMNWIDTH, 0, 0);
  EXPECT_NEAR(static_cast<double>(width), edge + 40, 5.0);
  EXPECT_NEAR(static_cast<double>(list->Columns()[0].width),
              static_cast<double>(width) * ui::TheInterface().screen->TwipsPerPixelX(), 1.0);
}

TEST_F(UiListViewTest, AHandlerMayEmptyTheListOrUnloadTheWindow) {
  auto list = Make({});
  Fill(*list, 5);
  list->ItemClick.Connect([&] { list->ClearRows(); });
  Click(Native(*list), PlaceOf(Native(*list), 2));
  EXPECT_EQ(Count(Native(*list)), 0);
  EXPECT_FALSE(list->SelectedRow().has_value());
  Fill(*list, 5);
  list->KeyUp.Connect([&](std::int32_t) { form_.Unload(); });
  PostMessageA(Native(*list), WM_KEYUP, VK_F2, 0xC0000001);
  ui::TheInterface().toolkit->ProcessPendingEvents();
  EXPECT_FALSE(form_.IsLoaded());
}

TEST_F(UiListViewTest, TenThousandRowsThatAreEachSelectedAreShownInAFewFrames) {
  auto list = Make({.columnHeaders = false});
  const ULONGLONG start = GetTickCount64();
  for (int i = 0; i < 10'000; ++i) {
    const std::size_t row = list->AddRow("K" + std::to_string(i), "a profile");
    list->Select(row);
    list->EnsureVisible(row);
  }
  UpdateWindow(Native(*list));
  EXPECT_LT(GetTickCount64() - start, 300u);
  EXPECT_EQ(SendMessageA(Native(*list), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED), 9999);
}

}  // namespace
