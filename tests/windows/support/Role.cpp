#include "support/Role.h"

#include <atomic>
#include <map>
#include <stdexcept>
#include <utility>

namespace support {
namespace {

constexpr DWORD kPatience = 30'000;

std::map<std::string, Role::Body>& Roles() {
  static std::map<std::string, Role::Body> roles;
  return roles;
}

[[noreturn]] void Fail(const std::string& what) {
  throw std::runtime_error(what + " failed with " + std::to_string(GetLastError()));
}

}  // namespace

Role::Role(const char* name, Body body) {
  Roles().emplace(name, body);
}

std::optional<int> PlayRole(std::span<char*> commandLine) {
  if (commandLine.size() < 2) return std::nullopt;
  const auto role = Roles().find(commandLine[1]);
  if (role == Roles().end()) return std::nullopt;
  return role->second({commandLine.begin() + 2, commandLine.end()});
}

std::string OwnProgram() {
  char path[MAX_PATH];
  return {path, GetModuleFileNameA(nullptr, path, sizeof path)};
}

TemporaryFolder::TemporaryFolder() {
  char parent[MAX_PATH];
  GetTempPathA(sizeof parent, parent);
  path_ = parent + UniqueName("harbourline");
  if (!CreateDirectoryA(path_.c_str(), nullptr)) Fail("Making " + path_);
}

TemporaryFolder::~TemporaryFolder() {
  WIN32_FIND_DATAA found;
  const HANDLE search = FindFirstFileA((path_ + "\\*").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      DeleteFileA((path_ + "\\" + found.cFileName).c_str());
    } while (FindNextFileA(search, &found));
    FindClose(search);
  }
  RemoveDirectoryA(path_.c_str());
}

std::string TemporaryFolder::CopyOfProgram(const std::string& name) const {
  const std::string copy = path_ + "\\" + name;
  if (!CopyFileA(OwnProgram().c_str(), copy.c_str(), TRUE)) Fail("Copying to " + copy);
  return copy;
}

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments) {
  std::string line = "\"" + program + "\"";
  for (const std::string& argument : arguments) line += " " + argument;
  STARTUPINFOA start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION info{};
  if (!CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &info)) {
    Fail("Starting " + line);
  }
  CloseHandle(info.hThread);
  process_ = info.hProcess;
  id_ = info.dwProcessId;
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : process_(std::exchange(other.process_, nullptr)), id_(other.id_) {}

ChildProcess::~ChildProcess() {
  if (!process_) return;
  TerminateProcess(process_, 99);
  WaitForSingleObject(process_, kPatience);
  CloseHandle(process_);
}

std::optional<DWORD> ChildProcess::ExitCode() const {
  DWORD code = 0;
  if (WaitForSingleObject(process_, kPatience) != WAIT_OBJECT_0 || !GetExitCodeProcess(process_, &code)) {
    return std::nullopt;
  }
  return code;
}

Signal::Signal(const std::string& name) : semaphore_(CreateSemaphoreA(nullptr, 0, 1000, name.c_str())) {
  if (!semaphore_) Fail("Making the signal " + name);
}

Signal::~Signal() {
  CloseHandle(semaphore_);
}

void Signal::Send(LONG count) const {
  ReleaseSemaphore(semaphore_, count, nullptr);
}

bool Signal::Wait() const {
  return WaitForSingleObject(semaphore_, kPatience) == WAIT_OBJECT_0;
}

std::string UniqueName(const std::string& prefix) {
  static std::atomic<int> next{0};
  return prefix + "-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(GetTickCount64()) + "-" +
         std::to_string(++next);
}

std::string OutputOf(const std::string& commandLine) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (!CreatePipe(&read, &write, &inherited, 0)) Fail("Making a pipe");
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = write;
  start.hStdError = write;
  PROCESS_INFORMATION info{};
  std::string line = commandLine;
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &info)) {
    Fail("Starting " + line);
  }
  CloseHandle(write);
  std::string output;
  char buffer[4096];
  DWORD bytes = 0;
  while (ReadFile(read, buffer, sizeof buffer, &bytes, nullptr) && bytes > 0) output.append(buffer, bytes);
  WaitForSingleObject(info.hProcess, kPatience);
  CloseHandle(read);
  CloseHandle(info.hThread);
  CloseHandle(info.hProcess);
  return output;
}

}  // namespace support
