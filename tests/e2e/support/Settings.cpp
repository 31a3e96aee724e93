#include "support/Settings.h"

#include <windows.h>

#include <vector>

namespace settings {
namespace {

constexpr char kRun[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";

std::optional<std::string> ReadFrom(const char* path, const std::string& name) {
  DWORD type = 0;
  DWORD size = 0;
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return std::nullopt;
  std::optional<std::string> result;
  if (RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, &size) == ERROR_SUCCESS) {
    std::vector<char> data(size + 1, '\0');
    RegQueryValueExA(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
    result = type == REG_SZ ? std::string(data.data()) : "(not text)";
  }
  RegCloseKey(key);
  return result;
}

}  // namespace

void Clear() {
  RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Harbourline");
}

void Write(const std::string& name, const std::string& value) {
  HKEY key = nullptr;
  RegCreateKeyExA(HKEY_CURRENT_USER, kSection, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
  RegSetValueExA(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                 static_cast<DWORD>(value.size() + 1));
  RegCloseKey(key);
}

void Write(std::initializer_list<std::pair<const char*, const char*>> values) {
  for (const auto& [name, value] : values) Write(name, value);
}

std::optional<std::string> Read(const std::string& name) {
  return ReadFrom(kSection, name);
}

Values All() {
  Values values;
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, kSection, 0, KEY_READ, &key) != ERROR_SUCCESS) return values;
  char name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = sizeof name;
    if (RegEnumValueA(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    values.emplace(name, Read(name).value_or("(gone)"));
  }
  RegCloseKey(key);
  return values;
}

std::optional<std::string> AutoStart() {
  return ReadFrom(kRun, "Harbourline");
}

void WriteProfile(int number, const std::string& name, int port, bool enabled, bool autoActivate) {
  const std::string prefix = "MP_" + std::to_string(number) + "_";
  const std::string mapping = prefix + "MAP_1_";
  Write(prefix + "Description", "About " + name);
  Write(prefix + "Name", name);
  Write(prefix + "MapCount", "1");
  Write(mapping + "Description", "Mapping of " + name);
  Write(mapping + "BeginPort", std::to_string(port));
  Write(mapping + "EndPort", std::to_string(port + 1));
  Write(mapping + "Protocal", "2");
  Write(mapping + "ForwardIPAddress", "-1");
  Write(prefix + "WindowTitle", "");
  Write(prefix + "WindowClass", "");
  Write(prefix + "AutoActivate", autoActivate ? "True" : "False");
  Write(prefix + "Enabled", enabled ? "True" : "False");
}

}  // namespace settings
