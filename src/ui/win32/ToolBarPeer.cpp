#include "ui/win32/ToolBarPeer.h"

#include <algorithm>

#include "ui/ToolBar.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {
namespace {

constexpr DWORD kStyle = TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_NODIVIDER | CCS_NOPARENTALIGN | CCS_NORESIZE;
/// Commands of the buttons, counted up from here.
constexpr int kFirstCommand = 100;
/// 16 pixels at 96 dots per inch, and the room on both sides together.
constexpr Twips kPicture = 240;
constexpr Twips kPadding = 150;

}  // namespace

ToolBarPeer::ToolBarPeer(ToolBar& bar, Surroundings& surroundings) : ChildPeer(bar, surroundings), bar_(bar) {
  CreateNative(TOOLBARCLASSNAMEA, kStyle, 0, std::string());
  Send(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
  Send(TB_SETMAXTEXTROWS, 0);
  SyncLater();
}

void ToolBarPeer::Show(Aspect aspect) {
  switch (aspect) {
    case Aspect::kItems:
      buttonsStale_ = true;
      SyncLater();
      break;
    case Aspect::kValue:
      SyncLater();
      break;
    case Aspect::kEnabled:
      ChildPeer::Show(aspect);
      SyncLater();
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void ToolBarPeer::ScaleChanged() {
  ChildPeer::ScaleChanged();
  buttonsStale_ = true;
  SyncLater();
}

int ToolBarPeer::PictureSide() const {
  return FormScale().Pixels(kPicture);
}

void ToolBarPeer::Sync() {
  if (buttonsStale_) SyncButtons();
  for (int i = 0; i < static_cast<int>(keys_.size()); ++i) {
    Send(TB_ENABLEBUTTON, static_cast<WPARAM>(kFirstCommand + i), IsEnabled(i) ? TRUE : FALSE);
  }
}

void ToolBarPeer::SyncButtons() {
  buttonsStale_ = false;
  const DrawingPause pause(Window());
  while (Send(TB_DELETEBUTTON, 0)) {
  }
  keys_.clear();
  current_ = 0;
  const int side = PictureSide();
  NativeImageList pictures(
      ImageList_Create(side, side, ILC_COLOR32 | ILC_MASK, static_cast<int>(bar_.Buttons().size()), 0));
  Send(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(pictures.get()));
  // The list before it may go only when the bar has the new one.
  pictures_ = std::move(pictures);
  const int button = side + FormScale().Pixels(kPadding);
  Send(TB_SETBUTTONSIZE, 0, MAKELPARAM(button, button));
  for (int i = 0; i < static_cast<int>(bar_.Buttons().size()); ++i) AddButton(i);
}

void ToolBarPeer::AddButton(int position) {
  const ToolBar::ToolButton& shown = bar_.Buttons()[static_cast<std::size_t>(position)];
  keys_.push_back(shown.key);
  const HICON icon = Around().screen.Icon(shown.picture, PictureSide());
  TBBUTTON native{};
  native.iBitmap = icon ? ImageList_AddIcon(pictures_.get(), icon) : I_IMAGENONE;
  native.idCommand = kFirstCommand + position;
  native.fsState = TBSTATE_ENABLED;
  native.fsStyle = BTNS_BUTTON;
  native.iString = reinterpret_cast<INT_PTR>(shown.toolTip.c_str());
  Send(TB_ADDBUTTONSA, 1, reinterpret_cast<LPARAM>(&native));
}

bool ToolBarPeer::IsEnabled(int position) const {
  const auto index = static_cast<std::size_t>(position);
  return bar_.Enabled() && index < bar_.Buttons().size() && bar_.Buttons()[index].enabled;
}

void ToolBarPeer::Go(int from, int step) {
  for (int i = from + step; i >= 0 && i < static_cast<int>(keys_.size()); i += step) {
    if (IsEnabled(i)) return SetCurrent(i);
  }
}

void ToolBarPeer::SetCurrent(int position) {
  current_ = position;
  Send(TB_SETHOTITEM, static_cast<WPARAM>(position));
  InvalidateRect(Window(), nullptr, TRUE);
}

bool ToolBarPeer::OnKey(WPARAM key) {
  const int count = static_cast<int>(keys_.size());
  switch (key) {
    case VK_LEFT:
    case VK_UP:
      Go(current_, -1);
      return true;
    case VK_RIGHT:
    case VK_DOWN:
      Go(current_, 1);
      return true;
    case VK_HOME:
      Go(-1, 1);
      return true;
    case VK_END:
      Go(count, -1);
      return true;
    case VK_RETURN:
    case VK_SPACE:
      if (current_ < count) bar_.UserClick(keys_[static_cast<std::size_t>(current_)]);
      return true;
    default:
      return false;
  }
}

LRESULT ToolBarPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = Window();
  switch (message) {
    case WM_ERASEBKGND: {
      RECT inner{};
      GetClientRect(window, &inner);
      FillRect(reinterpret_cast<HDC>(wParam), &inner, Around().brushes.Get(Ground()));
      return 1;
    }
    case WM_GETDLGCODE: {
      const auto* key = reinterpret_cast<const MSG*>(lParam);
      const bool enter = key && key->message == WM_KEYDOWN && key->wParam == VK_RETURN;
      return DLGC_WANTARROWS | (enter ? DLGC_WANTMESSAGE : 0);
    }
    case WM_KEYDOWN:
      if (OnKey(wParam)) return 0;
      break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: {
      const LRESULT result = PassOn(message, wParam, lParam);
      if (!IsAlive(window, this)) return result;
      if (message == WM_KILLFOCUS) {
        Send(TB_SETHOTITEM, static_cast<WPARAM>(-1));
        InvalidateRect(window, nullptr, TRUE);
      } else if (IsEnabled(current_)) {
        SetCurrent(current_);
      } else {
        Go(-1, 1);
      }
      return result;
    }
    default:
      break;
  }
  return PassOn(message, wParam, lParam);
}

void ToolBarPeer::OnCommand(WORD, WORD id) {
  const auto index = static_cast<std::size_t>(id - kFirstCommand);
  if (id >= kFirstCommand && index < keys_.size()) bar_.UserClick(keys_[index]);
}

LRESULT ToolBarPeer::OnNotify(NMHDR& header) {
  switch (header.code) {
    case NM_CUSTOMDRAW:
      return OnDraw(reinterpret_cast<const NMTBCUSTOMDRAW&>(header));
    case TBN_GETINFOTIPA:
      OnTip(reinterpret_cast<const NMTBGETINFOTIPA&>(header));
      return 0;
    default:
      return 0;
  }
}

void ToolBarPeer::OnTip(const NMTBGETINFOTIPA& tip) const {
  const auto index = static_cast<std::size_t>(tip.iItem - kFirstCommand);
  if (index >= bar_.Buttons().size() || tip.cchTextMax <= 0) return;
  const std::string& text = bar_.Buttons()[index].toolTip;
  const std::size_t length = text.copy(tip.pszText, static_cast<std::size_t>(tip.cchTextMax) - 1);
  tip.pszText[length] = '\0';
}

LRESULT ToolBarPeer::OnDraw(const NMTBCUSTOMDRAW& draw) const {
  switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      return CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPOSTPAINT:
      if (GetFocus() == Window() &&
          draw.nmcd.dwItemSpec == static_cast<DWORD_PTR>(kFirstCommand + current_)) {
        DrawFocusRect(draw.nmcd.hdc, &draw.nmcd.rc);
      }
      return CDRF_DODEFAULT;
    default:
      return CDRF_DODEFAULT;
  }
}

}  // namespace ui::win32
