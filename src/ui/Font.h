#pragma once

#include <string>

namespace ui {

struct Font {
  std::string name = "Comic Sans MS";
  double points = 9.75;
  bool bold = false;

  bool operator==(const Font&) const = default;
};

inline Font BodyFont() {
  return Font{};
}
inline Font TitleFont() {
  return Font{"Comic Sans MS", 20.25, false};
}

}  // namespace ui
