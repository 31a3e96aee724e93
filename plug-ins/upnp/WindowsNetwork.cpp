#include "WindowsNetwork.h"

#include "Socket.h"

#include <iphlpapi.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <thread>

#include "BoundedSockets.h"
#include "CallBounds.h"
#include "MiniupnpcGateway.h"
#include "rules/Addresses.h"
#include "rules/DeviceDescription.h"
#include "rules/HttpAnswer.h"
#include "rules/WebAddress.h"

namespace upnp {

namespace {

using SteadyClock = std::chrono::steady_clock;

using std::chrono::milliseconds;

constexpr milliseconds kDescriptionTime{5000};
constexpr milliseconds kFirstQuestionTime{5000};

/// A socket on one adapter.
struct SearchSocket {
  std::string adapter;
  UdpSocket socket;
};

std::vector<SearchSocket> OpenSearchSockets() {
  std::vector<SearchSocket> sockets;
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
    sockets.push_back({address, std::move(socket)});
    if (sockets.size() == FD_SETSIZE) break;
  }
  return sockets;
}

void SendSearch(SOCKET socket, const std::string& address) {
  const sockaddr_in there = SocketAddress(address, kSsdpPort);
  for (const std::string_view type : kSearchTypes) {
    const std::string request = SearchRequest(type, SearchWait::kAnswerSeconds);
    sendto(socket, request.data(), static_cast<int>(request.size()), 0,
           reinterpret_cast<const sockaddr*>(&there), sizeof there);
  }
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

/// To everybody, and to the gateways of the default routes by themselves: some networks keep multicasts from
/// them.
void CallOut(const std::vector<SearchSocket>& sockets, const std::vector<std::string>& routes) {
  for (const SearchSocket& socket : sockets) SendSearch(socket.socket.Handle(), kSsdpGroup);
  for (const std::string& route : routes) {
    const std::string adapter = LocalAddressTowardsHost(route);
    for (const SearchSocket& socket : sockets) {
      if (socket.adapter == adapter) SendSearch(socket.socket.Handle(), route);
    }
  }
}

void TakeAnswer(SOCKET socket, SearchWait& wait, milliseconds after) {
  std::array<char, 2048> datagram;
  sockaddr_in sender = {};
  int senderLength = sizeof sender;
  const int length = recvfrom(socket, datagram.data(), static_cast<int>(datagram.size()), 0,
                              reinterpret_cast<sockaddr*>(&sender), &senderLength);
  if (length <= 0) return;
  const auto message =
      ReadSsdpMessage({datagram.data(), static_cast<std::size_t>(length)}, DottedAddress(sender));
  if (message) wait.Take(*message, after);
}

/// What is left until then, and no more than `most`.
milliseconds TimeLeft(SteadyClock::time_point deadline, milliseconds most) {
  const auto left = std::chrono::duration_cast<milliseconds>(deadline - SteadyClock::now());
  return std::clamp(left, milliseconds(0), most);
}

/// The description behind an address; empty when there is none in time.
std::string Fetch(const std::string& url, milliseconds time, const std::atomic<bool>& calledOff) {
  const CallBounds bounds(time, calledOff);
  const TcpSocket socket;
  const sockaddr_in there = SocketAddress(HostOf(url), PortOf(url));
  if (BoundedConnect(socket.Handle(), reinterpret_cast<const sockaddr*>(&there), sizeof there) != 0)
    return {};
  const std::string request = HttpRequest(url);
  if (send(socket.Handle(), request.data(), static_cast<int>(request.size()), 0) <= 0) return {};
  HttpAnswer answer(kLongestDescription);
  std::array<char, 4096> piece;
  while (true) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(socket.Handle(), &readable);
    if (BoundedSelect(0, &readable, nullptr, nullptr, nullptr) <= 0) return {};
    const int length = recv(socket.Handle(), piece.data(), static_cast<int>(piece.size()), 0);
    if (length < 0) return {};
    if (length == 0 || !answer.Take({piece.data(), static_cast<std::size_t>(length)})) break;
  }
  return answer.Page().value_or(std::string());
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

std::vector<std::string> WindowsNetwork::DefaultGateways() {
  ULONG size = 0;
  std::vector<unsigned char> memory;
  DWORD result = GetIpForwardTable(nullptr, &size, TRUE);
  for (int attempt = 0; attempt < 3 && result == ERROR_INSUFFICIENT_BUFFER; ++attempt) {
    memory.resize(size);
    result = GetIpForwardTable(reinterpret_cast<MIB_IPFORWARDTABLE*>(memory.data()), &size, TRUE);
  }
  std::vector<std::string> gateways;
  if (result != NO_ERROR || memory.empty()) return gateways;
  const auto* table = reinterpret_cast<const MIB_IPFORWARDTABLE*>(memory.data());
  std::vector<MIB_IPFORWARDROW> routes(table->table, table->table + table->dwNumEntries);
  std::stable_sort(routes.begin(), routes.end(), [](const MIB_IPFORWARDROW& a, const MIB_IPFORWARDROW& b) {
    return a.dwForwardMetric1 < b.dwForwardMetric1;
  });
  for (const MIB_IPFORWARDROW& route : routes) {
    if (route.dwForwardDest != 0 || route.dwForwardMask != 0 || route.dwForwardNextHop == 0) continue;
    sockaddr_in address = {};
    address.sin_addr.s_addr = route.dwForwardNextHop;
    gateways.push_back(DottedAddress(address));
  }
  return gateways;
}

SearchResult WindowsNetwork::Search(const SearchAim& aim) {
  const SocketLibrary library;
  const std::vector<SearchSocket> sockets = OpenSearchSockets();
  const auto begin = SteadyClock::now();
  const auto after = [begin] { return std::chrono::duration_cast<Moment>(SteadyClock::now() - begin); };
  SearchWait wait(aim);
  bool calledTwice = false;
  CallOut(sockets, aim.routes);
  while (!hurry_ && !sockets.empty() && !wait.IsOver(after())) {
    if (!calledTwice && wait.WantsSecondCall(after())) {
      CallOut(sockets, aim.routes);
      calledTwice = true;
    }
    fd_set readable;
    FD_ZERO(&readable);
    for (const SearchSocket& socket : sockets) FD_SET(socket.socket.Handle(), &readable);
    timeval slice = {0, 50 * 1000};
    if (select(0, &readable, nullptr, nullptr, &slice) <= 0) continue;
    for (const SearchSocket& socket : sockets) {
      if (FD_ISSET(socket.socket.Handle(), &readable)) TakeAnswer(socket.socket.Handle(), wait, after());
    }
  }
  const std::vector<SsdpMessage> answers = wait.Answers();
  // One that takes its time mustn't hold up the others.
  std::vector<std::vector<FoundGateway>> found(answers.size());
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < answers.size(); ++i) {
      threads.emplace_back([this, begin, &answer = answers[i], &place = found[i]] {
        try {
          place = Ask(answer, begin + SearchWait::kDeadline);
        } catch (const std::exception&) {
          // One router less; the next search asks it again.
          place.clear();
        }
      });
    }
  }
  SearchResult result;
  result.calledOff = hurry_;
  for (const std::vector<FoundGateway>& some : found)
    result.gateways.insert(result.gateways.end(), some.begin(), some.end());
  return result;
}

