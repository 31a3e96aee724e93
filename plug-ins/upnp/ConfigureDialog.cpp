#include "ConfigureDialog.h"

#include <algorithm>
#include <utility>

#include "HarbourlinePlugIn.h"
#include "Resources.h"
#include "Text.h"
#include "log/Texts.h"

namespace upnp {

using harbourline::Look;

namespace {

constexpr int kTitleId = 200;
constexpr int kHelpId = 201;
constexpr int kListId = 202;
constexpr int kSearchId = 203;
constexpr int kAdviceId = 204;
constexpr int kLogHeadingId = 205;
constexpr int kHowToId = 206;
constexpr int kPortLabelId = 207;
constexpr int kPortId = 208;
constexpr int kArrivalsId = 209;
constexpr int kTraceId = 210;
constexpr UINT kHighestPort = 65535;
constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshMilliseconds = 200;

constexpr wchar_t kTitle[] = L"UPnP Internet Gateway";
constexpr wchar_t kHelp[] =
    L"These routers answer in your network. Take the one that leads to the Internet, or let the plug-in "
    L"choose.";
constexpr wchar_t kSearch[] = L"&Look again";
constexpr wchar_t kAccept[] = L"OK";
constexpr wchar_t kCancel[] = L"Cancel";
constexpr int kListRows = 6;
constexpr int kAdviceLines = 4;
constexpr int kHowToLines = 4;
constexpr wchar_t kLogHeading[] = L"Activity log";
constexpr wchar_t kTrace[] = L"&Write what the plug-in does to UpnpRouter.log, for support";
constexpr wchar_t kPortLabel[] = L"&Port of the router's log";

std::wstring StateOf(const FoundGateway& gateway, bool inUse) {
  return std::wstring(gateway.connected ? L"Connected" : L"Not connected") + (inUse ? L", in use" : L"");
}

COLORREF ColourOf(int label) {
  switch (label) {
    case kTitleId:
    case kLogHeadingId:
      return harbourline::kTitleColour;
    case kAdviceId:
      return harbourline::kDarkRed;
    case kArrivalsId:
      return harbourline::kNavy;
    case kPortLabelId:
      return GetSysColor(COLOR_WINDOWTEXT);
    default:
      return harbourline::kHelpColour;
  }
}

/// Many makers put their name into the model's.
std::string ModelOf(const FoundGateway& gateway) {
  if (gateway.maker.empty() || gateway.model.find(gateway.maker) != std::string::npos) return gateway.model;
  return gateway.maker + " " + gateway.model;
}

std::wstring OrDash(const std::string& text) {
  return text.empty() ? L"\u2013" : Wide(text);
}

}  // namespace

ConfigureDialog::ConfigureDialog(Worker& worker, Choice choice, std::function<std::wstring()> arrivals)
    : worker_(worker), choice_(std::move(choice)), arrivals_(std::move(arrivals)) {}

bool ConfigureDialog::Run(HWND owner) {
  const INT_PTR result = DialogBoxParamW(harbourline::module::Handle(), MAKEINTRESOURCEW(IDD_CONFIGURE),
                                         owner, Procedure, reinterpret_cast<LPARAM>(this));
  dialog_ = nullptr;
  if (result == -1) throw harbourline::Failure(L"The dialog of the UPnP plug-in can't be shown.");
  return result == IDOK;
}

INT_PTR CALLBACK ConfigureDialog::Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    auto* self = reinterpret_cast<ConfigureDialog*>(lParam);
    self->dialog_ = dialog;
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    self->look_ = std::make_unique<Look>(harbourline::DpiOf(dialog));
    self->CreateControls();
    self->ApplyLook();
    self->Layout();
    self->Search();
    self->Refresh();
    SetFocus(self->list_.Handle());
    return FALSE;
  }
  auto* self = reinterpret_cast<ConfigureDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
  return self ? self->OnMessage(message, wParam, lParam) : FALSE;
}

INT_PTR ConfigureDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(wParam));
      return TRUE;
    case WM_NOTIFY:
      if (list_.OnNotify(lParam)) return TRUE;
      if (reinterpret_cast<NMHDR*>(lParam)->code == NM_DBLCLK && list_.Selected() >= 0) OnCommand(IDOK);
      return FALSE;
    case WM_TIMER:
      Refresh();
      return TRUE;
    case harbourline::kDpiChanged:
      look_ = std::make_unique<Look>(LOWORD(wParam));
      ApplyLook();
      Layout();
      return TRUE;
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORBTN:
      return reinterpret_cast<INT_PTR>(look_->Ground());
    case WM_CTLCOLORSTATIC: {
      const auto device = reinterpret_cast<HDC>(wParam);
      const int id = GetDlgCtrlID(reinterpret_cast<HWND>(lParam));
      SetBkColor(device, harbourline::kGroundColour);
      SetTextColor(device, ColourOf(id));
      return reinterpret_cast<INT_PTR>(look_->Ground());
    }
    default:
      return FALSE;
  }
}

