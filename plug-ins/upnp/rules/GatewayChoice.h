#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace upnp {

/// A WAN connection of a gateway that was found, with what it said of itself when it was asked.
struct FoundGateway {
  std::string device;     ///< identifier of the device, by which the user's choice is remembered
  std::string announced;  ///< by which the device calls itself now; see KnownRouters
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
  bool own = false;                     ///< the user's, by KnownRouters
  bool onDefaultRoute = false;          ///< what this computer sends into the Internet goes there

  std::string Address() const;
};

/// The best first: connected before the rest, the user's own before others, one with a public WAN address
/// before one that can't be reached from outside, the gateway of the default route before others, the second
/// version of the gateway before the first, an IP connection before a PPP connection. Equals keep their
/// order.
void SortByRank(std::vector<FoundGateway>& gateways);

/// True when `better` goes before `current` by more than the version and the kind of its connection, so that
/// the mappings are to move.
bool IsWorthTheMove(const FoundGateway& better, const FoundGateway& current);

/// One gateway for each device, its best connection, in the order of their ranks.
std::vector<FoundGateway> BestOfEachDevice(std::vector<FoundGateway> gateways);

/// The position of the gateway to use among sorted ones: the user's choice, or the first when the user chose
/// none. Nothing when it isn't there.
std::optional<std::size_t> ChooseGateway(const std::vector<FoundGateway>& gateways,
                                         const std::string& chosenDevice);

}  // namespace upnp
