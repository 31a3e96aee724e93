#pragma once

#include <cstdint>
#include <string>

namespace platform {

using RegistryKey = std::uintptr_t;

/// The machine's registry functions under their own conventions: every result is the machine's code, 0 is
/// success. Text is 8-bit. `hive` takes the machine's numbers of the predefined keys.
class RegistryFunctions {
 public:
  virtual ~RegistryFunctions() = default;

  /// No class, no options, default security.
  virtual std::int32_t CreateKeyEx(RegistryKey hive, const std::string& path, std::uint32_t access,
                                   RegistryKey& key) = 0;
  virtual std::int32_t OpenKeyEx(RegistryKey hive, const std::string& path, std::uint32_t access,
                                 RegistryKey& key) = 0;
  /// `data` null asks for `type` and `size` (bytes) only; otherwise `size` holds the room in `data` before
  /// and the bytes used after.
  virtual std::int32_t QueryValueEx(RegistryKey key, const std::string& name, std::uint32_t& type, void* data,
                                    std::uint32_t& size) = 0;
  virtual std::int32_t SetValueEx(RegistryKey key, const std::string& name, std::uint32_t type,
                                  const void* data, std::uint32_t size) = 0;
  virtual std::int32_t CloseKey(RegistryKey key) = 0;
};

}  // namespace platform
