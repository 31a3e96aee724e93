#include "RouterWindow.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace practice {

namespace {

constexpr wchar_t kWindowClass[] = L"HarbourlinePracticeRouter";
constexpr wchar_t kWindowTitle[] = L"Practice Router";
constexpr int kTableId = 101;
constexpr int kCallsId = 102;
constexpr int kRaiseErrorId = 103;
constexpr int kConfigureId = 104;
constexpr UINT kDpiChanged = 0x02E0;  // WM_DPICHANGED, newer than the Windows that this is compiled for

constexpr int kMargin = 12;
constexpr int kGap = 6;
constexpr int kSmallestListHeight = 96;
// The widest text that the log's line is likely to hold.
constexpr wchar_t kWidestLogText[] = L"On, 99999 lines to 192.168.100.200, 9999 left out";

constexpr std::array<const wchar_t*, 6> kFactNames = {L"WAN address", L"Status", L"Warning",
                                                      L"DMZ host",    L"Log",    L"Forwarding"};

int instances = 0;

void RegisterWindowClass(WNDPROC procedure) {
  if (instances++ > 0) return;
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = harbourline::module::Handle();
  windowClass.hIcon = LoadIconW(windowClass.hInstance, MAKEINTRESOURCEW(1));
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kWindowClass;
  RegisterClassExW(&windowClass);
}

// A class whose DLL has left the memory must not be found by the next copy of the DLL.
void UnregisterWindowClass() {
  if (--instances == 0) UnregisterClassW(kWindowClass, harbourline::module::Handle());
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace

RouterWindow::RouterWindow(const RouterState& state, Actions actions)
    : state_(state), actions_(std::move(actions)) {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
  RegisterWindowClass(Procedure);
  CreateWindowExW(0, kWindowClass, kWindowTitle, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                  CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                  harbourline::module::Handle(), this);
  if (!window_) return;
  look_ = std::make_unique<Look>(DpiOf(window_));
  CreateControls();
  ApplyLook();
  const SIZE smallest = SmallestWindow();
  RECT work = {};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  SetWindowPos(window_, nullptr, 0, 0,
               std::max<int>(smallest.cx, std::min<int>(look_->Px(720), work.right - work.left)),
               std::max<int>(smallest.cy, std::min<int>(look_->Px(600), work.bottom - work.top)),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  Refresh();
  RefreshTable();
}

RouterWindow::~RouterWindow() {
  if (window_) DestroyWindow(window_);
  UnregisterWindowClass();
}

void RouterWindow::Appear() {
  if (window_ && !IsWindowVisible(window_)) ShowWindow(window_, SW_SHOWNOACTIVATE);
}

void RouterWindow::BringToFront() {
  if (!window_) return;
  ShowWindow(window_, IsIconic(window_) ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(window_);
}

LRESULT CALLBACK RouterWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<RouterWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<RouterWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  // Before the look is there the controls aren't either.
  if (!self || !self->look_) return DefWindowProcW(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    self->window_ = nullptr;
  }
  return self->OnMessage(message, wParam, lParam);
}

LRESULT RouterWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  switch (message) {
    case WM_CLOSE:
      ShowWindow(window, SW_HIDE);
      return 0;
    case WM_SIZE:
      Layout();
      return 0;
    case WM_GETMINMAXINFO: {
      const SIZE smallest = SmallestWindow();
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
      return 0;
    }
    case kDpiChanged: {
      look_ = std::make_unique<Look>(LOWORD(wParam));
      ApplyLook();
      const RECT& wanted = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(window, nullptr, wanted.left, wanted.top, wanted.right - wanted.left,
                   wanted.bottom - wanted.top, SWP_NOZORDER | SWP_NOACTIVATE);
      Layout();
      return 0;
    }
    case WM_ERASEBKGND: {
      RECT client = {};
      GetClientRect(window, &client);
      FillRect(reinterpret_cast<HDC>(wParam), &client, look_->Ground());
      return 1;
    }
    case WM_CTLCOLORSTATIC:
      SetTextColor(reinterpret_cast<HDC>(wParam), ColourOf(reinterpret_cast<HWND>(lParam)));
      SetBkColor(reinterpret_cast<HDC>(wParam), kGroundColour);
      return reinterpret_cast<LRESULT>(look_->Ground());
    case WM_CTLCOLORBTN:
      return reinterpret_cast<LRESULT>(look_->Ground());
    case WM_NOTIFY:
      if (reinterpret_cast<NMHDR*>(lParam)->code == LVN_GETDISPINFOW) {
        FillCell(*reinterpret_cast<NMLVDISPINFOW*>(lParam));
        return 0;
      }
      break;
    case WM_COMMAND:
      OnCommand(LOWORD(wParam));
      return 0;
    default:
      break;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

void RouterWindow::OnCommand(int id) {
  // The action may end in the release of the router and with it of this window, so it runs from a copy.
  const std::function<void()> action = id == kRaiseErrorId  ? actions_.raiseError
                                       : id == kConfigureId ? actions_.configure
                                                            : nullptr;
  if (action) action();
}

HWND RouterWindow::AddChild(const wchar_t* className, const wchar_t* text, DWORD style, int id) {
  return CreateWindowExW(0, className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window_,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), harbourline::module::Handle(),
                         nullptr);
}

HWND RouterWindow::AddLabel(const wchar_t* text) {
  return AddChild(L"STATIC", text, SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS, 0);
}

void RouterWindow::AddList(List& list, int id, std::vector<std::wstring> captions, std::size_t stretched) {
  list.captions = std::move(captions);
  list.stretched = stretched;
  list.widest.assign(list.captions.size(), 0);
  list.handle = AddChild(
      WC_LISTVIEWW, L"",
      WS_BORDER | WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER, id);
  ListView_SetExtendedListViewStyle(list.handle, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  ListView_SetTextColor(list.handle, kNavy);
  for (std::size_t i = 0; i < list.captions.size(); ++i) {
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = list.captions[i].data();
    column.iSubItem = static_cast<int>(i);
    SendMessageW(list.handle, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
  }
}

void RouterWindow::CreateControls() {
  title_ = AddLabel(kWindowTitle);
  help_ = AddLabel(L"A router to practise with. It opens nothing: here you see what it is told.");
  for (std::size_t i = 0; i < facts_.size(); ++i) {
    facts_[i].name = AddLabel(kFactNames[i]);
    facts_[i].value = AddLabel(L"");
  }
  tableHeading_ = AddLabel(L"Port forwarding");
  AddList(table_, kTableId, {L"Profile", L"Description", L"Ports", L"Protocol", L"Forward to"}, 1);
  callsHeading_ = AddLabel(L"Last calls");
  AddList(calls_, kCallsId, {L"Time", L"Call", L"Answer"}, 1);
  raiseError_ = AddChild(L"BUTTON", L"Raise an error", WS_TABSTOP | BS_PUSHBUTTON, kRaiseErrorId);
  configure_ = AddChild(L"BUTTON", L"Configure...", WS_TABSTOP | BS_PUSHBUTTON, kConfigureId);
}

void RouterWindow::ApplyLook() {
  SetFontOfChildren(window_, look_->Text());
  SetFont(title_, look_->Title());
  SetFont(tableHeading_, look_->Heading());
  SetFont(callsHeading_, look_->Heading());
  MeasureCaptions(calls_);
  for (std::size_t row = 0; row < state_.calls.Lines().size(); ++row) MeasureRow(calls_, row);
  RefreshTable();
}

int RouterWindow::FactNameWidth(Fact first, Fact end) const {
  int width = 0;
  for (std::size_t i = first; i < end; ++i) {
    width = std::max<int>(width, look_->Measure(look_->Text(), kFactNames[i]).cx);
  }
  return width + look_->Px(kMargin);
}

SIZE RouterWindow::SmallestWindow() const {
  const Look& look = *look_;
  const int leftValue = look.Measure(look.Text(), L"255.255.255.255").cx + look.Px(2 * kMargin);
  const int rightValue = look.Measure(look.Text(), kWidestLogText).cx;
  const int facts =
      FactNameWidth(kWanAddress, kDmzHost) + leftValue + FactNameWidth(kDmzHost, kFactCount) + rightValue;
  const int help = look.Measure(look.Text(), TextOf(help_)).cx;
  const int lines = look.Measure(look.Title(), L"W").cy + 7 * look.LineHeight();
  RECT frame = {0, 0, std::max(facts, help) + look.Px(2 * kMargin),
                lines + look.Px(2 * kSmallestListHeight + 2 * kMargin + 12 * kGap)};
  AdjustWindowRectEx(&frame, WS_OVERLAPPEDWINDOW, FALSE, 0);
  return {frame.right - frame.left, frame.bottom - frame.top};
}

int RouterWindow::LayoutFacts(int left, int top, int width) {
  const Look& look = *look_;
  const int leftName = FactNameWidth(kWanAddress, kDmzHost);
  const int rightName = FactNameWidth(kDmzHost, kFactCount);
  const int rightValue = look.Measure(look.Text(), kWidestLogText).cx;
  // The right half has the longest text, so what is left over beyond it is shared.
  const int needed = leftName + rightName + rightValue;
  const int leftValue = look.Measure(look.Text(), L"255.255.255.255").cx + look.Px(2 * kMargin);
  const int leftHalf = leftName + leftValue + std::max(0, width - needed - leftValue) / 2;
  const int height = look.LineHeight();
  for (std::size_t i = 0; i < facts_.size(); ++i) {
    const bool isLeft = i < kDmzHost;
    const int x = isLeft ? left : left + leftHalf;
    const int y = top + static_cast<int>(i % kDmzHost) * (height + look.Px(2));
    const int nameWidth = isLeft ? leftName : rightName;
    const int half = isLeft ? leftHalf : width - leftHalf;
    MoveWindow(facts_[i].name, x, y, nameWidth, height, TRUE);
    MoveWindow(facts_[i].value, x + nameWidth, y, half - nameWidth, height, TRUE);
  }
  return top + static_cast<int>(kDmzHost) * (height + look.Px(2));
}

void RouterWindow::Layout() {
  RECT client = {};
  GetClientRect(window_, &client);
  const Look& look = *look_;
  const int left = look.Px(kMargin);
  const int width = client.right - 2 * left;
  const int line = look.LineHeight();
  const int gap = look.Px(kGap);

  int y = look.Px(kGap);
  const int titleHeight = look.Measure(look.Title(), L"W").cy;
  MoveWindow(title_, left, y, width, titleHeight, TRUE);
  y += titleHeight;
  MoveWindow(help_, left, y, width, line, TRUE);
  y = LayoutFacts(left, y + line + 2 * gap, width) + 2 * gap;

  const int buttonHeight = line + look.Px(10);
  const int buttonTop = client.bottom - look.Px(kMargin) - buttonHeight;
  int right = client.right - left;
  for (const HWND button : {configure_, raiseError_}) {
    const int buttonWidth = look.Measure(look.Text(), TextOf(button)).cx + look.Px(28);
    MoveWindow(button, right - buttonWidth, buttonTop, buttonWidth, buttonHeight, TRUE);
    right -= buttonWidth + look.Px(8);
  }

  const int listRoom = buttonTop - 2 * gap - y - 2 * (line + gap / 2) - 2 * gap;
  const int tableHeight = listRoom * 55 / 100;
  MoveWindow(tableHeading_, left, y, width, line, TRUE);
  y += line + gap / 2;
  MoveWindow(table_.handle, left, y, width, tableHeight, TRUE);
  y += tableHeight + 2 * gap;
  MoveWindow(callsHeading_, left, y, width, line, TRUE);
  y += line + gap / 2;
  MoveWindow(calls_.handle, left, y, width, listRoom - tableHeight, TRUE);
  FitColumns(table_);
  FitColumns(calls_);
  // A moved label keeps the picture of its old place, where a neighbour may have stood.
  RedrawWindow(window_, nullptr, nullptr, RDW_ERASE | RDW_INVALIDATE | RDW_ALLCHILDREN);
}

void RouterWindow::FitColumns(const List& list) {
  RECT client = {};
  GetClientRect(list.handle, &client);
  const int padding = look_->Px(14);
  int room = client.right;
  for (std::size_t i = 0; i < list.widest.size(); ++i) room -= list.widest[i] + padding;
  // Room for the vertical bar, so that it never brings a horizontal one along.
  if (!(GetWindowLongW(list.handle, GWL_STYLE) & WS_VSCROLL)) room -= GetSystemMetrics(SM_CXVSCROLL);
  for (std::size_t i = 0; i < list.widest.size(); ++i) {
    const int width = list.widest[i] + padding + (i == list.stretched ? std::max(0, room) : 0);
    if (ListView_GetColumnWidth(list.handle, i) != width) {
      ListView_SetColumnWidth(list.handle, static_cast<int>(i), width);
    }
  }
}

void RouterWindow::MeasureCaptions(List& list) {
  for (std::size_t i = 0; i < list.widest.size(); ++i) {
    list.widest[i] = look_->Measure(look_->Text(), list.captions[i]).cx;
  }
}

void RouterWindow::MeasureRow(List& list, std::size_t row) {
  for (std::size_t column = 0; column < list.widest.size(); ++column) {
    const int width = look_->Measure(look_->Text(), Cell(list, row, column)).cx;
    list.widest[column] = std::max(list.widest[column], width);
  }
}

void RouterWindow::ShowFact(Fact fact, const std::wstring& value, COLORREF colour) {
  FactLabels& labels = facts_[fact];
  if (labels.colour == colour && TextOf(labels.value) == value) return;
  labels.colour = colour;
  SetWindowTextW(labels.value, value.c_str());
  InvalidateRect(labels.value, nullptr, TRUE);
}

void RouterWindow::Refresh() {
  if (!window_) return;
  const Settings& settings = state_.settings;
  ShowFact(kWanAddress, settings.wanAddress, kNavy);
  ShowFact(kStatus, settings.functional ? L"Working" : L"Not working",
           settings.functional ? kNavy : kDarkRed);
  ShowFact(kWarning, settings.warning ? L"Shown" : L"None", settings.warning ? kDarkRed : kNavy);
  ShowFact(kDmzHost, settings.dmzHost == 0 ? L"None" : state_.HostAddress(settings.dmzHost), kNavy);
  ShowFact(kForwarding, settings.refusePortForwarding ? L"Refused" : L"Accepted",
           settings.refusePortForwarding ? kDarkRed : kNavy);
  std::wstring log = settings.enableLog ? L"On" : L"Off";
  if (settings.enableLog && !settings.makeLogTraffic) log += L", no traffic";
  if (state_.MakesTraffic()) {
    log += L", " + std::to_wstring(state_.linesRaised) + L" lines to " + state_.loggingAddress;
    if (state_.linesFiltered > 0) log += L", " + std::to_wstring(state_.linesFiltered) + L" left out";
  }
  ShowFact(kLog, log, kNavy);

  const std::size_t rows = state_.calls.Lines().size();
  if (rows > 0) MeasureRow(calls_, 0);
  ListView_SetItemCountEx(calls_.handle, static_cast<int>(rows), LVSICF_NOSCROLL);
  InvalidateRect(calls_.handle, nullptr, FALSE);
  FitColumns(calls_);
}

void RouterWindow::RefreshTable() {
  if (!window_) return;
  const std::size_t rows = state_.table.Entries().size();
  constexpr std::size_t kMeasured = 300;
  MeasureCaptions(table_);
  for (std::size_t row = 0; row < std::min(rows, kMeasured); ++row) MeasureRow(table_, row);
  ListView_SetItemCountEx(table_.handle, static_cast<int>(rows), LVSICF_NOSCROLL);
  InvalidateRect(table_.handle, nullptr, FALSE);
  FitColumns(table_);
}

void RouterWindow::FillCell(NMLVDISPINFOW& info) {
  LVITEMW& item = info.item;
  if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0 || item.iItem < 0 || item.iSubItem < 0) return;
  const List& list = info.hdr.hwndFrom == table_.handle ? table_ : calls_;
  const std::wstring text =
      Cell(list, static_cast<std::size_t>(item.iItem), static_cast<std::size_t>(item.iSubItem));
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
  std::memcpy(item.pszText, text.c_str(), length * sizeof(wchar_t));
  item.pszText[length] = L'\0';
}

std::wstring RouterWindow::Cell(const List& list, std::size_t row, std::size_t column) const {
  if (&list == &calls_) {
    if (row >= state_.calls.Lines().size()) return {};
    const CallLine& line = state_.calls.Lines()[row];
    if (column == 0) return line.time;
    if (column == 2) return line.answer;
    return line.count == 1 ? line.call : line.call + L"  \u00D7 " + std::to_wstring(line.count);
  }
  if (row >= state_.table.Entries().size()) return {};
  const harbourline::Mapping& mapping = state_.table.Entries()[row];
  switch (column) {
    case 0:
      return mapping.profileName;
    case 1:
      return mapping.description;
    case 2:
      return mapping.beginPort == mapping.endPort
                 ? std::to_wstring(mapping.beginPort)
                 : std::to_wstring(mapping.beginPort) + L" - " + std::to_wstring(mapping.endPort);
    case 3:
      return ProtocolText(mapping);
    default:
      return state_.HostAddress(mapping.forwardIPAddress);
  }
}

COLORREF RouterWindow::ColourOf(HWND label) const {
  if (label == title_ || label == tableHeading_ || label == callsHeading_) return kTitleColour;
  if (label == help_) return kHelpColour;
  for (const FactLabels& fact : facts_) {
    if (label == fact.value) return fact.colour;
  }
  return GetSysColor(COLOR_WINDOWTEXT);
}

}  // namespace practice
