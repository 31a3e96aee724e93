#pragma once

#include "platform/Machine.h"
#include "platform/win32/Win32Machine.h"
#include "support/MemoryMachine.h"

namespace bench {

/// Windows' network, windows and notification area, and nothing else of it: the user's settings are neither
/// read nor written, and no plug-in is made.
class RealMachine {
 public:
  RealMachine() {
    platform::Machine& machine = platform::TheMachine();
    machine.network = real_.network;
    machine.windows = real_.windows;
    machine.notificationArea = real_.notificationArea;
  }

 private:
  platform::win32::Win32Machine windows_;
  platform::Machine real_ = platform::TheMachine();

 public:
  MemoryMachine memory;
};

}  // namespace bench
