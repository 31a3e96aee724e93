#include "plugins/EventHandler.h"

#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"
#include "platform/Machine.h"

namespace {

constexpr std::int32_t kError = 1;
constexpr std::int32_t kIdentifyPort = 2;
constexpr std::int32_t kLog = 3;

const platform::EventInterface& Events() {
  static const platform::EventInterface events{"{E0A74CD3-5372-419F-A5BE-5D09BDCFB740}",
                                               {"Error", "IdentifyPort", "Log"}};
  return events;
}

void RequireCount(std::span<const base::Variant> arguments, std::size_t count) {
  if (arguments.size() == count) return;
  throw base::Error(
      base::ErrorNumber::kWrongArgumentCount,
      "Wrong number of arguments: " + base::ToText(static_cast<std::int32_t>(arguments.size())));
}

}  // namespace

std::shared_ptr<EventHandler> EventHandler::Connect(platform::LateBoundRef source) {
  std::shared_ptr<EventHandler> handler(new EventHandler(std::move(source)));
  handler->m_Connection = platform::TheMachine().objects->Connect(*handler->m_Source, Events(), *handler);
  return handler;
}

void EventHandler::OnEvent(std::int32_t event, std::span<base::Variant> arguments) {
  // A handler may let go of this object.
  const auto keepAlive = shared_from_this();
  switch (event) {
    case kError: {
      RequireCount(arguments, 2);
      Error.Raise(base::ToText(arguments[0]), base::ToInt16(arguments[1]));
      break;
    }
    case kIdentifyPort: {
      RequireCount(arguments, 3);
      std::string sDescription = base::ToText(arguments[1]);
      bool bFilterOut = base::ToBoolean(arguments[2]);
      IdentifyPort.Raise(base::ToInt32(arguments[0]), sDescription, bFilterOut);
      arguments[1] = std::move(sDescription);
      arguments[2] = bFilterOut;
      break;
    }
    case kLog: {
      RequireCount(arguments, 6);
      Log.Raise(base::ToText(arguments[0]), base::ToText(arguments[1]), base::ToInt32(arguments[2]),
                base::ToText(arguments[3]), base::ToInt32(arguments[4]), base::ToText(arguments[5]));
      break;
    }
    default:
      throw base::Error(base::ErrorNumber::kMemberNotFound, "Unknown event " + base::ToText(event));
  }
}
