#include "ui/Frame.h"

namespace ui {

Frame::Frame(Control* parent, std::string name, std::string caption, bool border)
    : Control(Kind::kFrame, parent, std::move(name)), caption_(std::move(caption)), border_(border) {
  TabStop(false);
}

}  // namespace ui
