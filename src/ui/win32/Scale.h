#pragma once

#include <windows.h>

#include "ui/Geometry.h"

namespace ui::win32 {

/// How long a twip is on a screen of so many dots per inch.
class Scale {
 public:
  explicit constexpr Scale(int dotsPerInch) : dotsPerInch_(dotsPerInch) {}

  /// The scale of the monitor on which the window stands mostly.
  static Scale Of(HWND window);
  /// The scale of the screen as a whole, which is that of its first monitor when the user logged on.
  static Scale OfScreen();

  constexpr int DotsPerInch() const { return dotsPerInch_; }
  /// The nearest pixel; edges that coincide in twips coincide in pixels.
  int Pixels(Twips twips) const { return MulDiv(twips, dotsPerInch_, 1440); }
  Twips ToTwips(int pixels) const { return MulDiv(pixels, 1440, dotsPerInch_); }
  RECT Pixels(const Bounds& bounds) const {
    return {Pixels(bounds.left), Pixels(bounds.top), Pixels(bounds.left + bounds.width),
            Pixels(bounds.top + bounds.height)};
  }

  bool operator==(const Scale&) const = default;

 private:
  int dotsPerInch_;
};

}  // namespace ui::win32
