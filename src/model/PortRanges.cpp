#include "model/PortRanges.h"

#include "model/CMapProfile.h"

void PortRanges::Copy(const MapProfiles& profiles) {
  ranges_.clear();
  owners_.clear();
  for (const auto& profile : profiles) {
    for (const auto& mapping : profile->ccMappings()) {
      ranges_.push_back({mapping->lBeginPort(), mapping->lEndPort()});
    }
    owners_.push_back({profile.get(), ranges_.size()});
  }
  copied_ = changes_;
}
