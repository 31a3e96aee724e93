#include "ui/ToolBar.h"

#include <algorithm>

#include "base/Error.h"

namespace ui {

ToolBar::ToolBar(Control* parent, std::string name) : Control(Kind::kToolBar, parent, std::move(name)) {}

void ToolBar::AddButton(std::string key, std::string toolTip, PictureRef picture) {
  if (Contains(key)) {
    throw base::Error(base::ErrorNumber::kKeyTaken,
                      "This key is already associated with a button: \"" + key + "\"");
  }
  buttons_.push_back({std::move(key), std::move(toolTip), std::move(picture), true});
  Notify(Aspect::kItems);
}

bool ToolBar::ButtonEnabled(std::string_view key) const {
  return Find(key).enabled;
}

void ToolBar::ButtonEnabled(std::string_view key, bool enabled) {
  const auto index = static_cast<std::size_t>(&Find(key) - buttons_.data());
  if (buttons_[index].enabled == enabled) return;
  buttons_[index].enabled = enabled;
  Notify(Aspect::kValue);
}

void ToolBar::UserClick(std::string_view key) {
  if (!Enabled() || !Contains(key) || !Find(key).enabled) return;
  // The handler may change the buttons.
  const std::string pressed(key);
  FromUser("ButtonClick", [&] { ButtonClick.Raise(pressed); });
}

bool ToolBar::Contains(std::string_view key) const {
  return std::any_of(buttons_.begin(), buttons_.end(),
                     [key](const ToolButton& button) { return button.key == key; });
}

const ToolBar::ToolButton& ToolBar::Find(std::string_view key) const {
  for (const ToolButton& button : buttons_) {
    if (button.key == key) return button;
  }
  throw base::Error(base::ErrorNumber::kKeyUnknown,
                    "There is no button \"" + std::string(key) + "\" in " + Path());
}

}  // namespace ui
