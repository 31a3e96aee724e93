#include "platform/win32/Text.h"

#include <limits>
#include <new>

#include "base/Error.h"

namespace platform::win32 {
namespace {

template <typename Character>
int Length(std::basic_string_view<Character> text) {
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw base::Error(base::ErrorNumber::kOverflow, "Overflow: a text is too long to be converted");
  }
  return static_cast<int>(text.size());
}

/// No code page makes more UTF-16 units of a text than it has bytes, so `units` has room for as many.
/// Returns the units written.
std::size_t Widen(std::string_view text, wchar_t* units) {
  const int length = Length(text);
  if (length == 0) return 0;
  return static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), length, units, length));
}

}  // namespace

std::wstring ToUtf16(std::string_view text) {
  std::wstring wide(text.size(), L'\0');
  wide.resize(Widen(text, wide.data()));
  return wide;
}

std::string FromUtf16(std::wstring_view text) {
  const int length = Length(text);
  if (length == 0) return {};
  const int size = WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.data(), length, narrow.data(), size, nullptr, nullptr);
  return narrow;
}

BSTR NewBstr(std::string_view text) {
  BSTR bstr = SysAllocStringLen(nullptr, static_cast<UINT>(Length(text)));
  if (!bstr) throw std::bad_alloc();
  const std::size_t units = Widen(text, bstr);
  if (units < text.size() && !SysReAllocStringLen(&bstr, bstr, static_cast<UINT>(units))) {
    SysFreeString(bstr);
    throw std::bad_alloc();
  }
  return bstr;
}

std::string FromBstr(BSTR text) {
  return FromUtf16(std::wstring_view(text ? text : L"", SysStringLen(text)));
}

}  // namespace platform::win32
