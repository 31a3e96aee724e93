#include "ui/Menu.h"

#include <algorithm>

#include "base/Conversions.h"
#include "base/Error.h"
#include "ui/Form.h"
#include "ui/Toolkit.h"

namespace ui {
namespace {

base::Error NoEntry(const std::string& name, std::int32_t index) {
  return base::Error(base::ErrorNumber::kSubscript,
                     "There is no menu entry " + name + "(" + base::ToText(index) + ")");
}

/// Compares addresses only: the entry may have gone.
bool StandsBelow(const Control& menu, const Control* entry) {
  return std::any_of(menu.Children().begin(), menu.Children().end(),
                     [entry](const Control* child) { return child == entry || StandsBelow(*child, entry); });
}

}  // namespace

Menu::Menu(Control* parent, std::string name, std::string caption)
    : Control(Kind::kMenu, parent, std::move(name)), caption_(std::move(caption)) {}

void Menu::ShowAsPopup() {
  Menu* chosen = TheInterface().dialogs->ShowPopupMenu(*this, *ParentForm());
  if (chosen && StandsBelow(*this, chosen)) chosen->UserClick();
}

void Menu::UserClick() {
  // An entry of an array stays until its click, and the report of its failure, is over.
  const std::shared_ptr<Menu> untilTold = weak_from_this().lock();
  if (Enabled()) FromUser("Click", [this] { Click.Raise(); });
}

MenuArray::MenuArray(Menu* parent, std::string name, std::string caption)
    : parent_(parent), name_(std::move(name)) {
  Add(0, std::move(caption));
}

Menu& MenuArray::Add(std::int32_t index, std::string caption) {
  auto entry = std::make_shared<Menu>(parent_, name_ + "(" + base::ToText(index) + ")", std::move(caption));
  entry->Click.Connect([this, index] { Click.Raise(index); });
  return *entries_.emplace(index, std::move(entry)).first->second;
}

Menu& MenuArray::Load(std::int32_t index) {
  if (index < 0) throw NoEntry(name_, index);
  if (entries_.contains(index)) {
    throw base::Error(base::ErrorNumber::kKeyTaken,
                      "There is a menu entry " + name_ + "(" + base::ToText(index) + ") already");
  }
  const Menu& pattern = *entries_.at(0);
  Menu& entry = Add(index, pattern.Caption());
  entry.Visible(pattern.Visible());
  entry.Enabled(pattern.Enabled());
  entry.Checked(pattern.Checked());
  return entry;
}

void MenuArray::Unload(std::int32_t index) {
  const auto found = entries_.find(index);
  if (index == 0 || found == entries_.end()) throw NoEntry(name_, index);
  found->second->LeaveParent();
  entries_.erase(found);
}

Menu& MenuArray::operator[](std::int32_t index) {
  const auto found = entries_.find(index);
  if (found == entries_.end()) throw NoEntry(name_, index);
  return *found->second;
}

}  // namespace ui
