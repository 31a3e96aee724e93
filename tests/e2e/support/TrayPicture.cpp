#include "support/TrayPicture.h"

namespace {

constexpr COLORREF kLampOff = RGB(103, 116, 156);
constexpr COLORREF kLampLit = RGB(255, 214, 10);
constexpr COLORREF kBoxFull = RGB(63, 221, 114);
constexpr COLORREF kRedGround = RGB(214, 32, 32);
constexpr COLORREF kCross = RGB(176, 0, 32);

/// A picture in memory that a device context draws on.
class Canvas {
 public:
  Canvas() : screen_(GetDC(nullptr)), device_(CreateCompatibleDC(screen_)) {
    bitmap_ = CreateCompatibleBitmap(screen_, TrayPicture::kSize, TrayPicture::kSize);
    before_ = SelectObject(device_, bitmap_);
  }
  ~Canvas() {
    SelectObject(device_, before_);
    DeleteObject(bitmap_);
    DeleteDC(device_);
    ReleaseDC(nullptr, screen_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC Screen() const { return screen_; }
  HDC Device() const { return device_; }
  template <typename Pixels>
  void Read(Pixels& pixels) const {
    for (int i = 0; i < TrayPicture::kSize * TrayPicture::kSize; ++i) {
      pixels[static_cast<std::size_t>(i)] = GetPixel(device_, i % TrayPicture::kSize, i / TrayPicture::kSize);
    }
  }

 private:
  HDC screen_;
  HDC device_;
  HBITMAP bitmap_;
  HGDIOBJ before_;
};

void FillWithGround(const Canvas& canvas) {
  const RECT all{0, 0, TrayPicture::kSize, TrayPicture::kSize};
  FillRect(canvas.Device(), &all, GetSysColorBrush(COLOR_WINDOW));
}

/// Wine's notification area draws an icon over the one before, so where the new one is transparent, the old
/// one shows. This wipes the place and has the icon that is there now drawn anew.
void DrawOnCleanGround(HWND area, HWND icon) {
  constexpr ULONGLONG kPatience = 500;
  RedrawWindow(area, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  const ULONGLONG end = GetTickCount64() + kPatience;
  while ((GetUpdateRect(area, nullptr, FALSE) || GetUpdateRect(icon, nullptr, FALSE)) &&
         GetTickCount64() < end)
    Sleep(1);
  // What is drawn goes to the screen when the area's program waits for its next message.
  SendMessageA(area, WM_NULL, 0, 0);
}

}  // namespace

std::optional<TrayPicture> TrayPicture::Read() {
  const HWND area = FindWindowA(nullptr, "Wine System Tray");
  const HWND icon = area ? GetWindow(area, GW_CHILD) : nullptr;
  if (!icon) return std::nullopt;
  DrawOnCleanGround(area, icon);
  RECT place;
  GetWindowRect(icon, &place);
  const Canvas canvas;
  BitBlt(canvas.Device(), 0, 0, kSize, kSize, canvas.Screen(), (place.left + place.right - kSize) / 2,
         (place.top + place.bottom - kSize) / 2, SRCCOPY);
  TrayPicture picture;
  canvas.Read(picture.pixels_);
  return picture;
}

TrayPicture TrayPicture::FromResource(const std::string& executable, const std::string& resource) {
  const Canvas canvas;
  FillWithGround(canvas);
  const HMODULE module = LoadLibraryExA(executable.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  const auto icon =
      static_cast<HICON>(LoadImageA(module, resource.c_str(), IMAGE_ICON, kSize, kSize, LR_DEFAULTCOLOR));
  DrawIconEx(canvas.Device(), 0, 0, icon, kSize, kSize, 0, nullptr, DI_NORMAL);
  DestroyIcon(icon);
  FreeLibrary(module);
  TrayPicture picture;
  canvas.Read(picture.pixels_);
  return picture;
}

TrayPicture TrayPicture::Blank() {
  const Canvas canvas;
  FillWithGround(canvas);
  TrayPicture picture;
  canvas.Read(picture.pixels_);
  return picture;
}

COLORREF TrayPicture::At(int x, int y) const {
  return pixels_[static_cast<std::size_t>(y) * kSize + static_cast<std::size_t>(x)];
}

int TrayPicture::Position() const {
  const bool red = At(3, 0) == kRedGround;
  if (At(11, 11) == kCross) return red ? 20 : 9;
  const auto isLamp = [](COLORREF color) { return color == kLampOff || color == kLampLit; };
  const COLORREF low = At(4, 9);
  const COLORREF high = At(10, 1);
  if (isLamp(low) && isLamp(high)) {
    return 1 + (low == kLampLit ? 1 : 0) + (high == kLampLit ? 2 : 0) + (red ? 4 : 0);
  }
  int full = 0;
  bool mayBeFull = true;
  for (const int y : {13, 10, 7, 4}) {
    const COLORREF box = At(8, y);
    if (box != kLampOff && (box != kBoxFull || !mayBeFull)) return 0;
    mayBeFull = box == kBoxFull;
    if (mayBeFull) ++full;
  }
  return 10 + full + (red ? 5 : 0);
}

std::vector<int> WatchPositions(ULONGLONG milliseconds) {
  std::vector<int> positions;
  const ULONGLONG end = GetTickCount64() + milliseconds;
  while (GetTickCount64() < end) {
    const auto picture = TrayPicture::Read();
    const int position = picture ? picture->Position() : 0;
    if (positions.empty() || positions.back() != position) positions.push_back(position);
    Sleep(10);
  }
  return positions;
}
