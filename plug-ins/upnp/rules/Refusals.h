#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "rules/Clock.h"
#include "rules/Problem.h"
#include "rules/Wish.h"

namespace upnp {

/// The ranges that a router refused. They aren't tried at each check.
class Refusals {
 public:
  explicit Refusals(const Clock& clock) : clock_(clock) {}

  /// The first problem of a range is kept.
  void Add(std::size_t range, const Problem& problem);
  bool Has(std::size_t range) const { return refusals_.contains(range); }
  /// The range must have one.
  const Problem& Of(std::size_t range) const { return refusals_.at(range).problem; }
  void Clear() { refusals_.clear(); }
  /// Forgets those that are to be tried again by now. True when there were any.
  bool ForgetDue();
  /// In the words for the owner of `ranges`.
  std::vector<Problem> Problems(const std::vector<Range>& ranges) const;

 private:
  struct Refusal {
    Problem problem;
    Moment tryAgainAt{};
  };

  const Clock& clock_;
  std::map<std::size_t, Refusal> refusals_;  ///< by range
};

}  // namespace upnp
