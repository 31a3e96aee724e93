#include "support/MemoryRegistry.h"

#include <cstring>

namespace support {

platform::RegistryKey MemoryRegistry::Open(platform::RegistryKey hive, const std::string& path) {
  open_[++lastKey_] = {hive, path};
  return lastKey_;
}

std::int32_t MemoryRegistry::TakeFailure(const std::string& function) {
  std::vector<std::int32_t>& codes = failures[function];
  if (codes.empty()) return 0;
  const std::int32_t code = codes.front();
  codes.erase(codes.begin());
  return code;
}

std::int32_t MemoryRegistry::CreateKeyEx(platform::RegistryKey hive, const std::string& path,
                                         std::uint32_t access, platform::RegistryKey& key) {
  calls.push_back("RegCreateKeyEx " + path + " access " + std::to_string(access));
  if (const std::int32_t code = TakeFailure("RegCreateKeyEx")) return code;
  keys[{hive, path}];
  key = Open(hive, path);
  return 0;
}

std::int32_t MemoryRegistry::OpenKeyEx(platform::RegistryKey hive, const std::string& path,
                                       std::uint32_t access, platform::RegistryKey& key) {
  calls.push_back("RegOpenKeyEx " + path + " access " + std::to_string(access));
  if (const std::int32_t code = TakeFailure("RegOpenKeyEx")) return code;
  if (!keys.contains({hive, path})) return kFileNotFound;
  key = Open(hive, path);
  return 0;
}

std::int32_t MemoryRegistry::QueryValueEx(platform::RegistryKey key, const std::string& name,
                                          std::uint32_t& type, void* data, std::uint32_t& size) {
  calls.push_back("RegQueryValueEx " + name + (data ? " room " + std::to_string(size) : std::string()));
  if (const std::int32_t code = TakeFailure("RegQueryValueEx")) return code;
  if (!open_.contains(key)) return kInvalidHandle;
  const Values& values = keys[open_.at(key)];
  const auto value = values.find(name);
  if (value == values.end()) return kFileNotFound;
  const auto needed = static_cast<std::uint32_t>(value->second.bytes.size());
  const std::uint32_t room = size;
  type = value->second.type;
  size = needed;
  if (!data) return 0;
  if (room < needed) return kMoreData;
  std::memcpy(data, value->second.bytes.data(), needed);
  return 0;
}

std::int32_t MemoryRegistry::SetValueEx(platform::RegistryKey key, const std::string& name,
                                        std::uint32_t type, const void* data, std::uint32_t size) {
  calls.push_back("RegSetValueEx " + name + " type " + std::to_string(type) + " size " +
                  std::to_string(size));
  if (const std::int32_t code = TakeFailure("RegSetValueEx")) return code;
  if (!open_.contains(key)) return kInvalidHandle;
  keys[open_.at(key)][name] = {type, std::string(static_cast<const char*>(data), size)};
  return 0;
}

std::int32_t MemoryRegistry::CloseKey(platform::RegistryKey key) {
  calls.push_back("RegCloseKey " + std::string(key == 0 ? "0" : "open"));
  return open_.erase(key) == 0 ? kInvalidHandle : 0;
}

}  // namespace support
