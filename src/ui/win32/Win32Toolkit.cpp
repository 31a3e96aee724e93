#include "ui/win32/Win32Toolkit.h"

#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Choice.h"
#include "ui/Form.h"
#include "ui/Image.h"
#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/RichTextBox.h"
#include "ui/TextBox.h"
#include "ui/Timer.h"
#include "ui/ToolBar.h"
#include "ui/TreeView.h"
#include "ui/win32/ButtonPeer.h"
#include "ui/win32/ChoicePeer.h"
#include "ui/win32/FormPeer.h"
#include "ui/win32/ImagePeer.h"
#include "ui/win32/LabelPeer.h"
#include "ui/win32/NativeListView.h"
#include "ui/win32/PanelPeer.h"
#include "ui/win32/RichTextBoxPeer.h"
#include "ui/win32/Surroundings.h"
#include "ui/win32/TextBoxPeer.h"
#include "ui/win32/TimerPeer.h"
#include "ui/win32/ToolBarPeer.h"
#include "ui/win32/TreeViewPeer.h"

namespace ui::win32 {
namespace {

/// A message of a window of ours goes through Windows' handling of the keys of a dialog first.
void Handle(MSG& message) {
  const HWND top = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
  for (const Form* form : Form::LoadedForms()) {
    if (top && reinterpret_cast<HWND>(form->Handle()) == top) {
      if (IsDialogMessageA(top, &message)) return;
      break;
    }
  }
  TranslateMessage(&message);
  DispatchMessageA(&message);
}

}  // namespace

std::unique_ptr<Peer> Win32Toolkit::CreatePeer(Control& control) {
  switch (control.GetKind()) {
    case Kind::kForm:
      return std::make_unique<FormPeer>(static_cast<Form&>(control), surroundings_);
    case Kind::kUserControl:
    case Kind::kFrame:
      return std::make_unique<PanelPeer>(control, surroundings_);
    case Kind::kLabel:
      return std::make_unique<LabelPeer>(static_cast<Label&>(control), surroundings_);
    case Kind::kButton:
      return std::make_unique<ButtonPeer>(static_cast<Button&>(control), surroundings_);
    case Kind::kCheckBox:
      return std::make_unique<CheckBoxPeer>(static_cast<CheckBox&>(control), surroundings_);
    case Kind::kTextBox:
      return std::make_unique<TextBoxPeer>(static_cast<TextBox&>(control), surroundings_);
    case Kind::kComboBox:
    case Kind::kListBox:
      return std::make_unique<ChoicePeer>(static_cast<Choice&>(control), surroundings_);
    case Kind::kListView:
      return std::make_unique<NativeListView>(static_cast<ListView&>(control), surroundings_);
    case Kind::kTreeView:
      return std::make_unique<TreeViewPeer>(static_cast<TreeView&>(control), surroundings_);
    case Kind::kRichTextBox:
      return std::make_unique<RichTextBoxPeer>(static_cast<RichTextBox&>(control), surroundings_);
    case Kind::kImage:
      return std::make_unique<ImagePeer>(static_cast<Image&>(control), surroundings_);
    case Kind::kToolBar:
      return std::make_unique<ToolBarPeer>(static_cast<ToolBar&>(control), surroundings_);
    case Kind::kTimer:
      return std::make_unique<TimerPeer>(static_cast<Timer&>(control), surroundings_.utility);
    default:
      return nullptr;
  }
}

void Win32Toolkit::RunWhile(const std::function<bool()>& condition) {
  struct Depth {
    int& value;
    explicit Depth(int& depth) : value(depth) { ++value; }
    ~Depth() { --value; }
  } const depth(depth_);
  while (condition()) {
    MSG message;
    if (!PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      // A message that another thread or program sent is handled inside PeekMessage, or ends the wait: either
      // way what its handler did to the condition is seen at once.
      if (!condition()) return;
      MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
      continue;
    }
    if (message.message == WM_QUIT) {
      if (depth_ > 1) PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    Handle(message);
  }
}

void Win32Toolkit::ProcessPendingEvents() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    Handle(message);
  }
}

}  // namespace ui::win32
