#pragma once

#include "ui/Toolkit.h"

namespace ui::win32 {

struct Surroundings;

/// Message boxes, pop-up menus and the file dialog of Windows.
class Win32Dialogs : public Dialogs {
 public:
  explicit Win32Dialogs(Surroundings& surroundings) : surroundings_(surroundings) {}

  /// While the box is up, the user can't reach the program's windows.
  MessageResult ShowMessage(const Message& message) override;
  /// The owner must stand on a loaded window. While a menu is up no second one comes.
  Menu* ShowPopupMenu(Menu& menu, Control& owner) override;
  bool ShowFileDialog(FileDialog& dialog) override;

 private:
  Surroundings& surroundings_;
};

}  // namespace ui::win32
