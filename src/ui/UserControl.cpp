#include "ui/UserControl.h"

namespace ui {

UserControl::UserControl(Control* parent, std::string name, Twips designWidth, Twips designHeight)
    : Control(Kind::kUserControl, parent, std::move(name)) {
  TabStop(false);
  Move(0, 0, designWidth, designHeight);
}

}  // namespace ui
