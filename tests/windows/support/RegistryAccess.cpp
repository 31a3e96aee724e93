#include "support/RegistryAccess.h"

#include <stdexcept>

namespace support {
namespace {

std::vector<BYTE> Bytes(const wchar_t* text, std::size_t units) {
  const auto* first = reinterpret_cast<const BYTE*>(text);
  return {first, first + units * sizeof(wchar_t)};
}

}  // namespace

RegistryValue TextValue(const std::wstring& text) {
  return {REG_SZ, Bytes(text.c_str(), text.size() + 1)};
}

RegistryValue UnterminatedValue(const std::wstring& text) {
  return {REG_SZ, Bytes(text.c_str(), text.size())};
}

std::optional<RegistryValue> ReadValue(const std::wstring& key, const std::wstring& name, HKEY hive) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(hive, key.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return std::nullopt;
  RegistryValue value;
  DWORD size = 0;
  LSTATUS status = RegQueryValueExW(opened, name.c_str(), nullptr, nullptr, nullptr, &size);
  if (status == ERROR_SUCCESS) {
    value.bytes.resize(size);
    status = RegQueryValueExW(opened, name.c_str(), nullptr, &value.type, value.bytes.data(), &size);
  }
  RegCloseKey(opened);
  if (status != ERROR_SUCCESS) return std::nullopt;
  value.bytes.resize(size);
  return value;
}

void WriteValue(const std::wstring& key, const std::wstring& name, const RegistryValue& value, HKEY hive) {
  // Some unit that isn't zero behind the data, so that the system doesn't take it for a forgotten terminator.
  std::vector<BYTE> guarded = value.bytes;
  guarded.insert(guarded.end(), {'x', 'x'});
  HKEY opened = nullptr;
  if (RegCreateKeyExW(hive, key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr) !=
          ERROR_SUCCESS ||
      RegSetValueExW(opened, name.c_str(), 0, value.type, guarded.data(),
                     static_cast<DWORD>(value.bytes.size())) != ERROR_SUCCESS) {
    throw std::runtime_error("The registry refuses a value of the test");
  }
  RegCloseKey(opened);
}

bool KeyExists(const std::wstring& key, HKEY hive) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(hive, key.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

void DeleteTree(const std::wstring& key, HKEY hive) {
  RegDeleteTreeW(hive, key.c_str());
}

std::wstring Wide(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
}

}  // namespace support
