#pragma once

#include <cstdint>
#include <string>

#include "platform/WindowList.h"
#include "ui/ListBox.h"

/// A program is known by the class and the title of a top-level window; an empty one of the two doesn't
/// matter.
namespace modWhatsRunning {

/// Whether a window with that pair exists, compared by the machine as whole texts. Both empty is never.
bool IsProgramRunning(const std::string& sWindowClass, const std::string& sWindowTitle);

std::string GetWindowClassName(platform::WindowHandle window);

/// One window of the machine's list: adds "title::class" to the list, windows without a title left out.
/// Always 1.
std::int32_t EnumWindowCallback(platform::WindowHandle window, ui::ListBox& list);

/// Fills the control with all windows that have a title, hidden ones too.
void EnumAvailableWindows(ui::ListBox& list);

/// What stands before and behind the first "::". Without one the title is empty, and the class is the entry
/// less its first character.
std::string WindowTitleFromEntry(const std::string& sEntry);
std::string WindowClassFromEntry(const std::string& sEntry);

}  // namespace modWhatsRunning
