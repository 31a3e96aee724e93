#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Failures.h"

namespace platform {

/// The values of one section of the settings store whose keys share a prefix, read and written in their own
/// types. A value that is missing reads as the default. One that can't be converted fails with a text that
/// names the value, what it holds and where it lies.
class SettingsSection {
 public:
  /// All three must outlive the object.
  SettingsSection(std::string_view application, std::string_view section, std::string_view prefix = {})
      : application_(application), section_(section), prefix_(prefix) {}

  std::string ReadText(std::string_view key, std::string_view defaultValue) const;
  std::int16_t ReadInt16(std::string_view key, std::int16_t defaultValue) const;
  std::int32_t ReadInt32(std::string_view key, std::int32_t defaultValue) const;
  bool ReadBoolean(std::string_view key, bool defaultValue) const;

  void Write(std::string_view key, std::string_view value) const;
  void Write(std::string_view key, const char* value) const { Write(key, std::string_view(value)); }
  void Write(std::string_view key, std::int16_t value) const;
  void Write(std::string_view key, std::int32_t value) const;
  void Write(std::string_view key, bool value) const;

 private:
  std::string FullKey(std::string_view key) const;
  template <typename Value, typename Convert>
  Value Read(std::string_view key, Value defaultValue, std::string_view wanted, std::string_view range,
             Convert convert) const;

  std::string_view application_;
  std::string_view section_;
  std::string_view prefix_;
};

/// Writes like SettingsSection. A value that can't be written is kept as a failure, and the next one is
/// written all the same.
class SettingsWriter {
 public:
  /// All must outlive the object.
  SettingsWriter(base::Failures& failures, std::string_view application, std::string_view section,
                 std::string_view prefix = {})
      : failures_(failures), settings_(application, section, prefix) {}

  template <typename Value>
  void Write(std::string_view key, const Value& value) const {
    failures_.Run([&] { settings_.Write(key, value); });
  }

 private:
  base::Failures& failures_;
  SettingsSection settings_;
};

}  // namespace platform
