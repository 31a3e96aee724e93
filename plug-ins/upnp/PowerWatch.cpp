#include "PowerWatch.h"

#include <utility>

#include "HarbourlinePlugIn.h"

namespace upnp {

namespace {

constexpr wchar_t kClassName[] = L"HarbourlineUpnpPower";

}  // namespace

/// The word goes to top-level windows only, so this is one that is never shown.
PowerWatch::PowerWatch(std::function<void()> onResume) : onResume_(std::move(onResume)) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = harbourline::module::Handle();
  windowClass.lpszClassName = kClassName;
  // Another object of ours may have registered it.
  RegisterClassW(&windowClass);
  window_ = CreateWindowExW(0, kClassName, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, windowClass.hInstance,
                            this);
  if (window_) SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

PowerWatch::~PowerWatch() {
  if (window_) DestroyWindow(window_);
  UnregisterClassW(kClassName, harbourline::module::Handle());
}

LRESULT CALLBACK PowerWatch::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* self = reinterpret_cast<PowerWatch*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  const bool woke = wParam == PBT_APMRESUMEAUTOMATIC || wParam == PBT_APMRESUMESUSPEND;
  if (self && message == WM_POWERBROADCAST && woke) self->onResume_();
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace upnp
