#include "rules/Problem.h"

#include <algorithm>

#include "rules/Wish.h"

namespace upnp {

bool LeavesTheWishUnmet(const Problem& problem) {
  switch (problem.trouble) {
    case Trouble::kDoubleNat:
    case Trouble::kWanDown:
    case Trouble::kOldLeft:
    case Trouble::kNoExposedHost:
      return false;
    default:
      return true;
  }
}

bool HasTrouble(const std::vector<Problem>& problems, Trouble trouble) {
  return std::any_of(problems.begin(), problems.end(),
                     [=](const Problem& problem) { return problem.trouble == trouble; });
}

std::string PortsText(std::int32_t firstPort, std::int32_t lastPort, Protocol protocol) {
  const std::string name = protocol == Protocol::kTcp ? "TCP" : "UDP";
  if (firstPort == lastPort) return name + " port " + std::to_string(firstPort);
  return name + " ports " + std::to_string(firstPort) + " to " + std::to_string(lastPort);
}

namespace {

std::string ExplainRefusal(const Problem& problem) {
  const std::string ports = PortsText(problem.firstPort, problem.lastPort, problem.protocol);
  switch (problem.trouble) {
    case Trouble::kOwnedByAnother:
      return ports + " is taken: the router forwards it to " +
             (problem.who.empty() ? "another computer" : problem.who) +
             ". Close it there, or take another port in the profile.";
    case Trouble::kNotAuthorized:
      return "The router doesn't allow " + ports + " for " + problem.who +
             " (error 606). Some routers first want \"allow independent port forwarding for this computer\" "
             "to be switched on, at the page of this computer among the router's own pages; others let a "
             "computer open ports for itself only, and only ports above 1023.";
    case Trouble::kUsedByRouter:
      return "The router uses " + ports +
             " itself, or a rule on its own page does (error 729). Remove that rule, or take another port.";
    case Trouble::kTableFull:
      return "The router's table of mappings is full, so " + ports +
             " found no room (error 728). Switch a profile off, or remove old mappings on the router's page.";
    case Trouble::kNotKept:
      return "The router said yes to " + ports +
             ", but nothing of it stands in its table. Restart the router; if that doesn't help, its UPnP is "
             "broken and its maker may have newer firmware.";
    case Trouble::kOldLeft:
      return "The router doesn't let go of the old mapping of " + ports + " to " + problem.who +
             ". It goes by itself when its time is over, or remove it on the router's page.";
    default:
      if (problem.code == error::kConnectionCut)
        return "The router ended the connection when it was asked for " + ports +
               ", and answers other questions. Restart the router; if that doesn't help, its maker may have "
               "newer firmware.";
      return "The router refused " + ports + " (error " + std::to_string(problem.code) +
             "). Is UPnP switched on at the router's page, with the right to change mappings?";
  }
}

}  // namespace

std::string Explain(const Problem& problem) {
  const std::string ports = PortsText(problem.firstPort, problem.lastPort, problem.protocol);
  switch (problem.trouble) {
    case Trouble::kNoRouter:
      return "No router with UPnP answers. Is UPnP switched on at the router's page, and does the firewall "
             "of this computer let the search pass (UDP port 1900)?";
    case Trouble::kNoAnswer:
      return "The router doesn't answer. Is it switched on, and this computer connected to it? The mappings "
             "come back by themselves when it answers again.";
    case Trouble::kBadPort:
      return ports +
             " can't be forwarded: a port is a number from 1 to 65535, and a range ends where it begins or "
             "later.";
    case Trouble::kBadHost:
      return "There is no computer to send " + ports +
             " to: the last number of its address must be from 1 to 254.";
    case Trouble::kTooManyPorts:
      return "There are too many ports to send " + ports +
             ": a UPnP router takes each port by itself, and the profiles that are on want " +
             std::to_string(problem.code) + " of them. At most " + std::to_string(kMostPorts) +
             " are sent. Make the range smaller.";
    case Trouble::kClash:
      return "Two profiles want " + ports +
             " for different computers. The first one gets the port that both want; switch one of them off.";
    case Trouble::kBusy:
      return "The router takes long. The work goes on, and this text tells when it is done.";
    case Trouble::kDoubleNat:
      return "The router's own address on the outside, " + problem.who +
             ", can't be reached from the Internet: there is another router in front of it, or the provider "
             "shares one address among its customers. Forward the ports on that router as well, set this one "
             "to bridge mode, or ask the provider for a public address.";
    case Trouble::kWanDown:
      return "The router isn't connected to the Internet at the moment. The mappings stand, and work when it "
             "is.";
    case Trouble::kForeignRouter:
      return "The router here, " + problem.who +
             ", isn't one that you have used before, so nothing is opened on it. If it is yours, choose "
             "\"Use this router\" in the menu, or press OK in the Configure dialog.";
    case Trouble::kNoExposedHost:
      return "UPnP knows no DMZ host, so the router wasn't told about it. Set it on the router's page, or "
             "forward the ports that are needed.";
    default:
      return ExplainRefusal(problem);
  }
}

}  // namespace upnp
