#pragma once

#include <windows.h>

#include <ocidl.h>

#include <optional>

#include "platform/ObjectFactory.h"
#include "platform/win32/ComPointer.h"
#include "platform/win32/EventSinkDispatch.h"

namespace platform::win32 {

/// Where a source takes a sink, the interface that it wants of the sink, and how it numbers the events.
struct EventBinding {
  ComPointer<IConnectionPoint> point;
  IID id{};
  EventIds ids;
};

/// The connection point of the interface's own id, or else the first whose type information names all the
/// events. Nothing when the source has neither.
std::optional<EventBinding> FindEventBinding(IUnknown& source, REFIID id, const EventInterface& events);

}  // namespace platform::win32
