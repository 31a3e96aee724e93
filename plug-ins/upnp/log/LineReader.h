#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "log/LinePattern.h"
#include "log/Packet.h"

namespace upnp::log {

/// Finds the packets in what a router logs: lines that name their values, and those of the pattern table.
/// Whatever else arrives, of any length and with any bytes, has no packet in it. For one thread.
class LineReader {
 public:
  LineReader();

  /// A line may have its priority, time and host in front.
  std::optional<Packet> Read(std::string_view line, const Sides& sides);
  /// A datagram is a line, or several with line feeds between them.
  std::vector<Packet> ReadDatagram(std::string_view datagram, const Sides& sides);

 private:
  std::vector<LinePattern> patterns_;
  std::string small_;
};

}  // namespace upnp::log
