#include "ui/Menu.h"

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

}  // namespace

Menu::Menu(Control* parent, std::string name, std::string caption)
    : Control(Kind::kMenu, parent, std::move(name)), caption_(std::move(caption)) {}

void Menu::ShowAsPopup() {
  Menu* chosen = TheInterface().dialogs->ShowPopupMenu(*this, *ParentForm());
  if (chosen) chosen->UserClick();
}

void Menu::UserClick() {
  if (Enabled()) FromUser("Click", [this] { Click.Raise(); });
}

MenuArray::MenuArray(Menu* parent, std::string name, std::string caption)
    : parent_(parent), name_(std::move(name)) {
  entries_.emplace(0, std::make_unique<Menu>(parent_, name_ + "(0)", std::move(caption)));
}

Menu& MenuArray::Load(std::int32_t index) {
  if (entries_.contains(index)) {
    throw base::Error(base::ErrorNumber::kKeyTaken,
                      "There is a menu entry " + name_ + "(" + base::ToText(index) + ") already");
  }
  const Menu& pattern = *entries_.at(0);
  auto entry = std::make_unique<Menu>(parent_, name_ + "(" + base::ToText(index) + ")", pattern.Caption());
  entry->Visible(pattern.Visible());
  entry->Click.Connect([this, index] { Click.Raise(index); });
  return *entries_.emplace(index, std::move(entry)).first->second;
}

void MenuArray::Unload(std::int32_t index) {
  if (index == 0 || entries_.erase(index) == 0) throw NoEntry(name_, index);
}

Menu& MenuArray::operator[](std::int32_t index) {
  const auto found = entries_.find(index);
  if (found == entries_.end()) throw NoEntry(name_, index);
  return *found->second;
}

}  // namespace ui
