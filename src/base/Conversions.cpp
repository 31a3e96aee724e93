#include "base/Conversions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/Error.h"

namespace base {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Length of the number at the start of `text`, 0 when there is none.
std::size_t NumberLength(std::string_view text) {
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  bool digits = false;
  while (at < text.size() && IsDigit(text[at])) ++at, digits = true;
  if (at < text.size() && text[at] == '.') {
    ++at;
    while (at < text.size() && IsDigit(text[at])) ++at, digits = true;
  }
  if (!digits) return 0;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    std::size_t exponent = at + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    if (exponent < text.size() && IsDigit(text[exponent])) {
      at = exponent;
      while (at < text.size() && IsDigit(text[at])) ++at;
    }
  }
  return at;
}

/// True when the number that `number` spells is below 1: the point's distance from the first digit that isn't
/// zero, and the exponent, tell it without computing the value.
bool IsBelowOne(std::string_view number) {
  const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, exponentAt);
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::size_t leading = std::min(digits.find_first_of("123456789"), digits.size());
  // Digits before the point, or, negative, zeros after it.
  const double magnitude =
      leading < point ? static_cast<double>(point - leading) : -static_cast<double>(leading - point - 1);
  double exponent = 0;
  if (exponentAt < number.size()) {
    std::string_view tail = number.substr(exponentAt + 1);
    const bool negative = tail.front() == '-';
    if (negative || tail.front() == '+') tail.remove_prefix(1);
    for (const char c : tail) exponent = exponent * 10 + (c - '0');
    if (negative) exponent = -exponent;
  }
  return magnitude + exponent <= 0;
}

double ParseNumber(std::string_view number) {
  const bool negative = number.front() == '-';
  if (negative || number.front() == '+') number.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    // A tiny number reads as zero, a huge one as more than any integer type holds.
    value = IsBelowOne(number) ? 0 : std::numeric_limits<double>::infinity();
  }
  return negative ? -value : value;
}

template <typename Integer>
std::optional<Integer> Round(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max())) {
    return std::nullopt;
  }
  return static_cast<Integer>(rounded);
}

template <typename Integer>
Integer FromDouble(double value) {
  const auto result = Round<Integer>(value);
  if (!result) throw Overflow(ToText(value));
  return *result;
}

/// A text of one to nine digits and nothing else, which nearly every number of a file is; nothing for any
/// other.
std::optional<std::int32_t> PlainInteger(std::string_view text) {
  if (text.empty() || text.size() > 9) return std::nullopt;
  std::int32_t value = 0;
  for (const char c : text) {
    if (!IsDigit(c)) return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

template <typename Integer>
Integer FromText(std::string_view text) {
  if (const auto plain = PlainInteger(text); plain && *plain <= std::numeric_limits<Integer>::max()) {
    return static_cast<Integer>(*plain);
  }
  const auto number = ReadNumber(text);
  if (!number) throw TypeMismatch(text);
  const auto result = Round<Integer>(*number);
  if (!result) throw Overflow(text);
  return *result;
}

template <typename Integer>
std::string Decimal(Integer value) {
  char buffer[16];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

}  // namespace

double RoundHalfEven(double value) {
  const double floor = std::floor(value);
  const double fraction = value - floor;
  if (fraction > 0.5 || (fraction == 0.5 && std::fmod(floor, 2.0) != 0)) return floor + 1;
  return floor;
}

std::int16_t ToInt16(double value) {
  return FromDouble<std::int16_t>(value);
}

std::int32_t ToInt32(double value) {
  return FromDouble<std::int32_t>(value);
}

std::int16_t ToInt16(std::string_view text) {
  return FromText<std::int16_t>(text);
}

std::int32_t ToInt32(std::string_view text) {
  return FromText<std::int32_t>(text);
}

double ToDouble(std::string_view text) {
  const auto number = ReadNumber(text);
  if (!number) throw TypeMismatch(text);
  if (std::isinf(*number)) throw Overflow(text);
  return *number;
}

bool ToBoolean(std::string_view text) {
  const std::string_view word = Trim(text);
  if (EqualsIgnoringCase(word, "True")) return true;
  if (EqualsIgnoringCase(word, "False")) return false;
  const auto number = ReadNumber(text);
  if (!number) throw TypeMismatch(text);
  return *number != 0;
}

std::optional<double> ReadNumber(std::string_view text) {
  const std::string_view number = Trim(text);
  const std::size_t length = NumberLength(number);
  if (length == 0 || length != number.size()) return std::nullopt;
  return ParseNumber(number);
}

bool IsNumeric(std::string_view text) {
  return ReadNumber(text).has_value();
}

double LeadingNumber(std::string_view text) {
  const std::string_view rest = TrimLeft(text);
  const std::size_t length = NumberLength(rest);
  return length == 0 ? 0 : ParseNumber(rest.substr(0, length));
}

std::string ToText(std::int16_t value) {
  return Decimal(value);
}

std::string ToText(std::int32_t value) {
  return Decimal(value);
}

std::string ToText(double value) {
  if (std::isinf(value)) return value < 0 ? "-infinity" : "infinity";
  if (value == 0) return "0";
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
  return std::string(buffer, result.ptr);
}

std::string ToText(bool value) {
  return value ? "True" : "False";
}

std::string ToTextWithSignPlace(std::int32_t value) {
  return value < 0 ? ToText(value) : " " + ToText(value);
}

std::string_view TrimLeft(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == text.npos ? std::string_view() : text.substr(first);
}

std::string_view Trim(std::string_view text) {
  text = TrimLeft(text);
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

char FoldCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string FoldCase(std::string_view text) {
  std::string folded(text);
  for (char& c : folded) c = FoldCase(c);
  return folded;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return FoldCase(left) == FoldCase(right); });
}

}  // namespace base
