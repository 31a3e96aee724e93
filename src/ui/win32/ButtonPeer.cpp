#include "ui/win32/ButtonPeer.h"

#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {

ButtonPeer::ButtonPeer(Button& button, Surroundings& surroundings)
    : ChildPeer(button, surroundings), button_(button) {
  CreateNative("BUTTON", button_.Default() ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, 0, button_.Caption());
  if (button_.Picture()) ShowPicture();
}

void ButtonPeer::Show(Aspect aspect) {
  switch (aspect) {
    case Aspect::kText:
      SetWindowTextA(Window(), button_.Caption().c_str());
      break;
    case Aspect::kValue:
      Send(BM_SETSTYLE, button_.Default() ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
      ShowPicture();
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void ButtonPeer::ShowPicture() {
  // A large icon needs the room for it.
  const bool large = Around().screen.PixelsY(button_.Height()) > GetSystemMetrics(SM_CYICON);
  const LPARAM icon = large ? reinterpret_cast<LPARAM>(Around().screen.LargeIcon(button_.Picture()))
                            : static_cast<LPARAM>(Around().screen.SmallIcon(button_.Picture()));
  Send(BM_SETIMAGE, IMAGE_ICON, icon);
}

void ButtonPeer::OnCommand(WORD code) {
  if (code == BN_CLICKED) button_.UserClick();
}

HBRUSH ButtonPeer::OnColors(HDC context) {
  SetBkColor(context, GroundBehind());
  return Around().brushes.Get(GroundBehind());
}

CheckBoxPeer::CheckBoxPeer(CheckBox& box, Surroundings& surroundings)
    : ChildPeer(box, surroundings), box_(box) {
  CreateNative("BUTTON", BS_AUTOCHECKBOX, 0, box_.Caption());
  Show(Aspect::kValue);
}

void CheckBoxPeer::Show(Aspect aspect) {
  switch (aspect) {
    case Aspect::kText:
      SetWindowTextA(Window(), box_.Caption().c_str());
      break;
    case Aspect::kValue:
      Send(BM_SETCHECK, box_.Checked() ? BST_CHECKED : BST_UNCHECKED);
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void CheckBoxPeer::OnCommand(WORD code) {
  if (code == BN_CLICKED) box_.UserClick();
}

}  // namespace ui::win32
