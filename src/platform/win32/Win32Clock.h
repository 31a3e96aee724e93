#pragma once

#include "platform/Clock.h"

namespace platform::win32 {

class Win32Clock : public Clock {
 public:
  DateTime Now() override;
};

}  // namespace platform::win32
