#include "support/WindowProgram.h"

#include "support/Files.h"
#include "support/Program.h"

WindowProgram::WindowProgram(const std::string& className, const std::string& title)
    : className_(className), title_(title) {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  std::string command =
      "\"" + BuiltFile(HARBOURLINE_WINDOW_PROGRAM) + "\" \"" + className + "\" \"" + title + "\"";
  CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process_);
  WaitFor([this] { return Runs(); });
}

WindowProgram::~WindowProgram() {
  TerminateProcess(process_.hProcess, 99);
  WaitForSingleObject(process_.hProcess, 10'000);
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
}

bool WindowProgram::Runs() const {
  const HWND window = FindWindowA(className_.c_str(), title_.c_str());
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  return window && owner == process_.dwProcessId && IsWindowVisible(window);
}

bool WindowProgram::Close() {
  PostMessageA(FindWindowA(className_.c_str(), title_.c_str()), WM_SYSCOMMAND, SC_CLOSE, 0);
  DWORD code = STILL_ACTIVE;
  return WaitForSingleObject(process_.hProcess, 10'000) == WAIT_OBJECT_0 &&
         GetExitCodeProcess(process_.hProcess, &code) && code == 0;
}
