#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "rules/EntryText.h"
#include "rules/Gateway.h"

struct UPNParg;

namespace upnp {

/// A WAN connection of a real router, by miniupnpc. Each call takes kCallTime at most, and ends soon after
/// `calledOff` has become true.
class MiniupnpcGateway final : public Gateway {
 public:
  static constexpr std::chrono::seconds kCallTime{15};

  MiniupnpcGateway(std::string controlUrl, std::string serviceType, const std::atomic<bool>& calledOff,
                   std::chrono::milliseconds callTime = kCallTime);

  Traits Abilities() const override;
  Granted Add(const PortMapping& mapping) override;
  Answer Delete(const PortKey& key) override;
  Answer EntryAt(std::uint32_t index, PortMapping& mapping) override;
  Answer Entry(const PortKey& key, PortMapping& mapping) override;
  Answer ExternalAddress(std::string& address) override;
  Answer Status(ConnectionStatus& status) override;

 private:
  Answer ReadOne(const char* action, std::vector<UPNParg> arguments, EntryText text, PortMapping& mapping);
  Answer Call(const std::function<int()>& call) const;

  std::string controlUrl_;
  std::string serviceType_;
  const std::atomic<bool>& calledOff_;
  std::chrono::milliseconds callTime_;
};

}  // namespace upnp
