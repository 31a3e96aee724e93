#pragma once

#include <string_view>

namespace platform {

/// The list of programs that start when the user logs on.
class SystemHelper {
 public:
  virtual ~SystemHelper() = default;
  /// Makes or replaces the entry `name`, or removes it; removing a missing entry is no failure.
  /// `command` is the full path of the program, without quotes.
  virtual void SetAutoStart(bool enable, std::string_view name, std::string_view command) = 0;
};

}  // namespace platform
