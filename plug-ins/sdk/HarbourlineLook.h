#pragma once

// The look of Harbourline, for the windows of a plug-in that wants to fit in. Not needed by a plug-in without
// windows. Link with gdi32 and user32.

#include <windows.h>

#include <string>

namespace harbourline {

inline constexpr COLORREF kTitleColour = RGB(51, 153, 102);
inline constexpr COLORREF kHelpColour = RGB(0, 128, 128);
inline constexpr COLORREF kDarkRed = RGB(128, 0, 0);
inline constexpr COLORREF kNavy = RGB(0, 0, 128);
inline constexpr COLORREF kGroundColour = RGB(253, 235, 200);

/// WM_DPICHANGED, which is newer than Windows 7; its wParam's low word is the new resolution.
inline constexpr UINT kDpiChanged = 0x02E0;

/// Dots per inch of the screen that shows the window.
inline int DpiOf(HWND window) {
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

inline void SetFont(HWND control, HFONT font) {
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

// A lambda won't do: on 32-bit Windows not every compiler gives it the calling convention of a callback.
inline BOOL CALLBACK SetFontOfChild(HWND child, LPARAM font) {
  SetFont(child, reinterpret_cast<HFONT>(font));
  return TRUE;
}

inline void SetFontOfChildren(HWND window, HFONT font) {
  EnumChildWindows(window, &SetFontOfChild, reinterpret_cast<LPARAM>(font));
}

/// Fonts, ground and lengths for one resolution.
class Look {
 public:
  explicit Look(int dpi)
      : dpi_(dpi),
        text_(MakeFont(975, FW_NORMAL)),
        heading_(MakeFont(975, FW_BOLD)),
        title_(MakeFont(2025, FW_NORMAL)),
        ground_(CreateSolidBrush(kGroundColour)) {}
  ~Look() {
    DeleteObject(text_);
    DeleteObject(heading_);
    DeleteObject(title_);
    DeleteObject(ground_);
  }
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;

  HFONT Text() const { return text_; }
  HFONT Heading() const { return heading_; }
  HFONT Title() const { return title_; }
  HBRUSH Ground() const { return ground_; }

  /// Pixels for a length in pixels at 96 dpi.
  int Px(int length) const { return MulDiv(length, dpi_, 96); }
  SIZE Measure(HFONT font, const std::wstring& text) const {
    const HDC screen = GetDC(nullptr);
    const HGDIOBJ before = SelectObject(screen, font);
    SIZE size = {};
    GetTextExtentPoint32W(screen, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
    return size;
  }
  /// The height of a text that is broken into lines of that width.
  int HeightOf(HFONT font, const std::wstring& text, int width) const {
    const HDC screen = GetDC(nullptr);
    const HGDIOBJ before = SelectObject(screen, font);
    RECT place = {0, 0, width, 0};
    DrawTextW(screen, text.c_str(), static_cast<int>(text.size()), &place,
              DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
    return place.bottom;
  }
  int LineHeight() const { return Measure(text_, L"Wg").cy; }

 private:
  /// `size` in hundredths of a point.
  HFONT MakeFont(int size, int weight) const {
    return CreateFontW(-MulDiv(size, dpi_, 7200), 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                       DEFAULT_PITCH | FF_DONTCARE, L"Comic Sans MS");
  }

  int dpi_;
  HFONT text_;
  HFONT heading_;
  HFONT title_;
  HBRUSH ground_;
};

}  // namespace harbourline
