// The reader of answers to searches and of announcements, and what a search keeps of them.

#include <string>

#include "FuzzWorld.h"
#include "rules/SearchWait.h"
#include "rules/SsdpMessage.h"
#include "rules/WebAddress.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using upnp::SsdpMessage;
  const std::string sender = "192.168.1.1";
  upnp::SearchWait wait({});
  // Datagrams, one behind the other: a zero byte divides them.
  std::string_view rest = fuzz::Text(data, size);
  while (!rest.empty()) {
    const std::size_t end = rest.find('\0');
    const std::string_view datagram = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    const auto message = upnp::ReadSsdpMessage(datagram, sender);
    if (!message) continue;
    fuzz::Require(message->sender == sender, "the sender is who sent it");
    fuzz::Require(!message->device.empty(), "a message has an identifier");
    const bool gone = message->kind == SsdpMessage::Kind::kGone;
    fuzz::Require((gone && message->location.empty()) || upnp::HostOf(message->location) == sender,
                  "a location is at the sender");
    fuzz::Require(message->location.empty() || upnp::PortOf(message->location) != 0, "a location has a port");
    wait.Take(*message, upnp::Moment(0));
  }
  fuzz::Require(wait.Answers().size() <= upnp::SearchWait::kMostOfASender, "a sender has few locations");
  return 0;
}
