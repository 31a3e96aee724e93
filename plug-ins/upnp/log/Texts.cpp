#include "log/Texts.h"

namespace upnp::log {

namespace {

std::string Counted(std::size_t count, const char* one, const char* more) {
  return std::to_string(count) + " " + (count == 1 ? one : more);
}

std::string Ago(Time time) {
  constexpr Time kSecond{1000};
  constexpr Time kMinute{60 * 1000};
  constexpr Time kHour{60 * 60 * 1000};
  const auto number = [time](Time unit) { return static_cast<std::size_t>(time / unit); };
  if (time < kSecond) return "just now";
  if (time < kMinute) return Counted(number(kSecond), "second ago", "seconds ago");
  if (time < kHour) return Counted(number(kMinute), "minute ago", "minutes ago");
  return Counted(number(kHour), "hour ago", "hours ago");
}

}  // namespace

std::string HowToPointARouterHere(const std::string& localAddress, std::uint16_t port) {
  if (localAddress.empty()) return "As soon as a router is found, this tells where it is to send its log.";
  return "The activity log shows what the router tells. Open the router's page and look for \"Log\", "
         "\"System log\" or "
         "\"Remote log\". Enter " +
         localAddress + " as the syslog server and " + std::to_string(port) +
         " as the port, with UDP, and let the router log its firewall or its forwarded packets. If Windows "
         "asks, let "
         "Harbourline receive from the private network.";
}

std::string ArrivalText(const ListenerState& state, Time now) {
  if (!state.problem.empty()) return state.problem;
  if (!state.listening) return "Not listening: the activity log is off.";
  const Arrivals& arrivals = state.arrivals;
  if (arrivals.datagrams == 0) return "Lines arrive: none yet.";
  std::string text = "Lines arrive: " + std::to_string(arrivals.datagrams) + " so far, the last one " +
                     Ago(now - arrivals.last) + ".";
  if (arrivals.packets == 0) text += " None tells of a packet: let the router log its firewall.";
  return text;
}

std::string PortProblem(PortTrouble trouble, const std::string& localAddress, std::uint16_t port,
                        int errorNumber) {
  const std::string what = "The router's log can't be received at " +
                           (localAddress.empty() ? "" : localAddress + ", ") + "UDP port " +
                           std::to_string(port) + ": ";
  const std::string otherPort = " Choose another port here and in the router.";
  switch (trouble) {
    case PortTrouble::kTaken:
      return what + "another program uses the port." + otherPort;
    case PortTrouble::kForbidden:
      return what + "Windows doesn't let this program have the port." + otherPort;
    case PortTrouble::kNoAddress:
      return what + "this computer doesn't have the address any more.";
    case PortTrouble::kOther:
      break;
  }
  return what + "Windows reports the error " + std::to_string(errorNumber) + ".";
}

}  // namespace upnp::log
