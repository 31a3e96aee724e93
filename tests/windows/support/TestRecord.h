#pragma once

#include <array>
#include <string>

#include "base/Variant.h"

namespace support {

/// A record of this program with one property of each kind.
class TestRecord : public base::Record {
 public:
  TestRecord() { ++alive; }
  ~TestRecord() override { --alive; }

  std::span<const std::string_view> PropertyNames() const override {
    static constexpr std::array<std::string_view, 4> kNames = {"sProfileName", "lBeginPort",
                                                               "iForwardIPAddress", "bUDP"};
    return kNames;
  }

  base::Variant Property(std::size_t index) const override {
    switch (index) {
      case 0:
        return sProfileName;
      case 1:
        return lBeginPort;
      case 2:
        return iForwardIPAddress;
      default:
        return bUDP;
    }
  }

  void SetProperty(std::size_t index, const base::Variant& value) override {
    switch (index) {
      case 0:
        sProfileName = base::ToText(value);
        break;
      case 1:
        lBeginPort = base::ToInt32(value);
        break;
      case 2:
        iForwardIPAddress = base::ToInt16(value);
        break;
      default:
        bUDP = base::ToBoolean(value);
    }
  }

  static inline int alive = 0;

  std::string sProfileName;
  std::int32_t lBeginPort = 0;
  std::int16_t iForwardIPAddress = 0;
  bool bUDP = false;
};

}  // namespace support
