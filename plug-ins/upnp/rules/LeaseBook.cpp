#include "rules/LeaseBook.h"

#include <algorithm>
#include <chrono>

namespace upnp {

void LeaseBook::Hold(const PortKey& key, std::uint32_t told, std::uint32_t asked) {
  Held held;
  held.permanent = told == 0;
  const std::uint32_t left = asked == 0 ? told : std::min(told, asked);
  held.renewAt = clock_.Now() + std::chrono::milliseconds(std::int64_t{left} * 1000 / 2);
  held_[key] = held;
}

void LeaseBook::Clear() {
  held_.clear();
}

bool LeaseBook::IsDue(const PortKey& key) const {
  const auto held = held_.find(key);
  return held != held_.end() && !held->second.permanent && clock_.Now() >= held->second.renewAt;
}

bool LeaseBook::IsPermanent(const PortKey& key) const {
  const auto held = held_.find(key);
  return held != held_.end() && held->second.permanent;
}

}  // namespace upnp
