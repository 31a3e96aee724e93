#include "platform/win32/Win32Files.h"

#include <windows.h>

#include "platform/win32/SystemError.h"

namespace platform::win32 {

void Win32Files::Replace(const std::string& from, const std::string& to) {
  // Keeps the rights and attributes of the file that was there; fails when there was none.
  if (ReplaceFileA(to.c_str(), from.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr))
    return;
  if (MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) return;
  // A virus scanner or a viewer may hold the old file so that it can be written but not replaced.
  if (CopyFileA(from.c_str(), to.c_str(), FALSE)) {
    DeleteFileA(from.c_str());
    return;
  }
  throw WindowsError("Unable to write file " + to, static_cast<LSTATUS>(GetLastError()));
}

}  // namespace platform::win32
