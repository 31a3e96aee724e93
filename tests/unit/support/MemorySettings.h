#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/SettingsStore.h"

namespace support {

/// The settings store in memory. Every write is told to the world's journal.
class MemorySettings : public platform::SettingsStore {
 public:
  explicit MemorySettings(std::vector<std::string>& journal) : journal_(journal) {}

  /// The values of the program's one section.
  std::map<std::string, std::string>& Values() { return sections_["Harbourline\\RouterSection"]; }
  /// Empty for a value that isn't there.
  std::string Value(const std::string& key) {
    return Values().contains(key) ? Values().at(key) : std::string();
  }
  bool Contains(const std::string& key) { return Values().contains(key); }
  bool HasSection() const { return sections_.contains("Harbourline\\RouterSection"); }

  /// Keys that were read, in order.
  std::vector<std::string> reads;
  /// Keys that can't be written.
  std::set<std::string> unwritable;

  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view defaultValue) override;
  void SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                   std::string_view value) override;
  void DeleteSetting(std::string_view application, std::string_view section) override;
  void DeleteSetting(std::string_view application, std::string_view section, std::string_view key) override;
  std::string PathOf(std::string_view application, std::string_view section) const override;

 private:
  std::vector<std::string>& journal_;
  std::map<std::string, std::map<std::string, std::string>> sections_;
};

}  // namespace support
