#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

#include <cstdint>
#include <string>
#include <utility>

namespace upnp {

/// Windows' sockets, for as long as one lives.
class SocketLibrary {
 public:
  SocketLibrary() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
  }
  ~SocketLibrary() { WSACleanup(); }
  SocketLibrary(const SocketLibrary&) = delete;
  SocketLibrary& operator=(const SocketLibrary&) = delete;
};

/// A UDP socket of IPv4 that closes itself. Needs a SocketLibrary.
class UdpSocket {
 public:
  UdpSocket() : socket_(socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP)) {}
  UdpSocket(UdpSocket&& other) noexcept : socket_(std::exchange(other.socket_, INVALID_SOCKET)) {}
  UdpSocket(const UdpSocket&) = delete;
  UdpSocket& operator=(const UdpSocket&) = delete;
  ~UdpSocket() {
    if (socket_ != INVALID_SOCKET) closesocket(socket_);
  }
  SOCKET Handle() const { return socket_; }

 private:
  SOCKET socket_;
};

/// A TCP socket of IPv4 that closes itself. Needs a SocketLibrary.
class TcpSocket {
 public:
  TcpSocket() : socket_(socket(AF_INET, SOCK_STREAM, IPPROTO_TCP)) {}
  TcpSocket(const TcpSocket&) = delete;
  TcpSocket& operator=(const TcpSocket&) = delete;
  ~TcpSocket() {
    if (socket_ != INVALID_SOCKET) closesocket(socket_);
  }
  SOCKET Handle() const { return socket_; }

 private:
  SOCKET socket_;
};

/// `address` is dotted; an empty one is every address of this computer.
inline sockaddr_in SocketAddress(const std::string& address, std::uint16_t port) {
  sockaddr_in result = {};
  result.sin_family = AF_INET;
  result.sin_port = htons(port);
  result.sin_addr.s_addr = address.empty() ? INADDR_ANY : inet_addr(address.c_str());
  return result;
}

inline std::string DottedAddress(const sockaddr_in& address) {
  const auto* octets = reinterpret_cast<const unsigned char*>(&address.sin_addr);
  return std::to_string(octets[0]) + "." + std::to_string(octets[1]) + "." + std::to_string(octets[2]) + "." +
         std::to_string(octets[3]);
}

}  // namespace upnp
