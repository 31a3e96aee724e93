#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// How the text of a column is read when rows are sorted by it. Any other number reads the whole text as a
/// number.
namespace SortType {
/// A number among other characters: digits and points are kept, every other character is dropped.
inline constexpr std::int32_t kDigits = 1;
/// "mm/dd/yy" or "mm/dd/yyyy"; two digits 00 to 29 mean 2000 to 2029, 30 to 99 mean 1930 to 1999.
inline constexpr std::int32_t kDate = 2;
/// "hh:mm" or "hh:mm:ss", with or without " AM" or " PM".
inline constexpr std::int32_t kTime = 3;
/// A date, and behind the first blank a time; without one it is midnight.
inline constexpr std::int32_t kDateTime = 4;
/// Compared as it stands.
inline constexpr std::int32_t kText = 5;
}  // namespace SortType

/// The keys by which rows are sorted: texts that sort by character code in the order of the values they stand
/// for.
namespace SortKey {

/// The value of a text of any kind but kText; dates count days, times are their fraction. Fails with
/// TypeMismatch for a text that doesn't read as its kind, and with Overflow for one that no number holds.
double Read(std::string_view sText, std::int32_t eSortType);

/// At least fifteen digits, a point, four digits; a minus sign in front of a negative value.
std::string Text(double value);

/// The digits of Text as one number, for a value whose key has exactly fifteen digits and no sign. Such keys
/// sort as these numbers do.
std::optional<std::uint64_t> Digits(double value);

}  // namespace SortKey
