#include "platform/win32/Win32SystemHelper.h"

#include <windows.h>

#include <string>

#include "platform/win32/SystemError.h"

namespace platform::win32 {
namespace {

constexpr char kRunKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";

LSTATUS Enable(const std::string& name, std::string_view command) {
  std::string line(command);
  if (line.find(' ') != line.npos) line = '"' + line + '"';
  return RegSetKeyValueA(HKEY_CURRENT_USER, kRunKey, name.c_str(), REG_SZ, line.c_str(),
                         static_cast<DWORD>(line.size() + 1));
}

LSTATUS Disable(const std::string& name) {
  const LSTATUS status = RegDeleteKeyValueA(HKEY_CURRENT_USER, kRunKey, name.c_str());
  return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

}  // namespace

void Win32SystemHelper::SetAutoStart(bool enable, std::string_view name, std::string_view command) {
  const std::string entry(name);
  const LSTATUS status = enable ? Enable(entry, command) : Disable(entry);
  if (status != ERROR_SUCCESS) {
    throw WindowsError("The entry \"" + entry + "\" in HKEY_CURRENT_USER\\" + kRunKey + " can't be " +
                           (enable ? "made" : "removed"),
                       status);
  }
}

}  // namespace platform::win32
