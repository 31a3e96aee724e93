// start_bench ROUNDS NAME=PROGRAM...: starts the programs in turn, waits each time until the program's icon
// stands in the notification area, and prints how long that took and what memory the program has a second
// later. A round starts every program once; the first round isn't counted, since it brings the files into
// memory. Ends with 1 when an icon doesn't come.

#include <windows.h>

#include <mmsystem.h>
#include <psapi.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr double kPatience = 60;
constexpr DWORD kSettling = 1000;

struct Program {
  std::string name;
  std::string path;
  /// Seconds, and bytes, of each round.
  std::vector<double> start;
  std::vector<double> workingSet;
  std::vector<double> privateBytes;
};

double Now() {
  LARGE_INTEGER count, frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

/// The process of one start, which ends with the object.
class Child {
 public:
  explicit Child(const std::string& path) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    std::string command = '"' + path + '"';
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process_)) {
      throw std::runtime_error("can't start " + path);
    }
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    // The shell would go on showing the icon of a program that is gone.
    if (iconOwner_) {
      NOTIFYICONDATAA icon = Icon(iconOwner_);
      Shell_NotifyIconA(NIM_DELETE, &icon);
    }
    TerminateProcess(process_.hProcess, 0);
    WaitForSingleObject(process_.hProcess, INFINITE);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }

  bool Ended() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_OBJECT_0; }

  /// The shell changes only icons that it has, so a change of nothing tells whether it has this one.
  bool IconStands() {
    EnumWindows(LookAt, reinterpret_cast<LPARAM>(this));
    return iconOwner_ != nullptr;
  }

  struct Memory {
    SIZE_T workingSet;
    SIZE_T privateBytes;
  };
  Memory AskMemory() const {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    if (!GetProcessMemoryInfo(process_.hProcess, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                              sizeof counters)) {
      throw std::runtime_error("the system doesn't tell the memory of a process");
    }
    // Where the system knows the newer field the two are the same; the other one is empty in some systems.
    return {counters.WorkingSetSize, std::max(counters.PrivateUsage, counters.PagefileUsage)};
  }

 private:
  static NOTIFYICONDATAA Icon(HWND owner) {
    NOTIFYICONDATAA icon{};
    icon.cbSize = sizeof icon;
    icon.hWnd = owner;
    return icon;
  }

  static BOOL CALLBACK LookAt(HWND window, LPARAM child) {
    auto& self = *reinterpret_cast<Child*>(child);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner != self.process_.dwProcessId) return TRUE;
    NOTIFYICONDATAA icon = Icon(window);
    if (!Shell_NotifyIconA(NIM_MODIFY, &icon)) return TRUE;
    self.iconOwner_ = window;
    return FALSE;
  }

  PROCESS_INFORMATION process_{};
  HWND iconOwner_ = nullptr;
};

void Measure(Program& program, bool counts) {
  const double begin = Now();
  Child child(program.path);
  while (!child.IconStands()) {
    if (child.Ended()) throw std::runtime_error(program.name + " ended without an icon");
    if (Now() - begin > kPatience) throw std::runtime_error(program.name + " shows no icon");
    Sleep(1);
  }
  const double seconds = Now() - begin;
  Sleep(kSettling);
  const Child::Memory memory = child.AskMemory();
  if (!counts) return;
  program.start.push_back(seconds);
  program.workingSet.push_back(static_cast<double>(memory.workingSet));
  program.privateBytes.push_back(static_cast<double>(memory.privateBytes));
}

/// The value below which that part of the values lies.
double Quantile(std::vector<double> values, double part) {
  std::sort(values.begin(), values.end());
  return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1) + 0.5)];
}

double Megabytes(const std::vector<double>& bytes) {
  return Quantile(bytes, 0.5) / (1024 * 1024);
}

void Print(const std::vector<Program>& programs) {
  const Program& yardstick = programs.front();
  std::printf("%-24s %10s %10s %10s %12s %14s %12s\n", "program", "quarter ms", "middle ms", "3/4 ms",
              "to the first", "working set MB", "private MB");
  for (const Program& program : programs) {
    const double middle = Quantile(program.start, 0.5);
    std::printf("%-24s %10.1f %10.1f %10.1f %12.2f %14.2f %12.2f\n", program.name.c_str(),
                Quantile(program.start, 0.25) * 1000, middle * 1000, Quantile(program.start, 0.75) * 1000,
                middle / Quantile(yardstick.start, 0.5), Megabytes(program.workingSet),
                Megabytes(program.privateBytes));
  }
}

void Run(int rounds, std::vector<Program>& programs) {
  timeBeginPeriod(1);
  for (int round = 0; round <= rounds; ++round) {
    for (Program& program : programs) Measure(program, round > 0);
  }
  timeEndPeriod(1);
  Print(programs);
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<Program> programs;
  for (int i = 2; i < count; ++i) {
    const std::string argument = arguments[i];
    const std::size_t equals = argument.find('=');
    if (equals == argument.npos) break;
    programs.push_back({argument.substr(0, equals), argument.substr(equals + 1), {}, {}, {}});
  }
  const int rounds = count > 2 ? std::atoi(arguments[1]) : 0;
  if (rounds < 1 || programs.size() != static_cast<std::size_t>(count - 2)) {
    std::fputs("start_bench ROUNDS NAME=PROGRAM...\n", stderr);
    return 2;
  }
  try {
    Run(rounds, programs);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "start_bench: %s\n", failure.what());
    return 1;
  }
}
