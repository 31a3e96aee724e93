#pragma once

#include "platform/CodePage.h"

namespace platform::win32 {

class Win32CodePage : public CodePage {
 public:
  std::string FoldCase(std::string_view text) override;
  bool IsLeadByte(char byte) override;
  std::string FromUtf16(std::u16string_view text) override;
};

}  // namespace platform::win32
