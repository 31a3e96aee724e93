#include "platform/win32/Win32CodePage.h"

#include <windows.h>

#include "platform/win32/Text.h"

namespace platform::win32 {

std::string Win32CodePage::FoldCase(std::string_view text) {
  std::wstring folded = ToUtf16(text);
  CharLowerBuffW(folded.data(), static_cast<DWORD>(folded.size()));
  return win32::FromUtf16(folded);
}

bool Win32CodePage::IsLeadByte(char byte) {
  return IsDBCSLeadByte(static_cast<BYTE>(byte)) != FALSE;
}

std::string Win32CodePage::FromUtf16(std::u16string_view text) {
  return win32::FromUtf16(std::wstring(text.begin(), text.end()));
}

}  // namespace platform::win32
