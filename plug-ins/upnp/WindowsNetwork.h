#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "rules/Engine.h"

namespace upnp {

/// The gateways that all adapters of this computer reach.
class WindowsNetwork final : public Network {
 public:
  /// `stop` ends every wait soon, and `hurry` that of a search.
  WindowsNetwork(const std::atomic<bool>& stop, const std::atomic<bool>& hurry)
      : stop_(stop), hurry_(hurry) {}

  /// Takes SearchWait::kDeadline at most, whatever answers and how.
  SearchResult Search(const SearchAim& aim) override;
  std::vector<std::string> DefaultGateways() override;
  std::unique_ptr<Gateway> Connect(const FoundGateway& gateway) override;
  std::string LocalAddressTowards(const FoundGateway& gateway) override;

 private:
  using Instant = std::chrono::steady_clock::time_point;

  std::vector<FoundGateway> Ask(const SsdpMessage& answer, Instant deadline) const;
  void AskHowItIs(FoundGateway& gateway, Instant deadline) const;

  const std::atomic<bool>& stop_;
  const std::atomic<bool>& hurry_;
};

/// The IPv4 addresses of the adapters that are up, dotted, without loopback.
std::vector<std::string> AdapterAddresses();

}  // namespace upnp
