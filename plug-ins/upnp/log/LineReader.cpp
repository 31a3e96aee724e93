#include "log/LineReader.h"

#include <algorithm>

#include "log/Characters.h"
#include "log/KeyedLine.h"
#include "log/PatternTable.h"

namespace upnp::log {

LineReader::LineReader() {
  for (const RouterPattern& entry : PatternTable()) patterns_.emplace_back(entry.pattern);
}

std::optional<Packet> LineReader::Read(std::string_view line, const Sides& sides) {
  if (auto packet = ReadKeyedLine(line).ToPacket(sides)) return packet;
  small_.resize(line.size());
  std::transform(line.begin(), line.end(), small_.begin(), ToLower);
  for (const LinePattern& pattern : patterns_) {
    const std::optional<LineFields> fields = pattern.Match(line, small_);
    if (!fields) continue;
    if (auto packet = fields->ToPacket(sides)) return packet;
  }
  return std::nullopt;
}

std::vector<Packet> LineReader::ReadDatagram(std::string_view datagram, const Sides& sides) {
  std::vector<Packet> packets;
  while (!datagram.empty()) {
    const std::size_t end = std::min(datagram.find('\n'), datagram.size());
    if (auto packet = Read(datagram.substr(0, end), sides)) packets.push_back(*std::move(packet));
    datagram.remove_prefix(std::min(end + 1, datagram.size()));
  }
  return packets;
}

}  // namespace upnp::log
