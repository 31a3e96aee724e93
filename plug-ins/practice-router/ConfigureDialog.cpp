#include "ConfigureDialog.h"

#include <algorithm>
#include <array>

#include "HarbourlinePlugIn.h"
#include "Resources.h"

namespace practice {

namespace {

constexpr int kTitleId = 200;
constexpr int kWanLabelId = 201;
constexpr int kWanAddressId = 202;
constexpr int kFirstSwitchId = 210;
constexpr int kFirstHelpId = 220;
constexpr UINT kDpiChanged = 0x02E0;  // WM_DPICHANGED, newer than the Windows that this is compiled for

struct Switch {
  const wchar_t* caption;
  const wchar_t* help;
  bool Settings::*value;
};
constexpr std::array<Switch, 4> kSwitches = {{
    {L"&Router is working", L"Without the tick Harbourline says Offline.", &Settings::functional},
    {L"&Show a warning", L"The icon in the notification area flashes.", &Settings::warning},
    {L"Re&fuse port forwarding", L"Every activation fails, and the table stays as it is.",
     &Settings::refusePortForwarding},
    {L"&Make log traffic while logging is on", L"About two lines a second, from made-up visitors.",
     &Settings::makeLogTraffic},
}};

constexpr std::array<const wchar_t*, 2> kButtonTexts = {L"OK", L"Cancel"};
constexpr std::array<int, 2> kButtonIds = {IDOK, IDCANCEL};
constexpr wchar_t kTitle[] = L"Practice Router";
constexpr wchar_t kWanLabel[] = L"&WAN address";

int IdOf(HWND control) {
  return GetDlgCtrlID(control);
}

}  // namespace

bool ConfigureDialog::Run(HWND owner) {
  const INT_PTR result = DialogBoxParamW(harbourline::module::Handle(), MAKEINTRESOURCEW(IDD_CONFIGURE),
                                         owner, Procedure, reinterpret_cast<LPARAM>(this));
  dialog_ = nullptr;
  if (result == -1) throw harbourline::Failure(L"The dialog of the practice router can't be shown.");
  return result == IDOK;
}

INT_PTR CALLBACK ConfigureDialog::Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    auto* self = reinterpret_cast<ConfigureDialog*>(lParam);
    self->dialog_ = dialog;
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    self->look_ = std::make_unique<Look>(DpiOf(dialog));
    self->CreateControls();
    self->ApplyLook();
    self->Layout();
    SetFocus(GetDlgItem(dialog, kWanAddressId));
    return FALSE;
  }
  auto* self = reinterpret_cast<ConfigureDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
  return self ? self->OnMessage(message, wParam, lParam) : FALSE;
}

INT_PTR ConfigureDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK) Accept();
      if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) EndDialog(dialog_, LOWORD(wParam));
      return TRUE;
    case kDpiChanged:
      look_ = std::make_unique<Look>(LOWORD(wParam));
      ApplyLook();
      Layout();
      return TRUE;
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORBTN:
      return reinterpret_cast<INT_PTR>(look_->Ground());
    case WM_CTLCOLORSTATIC: {
      const auto device = reinterpret_cast<HDC>(wParam);
      const int id = IdOf(reinterpret_cast<HWND>(lParam));
      SetBkColor(device, kGroundColour);
      SetTextColor(device, id == kTitleId       ? kTitleColour
                           : id >= kFirstHelpId ? kHelpColour
                                                : GetSysColor(COLOR_WINDOWTEXT));
      return reinterpret_cast<INT_PTR>(look_->Ground());
    }
    case WM_CTLCOLOREDIT:
      SetTextColor(reinterpret_cast<HDC>(wParam), kNavy);
      return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
    default:
      return FALSE;
  }
}

HWND ConfigureDialog::AddChild(const wchar_t* className, const std::wstring& text, DWORD style, int id) {
  return CreateWindowExW(0, className, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, dialog_,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), harbourline::module::Handle(),
                         nullptr);
}

