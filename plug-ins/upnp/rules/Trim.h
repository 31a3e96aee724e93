#pragma once

#include <string_view>

namespace upnp {

/// Without blanks, tabs and ends of lines around it.
inline std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlank = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kBlank);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlank) - begin + 1);
}

}  // namespace upnp
