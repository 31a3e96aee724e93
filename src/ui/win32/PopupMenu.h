#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ui {
class Menu;
}

namespace ui::win32 {

/// A native pop-up menu with the visible entries below a menu. The entries may change and go while it is up:
/// it keeps what they were called, not where they lie.
class PopupMenu {
 public:
  /// Fails with base::Error when Windows refuses.
  explicit PopupMenu(const Menu& menu);
  ~PopupMenu();
  PopupMenu(const PopupMenu&) = delete;
  PopupMenu& operator=(const PopupMenu&) = delete;

  /// Waits at the mouse until the menu is closed. The number of the chosen command, counted from 1; 0 for
  /// none.
  int Show(HWND owner, POINT place) const;
  /// The entry below `menu` that the command stands for: the one of the same name and still the caption that
  /// the user has seen; null when there is none any more.
  Menu* Find(Menu& menu, int command) const;

 private:
  struct Command {
    std::string name;
    std::string caption;
  };

  HMENU Build(const Menu& menu);
  void Append(HMENU native, const Menu& entry);

  std::vector<Command> commands_;
  HMENU native_;
};

}  // namespace ui::win32
