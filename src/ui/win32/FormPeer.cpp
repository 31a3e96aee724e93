#include "ui/win32/FormPeer.h"

#include <windowsx.h>

#include "ui/Button.h"
#include "ui/Form.h"
#include "ui/win32/ChildWindow.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {
namespace {

constexpr char kClassName[] = "HarbourlineWindow";

DWORD StyleOf(const Form::Style& style) {
  if (!style.border) return WS_POPUP | WS_CLIPCHILDREN;
  DWORD result = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
  if (style.resizable) result |= WS_THICKFRAME;
  if (style.minimiseAndMaximise) result |= WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
  return result;
}

DWORD ExtendedStyleOf(const Form::Style& style) {
  DWORD result = WS_EX_CONTROLPARENT;
  if (style.toolWindow) {
    result |= WS_EX_TOOLWINDOW;
  } else if (style.inTaskBar) {
    result |= WS_EX_APPWINDOW;
  }
  if (style.border && !style.resizable) result |= WS_EX_DLGMODALFRAME;
  return result;
}

RECT WorkAreaAround(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
  return monitor.rcWork;
}

/// The first button below the control, in the order of the tab key, for which the condition holds.
template <typename Condition>
Button* FindButton(const Control& control, const Condition& holds) {
  for (Control* child : control.Children()) {
    if (!child->Visible()) continue;
    if (child->GetKind() == Kind::kButton) {
      auto* button = static_cast<Button*>(child);
      if (button->Enabled() && holds(*button)) return button;
    }
    if (Button* below = FindButton(*child, holds)) return below;
  }
  return nullptr;
}

/// Tells all that stands on the control of the new scale.
void Rescale(const Control& control) {
  for (const Control* child : control.Children()) {
    const std::uintptr_t window = child->GetPeer() ? child->GetPeer()->Handle() : 0;
    if (ChildWindow* native = ChildWindow::FromWindow(reinterpret_cast<HWND>(window))) native->ScaleChanged();
    Rescale(*child);
  }
}

int IdOf(const Control& control) {
  return control.GetPeer() ? GetDlgCtrlID(reinterpret_cast<HWND>(control.GetPeer()->Handle())) : 0;
}

}  // namespace

FormPeer::FormPeer(Form& form, Surroundings& surroundings) : form_(form), surroundings_(surroundings) {
  const Writing writing(writing_);
  Create({.className = kClassName,
          .style = StyleOf(form_.GetStyle()),
          .extendedStyle = ExtendedStyleOf(form_.GetStyle()),
          .title = form_.Caption(),
          .controlName = form_.Name()});
  scale_ = Scale::Of(Window());
  ApplyBounds();
  if (form_.Icon()) ApplyIcon();
  ApplyEnabled();
}

FormPeer::~FormPeer() {
  modalBlock_.reset();
  ReleaseOwnedWindows();
}

void FormPeer::Changed(Aspect aspect) {
  if (!Window()) return;
  switch (aspect) {
    case Aspect::kVisible:
      form_.Visible() ? ShowIt() : HideIt();
      break;
    case Aspect::kBounds:
      ApplyBounds();
      break;
    case Aspect::kEnabled:
      ApplyEnabled();
      break;
    case Aspect::kText:
      SetWindowTextA(Window(), form_.Caption().c_str());
      break;
    case Aspect::kValue:
      ApplyIcon();
      break;
    case Aspect::kShape:
      ApplyShape();
      break;
    case Aspect::kColors:
      // Controls without a ground of their own show this one.
      RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
      break;
    default:
      break;
  }
}

void FormPeer::SetFocus() {
  if (!Window()) return;
  if (IsIconic(Window())) ShowWindow(Window(), SW_RESTORE);
  SetForegroundWindow(Window());
}

float FormPeer::TwipsPerPixel() const {
  return win32::TwipsPerPixel(scale_.DotsPerInch());
}

void FormPeer::DragByMouse() {
  if (!Window()) return;
  ReleaseCapture();
  SendMessageA(Window(), WM_NCLBUTTONDOWN, HTCAPTION, 0);
}

void FormPeer::Block(const ModalBlock& block) {
  blocks_.insert(&block);
  ApplyEnabled();
}

void FormPeer::Unblock(const ModalBlock& block) {
  blocks_.erase(&block);
  ApplyEnabled();
}

void FormPeer::ShowIt() {
  AttachToOwner();
  if (!placed_) Place();
  if (form_.IsModal() && !modalBlock_) modalBlock_.emplace(&form_);
  const HWND window = Window();
  ShowWindow(window, SW_SHOW);
  SetForegroundWindow(window);
}

