#include "Text.h"

#include <windows.h>

namespace upnp {

std::wstring Wide(const std::string& text) {
  std::wstring wide(text.size(), L'\0');
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                         static_cast<int>(wide.size()));
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

std::string Utf8(const std::wstring& text) {
  std::string bytes(text.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

}  // namespace upnp
