#pragma once

#include <cstdint>
#include <string>

#include "log/Intake.h"

// What the user reads about the router's log. ASCII, so that it is UTF-8 too.
namespace upnp::log {

/// What is known of the arrival of lines at a moment.
struct ListenerState {
  /// False while the log is off, and when the port can't be had.
  bool listening = false;
  Arrivals arrivals;
  /// Why nothing can be heard; empty otherwise.
  std::string problem;
};

/// Where the router is told to send its log: several sentences, for a router's owner. Without an address, it
/// tells that the router must be found first.
std::string HowToPointARouterHere(const std::string& localAddress, std::uint16_t port);

/// One line: whether lines arrive.
std::string ArrivalText(const ListenerState& state, Time now);

enum class PortTrouble {
  kTaken,      ///< another program has it
  kForbidden,  ///< this user may not have it
  kNoAddress,  ///< the computer no longer has the address
  kOther,
};
/// For the event `Error` and for the dialog.
std::string PortProblem(PortTrouble trouble, const std::string& localAddress, std::uint16_t port,
                        int errorNumber);

}  // namespace upnp::log