void ConfigureDialog::OnCommand(int id) {
  if (id == kSearchId) return Search();
  if (id == IDCANCEL || (id == IDOK && Accept())) EndDialog(dialog_, id);
}

/// False when the port is none; the user is told.
bool ConfigureDialog::Accept() {
  BOOL isNumber = FALSE;
  const UINT port = GetDlgItemInt(dialog_, kPortId, &isNumber, FALSE);
  if (!isNumber || port < 1 || port > kHighestPort) {
    MessageBoxW(dialog_, L"The port of the router's log is a number from 1 to 65535.", kTitle,
                MB_OK | MB_ICONWARNING);
    SetFocus(GetDlgItem(dialog_, kPortId));
    SendDlgItemMessageW(dialog_, kPortId, EM_SETSEL, 0, -1);
    return false;
  }
  choice_.syslogPort = static_cast<std::uint16_t>(port);
  choice_.trace = IsDlgButtonChecked(dialog_, kTraceId) == BST_CHECKED;
  const int row = list_.Selected();
  if (row >= 0 && static_cast<std::size_t>(row) < devices_.size()) {
    choice_.device = devices_[static_cast<std::size_t>(row)];
  }
  return true;
}

void ConfigureDialog::CreateControls() {
  const auto add = [this](const wchar_t* className, const wchar_t* text, DWORD style, int id) {
    CreateWindowExW(0, className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, dialog_,
                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), harbourline::module::Handle(),
                    nullptr);
  };
  add(L"STATIC", kTitle, SS_LEFT | SS_NOPREFIX, kTitleId);
  add(L"STATIC", kHelp, SS_LEFT | SS_NOPREFIX, kHelpId);
  list_.Create(dialog_, kListId, {L"Router", L"Model", L"Address", L"WAN address", L"State"});
  add(L"STATIC", L"", SS_LEFT | SS_NOPREFIX, kAdviceId);
  add(L"STATIC", kLogHeading, SS_LEFT | SS_NOPREFIX, kLogHeadingId);
  add(L"STATIC", L"", SS_LEFT | SS_NOPREFIX, kHowToId);
  add(L"STATIC", kPortLabel, SS_LEFT, kPortLabelId);
  add(L"EDIT", L"", WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL | ES_NUMBER, kPortId);
  add(L"STATIC", L"", SS_LEFT | SS_NOPREFIX, kArrivalsId);
  SendDlgItemMessageW(dialog_, kPortId, EM_LIMITTEXT, 5, 0);
  SetDlgItemInt(dialog_, kPortId, choice_.syslogPort, FALSE);
  add(L"BUTTON", kTrace, WS_TABSTOP | BS_AUTOCHECKBOX, kTraceId);
  CheckDlgButton(dialog_, kTraceId, choice_.trace ? BST_CHECKED : BST_UNCHECKED);
  add(L"BUTTON", kSearch, WS_TABSTOP | BS_PUSHBUTTON, kSearchId);
  add(L"BUTTON", kAccept, WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK);
  add(L"BUTTON", kCancel, WS_TABSTOP | BS_PUSHBUTTON, IDCANCEL);
  SetTimer(dialog_, kRefreshTimer, kRefreshMilliseconds, nullptr);
}

void ConfigureDialog::ApplyLook() {
  harbourline::SetFontOfChildren(dialog_, look_->Text());
  harbourline::SetFont(GetDlgItem(dialog_, kTitleId), look_->Title());
  harbourline::SetFont(GetDlgItem(dialog_, kLogHeadingId), look_->Heading());
}

