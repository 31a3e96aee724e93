#include "support/MemorySettings.h"

#include "base/Error.h"

namespace support {
namespace {

std::string SectionName(std::string_view application, std::string_view section) {
  return std::string(application) + "\\" + std::string(section);
}

base::Error Missing() {
  return base::Error(base::ErrorNumber::kInvalidCall, "There is no such setting");
}

}  // namespace

std::string MemorySettings::GetSetting(std::string_view application, std::string_view section,
                                       std::string_view key, std::string_view defaultValue) {
  reads.emplace_back(key);
  const auto values = sections_.find(SectionName(application, section));
  if (values == sections_.end()) return std::string(defaultValue);
  const auto value = values->second.find(std::string(key));
  return value == values->second.end() ? std::string(defaultValue) : value->second;
}

void MemorySettings::SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                                 std::string_view value) {
  if (unwritable.contains(std::string(key))) {
    throw base::Error(base::ErrorNumber::kInvalidCall, "The store refuses " + std::string(key));
  }
  sections_[SectionName(application, section)][std::string(key)] = value;
  journal_.push_back(std::string(key) + "=" + std::string(value));
}

void MemorySettings::DeleteSetting(std::string_view application, std::string_view section) {
  const std::string name = SectionName(application, section);
  journal_.push_back("delete " + name);
  if (sections_.erase(name) == 0) throw Missing();
}

void MemorySettings::DeleteSetting(std::string_view application, std::string_view section,
                                   std::string_view key) {
  journal_.push_back("delete " + SectionName(application, section) + "\\" + std::string(key));
  const auto values = sections_.find(SectionName(application, section));
  if (values == sections_.end() || values->second.erase(std::string(key)) == 0) throw Missing();
}

std::string MemorySettings::PathOf(std::string_view application, std::string_view section) const {
  return "HKEY_CURRENT_USER\\Software\\" + SectionName(application, section);
}

}  // namespace support
