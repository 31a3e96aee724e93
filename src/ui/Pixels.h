#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ui {

/// The colours of a picture's pixels, row by row from the top; none for a picture that can't be read.
struct Pixels {
  std::int32_t width = 0;
  std::int32_t height = 0;
  /// 0x00RRGGBB.
  std::vector<std::uint32_t> colors;

  std::uint32_t At(std::int32_t x, std::int32_t y) const {
    return colors[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
};

/// Pixels side by side in one row: from `left` up to `right`, which is the first beyond it.
struct PixelRun {
  std::int32_t left = 0;
  std::int32_t right = 0;
  std::int32_t row = 0;

  bool operator==(const PixelRun&) const = default;
};

}  // namespace ui
