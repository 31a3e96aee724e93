#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/RegistryFunctions.h"

namespace support {

/// The machine's registry functions on keys in memory. Every call is written down.
class MemoryRegistry : public platform::RegistryFunctions {
 public:
  static constexpr std::int32_t kFileNotFound = 2;
  static constexpr std::int32_t kAccessDenied = 5;
  static constexpr std::int32_t kInvalidHandle = 6;
  static constexpr std::int32_t kMoreData = 234;

  struct Value {
    std::uint32_t type = 0;
    std::string bytes;
  };
  using Values = std::map<std::string, Value>;

  /// By hive and path.
  std::map<std::pair<platform::RegistryKey, std::string>, Values> keys;
  /// "RegOpenKeyEx Software\Test access 63", "RegCloseKey open" and so on.
  std::vector<std::string> calls;
  /// Codes that the next calls of a function give in place of doing anything, by the function's name; 0 lets
  /// the call pass.
  std::map<std::string, std::vector<std::int32_t>> failures;
  /// Keys that are open at present.
  std::size_t OpenKeys() const { return open_.size(); }
  /// Opens a key without a trace in `calls`.
  platform::RegistryKey Open(platform::RegistryKey hive, const std::string& path);

  std::int32_t CreateKeyEx(platform::RegistryKey hive, const std::string& path, std::uint32_t access,
                           platform::RegistryKey& key) override;
  std::int32_t OpenKeyEx(platform::RegistryKey hive, const std::string& path, std::uint32_t access,
                         platform::RegistryKey& key) override;
  std::int32_t QueryValueEx(platform::RegistryKey key, const std::string& name, std::uint32_t& type,
                            void* data, std::uint32_t& size) override;
  std::int32_t SetValueEx(platform::RegistryKey key, const std::string& name, std::uint32_t type,
                          const void* data, std::uint32_t size) override;
  std::int32_t CloseKey(platform::RegistryKey key) override;

 private:
  std::int32_t TakeFailure(const std::string& function);

  std::map<platform::RegistryKey, std::pair<platform::RegistryKey, std::string>> open_;
  platform::RegistryKey lastKey_ = 100;
};

}  // namespace support
