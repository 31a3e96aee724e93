#include "ui/MessageBox.h"

#include "ui/Toolkit.h"

namespace ui {

MessageResult ShowMessage(std::string text, MessageIcon icon, MessageButtons buttons) {
  return TheInterface().dialogs->ShowMessage(
      {std::move(text), icon, buttons, std::string(kApplicationTitle)});
}

}  // namespace ui
