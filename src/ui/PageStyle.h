#pragma once

#include "ui/Color.h"
#include "ui/Geometry.h"

/// What the pages have in common besides kMargin.
namespace ui {

/// Of a page's title, which is written in TitleFont.
inline constexpr Twips kTitleHeight = 600;
/// Of one line of text, a field or a check box.
inline constexpr Twips kLineHeight = 330;
/// A label beside a field stands so much lower than the field, which puts both texts on one line.
inline constexpr Twips kLabelDrop = 45;
inline constexpr Twips kButtonHeight = 420;
/// Of a button with a large picture.
inline constexpr Twips kPictureButtonHeight = 700;

/// Text of values that the user chooses or only reads.
inline constexpr Color kValueColor = Rgb(0, 0, 192);

/// The ground of a list that stands on a page of that colour.
constexpr Color ListBackground(Color page) {
  return page - Rgb(10, 10, 10);
}

}  // namespace ui
