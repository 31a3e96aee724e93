#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "support/Program.h"

/// The main window of the program as a user works in it: with the mouse and the keyboard.
class MainWindow {
 public:
  explicit MainWindow(const Program& program) : program_(program) {}

  /// Opens it by "Setup..." in the icon's menu.
  bool Open() const;
  bool IsVisible() const;
  /// The visible control of that name or path, after a while at most; null without one.
  static HWND Control(const std::string& path);
  static bool Shows(const std::string& path) { return Control(path) != nullptr; }
  static std::string TextOf(const std::string& path);
  /// Clicks the middle of the control, or the item of that text or number in it.
  bool Click(const std::string& path) const;
  bool ClickItem(const std::string& path, const std::string& text) const;
  /// Clicks the node of the tree until the control of its page is visible.
  bool OpenPage(const std::string& node, const std::string& control) const;
  /// Clicks the box, selects what it holds, and types the text in its place; letters come out small.
  bool Fill(const std::string& path, const std::string& text) const;
  /// Types when the window, or another one of the program, has the keyboard and keeps it.
  bool Type(const std::string& keys) const;
  /// Chooses the entry of a combo box; false when there is none of that text.
  static bool Choose(const std::string& path, const std::string& text);
  static bool IsChecked(const std::string& path);
  static bool IsEnabled(const std::string& path) { return IsWindowEnabled(Control(path)) != FALSE; }
  /// The rows of a list, the nodes of a tree.
  static std::vector<std::string> Texts(const std::string& path);

 private:
  bool HasKeyboard() const;

  const Program& program_;
};
