#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "log/Packet.h"
#include "log/Time.h"

namespace upnp::log {

/// Allows 50 rows within any second, one of which is kept for telling how many others there were.
class RowLimit {
 public:
  static constexpr std::size_t kRowsASecond = 50;

  bool HasRoom(Time now);
  void Count(Time now);
  void LeaveOut(std::size_t rows, Time now);
  bool HasUntold() const { return leftOut_ > 0; }
  /// How many were left out, once a second at most, else 0. Telling it counts as a row.
  std::size_t TakeLeftOut(Time now);

 private:
  void ForgetOld(Time now);

  std::deque<Time> rows_;
  std::size_t leftOut_ = 0;
  Time firstLeftOut_{};
};

/// One row of the activity log, as the event `Log` brings it.
struct Row {
  std::string type;
  std::string source;
  std::int32_t sourcePort = 0;
  std::string destination;
  std::int32_t destinationPort = 0;
  std::string miscellaneous;
};

/// What the program knows of a port.
struct PortName {
  std::string description;
  bool filterOut = false;
};

/// Makes rows of packets: asks for the name of each port, leaves out what the user doesn't want to see, and
/// never floods. When the one who names or takes a row throws, that row is lost, and the next one comes.
class LogFeed {
 public:
  using NamePort = std::function<PortName(std::int32_t port)>;
  using TakeRow = std::function<void(const Row&)>;
  LogFeed(NamePort namePort, TakeRow takeRow);

  /// `dropped` more had come, but no packet is left of them.
  void Take(const std::vector<Packet>& packets, std::size_t dropped, Time now);
  /// Due ten times a second while HasUntold.
  void Tell(Time now);
  bool HasUntold() const { return limit_.HasUntold(); }

 private:
  void TakeOne(const Packet& packet, Time now);

  NamePort namePort_;
  TakeRow takeRow_;
  RowLimit limit_;
};

}  // namespace upnp::log
