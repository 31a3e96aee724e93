#pragma once

#include <cstdint>

namespace ui {

/// A length on screen: 1440 to the inch, whatever the screen's resolution.
using Twips = std::int32_t;

/// Distance between controls and from the edges, on every page.
inline constexpr Twips kMargin = 100;

struct Bounds {
  Twips left = 0;
  Twips top = 0;
  Twips width = 0;
  Twips height = 0;

  bool operator==(const Bounds&) const = default;
};

}  // namespace ui
