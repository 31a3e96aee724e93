#include "ui/win32/PanelPeer.h"

#include "ui/Frame.h"
#include "ui/win32/OwnWindow.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {
namespace {

constexpr UINT kHide = WM_APP + 2;

const char* PanelClass() {
  static constexpr char kName[] = "HarbourlinePanel";
  WNDCLASSEXA panel{};
  panel.cbSize = sizeof panel;
  if (!GetClassInfoExA(ThisModule(), kName, &panel)) {
    panel.lpfnWndProc = DefWindowProcA;
    panel.hInstance = ThisModule();
    panel.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    panel.lpszClassName = kName;
    RegisterClassExA(&panel);
  }
  return kName;
}

/// The first window below the parent that takes the focus; null for none.
HWND FirstTabStop(HWND parent) {
  constexpr LONG kMask = WS_VISIBLE | WS_DISABLED;
  for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    const LONG style = GetWindowLongA(child, GWL_STYLE);
    if ((style & kMask) != WS_VISIBLE) continue;
    if ((style & WS_TABSTOP) != 0) return child;
    if (const HWND below = FirstTabStop(child)) return below;
  }
  return nullptr;
}

const Frame* AsFrame(const Control& control) {
  return control.GetKind() == Kind::kFrame ? static_cast<const Frame*>(&control) : nullptr;
}

}  // namespace

PanelPeer::PanelPeer(Control& control, Surroundings& surroundings)
    : ChildPeer(control, surroundings),
      control_(control),
      border_(AsFrame(control) && AsFrame(control)->Border()) {
  CreateNative(PanelClass(), WS_CLIPCHILDREN, WS_EX_CONTROLPARENT,
               border_ ? AsFrame(control)->Caption() : std::string());
}

void PanelPeer::Show(Aspect aspect) {
  if (aspect == Aspect::kVisible && !control_.Visible()) {
    PostMessageA(Window(), kHide, 0, 0);
    return;
  }
  ChildPeer::Show(aspect);
  // Transparent controls on it show its ground.
  if (aspect == Aspect::kColors) {
    RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  }
  if (aspect == Aspect::kBounds && border_) InvalidateRect(Window(), nullptr, TRUE);
}

LRESULT PanelPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto answer = Reflect(message, wParam, lParam)) return *answer;
  switch (message) {
    case kHide:
      if (!control_.Visible()) Hide();
      return 0;
    case WM_SETFOCUS:
      PassFocusIn();
      return 0;
    case WM_ERASEBKGND: {
      RECT inner;
      GetClientRect(Window(), &inner);
      FillRect(reinterpret_cast<HDC>(wParam), &inner, Around().brushes.Get(Ground()));
      return 1;
    }
    case WM_PAINT:
      if (!border_) break;
      Paint();
      return 0;
    default:
      break;
  }
  return PassOn(message, wParam, lParam);
}

void PanelPeer::PassFocusIn() const {
  if (const HWND first = FirstTabStop(Window())) ::SetFocus(first);
}

void PanelPeer::Paint() {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(Window(), &paint);
  const HGDIOBJ fontBefore = SelectObject(context, NativeFont());
  const std::string& caption = AsFrame(control_)->Caption();
  TEXTMETRICA metrics;
  GetTextMetricsA(context, &metrics);
  RECT border;
  GetClientRect(Window(), &border);
  border.top += caption.empty() ? 0 : metrics.tmHeight / 2;
  DrawEdge(context, &border, EDGE_ETCHED, BF_RECT);
  if (!caption.empty()) {
    SetTextColor(context, TextColor());
    SetBkColor(context, Ground());
    RECT text{metrics.tmAveCharWidth, 0, border.right, metrics.tmHeight};
    const std::string padded = " " + caption + " ";
    DrawTextA(context, padded.c_str(), -1, &text, DT_SINGLELINE | DT_LEFT | DT_TOP);
  }
  SelectObject(context, fontBefore);
  EndPaint(Window(), &paint);
}

}  // namespace ui::win32
