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
};

}  // namespace platform
