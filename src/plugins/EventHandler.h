#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "base/Event.h"
#include "base/Variant.h"
#include "platform/LateBoundObject.h"
#include "platform/ObjectFactory.h"

/// The object by which a plug-in reports what its router logs. Its events come for as long as this object
/// lives.
class EventHandler : public std::enable_shared_from_this<EventHandler>, private platform::EventSink {
 public:
  /// Connects to the plug-in's object; fails when that lacks the events.
  static std::shared_ptr<EventHandler> Connect(platform::LateBoundRef source);

  /// Message and number.
  base::Event<const std::string&, std::int16_t> Error;
  /// Asks what to call a port; the handler writes the description, and whether the line is to be left out.
  base::Event<std::int32_t, std::string&, bool&> IdentifyPort;
  /// Type, source address and port, destination address and port, miscellaneous.
  base::Event<const std::string&, const std::string&, std::int32_t, const std::string&, std::int32_t,
              const std::string&>
      Log;

 private:
  explicit EventHandler(platform::LateBoundRef source) : m_Source(std::move(source)) {}
  void OnEvent(std::int32_t event, std::span<base::Variant> arguments) override;

  platform::LateBoundRef m_Source;
  // Goes before the source does.
  std::unique_ptr<platform::EventConnection> m_Connection;
};
