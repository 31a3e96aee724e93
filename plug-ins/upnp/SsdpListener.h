#pragma once

#include <winsock2.h>

#include <string>
#include <vector>

#include "Socket.h"
#include "rules/SsdpMessage.h"

namespace upnp {

/// Hears what routers announce of their own accord. Where the port can't be shared it hears nothing, and the
/// checks in turn have to do. Needs a SocketLibrary.
class SsdpListener {
 public:
  SsdpListener();
  ~SsdpListener();
  SsdpListener(const SsdpListener&) = delete;
  SsdpListener& operator=(const SsdpListener&) = delete;

  /// Set while something waits to be taken.
  HANDLE Event() const { return event_; }
  /// What has come since the last call; whoever speaks for another host isn't heard.
  std::vector<SsdpMessage> Take();
  /// Joins the group on adapters that are new.
  void JoinAdapters();

 private:
  UdpSocket socket_;
  HANDLE event_;
  bool bound_ = false;
  std::vector<std::string> joined_;
};

}  // namespace upnp
