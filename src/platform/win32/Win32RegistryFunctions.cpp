#include "platform/win32/Win32RegistryFunctions.h"

#include <windows.h>

#include <vector>

namespace platform::win32 {
namespace {

/// The numbers of the predefined keys are 32 bits wide with the sign bit set, and a wider handle repeats that
/// bit. No handle uses more than 32 bits, so all of them can go this way.
HKEY Native(RegistryKey key) {
  return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(key)));
}

RegistryKey Portable(HKEY key) {
  return reinterpret_cast<RegistryKey>(key);
}

}  // namespace

std::int32_t Win32RegistryFunctions::CreateKeyEx(RegistryKey hive, const std::string& path,
                                                 std::uint32_t access, RegistryKey& key) {
  HKEY made = nullptr;
  const LSTATUS status = RegCreateKeyExA(Native(hive), path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                         access, nullptr, &made, nullptr);
  if (status == ERROR_SUCCESS) key = Portable(made);
  return status;
}

std::int32_t Win32RegistryFunctions::OpenKeyEx(RegistryKey hive, const std::string& path,
                                               std::uint32_t access, RegistryKey& key) {
  HKEY opened = nullptr;
  const LSTATUS status = RegOpenKeyExA(Native(hive), path.c_str(), 0, access, &opened);
  if (status == ERROR_SUCCESS) key = Portable(opened);
  return status;
}

std::int32_t Win32RegistryFunctions::QueryValueEx(RegistryKey key, const std::string& name,
                                                  std::uint32_t& type, void* data, std::uint32_t& size) {
  DWORD nativeType = type;
  DWORD nativeSize = size;
  const LSTATUS status = RegQueryValueExA(Native(key), name.c_str(), nullptr, &nativeType,
                                          static_cast<BYTE*>(data), &nativeSize);
  type = nativeType;
  size = nativeSize;
  return status;
}

std::int32_t Win32RegistryFunctions::SetValueEx(RegistryKey key, const std::string& name, std::uint32_t type,
                                                const void* data, std::uint32_t size) {
  // The function takes a terminator along that it finds right behind a text, beyond the size it is given.
  std::vector<BYTE> bytes(static_cast<const BYTE*>(data), static_cast<const BYTE*>(data) + size);
  bytes.push_back(1);
  return RegSetValueExA(Native(key), name.c_str(), 0, type, bytes.data(), size);
}

std::int32_t Win32RegistryFunctions::CloseKey(RegistryKey key) {
  return RegCloseKey(Native(key));
}

}  // namespace platform::win32
