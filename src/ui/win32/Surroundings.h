#pragma once

#include <windows.h>

#include <optional>

#include "ui/win32/Fonts.h"
#include "ui/win32/SessionEnd.h"
#include "ui/win32/UtilityWindow.h"
#include "ui/win32/Win32Screen.h"

namespace ui::win32 {

/// What the peers of one interface share.
struct Surroundings {
  explicit Surroundings(const std::function<bool()>& onSessionEnd) : sessionEnd(onSessionEnd) {}

  Win32Screen screen;
  Fonts fonts;
  Brushes brushes;
  SessionEnd sessionEnd;
  UtilityWindow utility{sessionEnd};
  /// Where the next pop-up menu opens, on the screen; at the mouse while there is none.
  std::optional<POINT> menuPlace;
  /// Sent to all top-level windows when the shell has made its task bar anew.
  const UINT taskBarCreated = RegisterWindowMessageA("TaskbarCreated");
};

}  // namespace ui::win32
