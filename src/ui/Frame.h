#pragma once

#include <string>

#include "ui/Control.h"

namespace ui {

/// A part of a page with controls of its own; the caption shows only where there is a border.
class Frame : public Control {
 public:
  Frame(Control* parent, std::string name, std::string caption = {}, bool border = false);

  const std::string& Caption() const { return caption_; }
  bool Border() const { return border_; }

 private:
  std::string caption_;
  bool border_;
};

}  // namespace ui
