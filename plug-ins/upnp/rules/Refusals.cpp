#include "rules/Refusals.h"

namespace upnp {

namespace {

constexpr Moment kTryAgain = std::chrono::minutes(5);

}  // namespace

void Refusals::Add(std::size_t range, const Problem& problem) {
  refusals_.try_emplace(range, Refusal{problem, clock_.Now() + kTryAgain});
}

bool Refusals::ForgetDue() {
  return std::erase_if(refusals_,
                       [&](const auto& refusal) { return clock_.Now() >= refusal.second.tryAgainAt; }) != 0;
}

std::vector<Problem> Refusals::Problems(const std::vector<Range>& ranges) const {
  std::vector<Problem> problems;
  for (const auto& [range, refusal] : refusals_) {
    Problem& problem = problems.emplace_back(refusal.problem);
    // A router that stops in the middle of a range tells about one port, and the user about the range.
    if (problem.trouble == Trouble::kTableFull || problem.trouble == Trouble::kNotKept) {
      problem.firstPort = ranges[range].firstPort;
      problem.lastPort = ranges[range].lastPort;
    }
  }
  return problems;
}

}  // namespace upnp
