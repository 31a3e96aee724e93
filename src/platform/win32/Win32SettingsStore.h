#pragma once

#include <windows.h>

#include "platform/SettingsStore.h"

namespace platform::win32 {

/// Each section is the key HKEY_CURRENT_USER\Software\<application>\<section>; its values are REG_SZ.
class Win32SettingsStore : public SettingsStore {
 public:
  Win32SettingsStore() = default;
  Win32SettingsStore(const Win32SettingsStore&) = delete;
  Win32SettingsStore& operator=(const Win32SettingsStore&) = delete;
  ~Win32SettingsStore() override { Close(); }

  /// A REG_DWORD is read as its decimal text; a value of any other type counts as missing.
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view defaultValue) override;
  void SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                   std::string_view value) override;
  void DeleteSetting(std::string_view application, std::string_view section) override;
  void DeleteSetting(std::string_view application, std::string_view section, std::string_view key) override;
  std::string PathOf(std::string_view application, std::string_view section) const override;

 private:
  enum class Access { kRead, kWrite, kCreate };

  /// Leaves the section's key in key_.
  LSTATUS Open(std::string_view application, std::string_view section, Access access);
  void Close();
  /// Runs `operation` on the section's key, once more when somebody deleted the key while it was open.
  template <typename Operation>
  LSTATUS WithSection(std::string_view application, std::string_view section, Access access,
                      Operation operation);

  /// The section that was used last stays open: a save writes many thousand values to the same one.
  HKEY key_ = nullptr;
  Access access_ = Access::kRead;
  std::string application_;
  std::string section_;
};

}  // namespace platform::win32
