#include "ui/win32/CharacterWidths.h"

#include <algorithm>

namespace ui::win32 {
namespace {

/// The screen with a font in it.
class Canvas {
 public:
  explicit Canvas(HFONT font) : context_(GetDC(nullptr)), before_(SelectObject(context_, font)) {}
  ~Canvas() {
    SelectObject(context_, before_);
    ReleaseDC(nullptr, context_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC Context() const { return context_; }

 private:
  HDC context_;
  HGDIOBJ before_;
};

bool HasWideCharacters() {
  CPINFO info{};
  return GetCPInfo(CP_ACP, &info) && info.MaxCharSize > 1;
}

}  // namespace

CharacterWidths::CharacterWidths(HFONT font) : font_(font), onlyAscii_(HasWideCharacters()) {
  GetCharWidth32A(Canvas(font).Context(), 0, 255, widths_.data());
}

int CharacterWidths::Of(std::string_view text) const {
  if (onlyAscii_ &&
      std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) > 127; })) {
    SIZE size{};
    GetTextExtentPoint32A(Canvas(font_).Context(), text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
  }
  int width = 0;
  for (const char c : text) width += widths_[static_cast<unsigned char>(c)];
  return width;
}

}  // namespace ui::win32
