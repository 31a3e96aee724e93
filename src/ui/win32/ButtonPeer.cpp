#include "ui/win32/ButtonPeer.h"

#include <commctrl.h>

#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Form.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {
namespace {

/// 16 and 32 pixels at 96 dots per inch.
constexpr Twips kSmallPicture = 240;
constexpr Twips kLargePicture = 480;
constexpr Twips kPictureGap = 90;

}  // namespace

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
      ShowAsDefault(button_.Default());
      ShowPicture();
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void ButtonPeer::ScaleChanged() {
  ChildPeer::ScaleChanged();
  if (button_.Picture()) ShowPicture();
}

LRESULT ButtonPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
    const bool focus = message == WM_SETFOCUS;
    if (Form* form = button_.ParentForm()) ShowOthersAsDefault(*form, !focus);
    ShowAsDefault(focus || button_.Default());
  }
  return PassOn(message, wParam, lParam);
}

void ButtonPeer::ShowAsDefault(bool isDefault) const {
  Send(BM_SETSTYLE, isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
}

void ButtonPeer::ShowOthersAsDefault(const Control& below, bool isDefault) const {
  for (const Control* child : below.Children()) {
    if (child != &button_ && child->GetKind() == Kind::kButton && child->GetPeer() &&
        static_cast<const Button*>(child)->Default()) {
      static_cast<const ButtonPeer*>(child->GetPeer())->ShowAsDefault(isDefault);
    }
    ShowOthersAsDefault(*child, isDefault);
  }
}

void ButtonPeer::ShowPicture() {
  // The large form is for a button that has the room for it.
  const Scale scale = FormScale();
  const int large = scale.Pixels(kLargePicture);
  const int side = scale.Pixels(button_.Height()) > large ? large : scale.Pixels(kSmallPicture);
  const auto icon = reinterpret_cast<LPARAM>(Around().screen.Icon(button_.Picture(), side));
  Send(BM_SETIMAGE, IMAGE_ICON, icon);
  RECT margin{icon != 0 ? scale.Pixels(kPictureGap) : 1, 1, 1, 1};
  Send(BCM_SETTEXTMARGIN, 0, reinterpret_cast<LPARAM>(&margin));
}

void ButtonPeer::OnCommand(WORD code, WORD) {
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

void CheckBoxPeer::OnCommand(WORD code, WORD) {
  if (code == BN_CLICKED) box_.UserClick();
}

}  // namespace ui::win32
