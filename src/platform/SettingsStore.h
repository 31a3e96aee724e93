#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The user's persistent settings: text values addressed by application, section and key.
/// Text is in the machine's 8-bit code page.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  /// `defaultValue` when the value or its section is missing; never fails for a missing name.
  virtual std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                                 std::string_view defaultValue) = 0;
  /// Creates what is missing. Fails with base::Error when the store refuses.
  virtual void SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                           std::string_view value) = 0;
  /// Deletes the section with all values in it; a missing section is a failure.
  virtual void DeleteSetting(std::string_view application, std::string_view section) = 0;
  /// Deletes one value; a missing one is a failure.
  virtual void DeleteSetting(std::string_view application, std::string_view section,
                             std::string_view key) = 0;
  /// Where a value lies, for messages to the user.
  virtual std::string PathOf(std::string_view application, std::string_view section) const = 0;
};

}  // namespace platform
