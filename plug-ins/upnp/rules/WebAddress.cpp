#include "rules/WebAddress.h"

#include <algorithm>
#include <charconv>

#include "log/Characters.h"
#include "rules/Addresses.h"

namespace upnp {

namespace {

constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHttps = "https://";

bool BeginsWith(std::string_view url, std::string_view scheme) {
  return log::EqualsIgnoringCase(url.substr(0, scheme.size()), scheme);
}

/// "host:port" of an address.
std::string_view Authority(std::string_view url) {
  if (!BeginsWith(url, kHttp)) return {};
  url.remove_prefix(kHttp.size());
  return url.substr(0, url.find_first_of("/?#"));
}

/// The position of the colon before the port; npos when there is none.
std::size_t PortColon(std::string_view authority) {
  const std::size_t colon = authority.rfind(':');
  // The colons within the brackets of an IPv6 address belong to it.
  const std::size_t bracket = authority.rfind(']');
  return colon == std::string_view::npos || (bracket != std::string_view::npos && bracket > colon)
             ? std::string_view::npos
             : colon;
}

/// What may stand in an address without being read as something else by whoever gets it.
bool IsPlain(char sign) {
  constexpr std::string_view kOthers = "-._~/?=&%:+,;@!*#";
  return log::IsDigit(sign) || log::IsLetter(sign) || kOthers.find(sign) != std::string_view::npos;
}

}  // namespace

std::string HostOf(std::string_view url) {
  const std::string_view authority = Authority(url);
  return std::string(authority.substr(0, PortColon(authority)));
}

std::uint16_t PortOf(std::string_view url) {
  const std::string_view authority = Authority(url);
  if (authority.empty()) return 0;
  const std::size_t colon = PortColon(authority);
  constexpr std::uint16_t kWeb = 80;
  if (colon == std::string_view::npos) return kWeb;
  const std::string_view digits = authority.substr(colon + 1);
  std::uint16_t port = 0;
  const auto [stop, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
  return failure == std::errc() && stop == digits.data() + digits.size() ? port : std::uint16_t{0};
}

std::string PathOf(std::string_view url) {
  const std::string_view authority = Authority(url);
  if (authority.empty()) return "/";
  const std::string_view rest = url.substr(kHttp.size() + authority.size());
  return rest.starts_with('/') ? std::string(rest) : "/" + std::string(rest);
}

std::string WithHost(std::string_view url, std::string_view host) {
  const std::uint16_t port = PortOf(url);
  if (port == 0 || HostOf(url).empty()) return {};
  return std::string(kHttp) + std::string(host) + ":" + std::to_string(port) + PathOf(url);
}

std::string RouterPage(std::string_view url, std::string_view router) {
  if (!ParseAddress(router)) return {};
  std::string otherwise = std::string(kHttp) + std::string(router) + "/";
  std::string_view rest = url;
  if (BeginsWith(rest, kHttp)) {
    rest.remove_prefix(kHttp.size());
  } else if (BeginsWith(rest, kHttps)) {
    rest.remove_prefix(kHttps.size());
  } else {
    return otherwise;
  }
  if (!std::all_of(url.begin(), url.end(), IsPlain) || !rest.starts_with(router)) return otherwise;
  rest.remove_prefix(router.size());
  if (rest.starts_with(':')) {
    const auto digit = std::find_if_not(rest.begin() + 1, rest.end(), log::IsDigit);
    const auto digits = static_cast<std::size_t>(digit - rest.begin());
    if (digits == 1) return otherwise;
    rest.remove_prefix(digits);
  }
  return rest.empty() || rest.starts_with('/') ? std::string(url) : otherwise;
}

}  // namespace upnp
