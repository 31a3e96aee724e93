#pragma once

#include <string>

namespace upnp {

/// UTF-8 to UTF-16 and back. What is no UTF-8 becomes the sign for an unknown one.
std::wstring Wide(const std::string& text);
std::string Utf8(const std::wstring& text);

}  // namespace upnp
