#include "ProgressWindow.h"

#include <commctrl.h>

#include <string>

#include "HarbourlinePlugIn.h"

namespace upnp {

using harbourline::Look;

namespace {

constexpr DWORD kAppearAfterMilliseconds = 1000;
constexpr DWORD kLookEveryMilliseconds = 100;
constexpr wchar_t kTitle[] = L"UPnP Internet Gateway";

std::wstring Describe(const ProgressSteps& steps) {
  if (steps.total == 0 || steps.done == 0) return L"Waiting for the router...";
  return L"Port " + std::to_wstring(steps.done) + L" of " + std::to_wstring(steps.total) + L"...";
}

class ProgressWindow {
 public:
  ProgressWindow() : look_(harbourline::DpiOf(GetDesktopWindow())) {
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    // The class of dialogs paints a ground and no text of its own.
    const int width = look_.Px(280);
    const int height = look_.Px(96);
    window_ = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, L"#32770", kTitle, WS_POPUP | WS_CAPTION,
                              (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                              (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height, nullptr, nullptr,
                              harbourline::module::Handle(), nullptr);
    const int margin = look_.Px(12);
    const int line = look_.LineHeight();
    RECT client = {};
    GetClientRect(window_, &client);
    const int inner = client.right - 2 * margin;
    text_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_NOPREFIX, margin, look_.Px(6),
                            inner, line, window_, nullptr, harbourline::module::Handle(), nullptr);
    bar_ = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD | WS_VISIBLE, margin, look_.Px(12) + line, inner,
                           look_.Px(16), window_, nullptr, harbourline::module::Handle(), nullptr);
    harbourline::SetFont(text_, look_.Text());
    ShowWindow(window_, SW_SHOWNOACTIVATE);
  }
  ~ProgressWindow() { DestroyWindow(window_); }
  ProgressWindow(const ProgressWindow&) = delete;
  ProgressWindow& operator=(const ProgressWindow&) = delete;

  void Show(const ProgressSteps& steps) {
    const std::wstring text = Describe(steps);
    if (text != shown_) SetWindowTextW(text_, text.c_str());
    shown_ = text;
    SendMessageW(bar_, PBM_SETRANGE32, 0, static_cast<LPARAM>(steps.total));
    SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(steps.done), 0);
    RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  }

 private:
  Look look_;
  HWND window_ = nullptr;
  HWND text_ = nullptr;
  HWND bar_ = nullptr;
  std::wstring shown_;
};

}  // namespace

bool WaitWithProgress(HANDLE done, DWORD milliseconds, const std::function<ProgressSteps()>& look) {
  const ULONGLONG begin = GetTickCount64();
  std::unique_ptr<ProgressWindow> window;
  while (true) {
    const ULONGLONG passed = GetTickCount64() - begin;
    if (passed >= milliseconds) return WaitForSingleObject(done, 0) == WAIT_OBJECT_0;
    if (passed >= kAppearAfterMilliseconds && !window) window = std::make_unique<ProgressWindow>();
    if (window) window->Show(look());
    const DWORD result =
        MsgWaitForMultipleObjectsEx(1, &done, kLookEveryMilliseconds, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
    if (result == WAIT_OBJECT_0) return true;
    // Who sends a message to a window of this thread waits for its answer.
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
}

}  // namespace upnp