void FormPeer::HideIt() {
  // The others must be within reach again before this one goes, or Windows activates another program.
  modalBlock_.reset();
  ShowWindow(Window(), SW_HIDE);
}

void FormPeer::Place() {
  const Writing writing(writing_);
  placed_ = true;
  const Form* owner = form_.Owner();
  const bool besideOwner =
      form_.GetStyle().centreOnOwner && owner && owner->Handle() != 0 && owner->Visible();
  if (!besideOwner && !form_.GetStyle().centreOnScreen && !form_.GetStyle().centreOnOwner) return;
  const auto ownerWindow = owner ? reinterpret_cast<HWND>(owner->Handle()) : nullptr;
  const RECT work = WorkAreaAround(ownerWindow);
  RECT around = work;
  if (besideOwner) GetWindowRect(ownerWindow, &around);
  RECT own;
  GetWindowRect(Window(), &own);
  const LONG width = own.right - own.left;
  const LONG height = own.bottom - own.top;
  LONG left = around.left + (around.right - around.left - width) / 2;
  LONG top = around.top + (around.bottom - around.top - height) / 2;
  if (left + width > work.right) left = work.right - width;
  if (top + height > work.bottom) top = work.bottom - height;
  if (left < work.left) left = work.left;
  if (top < work.top) top = work.top;
  SetWindowPos(Window(), nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

SIZE FormPeer::InnerSize() const {
  RECT inner{};
  GetClientRect(Window(), &inner);
  return {inner.right, inner.bottom};
}

void FormPeer::ApplyBounds() {
  if (IsIconic(Window()) || IsZoomed(Window())) return;
  {
    const Writing writing(writing_);
    const RECT wanted = scale_.Pixels(form_.GetBounds());
    POINT inner{};
    ClientToScreen(Window(), &inner);
    RECT outer;
    GetWindowRect(Window(), &outer);
    // Before the window has found its place, its bounds tell its size only.
    MoveTo(outer.left + wanted.left - inner.x, outer.top + wanted.top - inner.y, placed_ ? 0u : SWP_NOMOVE);
  }
  if (placed_) TellBounds();
}

void FormPeer::MoveTo(LONG left, LONG top, UINT flags) {
  size_ = {scale_.Pixels(form_.Width()), scale_.Pixels(form_.Height())};
  // How thick the frame is, only the window itself knows, and after the first step it may be another one.
  constexpr int kSteps = 2;
  for (int step = 0; step < kSteps; ++step) {
    RECT outer;
    GetWindowRect(Window(), &outer);
    const SIZE inner = InnerSize();
    if (step > 0 && inner.cx == size_.cx && inner.cy == size_.cy) return;
    SetWindowPos(Window(), nullptr, left, top, outer.right - outer.left - inner.cx + size_.cx,
                 outer.bottom - outer.top - inner.cy + size_.cy, SWP_NOZORDER | SWP_NOACTIVATE | flags);
  }
}

void FormPeer::TellBounds() {
  if (!Window() || IsIconic(Window())) return;
  const SIZE size = InnerSize();
  const bool resized = size.cx != size_.cx || size.cy != size_.cy;
  size_ = size;
  POINT origin{};
  ClientToScreen(Window(), &origin);
  // A size that didn't change keeps the form's own twips, which needn't be whole pixels.
  const Bounds bounds{scale_.ToTwips(origin.x), scale_.ToTwips(origin.y),
                      resized ? scale_.ToTwips(size.cx) : form_.Width(),
                      resized ? scale_.ToTwips(size.cy) : form_.Height()};
  if (!(bounds == form_.GetBounds())) form_.UserResize(bounds);
}

void FormPeer::ApplyIcon() {
  const auto small = static_cast<LPARAM>(surroundings_.screen.SmallIcon(form_.Icon()));
  const auto large = reinterpret_cast<LPARAM>(surroundings_.screen.LargeIcon(form_.Icon()));
  SendMessageA(Window(), WM_SETICON, ICON_SMALL, small);
  SendMessageA(Window(), WM_SETICON, ICON_BIG, large);
}

void FormPeer::ApplyShape() {
  HRGN region = nullptr;
  for (const PixelRun& run : form_.Shape()) {
    const HRGN part = CreateRectRgn(run.left, run.row, run.right, run.row + 1);
    if (!region) {
      region = part;
      continue;
    }
    CombineRgn(region, region, part, RGN_OR);
    DeleteObject(part);
  }
  // The region belongs to Windows from now on.
  SetWindowRgn(Window(), region, TRUE);
}

void FormPeer::ApplyEnabled() {
  if (!Window()) return;
  const BOOL enabled = form_.Enabled() && blocks_.empty() ? TRUE : FALSE;
  if (IsWindowEnabled(Window()) != enabled) EnableWindow(Window(), enabled);
}

void FormPeer::AttachToOwner() {
  HWND owner = nullptr;
  if (form_.Owner() && form_.Owner() != &form_) {
    owner = reinterpret_cast<HWND>(form_.Owner()->Handle());
  }
  // A window without an owner has its place in the task bar.
  if (!owner && !form_.GetStyle().inTaskBar) owner = surroundings_.utility.Window();
  SetWindowLongPtrA(Window(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
}

void FormPeer::ReleaseOwnedWindows() {
  // Windows takes away what a window owns together with it.
  for (const Form* form : Form::LoadedForms()) {
    const auto window = reinterpret_cast<HWND>(form->Handle());
    if (window && window != Window() && GetWindow(window, GW_OWNER) == Window()) {
      SetWindowLongPtrA(window, GWLP_HWNDPARENT, 0);
    }
  }
}

LRESULT FormPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == surroundings_.taskBarCreated) {
    form_.UserShellRestarted();
    return 0;
  }
  if (const auto answer = surroundings_.sessionEnd.Answer(Window(), message, wParam)) return *answer;
  if (const auto answer = ChildWindow::Reflect(message, wParam, lParam)) return *answer;
  switch (message) {
    case WM_SYSCOMMAND:
      // The close box, the system menu and the keys for it; anything else that closes windows sends WM_CLOSE.
      if ((wParam & 0xFFF0) != SC_CLOSE) break;
      if (IsWindowEnabled(Window())) form_.UserClose(CloseReason::kUser);
      return 0;
    case WM_CLOSE:
      form_.UserClose(CloseReason::kTaskManager);
      return 0;
    case WM_MOUSEMOVE:
      form_.UserMouseMove(static_cast<float>(GET_X_LPARAM(lParam)) * surroundings_.screen.TwipsPerPixelX(),
                          static_cast<float>(GET_Y_LPARAM(lParam)) * surroundings_.screen.TwipsPerPixelY());
      return 0;
    case WM_SIZE:
      OnSize(wParam);
      return 0;
    case WM_MOVE:
      OnMove();
      return 0;
    case WM_DPICHANGED:
      OnScale(Scale(HIWORD(wParam)), *reinterpret_cast<const RECT*>(lParam));
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) {
        const HWND focus = GetFocus();
        if (focus && IsChild(Window(), focus)) lastFocus_ = focus;
      }
      break;
    case WM_SETFOCUS:
      RestoreFocus();
      return 0;
    case WM_ERASEBKGND: {
      RECT inner;
      GetClientRect(Window(), &inner);
      FillRect(reinterpret_cast<HDC>(wParam), &inner,
               surroundings_.brushes.Get(NativeColor(form_.BackColor(), COLOR_BTNFACE)));
      return 1;
    }
    case DM_GETDEFID:
      return DefaultButton();
    case WM_COMMAND:
      OnCommand(wParam);
      return 0;
    case WM_HELP:
      form_.UserHelp();
      return TRUE;
    default:
      break;
  }
  return OwnWindow::OnMessage(message, wParam, lParam);
}

void FormPeer::OnSize(WPARAM kind) {
  if (!writing_ && kind != SIZE_MINIMIZED) TellBounds();
}

void FormPeer::OnMove() {
  if (!writing_ && placed_) TellBounds();
}

void FormPeer::OnScale(Scale scale, const RECT& suggested) {
  scale_ = scale;
  {
    const Writing writing(writing_);
    if (!IsIconic(Window())) MoveTo(suggested.left, suggested.top, IsZoomed(Window()) ? SWP_NOSIZE : 0u);
    Rescale(form_);
  }
  TellBounds();
  form_.UserScaleChanged();
}

void FormPeer::RestoreFocus() {
  const HWND last = lastFocus_;
  if (last && IsChild(Window(), last) && IsWindowVisible(last) && IsWindowEnabled(last)) {
    ::SetFocus(last);
  } else if (const HWND first = GetNextDlgTabItem(Window(), nullptr, FALSE)) {
    ::SetFocus(first);
  }
}

LRESULT FormPeer::DefaultButton() const {
  const Button* button = FindButton(form_, [](const Button& candidate) { return candidate.Default(); });
  return button ? MAKELRESULT(IdOf(*button), DC_HASDEFID) : 0;
}

void FormPeer::OnCommand(WPARAM wParam) {
  const int id = LOWORD(wParam);
  Button* button = id == IDCANCEL
                       ? FindButton(form_, [](const Button& candidate) { return candidate.Cancel(); })
                       : FindButton(form_, [id](const Button& candidate) { return IdOf(candidate) == id; });
  if (button) button->UserClick();
}

}  // namespace ui::win32