/// Fetches the description behind an answer, and asks all of its connections at once how they are.
std::vector<FoundGateway> WindowsNetwork::Ask(const SsdpMessage& answer, Instant deadline) const {
  const std::string text = Fetch(answer.location, TimeLeft(deadline, kDescriptionTime), hurry_);
  const DeviceDescription description = ReadDescription(text, answer.location);
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
    gateways.push_back(gateway);
  }
  std::vector<std::jthread> threads;
  for (FoundGateway& gateway : gateways) {
    threads.emplace_back([this, deadline, &gateway] {
      try {
        AskHowItIs(gateway, deadline);
      } catch (const std::exception&) {
        gateway.connected = false;
      }
    });
  }
  threads.clear();
  return gateways;
}

void WindowsNetwork::AskHowItIs(FoundGateway& gateway, Instant deadline) const {
  const auto ask = [&] {
    return MiniupnpcGateway(gateway.controlUrl, gateway.serviceType, hurry_,
                            TimeLeft(deadline, kFirstQuestionTime));
  };
  ConnectionStatus status;
  const Answer statusAnswer = ask().Status(status);
  // Some routers cut the connection at a question that they lack.
  ask().ExternalAddress(gateway.wanAddress);
  // A router that doesn't tell its status, but an address, is connected.
  gateway.connected = statusAnswer.IsDone() ? status.connected : IsPublicAddress(gateway.wanAddress);
}

std::unique_ptr<Gateway> WindowsNetwork::Connect(const FoundGateway& gateway) {
  return std::make_unique<MiniupnpcGateway>(gateway.controlUrl, gateway.serviceType, stop_);
}

std::string WindowsNetwork::LocalAddressTowards(const FoundGateway& gateway) {
  const SocketLibrary library;
  return LocalAddressTowardsHost(gateway.Address());
}

}  // namespace upnp
