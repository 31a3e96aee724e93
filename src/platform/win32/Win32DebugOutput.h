#pragma once

#include "platform/DebugOutput.h"

namespace platform::win32 {

class Win32DebugOutput : public DebugOutput {
 public:
  /// Ends the line.
  void Trace(std::string_view line) override;
};

}  // namespace platform::win32
