#include "ui/Choice.h"

#include "base/Conversions.h"
#include "base/Error.h"

namespace ui {

void Choice::AddItem(std::string text, std::int32_t index) {
  if (index < 0 || index > ListCount()) {
    throw base::Error(base::ErrorNumber::kSubscript,
                      "There is no row " + base::ToText(index) + " in " + Path());
  }
  items_.insert(items_.begin() + index, Item{std::move(text)});
  newIndex_ = index;
  if (listIndex_ >= index) ++listIndex_;
  Notify(Aspect::kItems);
}

void Choice::Clear() {
  items_.clear();
  listIndex_ = -1;
  newIndex_ = -1;
  Notify(Aspect::kItems);
}

void Choice::ListIndex(std::int32_t index) {
  if (index == listIndex_) return;
  if (index != -1) Row(index);
  listIndex_ = index;
  Notify(Aspect::kSelection);
  Click.Raise();
}

const std::string& Choice::Text() const {
  static const std::string none;
  return listIndex_ < 0 ? none : items_[static_cast<std::size_t>(listIndex_)].text;
}

void Choice::UserSelect(std::int32_t index) {
  if (index < 0 || index >= ListCount()) return;
  listIndex_ = index;
  FromUser("Click", [this] { Click.Raise(); });
}

void Choice::UserDblClick() {
  FromUser("DblClick", [this] { DblClick.Raise(); });
}

std::size_t Choice::Row(std::int32_t index) const {
  if (index < 0 || index >= ListCount()) {
    throw base::Error(base::ErrorNumber::kSubscript,
                      "There is no row " + base::ToText(index) + " in " + Path());
  }
  return static_cast<std::size_t>(index);
}

}  // namespace ui
