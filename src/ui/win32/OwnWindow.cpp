#include "ui/win32/OwnWindow.h"

#include <cstdint>
#include <string>

#include "platform/win32/SystemError.h"

namespace ui::win32 {

void SetControlName(HWND window, const std::string& name) {
  const ATOM atom = GlobalAddAtomA(name.c_str());
  if (atom == 0) return;
  SetPropA(window, kControlProperty, reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(atom)));
}

void RemoveControlName(HWND window) {
  const auto atom = reinterpret_cast<std::uintptr_t>(RemovePropA(window, kControlProperty));
  if (atom != 0) GlobalDeleteAtom(static_cast<ATOM>(atom));
}

HINSTANCE ThisModule() {
  return GetModuleHandleA(nullptr);
}

namespace {

/// The picture that the shell shows for the program, in the size of that metric: every window has it that is
/// given no other.
HICON ProgramIcon(int metric) {
  HICON icon = nullptr;
  struct Request {
    int side;
    HICON& icon;
    static BOOL CALLBACK TakeFirst(HMODULE module, LPCSTR, LPSTR name, LONG_PTR self) {
      const auto& request = *reinterpret_cast<Request*>(self);
      request.icon =
          static_cast<HICON>(LoadImageA(module, name, IMAGE_ICON, request.side, request.side, LR_SHARED));
      return FALSE;
    }
  } request{GetSystemMetrics(metric), icon};
  EnumResourceNamesA(ThisModule(), reinterpret_cast<LPCSTR>(RT_GROUP_ICON), &Request::TakeFirst,
                     reinterpret_cast<LONG_PTR>(&request));
  return icon;
}

}  // namespace

void OwnWindow::Create(const Creation& creation) {
  WNDCLASSEXA windowClass{};
  windowClass.cbSize = sizeof windowClass;
  if (!GetClassInfoExA(ThisModule(), creation.className, &windowClass)) {
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = ThisModule();
    windowClass.hIcon = ProgramIcon(SM_CXICON);
    windowClass.hIconSm = ProgramIcon(SM_CXSMICON);
    windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    windowClass.lpszClassName = creation.className;
    RegisterClassExA(&windowClass);
  }
  const RECT& place = creation.place;
  const HWND window = CreateWindowExA(creation.extendedStyle, creation.className, creation.title.c_str(),
                                      creation.style, place.left, place.top, place.right - place.left,
                                      place.bottom - place.top, creation.parent, nullptr, ThisModule(), this);
  if (!window)
    throw platform::win32::WindowsError("A window can't be made", static_cast<LSTATUS>(GetLastError()));
  if (!creation.controlName.empty()) SetControlName(window, creation.controlName);
}

void OwnWindow::Destroy() {
  if (!window_) return;
  const HWND window = window_;
  window_ = nullptr;
  // What the window still hears on its way out no longer concerns this object.
  SetWindowLongPtrA(window, GWLP_USERDATA, 0);
  RemoveControlName(window);
  DestroyWindow(window);
}

LRESULT OwnWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  return DefWindowProcA(window_, message, wParam, lParam);
}

LRESULT CALLBACK OwnWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<OwnWindow*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<OwnWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (!self) return DefWindowProcA(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    // Windows took the window away together with its owner or parent.
    RemoveControlName(window);
    SetWindowLongPtrA(window, GWLP_USERDATA, 0);
    self->window_ = nullptr;
    return DefWindowProcA(window, message, wParam, lParam);
  }
  return self->OnMessage(message, wParam, lParam);
}

}  // namespace ui::win32
