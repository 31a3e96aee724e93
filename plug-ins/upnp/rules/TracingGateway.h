#pragma once

#include <memory>
#include <string>

#include "rules/Clock.h"
#include "rules/Gateway.h"
#include "rules/Trace.h"

namespace upnp {

/// Writes each call of a gateway, with what came of it and how long it took, into the trace.
class TracingGateway final : public Gateway {
 public:
  TracingGateway(std::unique_ptr<Gateway> gateway, Trace& trace, const Clock& clock);

  Traits Abilities() const override { return gateway_->Abilities(); }
  Granted Add(const PortMapping& mapping) override;
  Answer Delete(const PortKey& key) override;
  Answer EntryAt(std::uint32_t index, PortMapping& mapping) override;
  Answer Entry(const PortKey& key, PortMapping& mapping) override;
  Answer ExternalAddress(std::string& address) override;
  Answer Status(ConnectionStatus& status) override;

 private:
  void Write(const std::string& call, Moment begin, const Answer& answer, const std::string& content);

  std::unique_ptr<Gateway> gateway_;
  Trace& trace_;
  const Clock& clock_;
};

}  // namespace upnp
