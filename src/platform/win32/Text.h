#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

namespace platform::win32 {

/// Between the machine's 8-bit code page and UTF-16. Embedded NUL characters stay; a character that the 8-bit
/// page lacks becomes what Windows puts in its place. Text beyond the system's limit of 2^31 - 1 units fails.
std::wstring ToUtf16(std::string_view text);
std::string FromUtf16(std::wstring_view text);

/// The caller owns the result, which is never null.
BSTR NewBstr(std::string_view text);
/// A null BSTR is the empty text.
std::string FromBstr(BSTR text);

}  // namespace platform::win32
