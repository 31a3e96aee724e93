#include "platform/win32/Win32Process.h"

#include <windows.h>

#include <tlhelp32.h>

#include <memory>
#include <optional>
#include <utility>

#include "platform/win32/SystemError.h"
#include "platform/win32/Text.h"

namespace platform::win32 {
namespace {

/// Longer than any path that Windows has.
constexpr DWORD kLongestPath = 0x8000;

struct HandleCloser {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using OwnedHandle = std::unique_ptr<void, HandleCloser>;

/// Empty when it can't be told.
std::wstring ImageOf(HANDLE process) {
  std::wstring path(kLongestPath, L'\0');
  auto length = static_cast<DWORD>(path.size());
  if (!QueryFullProcessImageNameW(process, 0, path.data(), &length)) length = 0;
  path.resize(length);
  return path;
}

bool SameFile(const std::wstring& a, const std::wstring& b) {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()),
                              TRUE) == CSTR_EQUAL;
}

/// Where a process stands in the order of starting.
using StartPlace = std::pair<ULONGLONG, DWORD>;

std::optional<StartPlace> StartOf(HANDLE process, DWORD id) {
  FILETIME created{}, ended{}, kernel{}, user{};
  if (!GetProcessTimes(process, &created, &ended, &kernel, &user)) return std::nullopt;
  return StartPlace((ULONGLONG{created.dwHighDateTime} << 32) | created.dwLowDateTime, id);
}

bool InSession(DWORD process, DWORD session) {
  DWORD own = 0;
  return ProcessIdToSessionId(process, &own) && own == session;
}

/// A process that has ended stays known for as long as somebody holds a handle to it.
bool StillRuns(HANDLE process) {
  DWORD code = 0;
  return GetExitCodeProcess(process, &code) && code == STILL_ACTIVE;
}

}  // namespace

std::string Win32Process::ExecutablePath() {
  std::wstring path(kLongestPath, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  if (length == 0) {
    throw WindowsError("The path of the program can't be told", static_cast<LSTATUS>(GetLastError()));
  }
  return FromUtf16(std::wstring_view(path).substr(0, length));
}

bool Win32Process::EarlierInstanceRuns() {
  const DWORD ownId = GetCurrentProcessId();
  const std::wstring ownImage = ImageOf(GetCurrentProcess());
  const auto ownStart = StartOf(GetCurrentProcess(), ownId);
  DWORD session = 0;
  if (ownImage.empty() || !ownStart || !ProcessIdToSessionId(ownId, &session)) return false;

  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (snapshot == INVALID_HANDLE_VALUE) return false;
  const OwnedHandle closer(snapshot);
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
    const DWORD id = entry.th32ProcessID;
    if (id == ownId || !InSession(id, session)) continue;
    const OwnedHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    if (!process || !SameFile(ImageOf(process.get()), ownImage) || !StillRuns(process.get())) continue;
    if (const auto start = StartOf(process.get(), id); start && *start < *ownStart) return true;
  }
  return false;
}

std::string Win32Process::CurrentFolder() {
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data()));
  return FromUtf16(path);
}

}  // namespace platform::win32
