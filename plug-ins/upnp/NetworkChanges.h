#pragma once

#include <winsock2.h>

namespace upnp {

/// Windows' word that an address of this computer came, went or changed. Needs a SocketLibrary.
class NetworkChanges {
 public:
  NetworkChanges();
  ~NetworkChanges();
  NetworkChanges(const NetworkChanges&) = delete;
  NetworkChanges& operator=(const NetworkChanges&) = delete;

  /// Set while a change waits to be taken.
  HANDLE Event() const { return request_.hEvent; }
  /// True when something has changed since the last call.
  bool Take();

 private:
  void Ask();

  OVERLAPPED request_ = {};
  bool asked_ = false;
};

}  // namespace upnp
