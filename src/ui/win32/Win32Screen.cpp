#include "ui/win32/Win32Screen.h"

#include "ui/win32/OwnWindow.h"

namespace ui::win32 {

Win32Screen::Win32Screen() {
  const HDC screen = GetDC(nullptr);
  dotsX_ = GetDeviceCaps(screen, LOGPIXELSX);
  dotsY_ = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
}

Win32Screen::~Win32Screen() {
  for (const Icons* icons : {&small_, &large_}) {
    for (const auto& [name, icon] : *icons) {
      if (icon) DestroyIcon(icon);
    }
  }
}

std::uintptr_t Win32Screen::SmallIcon(const PictureRef& picture) {
  return reinterpret_cast<std::uintptr_t>(
      Load(small_, picture, GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON)));
}

HICON Win32Screen::LargeIcon(const PictureRef& picture) {
  return Load(large_, picture, GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON));
}

RECT Win32Screen::Pixels(const Bounds& bounds) const {
  return {PixelsX(bounds.left), PixelsY(bounds.top), PixelsX(bounds.left + bounds.width),
          PixelsY(bounds.top + bounds.height)};
}

HICON Win32Screen::Load(Icons& icons, const PictureRef& picture, int width, int height) {
  if (!picture || picture->resource.empty()) return nullptr;
  const auto found = icons.find(picture->resource);
  if (found != icons.end()) return found->second;
  const auto icon = static_cast<HICON>(
      LoadImageA(ThisModule(), picture->resource.c_str(), IMAGE_ICON, width, height, LR_DEFAULTCOLOR));
  icons.emplace(picture->resource, icon);
  return icon;
}

}  // namespace ui::win32
