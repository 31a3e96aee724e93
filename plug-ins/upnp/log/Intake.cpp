#include "log/Intake.h"

#include <utility>

namespace upnp::log {

bool Intake::Take(std::string_view datagram, const Sides& sides, Time now) {
  std::vector<Packet> packets = reader_.ReadDatagram(datagram, sides);
  const std::size_t found = packets.size();
  std::erase_if(packets, [this, now](const Packet& packet) { return repeats_.IsRepeat(packet, now); });

  const std::lock_guard lock(mutex_);
  ++arrivals_.datagrams;
  arrivals_.packets += found;
  arrivals_.last = now;
  const bool wasEmpty = content_.packets.empty();
  for (Packet& packet : packets) {
    if (content_.packets.size() == kMostPackets) {
      ++content_.dropped;
    } else {
      content_.packets.push_back(std::move(packet));
    }
  }
  return wasEmpty && !content_.packets.empty();
}

Intake::Content Intake::TakeContent() {
  const std::lock_guard lock(mutex_);
  return std::exchange(content_, {});
}

Arrivals Intake::GetArrivals() const {
  const std::lock_guard lock(mutex_);
  return arrivals_;
}

}  // namespace upnp::log
