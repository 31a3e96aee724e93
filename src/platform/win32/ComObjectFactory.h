#pragma once

#include "platform/ObjectFactory.h"

namespace platform::win32 {

class ComObjectFactory : public ObjectFactory {
 public:
  LateBoundRef Create(std::string_view className) override;
  std::unique_ptr<EventConnection> Connect(LateBoundObject& source, const EventInterface& events,
                                           EventSink& sink) override;
};

}  // namespace platform::win32
