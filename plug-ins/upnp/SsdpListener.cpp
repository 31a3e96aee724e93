#include "SsdpListener.h"

#include <array>
#include <utility>

#include "WindowsNetwork.h"

namespace upnp {

SsdpListener::SsdpListener() : event_(WSACreateEvent()) {
  const int shared = 1;
  setsockopt(socket_.Handle(), SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&shared),
             sizeof shared);
  const sockaddr_in everywhere = SocketAddress({}, kSsdpPort);
  bound_ = bind(socket_.Handle(), reinterpret_cast<const sockaddr*>(&everywhere), sizeof everywhere) == 0;
  if (bound_) WSAEventSelect(socket_.Handle(), event_, FD_READ);
  JoinAdapters();
}

SsdpListener::~SsdpListener() {
  WSACloseEvent(event_);
}

void SsdpListener::JoinAdapters() {
  if (!bound_) return;
  std::vector<std::string> addresses = AdapterAddresses();
  if (addresses == joined_) return;
  for (const std::string& address : addresses) {
    ip_mreq membership = {};
    membership.imr_multiaddr.s_addr = inet_addr(kSsdpGroup);
    membership.imr_interface.s_addr = inet_addr(address.c_str());
    // Where it is a member already this fails, which is as good.
    setsockopt(socket_.Handle(), IPPROTO_IP, IP_ADD_MEMBERSHIP, reinterpret_cast<const char*>(&membership),
               sizeof membership);
  }
  joined_ = std::move(addresses);
}

std::vector<SsdpMessage> SsdpListener::Take() {
  std::vector<SsdpMessage> messages;
  WSAResetEvent(event_);
  // A flood is cut into pieces, between which the commands have their turn.
  constexpr int kMost = 64;
  for (int i = 0; bound_ && i < kMost; ++i) {
    std::array<char, 2048> datagram;
    sockaddr_in sender = {};
    int senderLength = sizeof sender;
    const int length = recvfrom(socket_.Handle(), datagram.data(), static_cast<int>(datagram.size()), 0,
                                reinterpret_cast<sockaddr*>(&sender), &senderLength);
    if (length <= 0) break;
    auto message = ReadSsdpMessage({datagram.data(), static_cast<std::size_t>(length)});
    if (!message) continue;
    const bool isGone = message->kind == SsdpMessage::Kind::kGone;
    if (isGone || HostOf(message->location) == DottedAddress(sender)) messages.push_back(std::move(*message));
  }
  return messages;
}

}  // namespace upnp