void ConfigureDialog::Layout() {
  const Look& look = *look_;
  const int margin = look.Px(16);
  const int line = look.LineHeight();
  const auto place = [&](int id, int x, int y, int width, int height) {
    MoveWindow(GetDlgItem(dialog_, id), x, y, width, height, TRUE);
  };
  const int width = std::max<int>(look.Px(620), look.Measure(look.Text(), kHelp).cx);
  int y = look.Px(10);
  const int titleHeight = look.Measure(look.Title(), kTitle).cy;
  place(kTitleId, margin, y, width, titleHeight);
  y += titleHeight + look.Px(4);
  place(kHelpId, margin, y, width, line);
  y += line + look.Px(10);
  const int listHeight = (kListRows + 1) * (line + look.Px(4));
  place(kListId, margin, y, width, listHeight);
  y += listHeight + look.Px(8);
  place(kAdviceId, margin, y, width, kAdviceLines * line);
  y += kAdviceLines * line + look.Px(10);

  place(kLogHeadingId, margin, y, width, line);
  y += line + look.Px(2);
  place(kHowToId, margin, y, width, kHowToLines * line);
  y += kHowToLines * line + look.Px(6);
  const int labelWidth = look.Measure(look.Text(), kPortLabel).cx + look.Px(8);
  const int editWidth = look.Measure(look.Text(), L"65535").cx + look.Px(20);
  place(kPortLabelId, margin, y + look.Px(3), labelWidth, line);
  place(kPortId, margin + labelWidth, y, editWidth, line + look.Px(6));
  const int arrivalsLeft = margin + labelWidth + editWidth + look.Px(16);
  place(kArrivalsId, arrivalsLeft, y + look.Px(3), margin + width - arrivalsLeft, 2 * line);
  y += 2 * line + look.Px(8);
  place(kTraceId, margin, y, width, line + look.Px(4));
  y += line + look.Px(20);

  const int buttonHeight = line + look.Px(10);
  const auto widthOf = [&](const wchar_t* text) {
    return std::max<int>(look.Px(88), look.Measure(look.Text(), text).cx + look.Px(28));
  };
  place(kSearchId, margin, y, widthOf(kSearch), buttonHeight);
  const int cancelLeft = margin + width - widthOf(kCancel);
  place(IDCANCEL, cancelLeft, y, widthOf(kCancel), buttonHeight);
  place(IDOK, cancelLeft - look.Px(8) - widthOf(kAccept), y, widthOf(kAccept), buttonHeight);

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
  list_.FitColumns(look);
}

void ConfigureDialog::Search() {
  if (search_ && !search_->IsDone()) return;
  search_ = worker_.Do([](Engine& engine) { engine.SearchAgain(); });
  Refresh();
}

void ConfigureDialog::Refresh() {
  const Known known = worker_.Look();
  const bool searching = !search_->IsDone();
  EnableWindow(GetDlgItem(dialog_, kSearchId), searching ? FALSE : TRUE);
  ShowRouters(known.report);
  Tell(kAdviceId, searching ? L"Looking for routers..." : Advice(known));
  BOOL isNumber = FALSE;
  const UINT port = GetDlgItemInt(dialog_, kPortId, &isNumber, FALSE);
  const bool isPort = isNumber && port >= 1 && port <= kHighestPort;
  Tell(kHowToId,
       Wide(log::HowToPointARouterHere(known.report.current.localAddress,
                                       isPort ? static_cast<std::uint16_t>(port) : choice_.syslogPort)));
  Tell(kArrivalsId, arrivals_());
}

/// A text that stays isn't drawn again.
void ConfigureDialog::Tell(int id, const std::wstring& text) {
  if (const auto told = told_.find(id); told != told_.end() && told->second == text) return;
  told_[id] = text;
  SetDlgItemTextW(dialog_, id, text.c_str());
}

void ConfigureDialog::ShowRouters(const Report& report) {
  const int selected = list_.Selected();
  const bool first = devices_.empty();
  const std::string wanted =
      !first && selected >= 0 ? devices_[static_cast<std::size_t>(selected)] : choice_.device;
  std::vector<RowList::Row> rows = {{L"Let the plug-in choose", L"", L"", L"", L""}};
  devices_ = {{}};
  for (const FoundGateway& gateway : report.gateways) {
    rows.push_back({OrDash(gateway.name), OrDash(ModelOf(gateway)), OrDash(gateway.Address()),
                    OrDash(gateway.wanAddress), StateOf(gateway, gateway.device == report.current.device)});
    devices_.push_back(gateway.device);
  }
  if (!choice_.device.empty() &&
      std::find(devices_.begin(), devices_.end(), choice_.device) == devices_.end()) {
    rows.push_back({L"The router chosen before", L"", L"", L"", L"Doesn't answer"});
    devices_.push_back(choice_.device);
  }
  list_.Show(std::move(rows), *look_);
  const auto at = std::find(devices_.begin(), devices_.end(), wanted);
  const int row = at == devices_.end() ? 0 : static_cast<int>(at - devices_.begin());
  if (row != list_.Selected()) list_.Select(row);
}

std::wstring ConfigureDialog::Advice(const Known& known) const {
  if (known.report.gateways.empty()) return Wide(Explain({Trouble::kNoRouter, 0, 0, Protocol::kTcp, {}, 0}));
  std::wstring advice;
  for (const Problem& problem : known.report.problems) {
    if (problem.trouble == Trouble::kDoubleNat || problem.trouble == Trouble::kWanDown)
      advice += Wide(Explain(problem));
  }
  return advice;
}

}  // namespace upnp