void ConfigureDialog::CreateControls() {
  AddChild(L"STATIC", kTitle, SS_LEFT | SS_NOPREFIX, kTitleId);
  AddChild(L"STATIC", kWanLabel, SS_LEFT, kWanLabelId);
  const HWND edit =
      AddChild(L"EDIT", settings_.wanAddress, WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL, kWanAddressId);
  constexpr WPARAM kLongestAddress = 64;
  SendMessageW(edit, EM_LIMITTEXT, kLongestAddress, 0);
  for (std::size_t i = 0; i < kSwitches.size(); ++i) {
    const int offset = static_cast<int>(i);
    AddChild(L"BUTTON", kSwitches[i].caption, WS_TABSTOP | BS_AUTOCHECKBOX, kFirstSwitchId + offset);
    AddChild(L"STATIC", kSwitches[i].help, SS_LEFT | SS_NOPREFIX, kFirstHelpId + offset);
    CheckDlgButton(dialog_, kFirstSwitchId + offset,
                   settings_.*kSwitches[i].value ? BST_CHECKED : BST_UNCHECKED);
  }
  AddChild(L"BUTTON", kButtonTexts[0], WS_TABSTOP | BS_DEFPUSHBUTTON, kButtonIds[0]);
  AddChild(L"BUTTON", kButtonTexts[1], WS_TABSTOP | BS_PUSHBUTTON, kButtonIds[1]);
}

void ConfigureDialog::ApplyLook() {
  SetFontOfChildren(dialog_, look_->Text());
  SetFont(GetDlgItem(dialog_, kTitleId), look_->Title());
}

void ConfigureDialog::Layout() {
  const Look& look = *look_;
  const int margin = look.Px(16);
  const int line = look.LineHeight();
  const int indent = look.Px(20);
  const auto place = [&](int id, int x, int y, int width, int height) {
    MoveWindow(GetDlgItem(dialog_, id), x, y, width, height, TRUE);
  };

  int width = look.Measure(look.Title(), kTitle).cx;
  for (const Switch& choice : kSwitches) {
    const int caption = look.Measure(look.Text(), choice.caption).cx;
    const int help = look.Measure(look.Text(), choice.help).cx;
    width = std::max(width, indent + std::max(caption, help));
  }
  width = std::max(width, look.Px(320));

  int y = look.Px(10);
  const int titleHeight = look.Measure(look.Title(), kTitle).cy;
  place(kTitleId, margin, y, width, titleHeight);
  y += titleHeight + look.Px(10);

  const int labelWidth = look.Measure(look.Text(), kWanLabel).cx + look.Px(8);
  const int editHeight = line + look.Px(6);
  place(kWanLabelId, margin, y + look.Px(3), labelWidth, line);
  place(kWanAddressId, margin + labelWidth, y, width - labelWidth, editHeight);
  y += editHeight + look.Px(14);

  for (int i = 0; i < static_cast<int>(kSwitches.size()); ++i) {
    place(kFirstSwitchId + i, margin, y, width, line);
    place(kFirstHelpId + i, margin + indent, y + line, width - indent, line);
    y += 2 * line + look.Px(10);
  }

  int buttonWidth = look.Px(88);
  for (const wchar_t* text : kButtonTexts) {
    buttonWidth = std::max<int>(buttonWidth, look.Measure(look.Text(), text).cx + look.Px(28));
  }
  const int buttonHeight = line + look.Px(10);
  y += look.Px(4);
  place(IDCANCEL, margin + width - buttonWidth, y, buttonWidth, buttonHeight);
  place(IDOK, margin + width - 2 * buttonWidth - look.Px(8), y, buttonWidth, buttonHeight);

  RECT frame = {0, 0, width + 2 * margin, y + buttonHeight + look.Px(14)};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(dialog_, GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongW(dialog_, GWL_EXSTYLE)));
  const int outerWidth = frame.right - frame.left;
  const int outerHeight = frame.bottom - frame.top;
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(dialog_, MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT& work = monitor.rcWork;
  SetWindowPos(dialog_, nullptr, (work.left + work.right - outerWidth) / 2,
               (work.top + work.bottom - outerHeight) / 2, outerWidth, outerHeight,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void ConfigureDialog::Accept() {
  std::array<wchar_t, 128> text = {};
  GetDlgItemTextW(dialog_, kWanAddressId, text.data(), static_cast<int>(text.size()));
  settings_.wanAddress = text.data();
  for (std::size_t i = 0; i < kSwitches.size(); ++i) {
    settings_.*kSwitches[i].value =
        IsDlgButtonChecked(dialog_, kFirstSwitchId + static_cast<int>(i)) == BST_CHECKED;
  }
}

}  // namespace practice
