#include "ActivityLog.h"

#include "Text.h"

namespace upnp {

ActivityLog::ActivityLog(const harbourline::Ref<harbourline::EventSource>& events)
    : events_(events), listener_(MakeHandlers()) {}

/// What Harbourline does with an event may end in the release of the plug-in, so the handlers hold the source
/// themselves.
SyslogListener::Handlers ActivityLog::MakeHandlers() {
  SyslogListener::Handlers handlers;
  handlers.namePort = [events = events_](std::int32_t port) {
    const harbourline::PortAnswer answer = events->IdentifyPort(static_cast<long>(port));
    return log::PortName{Utf8(answer.description), answer.filterOut};
  };
  handlers.takeRow = [events = events_](const log::Row& row) {
    events->RaiseLog({Wide(row.type), Wide(row.source), static_cast<long>(row.sourcePort),
                      Wide(row.destination), static_cast<long>(row.destinationPort),
                      Wide(row.miscellaneous)});
  };
  handlers.error = [events = events_](const std::string& message, short number) {
    try {
      events->RaiseError(Wide(message), number);
    } catch (const harbourline::Failure&) {
      // The dialog tells it as well.
      return;
    }
  };
  return handlers;
}

bool ActivityLog::Follow(bool enabled, std::uint16_t port, const FoundGateway& router) {
  if (!enabled || router.device.empty()) {
    listener_.Stop();
    return true;
  }
  return listener_.Listen({router.localAddress, router.Address(), router.wanAddress, port});
}

std::wstring ActivityLog::ArrivalText() const {
  return Wide(log::ArrivalText(listener_.State(), SyslogListener::Now()));
}

}  // namespace upnp
