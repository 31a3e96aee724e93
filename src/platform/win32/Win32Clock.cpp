#include "platform/win32/Win32Clock.h"

#include <windows.h>

namespace platform::win32 {

DateTime Win32Clock::Now() {
  SYSTEMTIME time{};
  GetLocalTime(&time);
  return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
}

}  // namespace platform::win32
