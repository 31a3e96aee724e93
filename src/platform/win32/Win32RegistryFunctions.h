#pragma once

#include "platform/RegistryFunctions.h"

namespace platform::win32 {

class Win32RegistryFunctions : public RegistryFunctions {
 public:
  std::int32_t CreateKeyEx(RegistryKey hive, const std::string& path, std::uint32_t access,
                           RegistryKey& key) override;
  std::int32_t OpenKeyEx(RegistryKey hive, const std::string& path, std::uint32_t access,
                         RegistryKey& key) override;
  std::int32_t QueryValueEx(RegistryKey key, const std::string& name, std::uint32_t& type, void* data,
                            std::uint32_t& size) override;
  std::int32_t SetValueEx(RegistryKey key, const std::string& name, std::uint32_t type, const void* data,
                          std::uint32_t size) override;
  std::int32_t CloseKey(RegistryKey key) override;
};

}  // namespace platform::win32
