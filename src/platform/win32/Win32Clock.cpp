#include "platform/win32/Win32Clock.h"

#include <windows.h>

namespace platform::win32 {

DateTime Win32Clock::Now() {
  SYSTEMTIME time{};
  GetLocalTime(&time);
  return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
}

std::string Win32Clock::TimeText(const DateTime& moment) {
  SYSTEMTIME time{};
  time.wHour = static_cast<WORD>(moment.hour);
  time.wMinute = static_cast<WORD>(moment.minute);
  time.wSecond = static_cast<WORD>(moment.second);
  const auto write = [&time](char* text, int size) {
    return GetTimeFormatA(LOCALE_USER_DEFAULT, 0, &time, nullptr, text, size);
  };
  const int size = write(nullptr, 0);
  if (size <= 0) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  text.resize(static_cast<std::size_t>(write(text.data(), size)));
  // The size counts the terminator.
  if (!text.empty()) text.pop_back();
  return text;
}

}  // namespace platform::win32
