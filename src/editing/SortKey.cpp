#include "editing/SortKey.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "base/Conversions.h"
#include "base/Error.h"

namespace {

constexpr std::size_t kWholeDigits = 15;
constexpr std::size_t kDecimals = 4;
constexpr std::uint64_t kDecimalScale = 10'000;
/// One more than the largest number of fifteen digits, and with the decimals.
constexpr std::uint64_t kWholeEnd = 1'000'000'000'000'000;
constexpr std::uint64_t kDigitsEnd = kWholeEnd * kDecimalScale;

constexpr std::int32_t kFirstYearOfLastCentury = 30;
constexpr double kSecondsPerDay = 24 * 60 * 60;
/// The day that counts as 0, so that all days since 1900 are positive.
constexpr std::chrono::sys_days kDayZero = std::chrono::year(1899) / 12 / 30;

double ReadDigits(std::string_view sText) {
  std::string kept;
  for (const char c : sText) {
    if ((c >= '0' && c <= '9') || c == '.') kept += c;
  }
  const auto value = base::ReadNumber(kept);
  if (!value) throw base::TypeMismatch(sText);
  if (std::isinf(*value)) throw base::Overflow(sText);
  return *value;
}

/// Takes one or more digits off the front; nothing when there is none or more than four.
std::optional<std::int32_t> TakeNumber(std::string_view& rest, std::size_t& length) {
  std::int32_t number = 0;
  length = 0;
  while (length < rest.size() && rest[length] >= '0' && rest[length] <= '9') {
    if (length == 4) return std::nullopt;
    number = number * 10 + (rest[length++] - '0');
  }
  if (length == 0) return std::nullopt;
  rest.remove_prefix(length);
  return number;
}

bool Take(std::string_view& rest, char mark) {
  if (!rest.starts_with(mark)) return false;
  rest.remove_prefix(1);
  return true;
}

std::optional<double> DateOf(std::string_view rest) {
  std::size_t length = 0;
  const auto month = TakeNumber(rest, length);
  if (!month || length > 2 || !Take(rest, '/')) return std::nullopt;
  const auto day = TakeNumber(rest, length);
  if (!day || length > 2 || !Take(rest, '/')) return std::nullopt;
  auto year = TakeNumber(rest, length);
  if (!year || (length != 2 && length != 4) || !rest.empty()) return std::nullopt;
  if (length == 2) *year += *year < kFirstYearOfLastCentury ? 2000 : 1900;
  const std::chrono::year_month_day date(std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day)));
  if (!date.ok()) return std::nullopt;
  return static_cast<double>((std::chrono::sys_days(date) - kDayZero).count());
}

/// Takes " AM" or " PM" off the end and turns the hour of its half day into that of the day.
bool TakeHalfDay(std::string_view rest, std::int32_t& hour) {
  rest = base::Trim(rest);
  if (rest.empty()) return hour < 24;
  const bool afternoon = base::EqualsIgnoringCase(rest, "PM");
  if (!afternoon && !base::EqualsIgnoringCase(rest, "AM")) return false;
  if (hour < 1 || hour > 12) return false;
  hour = hour % 12 + (afternoon ? 12 : 0);
  return true;
}

std::optional<double> TimeOf(std::string_view rest) {
  std::size_t length = 0;
  const auto hours = TakeNumber(rest, length);
  if (!hours || !Take(rest, ':')) return std::nullopt;
  const auto minutes = TakeNumber(rest, length);
  if (!minutes || *minutes > 59) return std::nullopt;
  std::int32_t seconds = 0;
  if (Take(rest, ':')) {
    const auto taken = TakeNumber(rest, length);
    if (!taken || *taken > 59) return std::nullopt;
    seconds = *taken;
  }
  std::int32_t hour = *hours;
  if (!TakeHalfDay(rest, hour)) return std::nullopt;
  return ((hour * 60 + *minutes) * 60 + seconds) / kSecondsPerDay;
}

std::optional<double> DateTimeOf(std::string_view text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  const auto date = DateOf(text.substr(0, blank));
  if (!date || blank == text.size()) return date;
  const auto time = TimeOf(base::TrimLeft(text.substr(blank)));
  if (!time) return std::nullopt;
  return *date + *time;
}

}  // namespace

namespace SortKey {

double Read(std::string_view sText, std::int32_t eSortType) {
  std::optional<double> value;
  switch (eSortType) {
    case SortType::kDigits:
      return ReadDigits(sText);
    case SortType::kDate:
      value = DateOf(base::Trim(sText));
      break;
    case SortType::kTime:
      value = TimeOf(base::Trim(sText));
      break;
    case SortType::kDateTime:
      value = DateTimeOf(base::Trim(sText));
      break;
    default:
      return base::ToDouble(sText);
  }
  if (!value) throw base::TypeMismatch(sText);
  return *value;
}

std::optional<std::uint64_t> Digits(double value) {
  if (!(value >= 0 && value < kWholeEnd)) return std::nullopt;
  const double whole = std::floor(value);
  const auto decimals = static_cast<std::uint64_t>(std::round((value - whole) * kDecimalScale));
  const std::uint64_t digits = static_cast<std::uint64_t>(whole) * kDecimalScale + decimals;
  if (digits >= kDigitsEnd) return std::nullopt;
  return digits;
}

std::string Text(double value) {
  if (const auto digits = Digits(value)) {
    std::string text = std::to_string(*digits);
    constexpr std::size_t kLength = kWholeDigits + kDecimals;
    text.insert(0, kLength - text.size(), '0');
    return text.insert(kWholeDigits, ".");
  }
  if (value < 0) return "-" + Text(-value);
  // The largest double has 309 digits before the point.
  std::array<char, 512> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.4f", value);
  return std::string(text.data(), static_cast<std::size_t>(length));
}

}  // namespace SortKey
