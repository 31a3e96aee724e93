#include "ui/win32/LabelPeer.h"

#include "ui/Label.h"

namespace ui::win32 {
namespace {

DWORD StyleOf(Alignment alignment) {
  switch (alignment) {
    case Alignment::kRight:
      return SS_RIGHT;
    case Alignment::kCenter:
      return SS_CENTER;
    case Alignment::kLeft:
      break;
  }
  return SS_LEFT;
}

}  // namespace

LabelPeer::LabelPeer(Label& label, Surroundings& surroundings)
    : ChildPeer(label, surroundings), label_(label) {
  CreateNative("STATIC", StyleOf(label_.GetAlignment()), 0, label_.Caption());
}

void LabelPeer::Show(Aspect aspect) {
  if (aspect == Aspect::kText) {
    SetWindowTextA(Window(), label_.Caption().c_str());
  } else {
    ChildPeer::Show(aspect);
    // Where the text stands depends on the width.
    if (aspect == Aspect::kBounds) InvalidateRect(Window(), nullptr, TRUE);
  }
}

}  // namespace ui::win32
