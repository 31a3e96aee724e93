#pragma once

#include "ui/win32/ChildWindow.h"

namespace ui {
class Button;
class CheckBox;
}  // namespace ui

namespace ui::win32 {

/// Takes its ground from what it stands on. The form answers for the default and the cancel button, but Enter
/// presses the button that has the focus, which then looks like the default one.
class ButtonPeer : public ChildPeer<> {
 public:
  ButtonPeer(Button& button, Surroundings& surroundings);

  void ScaleChanged() override;

 protected:
  void Show(Aspect aspect) override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnCommand(WORD code, WORD id) override;
  HBRUSH OnColors(HDC context) override;

 private:
  void ShowPicture();
  void ShowAsDefault(bool isDefault) const;
  /// The same for the window's default button, if that is another one.
  void ShowOthersAsDefault(const Control& below, bool isDefault) const;

  Button& button_;
};

class CheckBoxPeer : public ChildPeer<> {
 public:
  CheckBoxPeer(CheckBox& box, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;
  void OnCommand(WORD code, WORD id) override;

 private:
  CheckBox& box_;
};

}  // namespace ui::win32
