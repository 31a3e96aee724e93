#include "ui/Label.h"

namespace ui {

Label::Label(Control* parent, std::string name, std::string caption, Alignment alignment)
    : Control(Kind::kLabel, parent, std::move(name)), caption_(std::move(caption)), alignment_(alignment) {
  TabStop(false);
}

void Label::Caption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Notify(Aspect::kText);
}

}  // namespace ui
