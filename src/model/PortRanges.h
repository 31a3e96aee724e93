#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/KeyedCollection.h"

class CMapProfile;

/// The ranges of ports of all profiles, side by side in their order, so that asking each mapping about a port
/// costs no more than reading an array. They are a copy, which is made anew when anything has changed since.
class PortRanges {
 public:
  using MapProfiles = base::KeyedCollection<std::shared_ptr<CMapProfile>>;

  /// Makes every copy stale. Whoever changes a port of a mapping, the mappings of a profile or the list of
  /// profiles calls it.
  static void Changed() { ++changes_; }

  /// Calls `visit` with each profile, once and in order, of which some mapping covers the port, both ends
  /// included.
  template <typename Visit>
  void ForEachCovering(const MapProfiles& profiles, std::int32_t lPort, Visit visit) {
    if (copied_ != changes_) Copy(profiles);
    const auto covers = [lPort](const Range& range) {
      return range.lBeginPort <= lPort && lPort <= range.lEndPort;
    };
    auto range = std::find_if(ranges_.begin(), ranges_.end(), covers);
    while (range != ranges_.end()) {
      const auto index = static_cast<std::size_t>(range - ranges_.begin());
      const auto owner = std::upper_bound(owners_.begin(), owners_.end(), index,
                                          [](std::size_t i, const Owner& each) { return i < each.end; });
      const auto next = ranges_.begin() + static_cast<std::ptrdiff_t>(owner->end);
      visit(*owner->profile);
      range = std::find_if(next, ranges_.end(), covers);
    }
  }

 private:
  struct Range {
    std::int32_t lBeginPort;
    std::int32_t lEndPort;
  };
  struct Owner {
    const CMapProfile* profile;
    /// Behind the last of its ranges.
    std::size_t end;
  };

  void Copy(const MapProfiles& profiles);

  static inline std::uint64_t changes_ = 1;
  std::uint64_t copied_ = 0;
  std::vector<Range> ranges_;
  std::vector<Owner> owners_;
};
