#include "platform/win32/Win32SettingsStore.h"

#include <cstring>
#include <optional>

#include "base/Conversions.h"
#include "platform/win32/SystemError.h"

namespace platform::win32 {
namespace {

std::string SubKey(std::string_view application, std::string_view section) {
  return "Software\\" + std::string(application) + "\\" + std::string(section);
}

/// An empty name would make the path that of another key.
bool IsSection(std::string_view application, std::string_view section) {
  return !application.empty() && !section.empty();
}

void RequireSection(std::string_view application, std::string_view section) {
  if (!IsSection(application, section)) {
    throw base::Error(base::ErrorNumber::kInvalidCall,
                      "A setting needs the names of its application and section");
  }
}

/// The value's bytes and their type.
LSTATUS Query(HKEY key, const std::string& name, DWORD& type, std::string& bytes) {
  bytes.resize(256);
  while (true) {
    auto size = static_cast<DWORD>(bytes.size());
    const LSTATUS status =
        RegQueryValueExA(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
    if (status != ERROR_MORE_DATA) {
      if (status == ERROR_SUCCESS) bytes.resize(size);
      return status;
    }
    bytes.resize(size > bytes.size() ? size : bytes.size() * 2);
  }
}

std::optional<std::string> TextOf(DWORD type, std::string bytes) {
  if (type == REG_SZ) {
    // The terminator counts as part of the data, and other programs may have left it out.
    if (!bytes.empty() && bytes.back() == '\0') bytes.pop_back();
    return bytes;
  }
  if (type == REG_DWORD && bytes.size() == sizeof(std::int32_t)) {
    std::int32_t number = 0;
    std::memcpy(&number, bytes.data(), sizeof number);
    return base::ToText(number);
  }
  return std::nullopt;
}

bool IsMissing(LSTATUS status) {
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

}  // namespace

std::string Win32SettingsStore::GetSetting(std::string_view application, std::string_view section,
                                           std::string_view key, std::string_view defaultValue) {
  if (!IsSection(application, section)) return std::string(defaultValue);
  DWORD type = REG_NONE;
  std::string bytes;
  const LSTATUS status = WithSection(application, section, Access::kRead,
                                     [&, name = std::string(key)] { return Query(key_, name, type, bytes); });
  if (IsMissing(status)) return std::string(defaultValue);
  if (status != ERROR_SUCCESS) {
    throw WindowsError(
        "The setting \"" + std::string(key) + "\" in " + PathOf(application, section) + " can't be read",
        status);
  }
  return TextOf(type, std::move(bytes)).value_or(std::string(defaultValue));
}

void Win32SettingsStore::SaveSetting(std::string_view application, std::string_view section,
                                     std::string_view key, std::string_view value) {
  RequireSection(application, section);
  const std::string name(key);
  const std::string text(value);
  const LSTATUS status = WithSection(application, section, Access::kCreate, [&] {
    return RegSetValueExA(key_, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>(text.size() + 1));
  });
  if (status != ERROR_SUCCESS) {
    throw WindowsError(
        "The setting \"" + name + "\" in " + PathOf(application, section) + " can't be written", status);
  }
}

void Win32SettingsStore::DeleteSetting(std::string_view application, std::string_view section) {
  RequireSection(application, section);
  Close();
  const LSTATUS status = RegDeleteTreeA(HKEY_CURRENT_USER, SubKey(application, section).c_str());
  if (status != ERROR_SUCCESS) {
    throw WindowsError("The settings in " + PathOf(application, section) + " can't be deleted", status);
  }
}

void Win32SettingsStore::DeleteSetting(std::string_view application, std::string_view section,
                                       std::string_view key) {
  RequireSection(application, section);
  const std::string name(key);
  const LSTATUS status =
      WithSection(application, section, Access::kWrite, [&] { return RegDeleteValueA(key_, name.c_str()); });
  if (status != ERROR_SUCCESS) {
    throw WindowsError(
        "The setting \"" + name + "\" in " + PathOf(application, section) + " can't be deleted", status);
  }
}

std::string Win32SettingsStore::PathOf(std::string_view application, std::string_view section) const {
  return "HKEY_CURRENT_USER\\" + SubKey(application, section);
}

LSTATUS Win32SettingsStore::Open(std::string_view application, std::string_view section, Access access) {
  const bool enough = access == Access::kRead || access_ != Access::kRead;
  if (key_ && enough && application == application_ && section == section_) return ERROR_SUCCESS;
  Close();
  const std::string path = SubKey(application, section);
  const REGSAM rights = access == Access::kRead ? KEY_QUERY_VALUE : KEY_QUERY_VALUE | KEY_SET_VALUE;
  const LSTATUS status = access == Access::kCreate
                             ? RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr,
                                               REG_OPTION_NON_VOLATILE, rights, nullptr, &key_, nullptr)
                             : RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, rights, &key_);
  if (status != ERROR_SUCCESS) {
    key_ = nullptr;
    return status;
  }
  access_ = access;
  application_ = application;
  section_ = section;
  return ERROR_SUCCESS;
}

void Win32SettingsStore::Close() {
  if (key_) RegCloseKey(key_);
  key_ = nullptr;
}

template <typename Operation>
LSTATUS Win32SettingsStore::WithSection(std::string_view application, std::string_view section, Access access,
                                        Operation operation) {
  for (bool again = true;; again = false) {
    if (const LSTATUS status = Open(application, section, access); status != ERROR_SUCCESS) return status;
    const LSTATUS status = operation();
    if (status != ERROR_KEY_DELETED || !again) return status;
    Close();
  }
}

}  // namespace platform::win32
