#include "support/PracticeRouterTest.h"

#include <commctrl.h>

namespace {

std::vector<HWND> Children(HWND window, const wchar_t* className) {
  std::vector<HWND> found;
  for (HWND child = nullptr; (child = FindWindowExW(window, child, className, nullptr)) != nullptr;) {
    found.push_back(child);
  }
  return found;
}

std::wstring TextOf(HWND window) {
  wchar_t text[256] = L"";
  SendMessageW(window, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(text));
  return text;
}

}  // namespace

HWND PracticeRouterTest::Button(HWND window, const wchar_t* text) {
  return FindWindowExW(window, nullptr, L"Button", text);
}

std::vector<std::wstring> PracticeRouterTest::Rows(int list, int columns) {
  const std::vector<HWND> lists = Children(Window(), WC_LISTVIEWW);
  if (lists.size() != 2) return {L"no lists"};
  const HWND view = lists[static_cast<std::size_t>(list)];
  std::vector<std::wstring> rows;
  const auto count = SendMessageW(view, LVM_GETITEMCOUNT, 0, 0);
  for (LRESULT row = 0; row < count; ++row) {
    std::wstring cells;
    for (int column = 0; column < columns; ++column) {
      wchar_t text[256] = L"";
      LVITEMW item = {};
      item.iSubItem = column;
      item.pszText = text;
      item.cchTextMax = 256;
      SendMessageW(view, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
      cells += (column > 0 ? L" | " : L"") + std::wstring(text);
    }
    rows.push_back(cells);
  }
  return rows;
}

std::wstring PracticeRouterTest::Fact(const wchar_t* label) {
  const std::vector<HWND> labels = Children(Window(), L"Static");
  for (std::size_t i = 0; i + 1 < labels.size(); ++i) {
    if (TextOf(labels[i]) == label) return TextOf(labels[i + 1]);
  }
  return L"no such label";
}
