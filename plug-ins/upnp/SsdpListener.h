#pragma once

#include <winsock2.h>

#include <map>
#include <string>
#include <vector>

#include "Socket.h"
#include "rules/SsdpMessage.h"

namespace upnp {

/// Hears what routers announce of their own accord, on the adapters that it is told and no others. Where the
/// port can't be shared it hears nothing, and the checks in turn have to do. Needs a SocketLibrary.
class SsdpListener {
 public:
  SsdpListener();
  ~SsdpListener();
  SsdpListener(const SsdpListener&) = delete;
  SsdpListener& operator=(const SsdpListener&) = delete;

  /// Set while something waits to be taken.
  HANDLE Event() const { return event_; }
  /// Holds the port on the adapters with these addresses, and lets go of it on all others.
  void Listen(const std::vector<std::string>& adapters);
  /// What has come since the last call.
  std::vector<SsdpMessage> Take();

 private:
  void Open(const std::string& adapter);

  HANDLE event_;
  std::map<std::string, UdpSocket> ears_;  ///< by the adapter's address
};

}  // namespace upnp
