#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace support {

/// The test program can be started once more to be something else than tests: a second copy of a program, a
/// server. A role is defined at namespace scope beside the test that needs it.
class Role {
 public:
  using Body = int (*)(const std::vector<std::string>& arguments);
  /// `name` is the first argument of the process and must not look like an option.
  Role(const char* name, Body body);
};

/// The exit code of the role that the command line asks for, if it asks for one.
std::optional<int> PlayRole(std::span<char*> commandLine);

/// Full path of the test program.
std::string OwnProgram();

/// A folder of its own that goes away with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  /// Without a backslash at the end.
  const std::string& Path() const { return path_; }
  /// The full path of a copy of the test program in it.
  std::string CopyOfProgram(const std::string& name) const;

 private:
  std::string path_;
};

/// A process that ends with the object.
class ChildProcess {
 public:
  /// Arguments must not contain blanks or quotes.
  ChildProcess(const std::string& program, const std::vector<std::string>& arguments);
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&&) = delete;
  ~ChildProcess();

  DWORD Id() const { return id_; }
  /// The exit code, or nothing when the process doesn't end within half a minute.
  std::optional<DWORD> ExitCode() const;

 private:
  HANDLE process_ = nullptr;
  DWORD id_ = 0;
};

/// A named event or semaphore by which processes tell each other how far they are.
class Signal {
 public:
  /// The same name gives the same signal in every process.
  explicit Signal(const std::string& name);
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;
  ~Signal();

  void Send(LONG count = 1) const;
  /// Takes one of what was sent; false after half a minute without.
  bool Wait() const;

 private:
  HANDLE semaphore_;
};

/// A name that no other process and no other call gets.
std::string UniqueName(const std::string& prefix);

/// What a console program prints.
std::string OutputOf(const std::string& commandLine);

/// Lets the thread's messages through until `done` is true; false when that takes more than ten seconds.
template <typename Condition>
bool PumpUntil(Condition done) {
  const ULONGLONG end = GetTickCount64() + 10'000;
  while (!done()) {
    if (GetTickCount64() > end) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
  }
  return true;
}

}  // namespace support
