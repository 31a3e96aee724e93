#pragma once

#include "platform/Clock.h"

namespace platform::win32 {

class Win32Clock : public Clock {
 public:
  DateTime Now() override;
  std::string TimeText(const DateTime& moment) override;
};

}  // namespace platform::win32
