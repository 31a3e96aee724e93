#include "WindowsNetwork.h"

#include "Socket.h"

#include <iphlpapi.h>
#include <miniwget.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <map>
#include <thread>

#include "CallBounds.h"
#include "MiniupnpcGateway.h"
#include "rules/Addresses.h"
#include "rules/DeviceDescription.h"

namespace upnp {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLongestSearch{3000};
constexpr std::chrono::milliseconds kSecondCall{1000};
/// When nothing new has come for so long, whoever wanted to answer has.
constexpr std::chrono::milliseconds kQuiet{400};
constexpr std::chrono::milliseconds kDescriptionTime{5000};
constexpr std::chrono::milliseconds kFirstQuestionTime{5000};
constexpr std::size_t kMostDevices = 16;

std::vector<UdpSocket> OpenSearchSockets() {
  std::vector<UdpSocket> sockets;
  for (const std::string& address : AdapterAddresses()) {
    UdpSocket socket;
    if (socket.Handle() == INVALID_SOCKET) continue;
    const sockaddr_in local = SocketAddress(address, 0);
    if (bind(socket.Handle(), reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0) continue;
    setsockopt(socket.Handle(), IPPROTO_IP, IP_MULTICAST_IF, reinterpret_cast<const char*>(&local.sin_addr),
               sizeof local.sin_addr);
    const int hops = 2;
    setsockopt(socket.Handle(), IPPROTO_IP, IP_MULTICAST_TTL, reinterpret_cast<const char*>(&hops),
               sizeof hops);
    sockets.push_back(std::move(socket));
    if (sockets.size() == FD_SETSIZE) break;
  }
  return sockets;
}

void CallOut(const std::vector<UdpSocket>& sockets) {
  const sockaddr_in group = SocketAddress(kSsdpGroup, kSsdpPort);
  for (const UdpSocket& socket : sockets) {
    for (const std::string_view type : kSearchTypes) {
      const std::string request = SearchRequest(type, 1);
      sendto(socket.Handle(), request.data(), static_cast<int>(request.size()), 0,
             reinterpret_cast<const sockaddr*>(&group), sizeof group);
    }
  }
}

/// Takes what waits at a socket. True when a device answered that hadn't before.
bool TakeAnswers(SOCKET socket, std::map<std::string, SsdpMessage>& answers) {
  std::array<char, 2048> datagram;
  sockaddr_in sender = {};
  int senderLength = sizeof sender;
  const int length = recvfrom(socket, datagram.data(), static_cast<int>(datagram.size()), 0,
                              reinterpret_cast<sockaddr*>(&sender), &senderLength);
  if (length <= 0 || answers.size() >= kMostDevices) return false;
  const auto message = ReadSsdpMessage({datagram.data(), static_cast<std::size_t>(length)});
  if (!message || message->kind != SsdpMessage::Kind::kAnswer) return false;
  // A router tells where it is itself; anybody else would lead us away.
  if (HostOf(message->location) != DottedAddress(sender)) return false;
  return answers.emplace(message->location, *message).second;
}

std::string Fetch(const std::string& url, const std::atomic<bool>& calledOff) {
  const CallBounds bounds(kDescriptionTime, calledOff);
  int size = 0;
  int status = 0;
  void* data = miniwget(url.c_str(), &size, 0, &status);
  std::string text;
  constexpr int kFound = 200;
  if (data && size > 0 && status == kFound && !bounds.WereReached()) {
    text.assign(static_cast<const char*>(data), static_cast<std::size_t>(size));
  }
  std::free(data);
  return text;
}

std::string LocalAddressTowardsHost(const std::string& host) {
  const UdpSocket socket;
  const sockaddr_in there = SocketAddress(host, kSsdpPort);
  // Nothing is sent: Windows only looks for the way.
  if (connect(socket.Handle(), reinterpret_cast<const sockaddr*>(&there), sizeof there) != 0) return {};
  sockaddr_in here = {};
  int length = sizeof here;
  if (getsockname(socket.Handle(), reinterpret_cast<sockaddr*>(&here), &length) != 0) return {};
  return here.sin_addr.s_addr == INADDR_ANY ? std::string() : DottedAddress(here);
}

}  // namespace

std::vector<std::string> AdapterAddresses() {
  constexpr ULONG kFlags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
  ULONG size = 16 * 1024;
  std::vector<unsigned char> memory;
  ULONG result = ERROR_BUFFER_OVERFLOW;
  for (int attempt = 0; attempt < 3 && result == ERROR_BUFFER_OVERFLOW; ++attempt) {
    memory.resize(size);
    result = GetAdaptersAddresses(AF_INET, kFlags, nullptr,
                                  reinterpret_cast<IP_ADAPTER_ADDRESSES*>(memory.data()), &size);
  }
  std::vector<std::string> addresses;
  if (result != NO_ERROR) return addresses;
  for (const auto* adapter = reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(memory.data()); adapter;
       adapter = adapter->Next) {
    if (adapter->OperStatus != IfOperStatusUp || adapter->IfType == IF_TYPE_SOFTWARE_LOOPBACK) continue;
    for (const auto* unicast = adapter->FirstUnicastAddress; unicast; unicast = unicast->Next) {
      if (unicast->Address.lpSockaddr->sa_family != AF_INET) continue;
      addresses.push_back(DottedAddress(*reinterpret_cast<const sockaddr_in*>(unicast->Address.lpSockaddr)));
    }
  }
  return addresses;
}

std::vector<FoundGateway> WindowsNetwork::Search() {
  const SocketLibrary library;
  const std::vector<UdpSocket> sockets = OpenSearchSockets();
  std::map<std::string, SsdpMessage> answers;
  const auto begin = SteadyClock::now();
  auto lastNews = begin;
  bool calledTwice = false;
  CallOut(sockets);
  while (!calledOff_ && !sockets.empty()) {
    const auto now = SteadyClock::now();
    if (now - begin > kLongestSearch || (!answers.empty() && now - lastNews > kQuiet)) break;
    // Datagrams get lost.
    if (!calledTwice && answers.empty() && now - begin > kSecondCall) {
      CallOut(sockets);
      calledTwice = true;
    }
    fd_set readable;
    FD_ZERO(&readable);
    for (const UdpSocket& socket : sockets) FD_SET(socket.Handle(), &readable);
    timeval slice = {0, 50 * 1000};
    if (select(0, &readable, nullptr, nullptr, &slice) <= 0) continue;
    for (const UdpSocket& socket : sockets) {
      if (FD_ISSET(socket.Handle(), &readable) && TakeAnswers(socket.Handle(), answers))
        lastNews = SteadyClock::now();
    }
  }
  // One that takes its time mustn't hold up the others.
  std::vector<std::vector<FoundGateway>> found(answers.size());
  {
    std::vector<std::jthread> threads;
    std::size_t i = 0;
    for (const auto& [location, answer] : answers) {
      threads.emplace_back([this, &answer = answer, &place = found[i++]] {
        try {
          place = Ask(answer);
        } catch (const std::exception&) {
          // One router less; the next search asks it again.
          place.clear();
        }
      });
    }
  }
  std::vector<FoundGateway> gateways;
  for (const std::vector<FoundGateway>& some : found)
    gateways.insert(gateways.end(), some.begin(), some.end());
  return gateways;
}

/// Fetches the description behind an answer, and asks each of its connections how it is.
std::vector<FoundGateway> WindowsNetwork::Ask(const SsdpMessage& answer) const {
  const DeviceDescription description = ReadDescription(Fetch(answer.location, calledOff_), answer.location);
  std::vector<FoundGateway> gateways;
  for (const ConnectionService& connection : description.connections) {
    FoundGateway gateway;
    gateway.device = description.device.empty() ? answer.device : description.device;
    gateway.name = description.name;
    gateway.maker = description.maker;
    gateway.model = description.model;
    gateway.page = description.page;
    gateway.location = answer.location;
    gateway.deviceType = description.type;
    gateway.serviceType = connection.type;
    gateway.controlUrl = connection.controlUrl;
    gateway.localAddress = LocalAddressTowardsHost(HostOf(connection.controlUrl));
    gateway.bootId = answer.bootId;
    MiniupnpcGateway questions(connection.controlUrl, connection.type, calledOff_, kFirstQuestionTime);
    ConnectionStatus status;
    const Answer statusAnswer = questions.Status(status);
    if (!statusAnswer.IsNoAnswer()) questions.ExternalAddress(gateway.wanAddress);
    // A router that doesn't tell its status, but an address, is connected.
    gateway.connected = statusAnswer.IsDone() ? status.connected : IsPublicAddress(gateway.wanAddress);
    gateways.push_back(gateway);
  }
  return gateways;
}

std::unique_ptr<Gateway> WindowsNetwork::Connect(const FoundGateway& gateway) {
  return std::make_unique<MiniupnpcGateway>(gateway.controlUrl, gateway.serviceType, calledOff_);
}

std::string WindowsNetwork::LocalAddressTowards(const FoundGateway& gateway) {
  const SocketLibrary library;
  return LocalAddressTowardsHost(gateway.Address());
}

}  // namespace upnp
