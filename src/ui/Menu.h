#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "ui/Control.h"

namespace ui {

/// A menu entry: a command, a separator ("-" as caption) or a submenu, when entries stand below it.
/// A menu is built anew from its entries each time it is shown, so no peer mirrors it. An entry of a
/// MenuArray may be unloaded while its own Click runs.
class Menu : public Control, public std::enable_shared_from_this<Menu> {
 public:
  Menu(Control* parent, std::string name, std::string caption);

  const std::string& Caption() const { return caption_; }
  void Caption(std::string caption) { caption_ = std::move(caption); }
  bool IsSeparator() const { return caption_ == "-"; }
  bool Checked() const { return checked_; }
  void Checked(bool checked) { checked_ = checked; }

  base::Event<> Click;

  /// Shows the entries below this one at the mouse, waits until the user chose or left, and raises the Click
  /// of the chosen entry when the menu is closed. An entry that has gone meanwhile isn't clicked.
  void ShowAsPopup();
  void UserClick();

 private:
  friend class MenuArray;

  std::string caption_;
  bool checked_ = false;
};

/// Entries of one name that differ by an index; index 0 is there from the start and is the pattern of the
/// others.
class MenuArray {
 public:
  MenuArray(Menu* parent, std::string name, std::string caption);

  /// Adds the entry behind all others of the menu: its caption, tick and switches are the pattern's. A taken
  /// index and one below 0 are failures.
  Menu& Load(std::int32_t index);
  /// The entry leaves the menu at once. An unknown index and the index 0 are failures.
  void Unload(std::int32_t index);
  /// An unknown index is a failure.
  Menu& operator[](std::int32_t index);
  std::int32_t UpperBound() const { return entries_.rbegin()->first; }

  /// With the index of the entry.
  base::Event<std::int32_t> Click;

 private:
  Menu& Add(std::int32_t index, std::string caption);

  Menu* parent_;
  std::string name_;
  std::map<std::int32_t, std::shared_ptr<Menu>> entries_;
};

}  // namespace ui
