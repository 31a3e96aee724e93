#pragma once

#include <windows.h>
#include <winsock2.h>

#include <iphlpapi.h>

#include <span>

#include "platform/Network.h"

namespace platform::win32 {

class Win32Network : public Network {
 public:
  std::string LocalIP() override;
  bool ConnectedState(std::int32_t& flags) override;
  void GetTcpStatistics(TcpStatistics& statistics) override;
};

/// The address of the adapter with the cheapest default route; without such a route, or when its adapter has
/// no address, the first address that isn't loopback; with none "127.0.0.1".
std::string ChooseLocalAddress(std::span<const MIB_IPFORWARDROW> routes,
                               std::span<const MIB_IPADDRROW> addresses);

}  // namespace platform::win32
