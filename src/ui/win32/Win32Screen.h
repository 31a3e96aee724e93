#pragma once

#include <windows.h>

#include <map>
#include <string>

#include "ui/Geometry.h"
#include "ui/Toolkit.h"

namespace ui::win32 {

/// Resolution of a screen in twips per pixel, as a 32-bit float.
constexpr float TwipsPerPixel(int dotsPerInch) {
  return 1440.0f / static_cast<float>(dotsPerInch);
}

class Win32Screen : public Screen {
 public:
  Win32Screen();
  ~Win32Screen() override;

  float TwipsPerPixelX() const override { return TwipsPerPixel(dotsX_); }
  float TwipsPerPixelY() const override { return TwipsPerPixel(dotsY_); }
  /// A picture that isn't among the program's own icons has none.
  std::uintptr_t SmallIcon(const PictureRef& picture) override;
  HICON LargeIcon(const PictureRef& picture);

  int DotsPerInch() const { return dotsY_; }
  /// The nearest pixel; edges that coincide in twips coincide in pixels.
  int PixelsX(Twips twips) const { return MulDiv(twips, dotsX_, 1440); }
  int PixelsY(Twips twips) const { return MulDiv(twips, dotsY_, 1440); }
  Twips TwipsX(int pixels) const { return MulDiv(pixels, 1440, dotsX_); }
  Twips TwipsY(int pixels) const { return MulDiv(pixels, 1440, dotsY_); }
  RECT Pixels(const Bounds& bounds) const;

 private:
  using Icons = std::map<std::string, HICON, std::less<>>;
  static HICON Load(Icons& icons, const PictureRef& picture, int width, int height);

  int dotsX_;
  int dotsY_;
  Icons small_;
  Icons large_;
};

}  // namespace ui::win32
