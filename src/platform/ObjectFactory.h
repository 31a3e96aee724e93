#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/LateBoundObject.h"

namespace platform {

/// How an event source names and numbers its events: the interface that carries them, and the events in the
/// order of their numbers, which count from 1.
struct EventInterface {
  /// In the form "{E0A74CD3-5372-419F-A5BE-5D09BDCFB740}".
  std::string id;
  std::vector<std::string> names;
};

/// Takes the events of a source, on the thread of the interface.
class EventSink {
 public:
  virtual ~EventSink() = default;
  /// `event` is the number in the EventInterface. What is written to an argument reaches the source when the
  /// source passed it by reference. A failure goes back to the source as its call's error.
  virtual void OnEvent(std::int32_t event, std::span<base::Variant> arguments) = 0;
};

/// Ends the connection to the source when it goes away.
class EventConnection {
 public:
  virtual ~EventConnection() = default;
};

class ObjectFactory {
 public:
  virtual ~ObjectFactory() = default;

  /// Fails with base::Error when the class is unknown or its object can't be made.
  virtual LateBoundRef Create(std::string_view className) = 0;

  /// Connects `sink` by the interface's id, or, where the source lacks that, by some other interface of its
  /// own that names all the events. Fails with base::Error when the source has neither. `sink` must outlive
  /// the connection.
  virtual std::unique_ptr<EventConnection> Connect(LateBoundObject& source, const EventInterface& events,
                                                   EventSink& sink) = 0;
};

}  // namespace platform
