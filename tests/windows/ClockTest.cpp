#include "platform/Clock.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <tuple>

#include "platform/win32/Win32Clock.h"

namespace {

auto Parts(const platform::DateTime& time) {
  return std::tuple(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

/// The system's time as another function tells it, turned into local time.
platform::DateTime LocalTimeBySystemTime() {
  FILETIME system{};
  GetSystemTimeAsFileTime(&system);
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  FileTimeToSystemTime(&system, &universal);
  SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
  return {local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond};
}

TEST(ClockTest, TellsTheLocalTime) {
  platform::win32::Win32Clock clock;
  const auto before = LocalTimeBySystemTime();
  const auto now = clock.Now();
  const auto after = LocalTimeBySystemTime();
  EXPECT_LE(Parts(before), Parts(now));
  EXPECT_LE(Parts(now), Parts(after));
  EXPECT_GE(now.year, 2024);
}

}  // namespace
