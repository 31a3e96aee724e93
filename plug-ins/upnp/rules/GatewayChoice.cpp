#include "rules/GatewayChoice.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "rules/Addresses.h"
#include "rules/SsdpMessage.h"

namespace upnp {

namespace {

/// The number behind the last colon of a type.
int VersionOf(std::string_view type) {
  const std::size_t colon = type.rfind(':');
  if (colon == std::string_view::npos || colon + 1 >= type.size()) return 0;
  const char digit = type[colon + 1];
  return digit >= '0' && digit <= '9' ? digit - '0' : 0;
}

/// Smaller is better.
auto RankOf(const FoundGateway& gateway) {
  const bool isPpp = gateway.serviceType.find(":WANPPPConnection:") != std::string::npos;
  return std::make_tuple(!gateway.connected, !IsPublicAddress(gateway.wanAddress),
                         -VersionOf(gateway.deviceType), isPpp, -VersionOf(gateway.serviceType));
}

}  // namespace

std::string FoundGateway::Address() const {
  return HostOf(controlUrl);
}

void SortByRank(std::vector<FoundGateway>& gateways) {
  std::stable_sort(gateways.begin(), gateways.end(),
                   [](const FoundGateway& a, const FoundGateway& b) { return RankOf(a) < RankOf(b); });
}

std::vector<FoundGateway> BestOfEachDevice(std::vector<FoundGateway> gateways) {
  SortByRank(gateways);
  std::set<std::string> seen;
  std::erase_if(gateways, [&](const FoundGateway& gateway) { return !seen.insert(gateway.device).second; });
  return gateways;
}

std::optional<std::size_t> ChooseGateway(const std::vector<FoundGateway>& gateways,
                                         const std::string& chosenDevice) {
  if (chosenDevice.empty()) return gateways.empty() ? std::nullopt : std::optional<std::size_t>(0);
  for (std::size_t i = 0; i < gateways.size(); ++i) {
    if (gateways[i].device == chosenDevice) return i;
  }
  return std::nullopt;
}

}  // namespace upnp
