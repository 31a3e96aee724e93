#include "ui/win32/Win32Screen.h"

#include "ui/win32/NativeBitmap.h"
#include "ui/win32/OwnWindow.h"

namespace ui::win32 {

Win32Screen::~Win32Screen() {
  for (const auto& [key, icon] : icons_) {
    if (icon) DestroyIcon(icon);
  }
}

std::uintptr_t Win32Screen::SmallIcon(const PictureRef& picture) {
  return reinterpret_cast<std::uintptr_t>(Icon(picture, GetSystemMetrics(SM_CXSMICON)));
}

Pixels Win32Screen::PixelsOf(const PictureRef& picture) const {
  return picture ? ReadPixels(*picture) : Pixels{};
}

std::vector<std::byte> Win32Screen::Resource(const std::string& name) const {
  const auto bytes = std::as_bytes(ResourceBytes(name));
  return {bytes.begin(), bytes.end()};
}

HICON Win32Screen::LargeIcon(const PictureRef& picture) {
  return Icon(picture, GetSystemMetrics(SM_CXICON));
}

HICON Win32Screen::Icon(const PictureRef& picture, int side) {
  if (!picture || picture->resource.empty() || side <= 0) return nullptr;
  const auto [place, added] = icons_.try_emplace({picture->resource, side}, nullptr);
  if (added) {
    place->second = static_cast<HICON>(
        LoadImageA(ThisModule(), picture->resource.c_str(), IMAGE_ICON, side, side, LR_DEFAULTCOLOR));
  }
  return place->second;
}

}  // namespace ui::win32
