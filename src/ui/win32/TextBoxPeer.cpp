#include "ui/win32/TextBoxPeer.h"

#include "ui/TextBox.h"

namespace ui::win32 {
namespace {

DWORD StyleOf(const TextBox::Style& style) {
  if (!style.multiLine) return ES_AUTOHSCROLL;
  return ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | (style.verticalScrollBar ? WS_VSCROLL : 0u);
}

/// After these the selection may be another one; the native box tells nobody.
bool MaySelect(UINT message) {
  switch (message) {
    case WM_KEYDOWN:
    case WM_CHAR:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_MOUSEMOVE:
    case WM_SETFOCUS:
    case WM_CUT:
    case WM_PASTE:
    case WM_CLEAR:
    case WM_UNDO:
    case WM_CONTEXTMENU:
    case EM_SETSEL:
    case EM_REPLACESEL:
    case EM_UNDO:
      return true;
    default:
      return false;
  }
}

}  // namespace

TextBoxPeer::TextBoxPeer(TextBox& box, Surroundings& surroundings) : ChildPeer(box, surroundings), box_(box) {
  const Writing writing(writing_);
  CreateNative("EDIT", StyleOf(box_.GetStyle()), box_.GetStyle().border ? WS_EX_CLIENTEDGE : 0u,
               std::string());
  // Windows' own limit is 30,000 characters.
  Send(EM_SETLIMITTEXT);
  Show(Aspect::kText);
  Show(Aspect::kReadOnly);
  ShowSelection();
}

void TextBoxPeer::Show(Aspect aspect) {
  const Writing writing(writing_);
  switch (aspect) {
    case Aspect::kText:
      SetWindowTextA(Window(), box_.Text().c_str());
      break;
    case Aspect::kReadOnly:
      Send(EM_SETREADONLY, box_.Locked() ? TRUE : FALSE);
      break;
    case Aspect::kSelection:
      ShowSelection();
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void TextBoxPeer::ShowSelection() {
  Send(EM_SETSEL, static_cast<WPARAM>(box_.SelStart()), box_.SelStart() + box_.SelLength());
  Send(EM_SCROLLCARET);
}

void TextBoxPeer::ReadSelection() {
  DWORD begin = 0;
  DWORD end = 0;
  Send(EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
  box_.UserSelection(static_cast<std::int32_t>(begin), static_cast<std::int32_t>(end - begin));
}

void TextBoxPeer::OnCommand(WORD code, WORD) {
  if (code != EN_CHANGE || writing_) return;
  std::string text(Send<std::size_t>(WM_GETTEXTLENGTH) + 1, '\0');
  text.resize(Send<std::size_t>(WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data())));
  box_.UserText(std::move(text));
}

LRESULT TextBoxPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = Window();
  const LRESULT result = PassOn(message, wParam, lParam);
  if (!IsAlive(window, this)) return result;
  if (!writing_ && MaySelect(message)) ReadSelection();
  if (message == WM_GETDLGCODE) return KeysWanted(result, reinterpret_cast<const MSG*>(lParam));
  return result;
}

LRESULT TextBoxPeer::KeysWanted(LRESULT answer, const MSG* message) const {
  if (!box_.GetStyle().multiLine) return answer;
  // Tab leaves the box, Escape presses the window's cancel button, and Enter is for a box that can be typed
  // in.
  answer &= ~DLGC_WANTTAB;
  if (!message || message->message != WM_KEYDOWN) return answer;
  const bool leaves = message->wParam == VK_TAB || message->wParam == VK_ESCAPE ||
                      (message->wParam == VK_RETURN && box_.Locked());
  return leaves ? answer & ~DLGC_WANTALLKEYS : answer;
}

}  // namespace ui::win32
