#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace support {

/// The registry, byte for byte, by its UTF-16 functions, which the program doesn't use: what a test stores or
/// expects goes this way. All keys lie under the current user unless a hive is given.
struct RegistryValue {
  DWORD type = REG_NONE;
  std::vector<BYTE> bytes;

  bool operator==(const RegistryValue&) const = default;
};

/// Text as the registry holds it, with its terminator.
RegistryValue TextValue(const std::wstring& text);
/// The bytes of the text and no terminator.
RegistryValue UnterminatedValue(const std::wstring& text);

std::optional<RegistryValue> ReadValue(const std::wstring& key, const std::wstring& name,
                                       HKEY hive = HKEY_CURRENT_USER);
void WriteValue(const std::wstring& key, const std::wstring& name, const RegistryValue& value,
                HKEY hive = HKEY_CURRENT_USER);
bool KeyExists(const std::wstring& key, HKEY hive = HKEY_CURRENT_USER);
void DeleteTree(const std::wstring& key, HKEY hive = HKEY_CURRENT_USER);

/// Letters, digits and other plain ASCII only.
std::wstring Wide(const std::string& ascii);

}  // namespace support
