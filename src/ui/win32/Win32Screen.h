#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ui/Toolkit.h"
#include "ui/win32/Scale.h"

namespace ui::win32 {

/// Resolution of a screen in twips per pixel, as a 32-bit float.
constexpr float TwipsPerPixel(int dotsPerInch) {
  return 1440.0f / static_cast<float>(dotsPerInch);
}

class Win32Screen : public Screen {
 public:
  ~Win32Screen() override;

  float TwipsPerPixelX() const override { return TwipsPerPixel(scale_.DotsPerInch()); }
  float TwipsPerPixelY() const override { return TwipsPerPixel(scale_.DotsPerInch()); }
  /// A picture that isn't among the program's own icons has none.
  std::uintptr_t SmallIcon(const PictureRef& picture) override;
  Pixels PixelsOf(const PictureRef& picture) const override;
  std::vector<std::byte> Resource(const std::string& name) const override;
  HICON LargeIcon(const PictureRef& picture);
  /// The picture in the form that is drawn for that many pixels each way, or the nearest scaled to it. Null
  /// for none; kept as long as the screen.
  HICON Icon(const PictureRef& picture, int side);

 private:
  Scale scale_ = Scale::OfScreen();
  /// By name and side.
  std::map<std::pair<std::string, int>, HICON> icons_;
};

}  // namespace ui::win32
