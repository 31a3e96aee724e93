#include "Look.h"

namespace practice {

namespace {

/// `size` in hundredths of a point.
HFONT MakeFont(int size, int weight, int dpi) {
  return CreateFontW(-MulDiv(size, dpi, 7200), 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                     OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                     L"Comic Sans MS");
}

BOOL CALLBACK SetFontOfChild(HWND child, LPARAM font) {
  SetFont(child, reinterpret_cast<HFONT>(font));
  return TRUE;
}

}  // namespace

void SetFont(HWND control, HFONT font) {
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void SetFontOfChildren(HWND window, HFONT font) {
  EnumChildWindows(window, SetFontOfChild, reinterpret_cast<LPARAM>(font));
}

int DpiOf(HWND window) {
  // Windows 10 knows it for each window; before that the screen has one resolution.
  using GetDpiForWindow = UINT(WINAPI*)(HWND);
  const auto function = reinterpret_cast<GetDpiForWindow>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  if (const UINT dpi = function ? function(window) : 0) return static_cast<int>(dpi);
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : 96;
}

Look::Look(int dpi)
    : dpi_(dpi),
      text_(MakeFont(975, FW_NORMAL, dpi)),
      heading_(MakeFont(975, FW_BOLD, dpi)),
      title_(MakeFont(2025, FW_NORMAL, dpi)),
      ground_(CreateSolidBrush(kGroundColour)) {}

Look::~Look() {
  DeleteObject(text_);
  DeleteObject(heading_);
  DeleteObject(title_);
  DeleteObject(ground_);
}

SIZE Look::Measure(HFONT font, const std::wstring& text) const {
  const HDC screen = GetDC(nullptr);
  const HGDIOBJ before = SelectObject(screen, font);
  SIZE size = {};
  GetTextExtentPoint32W(screen, text.c_str(), static_cast<int>(text.size()), &size);
  SelectObject(screen, before);
  ReleaseDC(nullptr, screen);
  return size;
}

}  // namespace practice
