#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "rules/Gateway.h"

namespace upnp {

enum class Trouble {
  kNoRouter,        ///< nobody answered the search
  kNoAnswer,        ///< the router in use is silent
  kBadPort,         ///< a port outside 1 to 65535, or a range that ends before it begins
  kBadHost,         ///< a last octet outside 1 to 254
  kTooManyPorts,    ///< more single ports than we send
  kClash,           ///< one port wanted for two computers
  kOwnedByAnother,  ///< the router gave the port to another computer or program
  kNotAuthorized,   ///< 606
  kUsedByRouter,    ///< 729
  kTableFull,       ///< 728
  kRefused,         ///< any other code
  kNotKept,         ///< the router said yes, and the table lacks it
  kOldLeft,         ///< a mapping of ours that the router doesn't let go
  kBusy,            ///< the router takes longer than a call may wait
  kDoubleNat,       ///< the router's own WAN address isn't reached from the Internet
  kWanDown,         ///< the router says that it isn't connected
  kForeignRouter,   ///< the router in use isn't one that the user has said yes to
  kNoExposedHost    ///< a DMZ host was asked for, and UPnP has none
};

/// Something that the owner of the router should know. What a trouble has no use for stays as it is here.
struct Problem {
  Trouble trouble = Trouble::kNoRouter;
  std::int32_t firstPort = 0;
  std::int32_t lastPort = 0;
  Protocol protocol = Protocol::kTcp;
  std::string who;  ///< an address
  int code = 0;     ///< UPnP error code, or a number of ports

  friend bool operator==(const Problem&, const Problem&) = default;
};

/// True when something that was asked for isn't on the router because of it.
bool LeavesTheWishUnmet(const Problem& problem);

bool HasTrouble(const std::vector<Problem>& problems, Trouble trouble);

/// What is wrong and what to do, in whole sentences for the owner of a router.
std::string Explain(const Problem& problem);

/// "TCP port 80", "UDP ports 5000 to 5010".
std::string PortsText(std::int32_t firstPort, std::int32_t lastPort, Protocol protocol);

}  // namespace upnp
