#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The rules by which text, numbers and booleans turn into each other. They stand here once, because stored
/// settings, exchange files and the log all depend on them to the letter.
/// A blank is the character 32 only. Text is in the machine's 8-bit code page.
namespace base {

/// Rounds to the nearest whole number, a half to the even neighbour.
double RoundHalfEven(double value);

/// Rounds half to even; fails with Overflow beyond the type's range.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

/// The whole text must be a number: blanks around it, one sign, digits with at most one point and an exponent
/// are accepted. Fails with TypeMismatch or Overflow, which name the text.
std::int16_t ToInt16(std::string_view text);
std::int32_t ToInt32(std::string_view text);
double ToDouble(std::string_view text);

/// The words True and False without regard to case; a numeric text is true unless it is zero; all else fails.
bool ToBoolean(std::string_view text);

/// The number that the whole text is, by the rule of ToDouble, or nothing.
std::optional<double> ReadNumber(std::string_view text);
bool IsNumeric(std::string_view text);

/// The number at the left end of the text after leading blanks, as far as the text reads as one; 0 without
/// digits.
double LeadingNumber(std::string_view text);

/// Decimal, without leading blank.
std::string ToText(std::int16_t value);
std::string ToText(std::int32_t value);
std::string ToText(double value);
/// "True" or "False".
std::string ToText(bool value);

/// Decimal with one leading blank in the place of the sign of a number that isn't negative.
std::string ToTextWithSignPlace(std::int32_t value);

/// Without the blanks at the left, or at both ends.
std::string_view TrimLeft(std::string_view text);
std::string_view Trim(std::string_view text);

/// Lower case of the letters A to Z; other characters stay.
char FoldCase(char c);
std::string FoldCase(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

}  // namespace base
