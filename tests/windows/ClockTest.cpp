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

/// The user's own form of times, put back at the end.
class TimeFormat {
 public:
  explicit TimeFormat(const char* format) {
    GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STIMEFORMAT, before_, sizeof before_);
    SetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STIMEFORMAT, format);
  }
  ~TimeFormat() { SetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STIMEFORMAT, before_); }
  TimeFormat(const TimeFormat&) = delete;
  TimeFormat& operator=(const TimeFormat&) = delete;

 private:
  char before_[80] = "";
};

TEST(ClockTest, WritesTheTimeOfDayAsTheUserHasChosen) {
  platform::win32::Win32Clock clock;
  const platform::DateTime evening{2026, 7, 9, 18, 5, 3};
  {
    const TimeFormat format("HH.mm.ss");
    EXPECT_EQ(clock.TimeText(evening), "18.05.03");
  }
  {
    const TimeFormat format("h:mm:ss tt");
    EXPECT_EQ(clock.TimeText(evening), "6:05:03 PM");
    EXPECT_EQ(clock.TimeText({2026, 7, 9, 0, 0, 59}), "12:00:59 AM");
  }
}

}  // namespace
