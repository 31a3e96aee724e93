#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/Control.h"

namespace ui {

/// A list of texts of which one or none is chosen. Each text carries a number. Click is raised when code sets
/// the index to another row, and when the user chooses a row, the same one again included. Rows count from 0;
/// -1 is none.
class Choice : public Control {
 public:
  void AddItem(std::string text) { AddItem(std::move(text), ListCount()); }
  /// In front of the row `index`; an index beyond the end is a failure.
  void AddItem(std::string text, std::int32_t index);
  void Clear();
  std::int32_t ListCount() const { return static_cast<std::int32_t>(items_.size()); }
  const std::string& List(std::int32_t index) const { return items_[Row(index)].text; }
  std::int32_t ItemData(std::int32_t index) const { return items_[Row(index)].data; }
  void ItemData(std::int32_t index, std::int32_t data) { items_[Row(index)].data = data; }
  /// The row that was added last, -1 before the first.
  std::int32_t NewIndex() const { return newIndex_; }
  std::int32_t ListIndex() const { return listIndex_; }
  void ListIndex(std::int32_t index);
  /// The chosen row's text, empty for none.
  const std::string& Text() const;

  base::Event<> Click;
  base::Event<> DblClick;

  void UserSelect(std::int32_t index);
  void UserDblClick();

 protected:
  using Control::Control;

 private:
  struct Item {
    std::string text;
    std::int32_t data = 0;
  };

  /// Fails with the subscript error outside the rows.
  std::size_t Row(std::int32_t index) const;

  std::vector<Item> items_;
  std::int32_t listIndex_ = -1;
  std::int32_t newIndex_ = -1;
};

/// Drop-down list that can't be typed in.
class ComboBox : public Choice {
 public:
  ComboBox(Control* parent, std::string name) : Choice(Kind::kComboBox, parent, std::move(name)) {}
};

class ListBox : public Choice {
 public:
  ListBox(Control* parent, std::string name) : Choice(Kind::kListBox, parent, std::move(name)) {}
};

}  // namespace ui
