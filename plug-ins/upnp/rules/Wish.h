#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "rules/Gateway.h"
#include "rules/Problem.h"

namespace upnp {

/// Single ports that one wish may hold, each protocol by itself. A router gets each of them in a call of its
/// own.
inline constexpr int kMostPorts = 2000;

/// What stands before a description, so that a mapping is recognised as ours.
inline constexpr char kOurMark[] = "Harbourline: ";

/// One mapping of the wish, as the program sends it.
struct WishedMapping {
  std::string description;
  std::int32_t beginPort = 0;
  std::int32_t endPort = 0;  ///< inclusive
  bool tcp = false;
  bool udp = false;
  int lastOctet = 0;   ///< of the address of the computer that receives
  bool clear = false;  ///< to go

  friend bool operator==(const WishedMapping&, const WishedMapping&) = default;
};

/// The wish of this computer.
struct Wish {
  std::vector<WishedMapping> mappings;
  int localOctet = 0;  ///< of this computer's address
};

/// Makes the whole wish out of the requests of the program, which tell about other computers only what
/// changes.
class WishMemory {
 public:
  /// Everything that is to be on the router after this request, and nothing to clear.
  Wish Take(const Wish& request);

 private:
  std::vector<WishedMapping> others_;  ///< for other computers, as they were switched on
};

/// Ports that belong together: all of them are on the router, or none.
struct Range {
  std::int32_t firstPort = 0;
  std::int32_t lastPort = 0;
  Protocol protocol = Protocol::kTcp;
};

/// A port that is to be on the router.
struct WantedPort {
  PortMapping mapping;
  std::size_t range = 0;  ///< in WantedState::ranges
};

struct WantedState {
  std::vector<Range> ranges;
  std::vector<WantedPort> ports;  ///< at most one for each key
  std::vector<Problem> problems;  ///< what can't be sent, and why
};

/// Turns a whole wish into single ports, for a router that knows this computer as `localAddress`. A range
/// that can't be sent as a whole is left out and told.
WantedState Expand(const Wish& wish, const std::string& localAddress);

/// The description that goes to the router: our mark, and of the user's text what every router takes.
std::string MarkedDescription(const std::string& description);
bool BearsOurMark(const std::string& description);

}  // namespace upnp
