#include "SyslogListener.h"

#include <iphlpapi.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "HarbourlinePlugIn.h"

namespace upnp {

namespace {

constexpr UINT kArrived = WM_APP + 1;
constexpr UINT_PTR kDrainTimer = 1;
constexpr UINT kDrainMilliseconds = 100;
/// What the system keeps for us while we are busy with a burst.
constexpr int kReceiveBuffer = 1024 * 1024;
constexpr std::size_t kGreatestDatagram = 65536;

log::PortTrouble TroubleOf(int errorNumber) {
  switch (errorNumber) {
    case WSAEADDRINUSE:
      return log::PortTrouble::kTaken;
    case WSAEACCES:
      return log::PortTrouble::kForbidden;
    case WSAEADDRNOTAVAIL:
      return log::PortTrouble::kNoAddress;
    default:
      return log::PortTrouble::kOther;
  }
}

log::Address AddressOf(const SOCKET_ADDRESS& socketAddress) {
  log::Address address;
  if (socketAddress.lpSockaddr->sa_family == AF_INET6) {
    const auto& inner = *reinterpret_cast<const sockaddr_in6*>(socketAddress.lpSockaddr);
    std::memcpy(address.bytes.data(), &inner.sin6_addr, address.bytes.size());
    return address;
  }
  const auto& inner = *reinterpret_cast<const sockaddr_in*>(socketAddress.lpSockaddr);
  return log::ReadAddress(DottedAddress(inner)).value_or(address);
}

std::vector<log::Network> NetworksOf(const IP_ADAPTER_ADDRESSES& adapter) {
  std::vector<log::Network> networks;
  for (const auto* unicast = adapter.FirstUnicastAddress; unicast; unicast = unicast->Next) {
    networks.push_back({AddressOf(unicast->Address), unicast->OnLinkPrefixLength});
  }
  return networks;
}

bool HasAddress(const std::vector<log::Network>& networks, const log::Address& address) {
  for (const log::Network& network : networks) {
    if (network.address == address) return true;
  }
  return false;
}

}  // namespace

log::Sides SidesOf(const std::string& adapterAddress, const std::string& wanAddress) {
  log::Sides sides;
  sides.wanAddress = log::ReadAddress(wanAddress);
  const auto own = log::ReadAddress(adapterAddress);
  constexpr ULONG kFlags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
  ULONG size = 16 * 1024;
  std::vector<std::byte> buffer;
  ULONG result = ERROR_BUFFER_OVERFLOW;
  for (int tries = 0; result == ERROR_BUFFER_OVERFLOW && tries < 4; ++tries) {
    buffer.resize(size);
    result = GetAdaptersAddresses(AF_UNSPEC, kFlags, nullptr,
                                  reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer.data()), &size);
  }
  if (result != ERROR_SUCCESS || !own) return sides;
  const auto* adapter = reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(buffer.data());
  for (; adapter && sides.lan.empty(); adapter = adapter->Next) {
    std::vector<log::Network> networks = NetworksOf(*adapter);
    if (HasAddress(networks, *own)) sides.lan = std::move(networks);
  }
  return sides;
}

/// What both threads and the window share. The window may be closed by what a handler does, so whoever calls
/// one holds it.
struct SyslogListener::Hub {
  Hub(log::LogFeed::NamePort namePort, log::LogFeed::TakeRow takeRow)
      : feed(std::move(namePort), std::move(takeRow)) {}

  log::Intake intake;
  log::LogFeed feed;
  HWND window = nullptr;
  bool draining = false;
  bool timerRuns = false;
};

SyslogListener::SyslogListener(Handlers handlers)
    : error_(std::move(handlers.error)),
      hub_(std::make_shared<Hub>(std::move(handlers.namePort), std::move(handlers.takeRow))),
      stop_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  hub_->window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                 harbourline::module::Handle(), nullptr);
  if (!hub_->window) return;
  SetWindowLongPtrW(hub_->window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&hub_));
  SetWindowLongPtrW(hub_->window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
}

SyslogListener::~SyslogListener() {
  Stop();
  if (hub_->window) DestroyWindow(std::exchange(hub_->window, nullptr));
  CloseHandle(stop_);
}

log::Time SyslogListener::Now() {
  return log::Time(static_cast<log::Time::rep>(GetTickCount64()));
}

