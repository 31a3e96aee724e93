#include "SsdpListener.h"

#include <algorithm>
#include <array>
#include <utility>

namespace upnp {

SsdpListener::SsdpListener() : event_(WSACreateEvent()) {}

SsdpListener::~SsdpListener() {
  ears_.clear();
  WSACloseEvent(event_);
}

void SsdpListener::Listen(const std::vector<std::string>& adapters) {
  std::erase_if(ears_, [&](const auto& ear) {
    return std::find(adapters.begin(), adapters.end(), ear.first) == adapters.end();
  });
  for (const std::string& adapter : adapters) {
    if (!ears_.contains(adapter)) Open(adapter);
  }
}

/// A socket that is bound to the group hears the group and nothing else. Where that can't be, as on Windows,
/// it is bound to the adapter's own address, where Windows hands out what comes to the group on that adapter.
void SsdpListener::Open(const std::string& adapter) {
  UdpSocket socket;
  const int shared = 1;
  setsockopt(socket.Handle(), SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&shared),
             sizeof shared);
  const auto bindTo = [&](const std::string& address) {
    const sockaddr_in place = SocketAddress(address, kSsdpPort);
    return bind(socket.Handle(), reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
  };
  if (!bindTo(kSsdpGroup) && !bindTo(adapter)) return;
  ip_mreq membership = {};
  membership.imr_multiaddr.s_addr = inet_addr(kSsdpGroup);
  membership.imr_interface.s_addr = inet_addr(adapter.c_str());
  const int joined = setsockopt(socket.Handle(), IPPROTO_IP, IP_ADD_MEMBERSHIP,
                                reinterpret_cast<const char*>(&membership), sizeof membership);
  if (joined != 0) return;
  WSAEventSelect(socket.Handle(), event_, FD_READ);
  ears_.emplace(adapter, std::move(socket));
}

std::vector<SsdpMessage> SsdpListener::Take() {
  std::vector<SsdpMessage> messages;
  WSAResetEvent(event_);
  // A flood is cut into pieces, between which the commands have their turn.
  constexpr int kMost = 64;
  for (const auto& [adapter, socket] : ears_) {
    for (int i = 0; i < kMost; ++i) {
      std::array<char, 2048> datagram;
      sockaddr_in sender = {};
      int senderLength = sizeof sender;
      const int length = recvfrom(socket.Handle(), datagram.data(), static_cast<int>(datagram.size()), 0,
                                  reinterpret_cast<sockaddr*>(&sender), &senderLength);
      if (length <= 0) break;
      auto message =
          ReadSsdpMessage({datagram.data(), static_cast<std::size_t>(length)}, DottedAddress(sender));
      if (message) messages.push_back(std::move(*message));
    }
  }
  return messages;
}

}  // namespace upnp
