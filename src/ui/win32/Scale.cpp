#include "ui/win32/Scale.h"

namespace ui::win32 {
Scale Scale::Of(HWND window) {
  // Older systems lack it: they have one scale for all monitors.
  using GetDpi = UINT(WINAPI*)(HWND);
  static const auto getDpi = reinterpret_cast<GetDpi>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("user32.dll"), "GetDpiForWindow")));
  const UINT dots = getDpi ? getDpi(window) : 0;
  return dots != 0 ? Scale(static_cast<int>(dots)) : OfScreen();
}

Scale Scale::OfScreen() {
  const HDC screen = GetDC(nullptr);
  const int dots = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return Scale(dots);
}

}  // namespace ui::win32