bool SyslogListener::Listen(const SyslogRoute& route) {
  if (thread_.joinable() && route == route_) return true;
  Stop();
  route_ = route;
  // An address that is none would stand for all.
  if (!log::ReadAddress(route.adapterAddress)) return Fail(WSAEADDRNOTAVAIL);
  auto made = std::make_unique<UdpSocket>();
  const SOCKET handle = made->Handle();
  if (handle == INVALID_SOCKET) return Fail(WSAGetLastError());
  const BOOL exclusive = TRUE;
  setsockopt(handle, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&exclusive),
             sizeof exclusive);
  setsockopt(handle, SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char*>(&kReceiveBuffer),
             sizeof kReceiveBuffer);
  const sockaddr_in own = SocketAddress(route.adapterAddress, route.port);
  if (bind(handle, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0) return Fail(WSAGetLastError());
  problem_.clear();
  socket_ = std::move(made);
  ResetEvent(stop_);
  thread_ = std::thread([this, handle] { Receive(handle); });
  return true;
}

bool SyslogListener::Fail(int errorNumber) {
  const std::string problem =
      log::PortProblem(TroubleOf(errorNumber), route_.adapterAddress, route_.port, errorNumber);
  if (std::exchange(problem_, problem) != problem) error_(problem, static_cast<short>(errorNumber));
  return false;
}

void SyslogListener::Stop() {
  if (thread_.joinable()) {
    SetEvent(stop_);
    thread_.join();
  }
  socket_.reset();
}

log::ListenerState SyslogListener::State() const {
  return {thread_.joinable(), hub_->intake.GetArrivals(), problem_};
}

/// Runs on the thread of its own.
void SyslogListener::Receive(SOCKET handle) const {
  const log::Sides sides = SidesOf(route_.adapterAddress, route_.wanAddress);
  const WSAEVENT arrived = WSACreateEvent();
  WSAEventSelect(handle, arrived, FD_READ);
  const std::array<HANDLE, 2> events = {stop_, arrived};
  std::string buffer(kGreatestDatagram, '\0');
  while (WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE, INFINITE) ==
         WAIT_OBJECT_0 + 1) {
    WSAResetEvent(arrived);
    TakeDatagrams(handle, buffer, sides);
  }
  WSAEventSelect(handle, nullptr, 0);
  WSACloseEvent(arrived);
}

void SyslogListener::TakeDatagrams(SOCKET handle, std::string& buffer, const log::Sides& sides) const {
  const sockaddr_in router = SocketAddress(route_.routerAddress, 0);
  while (WaitForSingleObject(stop_, 0) != WAIT_OBJECT_0) {
    sockaddr_in sender = {};
    int senderSize = sizeof sender;
    const int size = recvfrom(handle, buffer.data(), static_cast<int>(buffer.size()), 0,
                              reinterpret_cast<sockaddr*>(&sender), &senderSize);
    // Nothing more is there, or a failure that says nothing of the next datagram: the event tells of that.
    if (size < 0) return;
    if (sender.sin_addr.s_addr != router.sin_addr.s_addr) continue;
    const std::string_view datagram(buffer.data(), static_cast<std::size_t>(size));
    if (hub_->intake.Take(datagram, sides, Now())) PostMessageW(hub_->window, kArrived, 0, 0);
  }
}

LRESULT CALLBACK SyslogListener::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != kArrived && message != WM_TIMER) return DefWindowProcW(window, message, wParam, lParam);
  const auto& hub = *reinterpret_cast<std::shared_ptr<Hub>*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_TIMER || !hub->timerRuns) Drain(hub);
  return 0;
}

/// At once when something arrives after a silence, then ten times a second until there is silence again.
void SyslogListener::Drain(const std::shared_ptr<Hub>& shared) {
  const std::shared_ptr<Hub> hub = shared;
  // Whoever takes a row may show a message and let the timer tick meanwhile.
  if (hub->draining) return;
  hub->draining = true;
  const log::Intake::Content content = hub->intake.TakeContent();
  hub->feed.Take(content.packets, content.dropped, Now());
  hub->draining = false;
  if (!hub->window) return;
  hub->timerRuns = !content.packets.empty() || hub->feed.HasUntold();
  if (hub->timerRuns) {
    SetTimer(hub->window, kDrainTimer, kDrainMilliseconds, nullptr);
  } else {
    KillTimer(hub->window, kDrainTimer);
  }
}

}  // namespace upnp
