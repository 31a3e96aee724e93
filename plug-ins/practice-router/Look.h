#pragma once

#include <windows.h>

#include <string>

namespace practice {

inline constexpr COLORREF kTitleColour = RGB(51, 153, 102);
inline constexpr COLORREF kHelpColour = RGB(0, 128, 128);
inline constexpr COLORREF kDarkRed = RGB(128, 0, 0);
inline constexpr COLORREF kNavy = RGB(0, 0, 128);
inline constexpr COLORREF kGroundColour = RGB(253, 235, 200);

/// Dots per inch of the screen that shows the window.
int DpiOf(HWND window);

void SetFont(HWND control, HFONT font);
void SetFontOfChildren(HWND window, HFONT font);

/// Fonts, ground and lengths for one resolution.
class Look {
 public:
  explicit Look(int dpi);
  ~Look();
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;

  HFONT Text() const { return text_; }
  HFONT Heading() const { return heading_; }
  HFONT Title() const { return title_; }
  HBRUSH Ground() const { return ground_; }

  /// Pixels for a length in pixels at 96 dpi.
  int Px(int length) const { return MulDiv(length, dpi_, 96); }
  SIZE Measure(HFONT font, const std::wstring& text) const;
  int LineHeight() const { return Measure(text_, L"Wg").cy; }

 private:
  int dpi_;
  HFONT text_;
  HFONT heading_;
  HFONT title_;
  HBRUSH ground_;
};

}  // namespace practice
