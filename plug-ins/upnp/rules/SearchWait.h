#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "rules/Clock.h"
#include "rules/SsdpMessage.h"

namespace upnp {

/// What a search looks for most of all.
struct SearchAim {
  std::string device;   ///< the identifier of the router that is remembered; empty when there is none
  std::string address;  ///< its address when it was last seen
  std::vector<std::string> routes;  ///< the gateways of this computer's default routes, the best first
  bool thorough = false;            ///< everybody is to be heard, as for a list that is shown
};

/// Takes the answers to a search, and knows when to wait no longer.
class SearchWait {
 public:
  /// Seconds that a router may take for its answer, by the request.
  static constexpr int kAnswerSeconds = 1;
  /// Everybody has answered by then, the way of the datagrams included.
  static constexpr Moment kWhole = std::chrono::milliseconds(1300);
  /// When a router that matters has answered, others that are as quick are heard.
  static constexpr Moment kQuiet = std::chrono::milliseconds(100);
  /// While nobody has answered at all: datagrams get lost.
  static constexpr Moment kLongest = std::chrono::milliseconds(3000);
  /// A second call goes out by then.
  static constexpr Moment kSecondCall = std::chrono::milliseconds(1000);
  /// The whole search, with the questions to those who answered.
  static constexpr Moment kDeadline = std::chrono::seconds(10);
  static constexpr std::size_t kMostLocations = 16;
  static constexpr std::size_t kMostOfASender = 2;

  explicit SearchWait(SearchAim aim) : aim_(std::move(aim)) {}

  /// Takes an answer that came `after` the call.
  void Take(const SsdpMessage& message, Moment after);
  bool IsOver(Moment after) const;
  bool WantsSecondCall(Moment after) const { return answers_.empty() && after >= kSecondCall; }
  /// The descriptions to be fetched, one message each.
  std::vector<SsdpMessage> Answers() const;

 private:
  bool Matters(const SsdpMessage& message) const;

  SearchAim aim_;
  std::map<std::string, SsdpMessage> answers_;  ///< by location
  std::map<std::string, std::size_t> ofSender_;
  bool mattered_ = false;
  Moment lastNews_{};
};

}  // namespace upnp
