#pragma once

#include <windows.h>

#include <array>
#include <string_view>

namespace ui::win32 {

/// Widths of texts in one font, from the widths of its characters, so that a long list can be measured in one
/// go.
class CharacterWidths {
 public:
  explicit CharacterWidths(HFONT font);

  /// In pixels, as the text is drawn.
  int Of(std::string_view text) const;

 private:
  HFONT font_;
  std::array<int, 256> widths_{};
  /// In a code page of more than one byte a character, only these add up.
  bool onlyAscii_;
};

}  // namespace ui::win32
