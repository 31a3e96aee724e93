#pragma once

#include <string_view>

/// Keys and clicks that reach the programs as the user's own do. Each returns when the system has taken the
/// input; what a program makes of it comes later.
namespace desktop {

/// Types letters and digits as they stand, and keys by name in braces: {ENTER} {ESC} {TAB} {SPACE} {UP}
/// {DOWN} {LEFT} {RIGHT} {HOME} {END} {ALT} {F1} {F2} {F4}. False for a name that isn't one of these, or when
/// the system refuses.
bool Type(std::string_view keys);

enum class MouseButton { kLeft, kRight };

/// Moves the mouse to this pixel of the screen, and presses and releases the button there.
bool Click(int x, int y, MouseButton button);

}  // namespace desktop
