#include "support/MainWindow.h"

#include <algorithm>

#include "driver/Controls.h"
#include "driver/Input.h"

namespace {

constexpr char kExecutable[] = "Harbourline.exe";
constexpr ULONGLONG kAtRest = 200;
constexpr ULONGLONG kPatience = 6'000;
constexpr int kAttempts = 4;
constexpr UINT kAnswerTime = 8'000;

bool ClickMiddle(const RECT& place) {
  return desktop::Click((place.left + place.right) / 2, (place.top + place.bottom) / 2,
                        desktop::MouseButton::kLeft);
}

bool HasPlace(const desktop::Item& item) {
  return item.place.right > item.place.left;
}

/// Asks for a shorter time than WaitFor, for what may have to be done once more.
template <typename Condition>
bool Soon(Condition condition) {
  const ULONGLONG end = GetTickCount64() + kPatience;
  while (!condition()) {
    if (GetTickCount64() > end) return false;
    Sleep(20);
  }
  return true;
}

HWND VisibleControl(const std::string& path) {
  const HWND window = desktop::FindControl(kExecutable, path);
  return IsWindowVisible(window) ? window : nullptr;
}

}  // namespace

bool MainWindow::Open() const {
  constexpr int kClicks = 3;
  for (int click = 0; click < kClicks; ++click) {
    // From the end of the menu: cancel, exit, help, setup. A program that is still starting has no menu yet.
    if (program_.ChooseByArrows("{UP}{UP}{UP}{UP}{ENTER}") && Soon([this] { return IsVisible(); }))
      return true;
  }
  return false;
}

bool MainWindow::IsVisible() const {
  return IsWindowVisible(program_.Find("frmMain")) != FALSE;
}

HWND MainWindow::Control(const std::string& path) {
  return WaitFor([&] { return VisibleControl(path); });
}

std::string MainWindow::TextOf(const std::string& path) {
  return desktop::TextOf(desktop::FindControl(kExecutable, path));
}

bool MainWindow::HasKeyboard() const {
  return desktop::ProgramOf(GetForegroundWindow()) == kExecutable;
}

bool MainWindow::Click(const std::string& path) const {
  const HWND window = Control(path);
  if (!window || !WaitFor([this] { return StaysSo(kAtRest, [this] { return HasKeyboard(); }); }))
    return false;
  RECT place{};
  return GetWindowRect(window, &place) && ClickMiddle(place);
}

bool MainWindow::ClickItem(const std::string& path, const std::string& text) const {
  const HWND window = Control(path);
  if (!window || !WaitFor([this] { return StaysSo(kAtRest, [this] { return HasKeyboard(); }); }))
    return false;
  const auto items = desktop::ItemsOf(window);
  const auto found = std::find_if(items.begin(), items.end(), [&](const desktop::Item& item) {
    return item.text == text && HasPlace(item);
  });
  return found != items.end() && ClickMiddle(found->place);
}

bool MainWindow::OpenPage(const std::string& node, const std::string& control) const {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    ClickItem("tvCategories", node);
    if (Soon([&] { return VisibleControl(control) != nullptr; })) return true;
  }
  return false;
}

bool MainWindow::Type(const std::string& keys) const {
  return WaitFor([this] { return StaysSo(kAtRest, [this] { return HasKeyboard(); }); }) &&
         desktop::Type(keys);
}

bool MainWindow::Fill(const std::string& path, const std::string& text) const {
  const HWND box = Control(path);
  const auto hasFocus = [=] {
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    return GetGUIThreadInfo(GetWindowThreadProcessId(box, nullptr), &state) && state.hwndFocus == box;
  };
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    // A click that is handled after the selection would undo it, so a box that has the focus gets none.
    if (!hasFocus() && (!Click(path) || !Soon(hasFocus))) continue;
    SendMessageTimeoutA(box, EM_SETSEL, 0, -1, SMTO_NORMAL, kAnswerTime, nullptr);
    if (Type(text) && Soon([&] { return TextOf(path) == text; })) return true;
  }
  return false;
}

bool MainWindow::IsChecked(const std::string& path) {
  return SendMessageA(Control(path), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

std::vector<std::string> MainWindow::Texts(const std::string& path) {
  std::vector<std::string> texts;
  for (const desktop::Item& item : desktop::ItemsOf(Control(path))) texts.push_back(item.text);
  return texts;
}

bool MainWindow::Choose(const std::string& path, const std::string& text) {
  const HWND list = Control(path);
  DWORD_PTR entry = 0;
  // The list may be being filled.
  const bool found = WaitFor([&] {
    return SendMessageTimeoutA(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                               reinterpret_cast<LPARAM>(text.c_str()), SMTO_NORMAL, kAnswerTime, &entry) &&
           static_cast<LRESULT>(entry) != CB_ERR;
  });
  if (!found) return false;
  // The system tells a window of its own choice only when the user makes it.
  SendMessageTimeoutA(list, CB_SETCURSEL, entry, 0, SMTO_NORMAL, kAnswerTime, nullptr);
  return SendMessageTimeoutA(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), CBN_SELCHANGE),
                             reinterpret_cast<LPARAM>(list), SMTO_NORMAL, kAnswerTime, nullptr) != 0;
}
