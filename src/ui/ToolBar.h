#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ui/Control.h"
#include "ui/ImageList.h"

namespace ui {

class ToolBar : public Control {
 public:
  struct ToolButton {
    std::string key;
    std::string toolTip;
    PictureRef picture;
    bool enabled = true;
  };

  ToolBar(Control* parent, std::string name);

  /// A taken key is a failure.
  void AddButton(std::string key, std::string toolTip, PictureRef picture);
  const std::vector<ToolButton>& Buttons() const { return buttons_; }
  /// An unknown key is a failure.
  bool ButtonEnabled(std::string_view key) const;
  void ButtonEnabled(std::string_view key, bool enabled);

  /// With the button's key.
  base::Event<const std::string&> ButtonClick;

  /// An unknown key is ignored.
  void UserClick(std::string_view key);

 private:
  bool Contains(std::string_view key) const;
  const ToolButton& Find(std::string_view key) const;

  std::vector<ToolButton> buttons_;
};

}  // namespace ui
