#pragma once

#include <string>

#include "ui/Control.h"

namespace ui {

enum class Alignment { kLeft, kRight, kCenter };

class Label : public Control {
 public:
  Label(Control* parent, std::string name, std::string caption = {}, Alignment alignment = Alignment::kLeft);

  const std::string& Caption() const { return caption_; }
  void Caption(std::string caption);
  Alignment GetAlignment() const { return alignment_; }

 private:
  std::string caption_;
  Alignment alignment_;
};

}  // namespace ui
