#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "rules/Engine.h"

namespace upnp {

/// The gateways that all adapters of this computer reach. `calledOff` ends every wait soon.
class WindowsNetwork final : public Network {
 public:
  explicit WindowsNetwork(const std::atomic<bool>& calledOff) : calledOff_(calledOff) {}

  std::vector<FoundGateway> Search() override;
  std::unique_ptr<Gateway> Connect(const FoundGateway& gateway) override;
  std::string LocalAddressTowards(const FoundGateway& gateway) override;

 private:
  std::vector<FoundGateway> Ask(const SsdpMessage& answer) const;

  const std::atomic<bool>& calledOff_;
};

/// The IPv4 addresses of the adapters that are up, dotted, without loopback.
std::vector<std::string> AdapterAddresses();

}  // namespace upnp
