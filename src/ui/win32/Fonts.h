#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "ui/Color.h"
#include "ui/Font.h"
#include "ui/win32/Scale.h"

namespace ui::win32 {

/// Native fonts, each made once and kept.
class Fonts {
 public:
  Fonts() = default;
  ~Fonts();
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;

  HFONT Get(const Font& font, Scale scale);

  /// The name itself where a font of that name is installed, else one that looks alike, else the one of the
  /// machine's dialogs.
  static std::string InstalledName(const std::string& name);

 private:
  struct Made {
    Font font;
    Scale scale;
    HFONT handle;
  };

  std::vector<Made> made_;
};

/// Brushes of one colour, each made once and kept.
class Brushes {
 public:
  Brushes() = default;
  ~Brushes();
  Brushes(const Brushes&) = delete;
  Brushes& operator=(const Brushes&) = delete;

  HBRUSH Get(COLORREF color);

 private:
  std::map<COLORREF, HBRUSH> made_;
};

/// The colour itself, or the machine's own colour `systemColor` for kDefaultColor.
inline COLORREF NativeColor(Color color, int systemColor) {
  return color == kDefaultColor ? GetSysColor(systemColor) : static_cast<COLORREF>(color) & 0xFFFFFF;
}

}  // namespace ui::win32
