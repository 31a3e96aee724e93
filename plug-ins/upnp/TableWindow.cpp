#include "TableWindow.h"

#include <array>
#include <utility>
#include <vector>

#include "HarbourlinePlugIn.h"
#include "Resources.h"
#include "Text.h"
#include "rules/TableRows.h"

namespace upnp {

using harbourline::Look;

namespace {

constexpr wchar_t kWindowClass[] = L"HarbourlineUpnpTable";
constexpr wchar_t kTitle[] = L"Router's mappings";
constexpr int kListId = 101;
constexpr int kAgainId = 102;
constexpr UINT_PTR kReadTimer = 1;
constexpr UINT kReadTimerMilliseconds = 100;

/// The time of the day at which a lease ends.
std::wstring EndOf(std::uint32_t lease) {
  if (lease == 0) return L"For ever";
  FILETIME now = {};
  GetSystemTimeAsFileTime(&now);
  ULARGE_INTEGER end = {};
  end.LowPart = now.dwLowDateTime;
  end.HighPart = now.dwHighDateTime;
  constexpr ULONGLONG kTicksASecond = 10000000;
  end.QuadPart += lease * kTicksASecond;
  const FILETIME endTime = {end.LowPart, end.HighPart};
  FILETIME localTime = {};
  SYSTEMTIME time = {};
  FileTimeToLocalFileTime(&endTime, &localTime);
  FileTimeToSystemTime(&localTime, &time);
  std::array<wchar_t, 64> day = {};
  std::array<wchar_t, 64> clock = {};
  GetTimeFormatW(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &time, nullptr, clock.data(),
                 static_cast<int>(clock.size()));
  constexpr std::uint32_t kDay = 24 * 60 * 60;
  if (lease < kDay) return clock.data();
  GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, day.data(),
                 static_cast<int>(day.size()));
  return std::wstring(day.data()) + L" " + clock.data();
}

void RegisterWindowClass(WNDPROC procedure) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = harbourline::module::Handle();
  windowClass.hIcon = LoadIconW(windowClass.hInstance, MAKEINTRESOURCEW(IDI_ROUTER));
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kWindowClass;
  RegisterClassExW(&windowClass);
}

}  // namespace

TableWindow::TableWindow(Worker& worker) : worker_(worker) {
  RegisterWindowClass(Procedure);
  CreateWindowExW(0, kWindowClass, kTitle, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                  CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                  harbourline::module::Handle(), this);
  if (!window_) return;
  look_ = std::make_unique<Look>(harbourline::DpiOf(window_));
  CreateControls();
  SetWindowPos(window_, nullptr, 0, 0, look_->Px(760), look_->Px(420),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  Layout();
}

TableWindow::~TableWindow() {
  if (window_) DestroyWindow(window_);
  UnregisterClassW(kWindowClass, harbourline::module::Handle());
}

void TableWindow::BringToFront() {
  if (!window_) return;
  ShowWindow(window_, IsIconic(window_) ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(window_);
  Read();
}

LRESULT CALLBACK TableWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<TableWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<TableWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  // Before the look is there the controls aren't either.
  if (!self || !self->look_) return DefWindowProcW(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    self->window_ = nullptr;
    return DefWindowProcW(window, message, wParam, lParam);
  }
  return self->OnMessage(message, wParam, lParam);
}

LRESULT TableWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CLOSE:
      ShowWindow(window_, SW_HIDE);
      return 0;
    case WM_SIZE:
      Layout();
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {look_->Px(420), look_->Px(260)};
      return 0;
    case harbourline::kDpiChanged: {
      look_ = std::make_unique<Look>(LOWORD(wParam));
      const RECT& wanted = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(window_, nullptr, wanted.left, wanted.top, wanted.right - wanted.left,
                   wanted.bottom - wanted.top, SWP_NOZORDER | SWP_NOACTIVATE);
      Layout();
      return 0;
    }
    case WM_ERASEBKGND: {
      RECT client = {};
      GetClientRect(window_, &client);
      FillRect(reinterpret_cast<HDC>(wParam), &client, look_->Ground());
      return 1;
    }
    case WM_CTLCOLORSTATIC: {
      const bool isTitle = reinterpret_cast<HWND>(lParam) == title_;
      SetTextColor(reinterpret_cast<HDC>(wParam),
                   isTitle ? harbourline::kTitleColour : harbourline::kHelpColour);
      SetBkColor(reinterpret_cast<HDC>(wParam), harbourline::kGroundColour);
      return reinterpret_cast<LRESULT>(look_->Ground());
    }
    case WM_CTLCOLORBTN:
      return reinterpret_cast<LRESULT>(look_->Ground());
    case WM_NOTIFY:
      if (list_.OnNotify(lParam)) return 0;
      break;
    case WM_COMMAND:
      if (LOWORD(wParam) == kAgainId) Read();
      return 0;
    case WM_TIMER:
      LookWhetherRead();
      return 0;
    default:
      break;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

void TableWindow::CreateControls() {
  const auto add = [this](const wchar_t* className, const wchar_t* text, DWORD style, int id) {
    return CreateWindowExW(0, className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window_,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), harbourline::module::Handle(),
                           nullptr);
  };
  title_ = add(L"STATIC", kTitle, SS_LEFT | SS_NOPREFIX, 0);
  help_ = add(L"STATIC", L"", SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS, 0);
  list_.Create(window_, kListId, {L"Port", L"Whose", L"For", L"Until", L"Description"});
  again_ = add(L"BUTTON", L"&Read again", WS_TABSTOP | BS_PUSHBUTTON, kAgainId);
}

