#include "ui/ToolBar.h"

#include "base/Error.h"

namespace ui {

ToolBar::ToolBar(Control* parent, std::string name) : Control(Kind::kToolBar, parent, std::move(name)) {}

void ToolBar::AddButton(std::string key, std::string toolTip, PictureRef picture) {
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
  const ToolButton& button = Find(key);
  if (!Enabled() || !button.enabled) return;
  FromUser("ButtonClick", [this, key = button.key] { ButtonClick.Raise(key); });
}

const ToolBar::ToolButton& ToolBar::Find(std::string_view key) const {
  for (const ToolButton& button : buttons_) {
    if (button.key == key) return button;
  }
  throw base::Error(base::ErrorNumber::kKeyUnknown,
                    "There is no button \"" + std::string(key) + "\" in " + Path());
}

}  // namespace ui
