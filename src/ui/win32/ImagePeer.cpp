#include "ui/win32/ImagePeer.h"

#include <algorithm>

#include "ui/Image.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {

ImagePeer::ImagePeer(Image& image, Surroundings& surroundings)
    : ChildPeer(image, surroundings), image_(image) {
  // Without SS_NOTIFY the mouse would go through it.
  CreateNative("STATIC", SS_NOTIFY, 0, std::string());
}

void ImagePeer::Show(Aspect aspect) {
  if (aspect == Aspect::kValue) {
    Redraw();
  } else {
    ChildPeer::Show(aspect);
  }
}

void ImagePeer::Redraw() {
  bitmapStale_ = true;
  InvalidateRect(Window(), nullptr, FALSE);
}

LRESULT ImagePeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_ERASEBKGND:
      // Drawn together with the picture, so that nothing flickers.
      return 1;
    case WM_PAINT:
      Paint();
      return 0;
    case WM_SIZE:
      Redraw();
      return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
      image_.UserMouseDown();
      return 0;
    default:
      return PassOn(message, wParam, lParam);
  }
}

void ImagePeer::Paint() {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(Window(), &paint);
  RECT inner{};
  GetClientRect(Window(), &inner);
  const bool icon = image_.Picture() && IsIcon(*image_.Picture());
  if (image_.Picture() && !icon) DrawBitmap(context, inner);
  FillRect(context, &inner, Around().brushes.Get(Ground()));
  if (icon) DrawPictureIcon(context, inner);
  EndPaint(Window(), &paint);
}

void ImagePeer::DrawPictureIcon(HDC context, const RECT& inner) const {
  const int side = std::min(inner.right, inner.bottom);
  const HICON icon = Around().screen.Icon(image_.Picture(), side);
  DrawIconEx(context, (inner.right - side) / 2, (inner.bottom - side) / 2, icon, side, side, 0, nullptr,
             DI_NORMAL);
}

void ImagePeer::DrawBitmap(HDC context, const RECT& inner) {
  if (bitmapStale_) bitmap_ = NativeBitmap(*image_.Picture(), {inner.right, inner.bottom});
  bitmapStale_ = false;
  if (!bitmap_.Handle()) return;
  const SIZE size = bitmap_.Size();
  const int left = (inner.right - size.cx) / 2;
  const int top = (inner.bottom - size.cy) / 2;
  const HDC memory = CreateCompatibleDC(context);
  const HGDIOBJ before = SelectObject(memory, bitmap_.Handle());
  BitBlt(context, left, top, size.cx, size.cy, memory, 0, 0, SRCCOPY);
  SelectObject(memory, before);
  DeleteDC(memory);
  ExcludeClipRect(context, left, top, left + size.cx, top + size.cy);
}

}  // namespace ui::win32
