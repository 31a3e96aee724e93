#include "log/RepeatFilter.h"

namespace upnp::log {

namespace {

std::string KeyOf(const Packet& packet) {
  std::string key(packet.direction == Direction::kIn ? "i" : "o");
  key += packet.protocol;
  key += ' ';
  key += packet.sourceAddress;
  key += ' ';
  key += std::to_string(packet.sourcePort);
  key += ' ';
  key += packet.destinationAddress;
  key += ' ';
  key += std::to_string(packet.destinationPort);
  return key;
}

}  // namespace

bool RepeatFilter::IsRepeat(const Packet& packet, Time now) {
  ForgetOld(now);
  const auto [entry, isNew] = times_.try_emplace(KeyOf(packet), now);
  if (!isNew) return true;
  order_.push_back({now, entry->first});
  return false;
}

void RepeatFilter::ForgetOld(Time now) {
  while (!order_.empty() && (now - order_.front().when >= kMemory || order_.size() >= kMostPackets)) {
    times_.erase(order_.front().key);
    order_.pop_front();
  }
}

}  // namespace upnp::log
