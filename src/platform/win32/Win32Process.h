#pragma once

#include "platform/Process.h"

namespace platform::win32 {

class Win32Process : public Process {
 public:
  std::string ExecutablePath() override;
  /// Of two processes that started in the same moment the one with the lower identifier counts as the earlier
  /// one, so that exactly one of any number finds none before it.
  bool EarlierInstanceRuns() override;
  std::string CurrentFolder() override;
};

}  // namespace platform::win32
