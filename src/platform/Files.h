#pragma once

#include <string>

namespace platform {

/// What the C library can't do with files everywhere. Paths are 8-bit text.
class Files {
 public:
  virtual ~Files() = default;
  /// Puts the file `from` in the place of `to`, whether that exists or not, and keeps the rights of the file
  /// that was there. Throws with a text that names `to`; `from` still exists then.
  virtual void Replace(const std::string& from, const std::string& to) = 0;
};

}  // namespace platform
