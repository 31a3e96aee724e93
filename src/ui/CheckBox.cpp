#include "ui/CheckBox.h"

namespace ui {

CheckBox::CheckBox(Control* parent, std::string name, std::string caption)
    : Control(Kind::kCheckBox, parent, std::move(name)), caption_(std::move(caption)) {}

void CheckBox::Caption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Notify(Aspect::kText);
}

void CheckBox::Checked(bool checked) {
  if (checked == checked_) return;
  checked_ = checked;
  Notify(Aspect::kValue);
  Click.Raise();
}

void CheckBox::UserClick() {
  if (!Enabled()) return;
  // The native box has flipped itself; the peer writes nothing back.
  checked_ = !checked_;
  FromUser("Click", [this] { Click.Raise(); });
}

}  // namespace ui
