#include "plugins/PortMappingData.h"

#include <array>

#include "base/Conversions.h"
#include "base/Error.h"

namespace {

constexpr std::array<std::string_view, 8> kNames = {"sProfileName",      "sDescription", "lBeginPort",
                                                    "lEndPort",          "bUDP",         "bTCP",
                                                    "iForwardIPAddress", "bClearEntry"};

base::Error NoSuchProperty(std::size_t index) {
  return base::Error(base::ErrorNumber::kMemberNotFound,
                     "PortMappingData has no property " + base::ToText(static_cast<std::int32_t>(index) + 1));
}

}  // namespace

std::span<const std::string_view> PortMappingData::PropertyNames() const {
  return kNames;
}

base::Variant PortMappingData::Property(std::size_t index) const {
  switch (index) {
    case 0:
      return sProfileName;
    case 1:
      return sDescription;
    case 2:
      return lBeginPort;
    case 3:
      return lEndPort;
    case 4:
      return bUDP;
    case 5:
      return bTCP;
    case 6:
      return iForwardIPAddress;
    case 7:
      return bClearEntry;
    default:
      throw NoSuchProperty(index);
  }
}

void PortMappingData::SetProperty(std::size_t index, const base::Variant& value) {
  switch (index) {
    case 0:
      sProfileName = base::ToText(value);
      break;
    case 1:
      sDescription = base::ToText(value);
      break;
    case 2:
      lBeginPort = base::ToInt32(value);
      break;
    case 3:
      lEndPort = base::ToInt32(value);
      break;
    case 4:
      bUDP = base::ToBoolean(value);
      break;
    case 5:
      bTCP = base::ToBoolean(value);
      break;
    case 6:
      iForwardIPAddress = base::ToInt16(value);
      break;
    case 7:
      bClearEntry = base::ToBoolean(value);
      break;
    default:
      throw NoSuchProperty(index);
  }
}