void TableWindow::Layout() {
  harbourline::SetFontOfChildren(window_, look_->Text());
  harbourline::SetFont(title_, look_->Title());
  RECT client = {};
  GetClientRect(window_, &client);
  const int margin = look_->Px(12);
  const int width = client.right - 2 * margin;
  const int titleHeight = look_->Measure(look_->Title(), kTitle).cy;
  const int line = look_->LineHeight();
  int y = look_->Px(6);
  MoveWindow(title_, margin, y, width, titleHeight, TRUE);
  y += titleHeight;
  MoveWindow(help_, margin, y, width, line, TRUE);
  y += line + look_->Px(8);
  const int buttonHeight = line + look_->Px(10);
  const int buttonWidth = look_->Measure(look_->Text(), L"Read again").cx + look_->Px(28);
  const int buttonTop = client.bottom - margin - buttonHeight;
  MoveWindow(list_.Handle(), margin, y, width, buttonTop - margin - y, TRUE);
  MoveWindow(again_, client.right - margin - buttonWidth, buttonTop, buttonWidth, buttonHeight, TRUE);
  list_.FitColumns(*look_);
  RedrawWindow(window_, nullptr, nullptr, RDW_ERASE | RDW_INVALIDATE | RDW_ALLCHILDREN);
}

void TableWindow::Tell(const std::wstring& text) {
  SetWindowTextW(help_, text.c_str());
}

void TableWindow::Read() {
  if (task_) return;
  Tell(L"Reading...");
  EnableWindow(again_, FALSE);
  reading_ = std::make_shared<Reading>();
  task_ = worker_.Do([reading = reading_](Engine& engine) {
    reading->table = engine.ReadWholeTable();
    reading->localAddress = engine.State().current.localAddress;
    reading->router = engine.State().current.name;
  });
  SetTimer(window_, kReadTimer, kReadTimerMilliseconds, nullptr);
}

void TableWindow::LookWhetherRead() {
  if (!task_ || !task_->IsDone()) return;
  KillTimer(window_, kReadTimer);
  task_.reset();
  EnableWindow(again_, TRUE);
  std::vector<RowList::Row> rows;
  for (const TableRow& row : DescribeTable(reading_->table.entries, reading_->localAddress)) {
    rows.push_back(
        {Wide(row.port), Wide(row.whose), Wide(row.target), EndOf(row.lease), Wide(row.description)});
  }
  const std::wstring count =
      std::to_wstring(rows.size()) + (rows.size() == 1 ? L" mapping on " : L" mappings on ");
  if (reading_->router.empty()) {
    Tell(L"No router answers.");
  } else if (reading_->table.complete) {
    Tell(count + Wide(reading_->router) + L".");
  } else {
    Tell(count + Wide(reading_->router) +
         L", and perhaps more: the router doesn't tell the end of its table.");
  }
  list_.Show(std::move(rows), *look_);
}

}  // namespace upnp
