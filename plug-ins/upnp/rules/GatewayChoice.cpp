#include "rules/GatewayChoice.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "rules/Addresses.h"
#include "rules/WebAddress.h"

namespace upnp {

namespace {

/// The number behind the last colon of a type.
int VersionOf(std::string_view type) {
  const std::size_t colon = type.rfind(':');
  if (colon == std::string_view::npos || colon + 1 >= type.size()) return 0;
  const char digit = type[colon + 1];
  return digit >= '0' && digit <= '9' ? digit - '0' : 0;
}

/// Smaller is better. A router that tells no WAN address may have a public one.
auto MainRankOf(const FoundGateway& gateway) {
  const bool shutOff = !gateway.wanAddress.empty() && !IsPublicAddress(gateway.wanAddress);
  return std::make_tuple(!gateway.connected, !gateway.own, shutOff, !gateway.onDefaultRoute);
}

auto RankOf(const FoundGateway& gateway) {
  const bool isPpp = gateway.serviceType.find(":WANPPPConnection:") != std::string::npos;
  return std::tuple_cat(MainRankOf(gateway),
                        std::make_tuple(gateway.wanAddress.empty(), -VersionOf(gateway.deviceType), isPpp,
                                        -VersionOf(gateway.serviceType)));
}

}  // namespace

std::string FoundGateway::Address() const {
  return HostOf(controlUrl);
}

void SortByRank(std::vector<FoundGateway>& gateways) {
  std::stable_sort(gateways.begin(), gateways.end(),
                   [](const FoundGateway& a, const FoundGateway& b) { return RankOf(a) < RankOf(b); });
}

bool IsWorthTheMove(const FoundGateway& better, const FoundGateway& current) {
  return MainRankOf(better) < MainRankOf(current);
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
