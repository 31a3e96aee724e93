#pragma once

#include <string>

#include "ui/Control.h"

namespace ui {

/// A change of the tick raises Click, whether by code or by the user.
class CheckBox : public Control {
 public:
  CheckBox(Control* parent, std::string name, std::string caption = {});

  const std::string& Caption() const { return caption_; }
  void Caption(std::string caption);
  bool Checked() const { return checked_; }
  void Checked(bool checked);

  base::Event<> Click;

  void UserClick();

 private:
  std::string caption_;
  bool checked_ = false;
};

}  // namespace ui
