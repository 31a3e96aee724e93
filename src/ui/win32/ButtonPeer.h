#pragma once

#include "ui/win32/ChildWindow.h"

namespace ui {
class Button;
class CheckBox;
}  // namespace ui

namespace ui::win32 {

/// Takes its ground from what it stands on. The form answers for the default and the cancel button.
class ButtonPeer : public ChildPeer<> {
 public:
  ButtonPeer(Button& button, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;
  void OnCommand(WORD code) override;
  HBRUSH OnColors(HDC context) override;

 private:
  void ShowPicture();

  Button& button_;
};

class CheckBoxPeer : public ChildPeer<> {
 public:
  CheckBoxPeer(CheckBox& box, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;
  void OnCommand(WORD code) override;

 private:
  CheckBox& box_;
};

}  // namespace ui::win32
