#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The rules of the 8-bit code page that all text is in.
class CodePage {
 public:
  virtual ~CodePage() = default;
  /// The text in lower case. Texts that differ only in the case of letters, accented ones too, give the same.
  virtual std::string FoldCase(std::string_view text) = 0;
  /// True for the first byte of a character of two bytes. The second one may be any byte, "\\" included.
  virtual bool IsLeadByte(char byte) = 0;
  /// A character that the code page lacks becomes what the operating system puts in its place.
  virtual std::string FromUtf16(std::u16string_view text) = 0;
};

}  // namespace platform
