#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace upnp {

/// A WAN connection of a gateway that was found, with what it said of itself when it was asked.
struct FoundGateway {
  std::string device;  ///< identifier of the device, by which the user's choice is remembered
  std::string name;
  std::string maker;
  std::string model;
  std::string page;      ///< the router's own page; may be empty
  std::string location;  ///< of its description
  std::string deviceType;
  std::string serviceType;
  std::string controlUrl;
  std::string localAddress;  ///< this computer's, as the gateway sees it
  bool connected = false;
  std::string wanAddress;               ///< empty when it tells none
  std::optional<std::uint32_t> bootId;  ///< of the answer to the search

  std::string Address() const;
};

/// The best first: connected and with a public WAN address before the rest, the second version of the gateway
/// before the first, an IP connection before a PPP connection. Equals keep their order.
void SortByRank(std::vector<FoundGateway>& gateways);

/// One gateway for each device, its best connection, in the order of their ranks.
std::vector<FoundGateway> BestOfEachDevice(std::vector<FoundGateway> gateways);

/// The position of the gateway to use among sorted ones: the user's choice, or the first when the user chose
/// none. Nothing when it isn't there.
std::optional<std::size_t> ChooseGateway(const std::vector<FoundGateway>& gateways,
                                         const std::string& chosenDevice);

}  // namespace upnp
