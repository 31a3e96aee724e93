#pragma once

#include <string_view>

namespace platform {

/// Lines for a developer who listens with a debugger. They never reach the user.
class DebugOutput {
 public:
  virtual ~DebugOutput() = default;
  virtual void Trace(std::string_view line) = 0;
};

}  // namespace platform
