// The reader of the router's log, fed as the network does: datagrams from whoever says to be the router.

#include <string>
#include <vector>

#include "FuzzWorld.h"
#include "log/Intake.h"

namespace {

using upnp::log::Packet;

std::vector<Packet> ReadLineByLine(upnp::log::LineReader& reader, std::string_view datagram,
                                   const upnp::log::Sides& sides) {
  std::vector<Packet> packets;
  std::size_t start = 0;
  while (start < datagram.size()) {
    const std::size_t end = datagram.find('\n', start);
    if (auto packet = reader.Read(datagram.substr(start, end - start), sides)) packets.push_back(*packet);
    if (end == std::string_view::npos) break;
    start = end + 1;
  }
  return packets;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static upnp::log::LineReader reader;
  static const upnp::log::Sides sides = {{{*upnp::log::ReadAddress("192.168.1.0"), 24}},
                                         upnp::log::ReadAddress("198.51.100.7")};
  const std::string_view datagram = fuzz::Text(data, size);
  const std::vector<Packet> packets = reader.ReadDatagram(datagram, sides);
  fuzz::Require(packets == ReadLineByLine(reader, datagram, sides), "a datagram is its lines");
  for (const Packet& packet : packets) {
    fuzz::Require(upnp::log::ReadAddress(packet.sourceAddress).has_value(), "the source is an address");
    fuzz::Require(upnp::log::ReadAddress(packet.destinationAddress).has_value(),
                  "the destination is an address");
    fuzz::Require(packet.protocol.size() <= 32, "a protocol is a word");
  }

  static upnp::log::Intake intake;
  intake.Take(datagram, sides, upnp::log::Time(0));
  fuzz::Require(intake.TakeContent().packets.size() <= upnp::log::Intake::kMostPackets,
                "the intake is bounded");
  return 0;
}
