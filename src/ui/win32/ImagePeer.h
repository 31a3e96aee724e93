#pragma once

#include "ui/win32/ChildWindow.h"
#include "ui/win32/NativeBitmap.h"

namespace ui {
class Image;
}

namespace ui::win32 {

/// A picture in the middle of its control, as large as fits with its proportions kept.
class ImagePeer : public ChildPeer<> {
 public:
  ImagePeer(Image& image, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Redraw();
  void Paint();
  void DrawPictureIcon(HDC context, const RECT& inner) const;
  /// Leaves the picture's part out of what is still to be drawn.
  void DrawBitmap(HDC context, const RECT& inner);

  Image& image_;
  /// Made when it is first drawn in its size.
  NativeBitmap bitmap_;
  bool bitmapStale_ = true;
};

}  // namespace ui::win32
