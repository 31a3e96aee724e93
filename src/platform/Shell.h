#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// Opens documents with the user's own programs.
class Shell {
 public:
  virtual ~Shell() = default;
  /// Opens a file or a web address; the machine's result, above 32 for success.
  virtual std::intptr_t Open(const std::string& target) = 0;
  /// Opens a file for the user to read, in front of the window (0 for none). When that fails the machine
  /// tells the user, and the answer is false.
  virtual bool Show(std::uintptr_t window, const std::string& file) = 0;
};

}  // namespace platform
