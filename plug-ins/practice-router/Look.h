#pragma once

#include "HarbourlineLook.h"

namespace practice {

using harbourline::DpiOf;
using harbourline::kDarkRed;
using harbourline::kGroundColour;
using harbourline::kHelpColour;
using harbourline::kNavy;
using harbourline::kTitleColour;
using harbourline::Look;
using harbourline::SetFont;
using harbourline::SetFontOfChildren;

}  // namespace practice
