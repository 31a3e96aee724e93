#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// The windows of all programs as a user sees them. Text is in the machine's 8-bit code page.
namespace desktop {

struct Window {
  HWND handle = nullptr;
  /// File name of the executable that the window belongs to.
  std::string program;
  std::string className;
  std::string text;
  /// In pixels of the screen.
  RECT place{};
};

/// The visible top-level windows, the frontmost first.
std::vector<Window> TopLevelWindows();

/// The visible windows inside `parent`, those inside them included.
std::vector<Window> Inside(HWND parent);

/// File name of the executable that the window belongs to; empty when the system doesn't tell.
std::string ProgramOf(HWND window);

/// What a user sees of the window.
Window Describe(HWND window);

/// The window's title or a control's text, asked of the window itself: what the system knows of other
/// programs' controls isn't enough. Empty when the window doesn't answer within two seconds.
std::string TextOf(HWND window);

}  // namespace desktop
