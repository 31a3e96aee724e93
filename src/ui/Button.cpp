#include "ui/Button.h"

namespace ui {

Button::Button(Control* parent, std::string name, std::string caption)
    : Control(Kind::kButton, parent, std::move(name)), caption_(std::move(caption)) {}

void Button::Caption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Notify(Aspect::kText);
}

void Button::Picture(PictureRef picture) {
  if (picture == picture_) return;
  picture_ = std::move(picture);
  Notify(Aspect::kValue);
}

void Button::Default(bool isDefault) {
  if (isDefault == default_) return;
  default_ = isDefault;
  Notify(Aspect::kValue);
}

void Button::Cancel(bool isCancel) {
  if (isCancel == cancel_) return;
  cancel_ = isCancel;
  Notify(Aspect::kValue);
}

void Button::UserClick() {
  if (Enabled()) FromUser("Click", [this] { Click.Raise(); });
}

}  // namespace ui
