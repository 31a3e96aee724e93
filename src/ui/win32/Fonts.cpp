#include "ui/win32/Fonts.h"

#include <cmath>

namespace ui::win32 {
namespace {

constexpr char kComicSans[] = "Comic Sans MS";
constexpr char kLooksAlike[] = "Comic Neue";

int CALLBACK OnFamily(const LOGFONTA*, const TEXTMETRICA*, DWORD, LPARAM found) {
  *reinterpret_cast<bool*>(found) = true;
  return 0;
}

bool IsInstalled(const std::string& name) {
  if (name.size() >= LF_FACESIZE) return false;
  LOGFONTA wanted{};
  wanted.lfCharSet = DEFAULT_CHARSET;
  name.copy(wanted.lfFaceName, LF_FACESIZE - 1);
  bool found = false;
  const HDC screen = GetDC(nullptr);
  EnumFontFamiliesExA(screen, &wanted, OnFamily, reinterpret_cast<LPARAM>(&found), 0);
  ReleaseDC(nullptr, screen);
  return found;
}

std::string DialogFontName() {
  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = sizeof metrics;
  if (!SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) return "MS Shell Dlg";
  return metrics.lfMessageFont.lfFaceName;
}

}  // namespace

Fonts::~Fonts() {
  for (const Made& made : made_) DeleteObject(made.handle);
}

HFONT Fonts::Get(const Font& font, Scale scale) {
  for (const Made& made : made_) {
    if (made.font == font && made.scale == scale) return made.handle;
  }
  LOGFONTA wanted{};
  wanted.lfHeight = -static_cast<LONG>(std::lround(font.points * scale.DotsPerInch() / 72.0));
  wanted.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  wanted.lfCharSet = DEFAULT_CHARSET;
  wanted.lfQuality = DEFAULT_QUALITY;
  InstalledName(font.name).copy(wanted.lfFaceName, LF_FACESIZE - 1);
  made_.push_back({font, scale, CreateFontIndirectA(&wanted)});
  return made_.back().handle;
}

std::string Fonts::InstalledName(const std::string& name) {
  if (IsInstalled(name)) return name;
  if (name == kComicSans && IsInstalled(kLooksAlike)) return kLooksAlike;
  return DialogFontName();
}

Brushes::~Brushes() {
  for (const auto& [color, brush] : made_) DeleteObject(brush);
}

HBRUSH Brushes::Get(COLORREF color) {
  HBRUSH& brush = made_[color];
  if (!brush) brush = CreateSolidBrush(color);
  return brush;
}

}  // namespace ui::win32
