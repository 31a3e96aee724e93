#pragma once

#include <cstdint>
#include <string>

#include "base/Variant.h"

/// The record that tells a plug-in about one range of ports. Its properties, by name and number, are the
/// fields in their order.
class PortMappingData : public base::Record {
 public:
  std::string sProfileName;
  std::string sDescription;
  std::int32_t lBeginPort = 0;
  std::int32_t lEndPort = 0;
  bool bUDP = false;
  bool bTCP = false;
  /// Last octet of the target host.
  std::int16_t iForwardIPAddress = 0;
  /// The plug-in is to remove this range, not to open it.
  bool bClearEntry = false;

  std::span<const std::string_view> PropertyNames() const override;
  base::Variant Property(std::size_t index) const override;
  void SetProperty(std::size_t index, const base::Variant& value) override;
};
