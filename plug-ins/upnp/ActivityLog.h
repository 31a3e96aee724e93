#pragma once

#include <cstdint>
#include <string>

#include "HarbourlinePlugIn.h"
#include "SyslogListener.h"
#include "rules/GatewayChoice.h"

namespace upnp {

/// Brings what the router in use logs to Harbourline, as events.
class ActivityLog {
 public:
  explicit ActivityLog(const harbourline::Ref<harbourline::EventSource>& events);

  /// Listens while the log is on and a router is in use. To be called whenever one of these may have changed;
  /// costs nothing when none has. False when the port can't be had.
  bool Follow(bool enabled, std::uint16_t port, const FoundGateway& router);
  /// One line for the user: whether lines arrive.
  std::wstring ArrivalText() const;

 private:
  SyslogListener::Handlers MakeHandlers();

  harbourline::Ref<harbourline::EventSource> events_;
  SyslogListener listener_;
};

}  // namespace upnp
