#include "support/Program.h"

#include <algorithm>

#include "driver/Input.h"
#include "support/Files.h"

namespace {

std::string FreshFolder() {
  static int number = 0;
  char temporary[MAX_PATH] = "";
  GetTempPathA(sizeof temporary, temporary);
  std::string folder = std::string(temporary) + "harbourline-" + std::to_string(GetCurrentProcessId()) + "-" +
                       std::to_string(++number);
  CreateDirectoryA(folder.c_str(), nullptr);
  return folder;
}

std::string ControlNameOf(HWND window) {
  const auto atom = reinterpret_cast<std::uintptr_t>(GetPropA(window, "HarbourlineControl"));
  char name[256] = "";
  if (atom != 0) GlobalGetAtomNameA(static_cast<ATOM>(atom), name, sizeof name);
  return name;
}

std::string WithoutAccessKey(std::string caption) {
  std::erase(caption, '&');
  return caption;
}

/// The windows of one process, hidden ones too.
template <typename Visit>
void ForEachWindow(DWORD process, Visit visit) {
  struct Search {
    DWORD process;
    Visit* visit;

    static BOOL CALLBACK Take(HWND window, LPARAM parameter) {
      const auto& wanted = *reinterpret_cast<Search*>(parameter);
      DWORD owner = 0;
      GetWindowThreadProcessId(window, &owner);
      if (owner == wanted.process) (*wanted.visit)(window);
      return TRUE;
    }
  } search{process, &visit};
  EnumWindows(&Search::Take, reinterpret_cast<LPARAM>(&search));
}

POINT MiddleOf(const RECT& place) {
  return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

/// The icon's place once the window manager has stopped moving it: a click where it was before would hit the
/// frame of the notification area.
std::optional<POINT> WaitForRestingIcon() {
  constexpr int kLooks = 15;
  int same = 0;
  POINT last{-1, -1};
  const bool rests = WaitFor([&] {
    const auto now = Program::Icon();
    const bool moved = !now || now->x != last.x || now->y != last.y;
    same = moved ? 0 : same + 1;
    if (now) last = *now;
    return same >= kLooks;
  });
  return rests ? std::optional(last) : std::nullopt;
}

}  // namespace

Program::Program() : folder_(FreshFolder()) {
  CopyFileA(BuiltFile(HARBOURLINE_EXECUTABLE).c_str(), Executable().c_str(), FALSE);
}

Program::~Program() {
  for (const PROCESS_INFORMATION& process : processes_) {
    TerminateProcess(process.hProcess, 99);
    WaitForSingleObject(process.hProcess, 10'000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  WIN32_FIND_DATAA found;
  const HANDLE search = FindFirstFileA((folder_ + "\\*").c_str(), &found);
  do {
    DeleteFileA((folder_ + "\\" + found.cFileName).c_str());
  } while (FindNextFileA(search, &found));
  FindClose(search);
  RemoveDirectoryA(folder_.c_str());
}

void Program::Start() {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  std::string command = "\"" + Executable() + "\"";
  if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, folder_.c_str(), &startup,
                     &process)) {
    processes_.push_back(process);
  }
}

bool Program::StartAndWait() {
  Start();
  // The icon is there before the start is over; a program that waits for input has nothing left to do.
  return WaitForInputIdle(processes_.back().hProcess, 20'000) == 0 &&
         WaitFor([this] { return Find("frmSysTray") != nullptr && Icon().has_value(); });
}

bool Program::HasEnded() const {
  return WaitForSingleObject(processes_.back().hProcess, 0) == WAIT_OBJECT_0;
}

bool Program::WaitForEnd() const {
  return WaitForSingleObject(processes_.back().hProcess, 20'000) == WAIT_OBJECT_0;
}

DWORD Program::ExitCode() const {
  DWORD code = 0;
  GetExitCodeProcess(processes_.back().hProcess, &code);
  return code;
}

void Program::Kill() const {
  TerminateProcess(processes_.back().hProcess, 99);
  WaitForSingleObject(processes_.back().hProcess, 10'000);
}

int Program::Running() const {
  return static_cast<int>(
      std::count_if(processes_.begin(), processes_.end(), [](const PROCESS_INFORMATION& process) {
        return WaitForSingleObject(process.hProcess, 0) != WAIT_OBJECT_0;
      }));
}

HWND Program::Find(const std::string& controlName) const {
  HWND found = nullptr;
  ForEachWindow(processes_.back().dwProcessId, [&](HWND window) {
    if (ControlNameOf(window) == controlName) found = window;
  });
  return found;
}

std::optional<Box> Program::FindBox() const {
  HWND window = nullptr;
  ForEachWindow(processes_.back().dwProcessId, [&](HWND candidate) {
    char name[16] = "";
    GetClassNameA(candidate, name, sizeof name);
    if (std::string(name) == "#32770" && IsWindowVisible(candidate)) window = candidate;
  });
  if (!window) return std::nullopt;
  Box box{window, desktop::TextOf(window), {}, {}};
  for (const desktop::Window& part : desktop::Inside(window)) {
    if (part.className == "Button") box.buttons.push_back(WithoutAccessKey(part.text));
    if (part.className == "Static" && !part.text.empty()) box.text += part.text;
  }
  if (box.buttons.empty() || box.text.empty()) return std::nullopt;
  return box;
}

std::optional<Box> Program::WaitForBox() const {
  return WaitFor([this] { return FindBox(); });
}

bool Program::Press(const Box& box, const std::string& caption) {
  for (const desktop::Window& part : desktop::Inside(box.window)) {
    if (part.className != "Button" || WithoutAccessKey(part.text) != caption) continue;
    const POINT place = MiddleOf(part.place);
    desktop::Click(place.x, place.y, desktop::MouseButton::kLeft);
    return WaitFor([&] { return !IsWindow(box.window) || !IsWindowVisible(box.window); });
  }
  return false;
}

std::optional<POINT> Program::Icon() {
  for (const desktop::Window& window : desktop::TopLevelWindows()) {
    if (window.text != "Wine System Tray") continue;
    const auto icons = desktop::Inside(window.handle);
    if (!icons.empty()) return MiddleOf(icons.front().place);
  }
  return std::nullopt;
}

int Program::OpenMenus() const {
  int menus = 0;
  ForEachWindow(processes_.back().dwProcessId, [&](HWND window) {
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    if (std::string(name) == "#32768" && IsWindowVisible(window)) ++menus;
  });
  return menus;
}

bool Program::ClickIcon() {
  const auto icon = WaitForRestingIcon();
  return icon && desktop::Click(icon->x, icon->y, desktop::MouseButton::kRight);
}

bool Program::OpenMenu() const {
  return ClickIcon() && WaitFor([this] { return OpenMenus() == 1; });
}

bool Program::Choose(const std::string& key, const std::string& inSubmenu) const {
  if (!OpenMenu()) return false;
  // A menu that has just opened may not have the keyboard yet; the key is pressed again when nothing came of
  // it.
  const int wanted = inSubmenu.empty() ? 0 : 2;
  constexpr int kAttempts = 5;
  constexpr ULONGLONG kPatience = 2'000;
  for (int attempt = 0; attempt < kAttempts && OpenMenus() == 1; ++attempt) {
    if (!desktop::Type(key)) return false;
    const ULONGLONG end = GetTickCount64() + kPatience;
    while (OpenMenus() != wanted && GetTickCount64() < end) Sleep(20);
  }
  if (OpenMenus() != wanted || !desktop::Type(inSubmenu)) return false;
  return WaitFor([this] { return OpenMenus() == 0; });
}

bool Program::ChooseByArrows(const std::string& keys) const {
  if (!OpenMenu()) return false;
  const bool listens = WaitFor([this] {
    DWORD process = 0;
    GUITHREADINFO state{};
    state.cbSize = sizeof state;
    const HWND front = GetForegroundWindow();
    return GetGUIThreadInfo(GetWindowThreadProcessId(front, &process), &state) &&
           process == processes_.back().dwProcessId && (state.flags & GUI_INMENUMODE) != 0;
  });
  return listens && desktop::Type(keys) && WaitFor([this] { return OpenMenus() == 0; });
}

bool Program::Exit() const {
  if (!Choose("e")) return false;
  const auto box = WaitForBox();
  return box && Press(*box, "Yes") && WaitForEnd();
}
