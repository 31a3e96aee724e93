#include "CallBounds.h"

#include "BoundedSockets.h"

#include <algorithm>

namespace upnp {

namespace {

thread_local CallBounds* current = nullptr;

/// So often a wait looks whether it is called off.
constexpr int kSliceMilliseconds = 50;
/// A router that is there takes a connection at once.
constexpr std::chrono::seconds kConnectTime{3};

timeval Slice(int milliseconds) {
  return {0, std::min(milliseconds, kSliceMilliseconds) * 1000};
}

}  // namespace

CallBounds::CallBounds(std::chrono::milliseconds time, const std::atomic<bool>& calledOff)
    : outer_(current), end_(std::chrono::steady_clock::now() + time), calledOff_(calledOff) {
  current = this;
}

CallBounds::~CallBounds() {
  current = outer_;
}

CallBounds* CallBounds::Current() {
  return current;
}

int CallBounds::Left() {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now()).count();
  if (left > 0 && !calledOff_) return static_cast<int>(left);
  reached_ = true;
  return 0;
}

bool CallBounds::Count(std::size_t bytes) {
  bytes_ += bytes;
  reached_ = reached_ || bytes_ > kLongestAnswer;
  return bytes_ <= kLongestAnswer;
}

}  // namespace upnp

using upnp::CallBounds;

int BoundedConnect(SOCKET socket, const sockaddr* address, int length) {
  CallBounds* bounds = CallBounds::Current();
  if (!bounds) return connect(socket, address, length);
  u_long nonBlocking = 1;
  ioctlsocket(socket, FIONBIO, &nonBlocking);
  int result = connect(socket, address, length);
  if (result != 0 && WSAGetLastError() == WSAEWOULDBLOCK) {
    const auto end = std::chrono::steady_clock::now() + upnp::kConnectTime;
    result = SOCKET_ERROR;
    while (std::chrono::steady_clock::now() < end) {
      const int left = bounds->Left();
      if (left == 0) break;
      fd_set writable;
      fd_set failed;
      FD_ZERO(&writable);
      FD_ZERO(&failed);
      FD_SET(socket, &writable);
      FD_SET(socket, &failed);
      timeval slice = upnp::Slice(left);
      const int ready = select(0, nullptr, &writable, &failed, &slice);
      if (ready == 0) continue;
      if (ready > 0 && FD_ISSET(socket, &writable)) result = 0;
      break;
    }
  }
  u_long blocking = 0;
  ioctlsocket(socket, FIONBIO, &blocking);
  return result;
}

int BoundedReceive(SOCKET socket, char* data, int length, int flags) {
  const int received = recv(socket, data, length, flags);
  CallBounds* bounds = CallBounds::Current();
  if (bounds && received > 0 && !bounds->Count(static_cast<std::size_t>(received))) return SOCKET_ERROR;
  return received;
}

int BoundedSelect(int count, fd_set* readable, fd_set* writable, fd_set* failed, const timeval* timeout) {
  CallBounds* bounds = CallBounds::Current();
  if (!bounds) {
    timeval whole = timeout ? *timeout : timeval{};
    return select(count, readable, writable, failed, timeout ? &whole : nullptr);
  }
  const fd_set nothing = {};
  const fd_set wantedReadable = readable ? *readable : nothing;
  const fd_set wantedWritable = writable ? *writable : nothing;
  const fd_set wantedFailed = failed ? *failed : nothing;
  while (const int left = bounds->Left()) {
    if (readable) *readable = wantedReadable;
    if (writable) *writable = wantedWritable;
    if (failed) *failed = wantedFailed;
    timeval slice = upnp::Slice(left);
    const int ready = select(count, readable, writable, failed, &slice);
    if (ready != 0) return ready;
  }
  return 0;
}

int NumericGetAddrInfo(const char* host, const char* port, const addrinfo* hints, addrinfo** found) {
  addrinfo numeric = hints ? *hints : addrinfo{};
  numeric.ai_flags |= AI_NUMERICHOST;
  return getaddrinfo(host, port, &numeric, found);
}
