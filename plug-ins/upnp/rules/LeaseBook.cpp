#include "rules/LeaseBook.h"

#include <algorithm>
#include <chrono>

namespace upnp {

namespace {

constexpr Moment kAfterFailure = std::chrono::minutes(5);
constexpr Moment kSoonest = std::chrono::seconds(1);

}  // namespace

void LeaseBook::Hold(const PortKey& key, std::uint32_t told, std::uint32_t asked) {
  Held held;
  std::uint32_t left = told;
  if (asked != 0) left = told == 0 ? asked : std::min(told, asked);
  if (left != 0) {
    const Moment time = std::chrono::seconds(left);
    held.renewAt = clock_.Now() + time / 2;
    held.endsAt = clock_.Now() + time;
  }
  held_[key] = held;
}

void LeaseBook::DropAllBut(const std::set<PortKey>& keys) {
  std::erase_if(held_, [&](const auto& held) { return !keys.contains(held.first); });
}

void LeaseBook::Clear() {
  held_.clear();
  permanentOnly_ = false;
}

bool LeaseBook::IsDue(const PortKey& key) const {
  const auto held = held_.find(key);
  return held != held_.end() && clock_.Now() >= held->second.renewAt;
}

bool LeaseBook::IsOver(const PortKey& key) const {
  const auto held = held_.find(key);
  return held != held_.end() && clock_.Now() >= held->second.endsAt;
}

void LeaseBook::Postpone(const PortKey& key) {
  const auto held = held_.find(key);
  if (held == held_.end()) return;
  const Moment left = held->second.endsAt - clock_.Now();
  held->second.renewAt = clock_.Now() + std::clamp(left, kSoonest, kAfterFailure);
}

std::optional<Moment> LeaseBook::NextRenewal() const {
  Moment next = Moment::max();
  for (const auto& [key, held] : held_) next = std::min(next, held.renewAt);
  return next == Moment::max() ? std::nullopt : std::optional(next);
}

/// What isn't known may last for ever.
Moment LeaseBook::EndOf(const PortKey& key) const {
  const auto held = held_.find(key);
  return held == held_.end() ? Moment::max() : held->second.endsAt;
}

}  // namespace upnp
