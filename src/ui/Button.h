#pragma once

#include <string>

#include "ui/Control.h"
#include "ui/Picture.h"

namespace ui {

class Button : public Control {
 public:
  Button(Control* parent, std::string name, std::string caption = {});

  const std::string& Caption() const { return caption_; }
  void Caption(std::string caption);
  const PictureRef& Picture() const { return picture_; }
  void Picture(PictureRef picture);
  /// Pressed by Enter wherever the focus is on the window.
  bool Default() const { return default_; }
  void Default(bool isDefault);
  /// Pressed by Escape wherever the focus is on the window.
  bool Cancel() const { return cancel_; }
  void Cancel(bool isCancel);

  base::Event<> Click;

  /// A disabled button can't be pressed.
  void UserClick();

 private:
  std::string caption_;
  PictureRef picture_;
  bool default_ = false;
  bool cancel_ = false;
};

}  // namespace ui
