#pragma once

#include <algorithm>
#include <string_view>

// Characters as logs have them: ASCII, whatever the machine's language says.
namespace upnp::log {

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool IsHexDigit(char c) {
  return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
constexpr bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}
constexpr char ToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char ToUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return ToLower(left) == ToLower(right); });
}
constexpr bool StartsIgnoringCase(std::string_view text, std::string_view start) {
  return EqualsIgnoringCase(text.substr(0, start.size()), start);
}
constexpr bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [](char left, char right) { return ToLower(left) == ToLower(right); }) != text.end();
}

}  // namespace upnp::log
