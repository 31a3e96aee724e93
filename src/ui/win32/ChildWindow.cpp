#include "ui/win32/ChildWindow.h"

#include <commctrl.h>

#include <unordered_map>

#include "platform/win32/SystemError.h"
#include "ui/Form.h"
#include "ui/win32/FormPeer.h"
#include "ui/win32/OwnWindow.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {
namespace {

constexpr UINT_PTR kSubclass = 1;
constexpr UINT kSync = WM_APP + 1;
constexpr int kFirstId = 1000;
constexpr int kLastId = 32000;

/// Windows belong to the thread of the interface, and so does this.
std::unordered_map<HWND, ChildWindow*>& Children() {
  static std::unordered_map<HWND, ChildWindow*> children;
  return children;
}

/// Numbers by which a window finds its buttons. They come round again only after more controls than a window
/// can hold.
int NextId() {
  static int last = kFirstId;
  last = last == kLastId ? kFirstId : last + 1;
  return last;
}

/// What a dialog does for this message.
void MoveFocus(WPARAM wParam, LPARAM lParam) {
  if (LOWORD(lParam) != 0) {
    SetFocus(reinterpret_cast<HWND>(wParam));
    return;
  }
  const HWND focus = GetFocus();
  const HWND next = GetNextDlgTabItem(GetAncestor(focus, GA_ROOT), focus, wParam != 0);
  if (next) SetFocus(next);
}

bool HasGround(const Control& control) {
  return !control.Transparent() && control.BackColor() != kDefaultColor;
}

}  // namespace

ChildWindow::ChildWindow(Control& control, Surroundings& surroundings)
    : control_(control), surroundings_(surroundings) {}

ChildWindow::~ChildWindow() {
  if (!window_) return;
  Children().erase(window_);
  RemoveWindowSubclass(window_, Procedure, kSubclass);
  RemoveControlName(window_);
  DestroyWindow(window_);
}

void ChildWindow::CreateNative(const char* className, DWORD style, DWORD extendedStyle,
                               const std::string& text) {
  const Control* parent = control_.Parent();
  const std::uintptr_t parentWindow = parent && parent->GetPeer() ? parent->GetPeer()->Handle() : 0;
  style |= WS_CHILD | WS_CLIPSIBLINGS;
  if (control_.Visible()) style |= WS_VISIBLE;
  if (!control_.Enabled()) style |= WS_DISABLED;
  if (control_.TabStop()) style |= WS_TABSTOP;
  const RECT place = NativeBounds();
  window_ = CreateWindowExA(extendedStyle, className, text.c_str(), style, place.left, place.top,
                            place.right - place.left, place.bottom - place.top,
                            reinterpret_cast<HWND>(parentWindow),
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(NextId())), ThisModule(), nullptr);
  if (!window_)
    throw platform::win32::WindowsError("A control can't be made", static_cast<LSTATUS>(GetLastError()));
  SetControlName(window_, control_.Name());
  Children().emplace(window_, this);
  SetWindowSubclass(window_, Procedure, kSubclass, reinterpret_cast<DWORD_PTR>(this));
  Show(Aspect::kFont);
}

