// The members of CRegistry that bring the profiles' mappings to the router.

#include <vector>

#include "base/Variant.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"

namespace {

constexpr std::int32_t kDontSend = 0;
constexpr std::int32_t kSend = 1;
constexpr std::int32_t kSendToRemove = 2;

constexpr std::int16_t kThisComputer = -1;
/// Both bounds of the array that says that nothing is to be forwarded.
constexpr std::int32_t kNothingBound = 10;

std::shared_ptr<PortMappingData> MakeData(const CMapProfile& profile, const CMapping& mapping,
                                          std::int16_t iLocalIP, std::int32_t iVerdict) {
  auto data = std::make_shared<PortMappingData>();
  data->bTCP = mapping.sType().find("TCP") != std::string_view::npos;
  data->bUDP = mapping.sType().find("UDP") != std::string_view::npos;
  data->iForwardIPAddress =
      mapping.iForwardIPAddress() == kThisComputer ? iLocalIP : mapping.iForwardIPAddress();
  data->lBeginPort = mapping.lBeginPort();
  data->lEndPort = mapping.lEndPort();
  data->sDescription = mapping.sDescription();
  data->sProfileName = profile.sName;
  data->bClearEntry = iVerdict == kSendToRemove;
  return data;
}

}  // namespace

void CRegistry::JudgeMapping(std::int16_t iLocalIP, bool bReset, const CMapProfile& MapProfile,
                             const CMapping& Mapping, std::int32_t& iVerdict) const {
  const bool isLocal =
      Mapping.iForwardIPAddress() == kThisComputer || Mapping.iForwardIPAddress() == iLocalIP;
  if (bReset) {
    iVerdict = MapProfile.bEnabled ? kSend : kDontSend;
  } else if (MapProfile.bClear) {
    // A local mapping goes by its absence.
    iVerdict = MapProfile.bEnabled && !isLocal ? kSendToRemove : kDontSend;
  } else if (MapProfile.bSet) {
    iVerdict = kSend;
  } else {
    iVerdict = MapProfile.bEnabled && isLocal ? kSend : kDontSend;
  }
}

void CRegistry::ActivatePortForwarding(std::int16_t iLocalIP, bool bReset, bool& bSuccess) {
  const auto forEachToSend = [&](const auto& visit) {
    for (const auto& profile : m_ccMapProfiles) {
      for (const auto& mapping : profile->ccMappings()) {
        std::int32_t iVerdict = kDontSend;
        JudgeMapping(iLocalIP, bReset, *profile, *mapping, iVerdict);
        if (iVerdict != kDontSend) visit(*profile, *mapping, iVerdict);
      }
    }
  };
  std::size_t count = 0;
  forEachToSend([&](const CMapProfile&, const CMapping&, std::int32_t) { ++count; });

  std::vector<base::Variant> elements;
  elements.reserve(count);
  forEachToSend([&](const CMapProfile& profile, const CMapping& mapping, std::int32_t iVerdict) {
    elements.emplace_back(MakeData(profile, mapping, iLocalIP, iVerdict));
  });
  std::int32_t lowerBound = 0;
  if (elements.empty()) {
    lowerBound = kNothingBound;
    elements.emplace_back(base::ObjectRef());
  }
  const base::ArrayRef array = base::MakeArray(base::ElementType::kObject, lowerBound, std::move(elements));

  for (const auto& profile : m_ccMapProfiles) {
    if (profile->bClear) profile->bEnabled = false;
    if (profile->bSet) profile->bEnabled = true;
    profile->bClear = false;
    profile->bSet = false;
  }
  bSuccess = modServerHelper::SetPortForwarding(Router, array, iLocalIP);
}
