#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace base {

/// A failure that a user may get to read: a number and a text.
/// The numbers below 1000 are this program's own and listed in ErrorNumber; a failure of a plug-in carries
/// the number that the plug-in raised.
class Error : public std::exception {
 public:
  Error(std::int32_t number, std::string text) : number_(number), text_(std::move(text)) {}

  std::int32_t Number() const { return number_; }
  const std::string& Text() const { return text_; }
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::int32_t number_;
  std::string text_;
};

namespace ErrorNumber {
inline constexpr std::int32_t kInvalidCall = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscript = 9;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kFile = 52;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kPastEndOfFile = 62;
inline constexpr std::int32_t kPathAccess = 75;
inline constexpr std::int32_t kNoObject = 91;
inline constexpr std::int32_t kObjectRequired = 424;
inline constexpr std::int32_t kCannotCreateObject = 429;
inline constexpr std::int32_t kMemberNotFound = 438;
inline constexpr std::int32_t kWrongArgumentCount = 450;
inline constexpr std::int32_t kKeyTaken = 457;
inline constexpr std::int32_t kKeyUnknown = 461;
}  // namespace ErrorNumber

/// `what` is the value that does not fit, as the user typed or stored it; it becomes part of the text.
Error TypeMismatch(std::string_view what);
Error Overflow(std::string_view what);

}  // namespace base