void ChildWindow::Show(Aspect aspect) {
  switch (aspect) {
    case Aspect::kBounds: {
      const RECT place = NativeBounds();
      SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
      break;
    }
    case Aspect::kVisible:
      control_.Visible() ? static_cast<void>(ShowWindow(window_, SW_SHOWNA)) : Hide();
      break;
    case Aspect::kEnabled:
      if (!control_.Enabled()) PassFocusOn();
      EnableWindow(window_, control_.Enabled() ? TRUE : FALSE);
      break;
    case Aspect::kColors:
      InvalidateRect(window_, nullptr, TRUE);
      break;
    case Aspect::kFont:
      Send(WM_SETFONT, reinterpret_cast<WPARAM>(NativeFont()), TRUE);
      break;
    case Aspect::kOrder:
      SetWindowPos(window_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
      break;
    default:
      break;
  }
}

void ChildWindow::Hide() {
  PassFocusOn();
  if (window_) ShowWindow(window_, SW_HIDE);
}

void ChildWindow::PassFocusOn() const {
  const HWND focus = GetFocus();
  if (!focus || (focus != window_ && !IsChild(window_, focus))) return;
  const HWND top = GetAncestor(window_, GA_ROOT);
  HWND next = focus;
  do {
    next = GetNextDlgTabItem(top, next, FALSE);
  } while (next && next != focus && (next == window_ || IsChild(window_, next)));
  ::SetFocus(next && next != focus ? next : top);
}

RECT ChildWindow::NativeBounds() const {
  return FormScale().Pixels(control_.GetBounds());
}

Scale ChildWindow::FormScale() const {
  const Form* form = control_.ParentForm();
  const Peer* peer = form ? form->GetPeer() : nullptr;
  return peer ? static_cast<const FormPeer*>(peer)->GetScale() : Scale::OfScreen();
}

void ChildWindow::ScaleChanged() {
  Show(Aspect::kFont);
  Show(Aspect::kBounds);
}

void ChildWindow::SyncLater() {
  if (stale_ || !window_) return;
  stale_ = true;
  PostMessageA(window_, kSync, 0, 0);
}

std::optional<LRESULT> ChildWindow::Reflect(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NEXTDLGCTL:
      // The way from a label to its field.
      MoveFocus(wParam, lParam);
      return 0;
    case WM_NOTIFYFORMAT:
      return NFR_ANSI;
    case WM_COMMAND: {
      ChildWindow* child = lParam ? FromWindow(reinterpret_cast<HWND>(lParam)) : nullptr;
      if (!child) return std::nullopt;
      child->OnCommand(HIWORD(wParam), LOWORD(wParam));
      return 0;
    }
    case WM_NOTIFY: {
      auto& header = *reinterpret_cast<NMHDR*>(lParam);
      ChildWindow* child = FromWindow(header.hwndFrom);
      if (!child) return std::nullopt;
      return child->OnNotify(header);
    }
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSTATIC: {
      ChildWindow* child = FromWindow(reinterpret_cast<HWND>(lParam));
      if (!child) return std::nullopt;
      return reinterpret_cast<LRESULT>(child->OnColors(reinterpret_cast<HDC>(wParam)));
    }
    default:
      return std::nullopt;
  }
}

LRESULT ChildWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  return PassOn(message, wParam, lParam);
}

HBRUSH ChildWindow::OnColors(HDC context) {
  SetTextColor(context, TextColor());
  SetBkColor(context, Ground());
  return surroundings_.brushes.Get(Ground());
}

LRESULT ChildWindow::PassOn(UINT message, WPARAM wParam, LPARAM lParam) const {
  return DefSubclassProc(window_, message, wParam, lParam);
}

COLORREF ChildWindow::Ground() const {
  if (control_.Transparent()) return GroundBehind();
  return HasGround(control_) ? static_cast<COLORREF>(control_.BackColor()) : DefaultGround();
}

COLORREF ChildWindow::GroundBehind() const {
  const Control* behind = control_.Parent();
  while (behind && !HasGround(*behind)) behind = behind->Parent();
  return behind ? static_cast<COLORREF>(behind->BackColor()) : GetSysColor(COLOR_BTNFACE);
}

COLORREF ChildWindow::TextColor() const {
  if (!control_.Enabled()) return GetSysColor(COLOR_GRAYTEXT);
  return NativeColor(control_.ForeColor(), COLOR_WINDOWTEXT);
}

HFONT ChildWindow::NativeFont() const {
  return surroundings_.fonts.Get(control_.Font(), FormScale());
}

ChildWindow* ChildWindow::FromWindow(HWND window) {
  const auto found = Children().find(window);
  return found == Children().end() ? nullptr : found->second;
}

LRESULT CALLBACK ChildWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                        DWORD_PTR data) {
  auto* self = reinterpret_cast<ChildWindow*>(data);
  if (message != WM_NCDESTROY) return self->Handle(message, wParam, lParam);
  Children().erase(window);
  RemoveControlName(window);
  RemoveWindowSubclass(window, Procedure, kSubclass);
  self->window_ = nullptr;
  return DefSubclassProc(window, message, wParam, lParam);
}

LRESULT ChildWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  if (stale_ && message != WM_DESTROY) {
    stale_ = false;
    Sync();
  }
  switch (message) {
    case kSync:
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: {
      const HWND window = window_;
      const LRESULT result = OnMessage(message, wParam, lParam);
      // A window may have passed on at once what it got.
      const bool stays = message == WM_KILLFOCUS || GetFocus() == window;
      if (stays && IsAlive(window, this)) control_.UserFocus(message == WM_SETFOCUS);
      return result;
    }
    default:
      return OnMessage(message, wParam, lParam);
  }
}

}  // namespace ui::win32
