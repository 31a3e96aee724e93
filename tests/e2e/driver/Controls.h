#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "driver/Desktop.h"

/// A program's controls by their settled names, and what stands inside lists and trees. All of it works from
/// another process of the same width.
namespace desktop {

/// The settled name that the window tells in its property HarbourlineControl; empty for none.
std::string ControlName(HWND window);

/// The window of that name in the program, hidden ones too: a name, or names from the outside in with "."
/// between them ("ctlProfile.txtName"), each somewhere inside the one before. Of several
/// with that name, one that is visible. Null when there is none.
HWND FindControl(std::string_view program, std::string_view path);

/// A row of a list view or a list box, a node of a tree view, or a button of a tool bar.
struct Item {
  std::string text;
  /// In pixels of the screen; empty when it isn't in view.
  RECT place{};
};

/// The rows, nodes or buttons of the control, from the top. A tool bar's buttons have no text but their
/// number, from 1.
std::vector<Item> ItemsOf(HWND control);

}  // namespace desktop
