#include "ui/Image.h"

namespace ui {

Image::Image(Control* parent, std::string name, PictureRef picture)
    : Control(Kind::kImage, parent, std::move(name)), picture_(std::move(picture)) {
  TabStop(false);
}

void Image::Picture(PictureRef picture) {
  if (picture == picture_) return;
  picture_ = std::move(picture);
  Notify(Aspect::kValue);
}

void Image::UserMouseDown() {
  FromUser("MouseDown", [this] { MouseDown.Raise(); });
}

}  // namespace ui
