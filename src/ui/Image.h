#pragma once

#include <string>

#include "ui/Control.h"
#include "ui/Picture.h"

namespace ui {

class Image : public Control {
 public:
  Image(Control* parent, std::string name, PictureRef picture = nullptr);

  const PictureRef& Picture() const { return picture_; }
  void Picture(PictureRef picture);

  base::Event<> MouseDown;
  void UserMouseDown();

 private:
  PictureRef picture_;
};

}  // namespace ui
