#pragma once

#include <cstdint>

namespace ui {

/// Red + green * 256 + blue * 65536, 8 bits each.
using Color = std::int32_t;

constexpr Color Rgb(std::int32_t red, std::int32_t green, std::int32_t blue) {
  return red + green * 256 + blue * 65536;
}

inline constexpr Color kBlack = 0;
inline constexpr Color kWhite = Rgb(255, 255, 255);
/// The machine's own colour for the place where it stands.
inline constexpr Color kDefaultColor = -1;

}  // namespace ui
