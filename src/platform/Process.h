#pragma once

#include <string>

namespace platform {

/// What the program asks about itself.
class Process {
 public:
  virtual ~Process() = default;
  /// Full path of the running executable.
  virtual std::string ExecutablePath() = 0;
  /// True when another process of the same session runs the same executable file and was started earlier.
  virtual bool EarlierInstanceRuns() = 0;
  /// The folder that file names without one belong to; empty when it can't be told.
  virtual std::string CurrentFolder() = 0;
};

}  // namespace platform
