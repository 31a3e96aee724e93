#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "driver/Desktop.h"

/// Asks again and again for up to fifteen seconds; the last answer.
template <typename Find>
auto WaitFor(Find find) {
  const ULONGLONG end = GetTickCount64() + 15'000;
  for (;;) {
    if (auto found = find(); found || GetTickCount64() > end) return found;
    Sleep(20);
  }
}

/// Asks again and again for so many milliseconds; true when the answer was always yes.
template <typename Condition>
bool StaysSo(ULONGLONG milliseconds, Condition condition) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  for (;;) {
    if (!condition()) return false;
    if (GetTickCount64() > end) return true;
    Sleep(20);
  }
}

/// A message box of the program as a user sees it.
struct Box {
  HWND window = nullptr;
  std::string title;
  std::string text;
  std::vector<std::string> buttons;
};

/// The built program, installed into a folder of its own and used from outside: a process, its windows, its
/// icon.
class Program {
 public:
  /// Copies the executable into a fresh folder.
  Program();
  /// Ends what still runs and removes the folder.
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  const std::string& Folder() const { return folder_; }
  std::string Executable() const { return folder_ + "\\Harbourline.exe"; }

  /// Starts the program; the process is the newest one. Doesn't wait for anything.
  void Start();
  /// Starts the program and waits until its icon stands in the notification area. False when that doesn't
  /// happen.
  bool StartAndWait();
  /// True when the newest process has ended by itself.
  bool HasEnded() const;
  bool WaitForEnd() const;
  DWORD ExitCode() const;
  /// Ends the newest process without a word to it, as a crash does.
  void Kill() const;
  /// Processes of this installation that were started and haven't ended.
  int Running() const;

  /// The newest process's window of that settled name, hidden ones too; null when there is none.
  HWND Find(const std::string& controlName) const;
  /// The newest process's message box; nothing when none is up.
  std::optional<Box> FindBox() const;
  std::optional<Box> WaitForBox() const;
  /// Presses the button with that caption ("Yes"), its "&" aside, by the mouse; false when there is none.
  static bool Press(const Box& box, const std::string& caption);

  /// Where the icon stands on the screen; nothing when it isn't there.
  static std::optional<POINT> Icon();
  /// Clicks the icon with the right button.
  static bool ClickIcon();
  /// Clicks the icon with the right button and waits for the menu.
  bool OpenMenu() const;
  /// Opens the menu and types the key of an entry into it, then, when that opens a submenu, the keys there.
  /// Waits until all menus are closed.
  bool Choose(const std::string& key, const std::string& inSubmenu = {}) const;
  /// Opens the menu and types keys into it when it has the keyboard. Waits until it is closed.
  bool ChooseByArrows(const std::string& keys) const;
  /// The pop-up menus that are open now.
  int OpenMenus() const;

  /// Chooses "Exit", answers Yes and waits for the end. False when a step doesn't happen.
  bool Exit() const;

 private:
  std::string folder_;
  std::vector<PROCESS_INFORMATION> processes_;
};
