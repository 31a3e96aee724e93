#include "rules/SearchWait.h"

#include <algorithm>

namespace upnp {

void SearchWait::Take(const SsdpMessage& message, Moment after) {
  if (message.kind != SsdpMessage::Kind::kAnswer || answers_.contains(message.location)) return;
  const bool matters = Matters(message);
  // A router that matters has its place, however many others shout.
  if (!matters && answers_.size() >= kMostLocations) return;
  if (ofSender_[message.sender] >= kMostOfASender) return;
  ++ofSender_[message.sender];
  answers_.emplace(message.location, message);
  mattered_ = mattered_ || matters;
  lastNews_ = after;
}

bool SearchWait::IsOver(Moment after) const {
  if (answers_.empty()) return after >= kLongest;
  if (!aim_.thorough && mattered_ && after - lastNews_ >= kQuiet) return true;
  return after >= std::max(kWhole, lastNews_ >= kSecondCall ? kSecondCall + kWhole : kWhole);
}

std::vector<SsdpMessage> SearchWait::Answers() const {
  std::vector<SsdpMessage> answers;
  for (const auto& [location, message] : answers_) answers.push_back(message);
  return answers;
}

/// With a remembered router it is the one that is waited for; the gateway of the default route does
/// otherwise.
bool SearchWait::Matters(const SsdpMessage& message) const {
  if (!aim_.device.empty() && message.device == aim_.device) return true;
  if (!aim_.address.empty() && message.sender == aim_.address) return true;
  return aim_.device.empty() && !aim_.routes.empty() && message.sender == aim_.routes.front();
}

}  // namespace upnp
