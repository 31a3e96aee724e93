#include "settings/modRegistryTools.h"

#include <algorithm>

#include "platform/Machine.h"

namespace modRegistryTools {
namespace {

constexpr std::int32_t kUnknownType = -1;

platform::RegistryFunctions& Registry() {
  return *platform::TheMachine().registry;
}

/// Closes the key at the end of a block, whatever the block does.
class KeyCloser {
 public:
  explicit KeyCloser(platform::RegistryKey key) : key_(key) {}
  ~KeyCloser() { Registry().CloseKey(key_); }
  KeyCloser(const KeyCloser&) = delete;
  KeyCloser& operator=(const KeyCloser&) = delete;

 private:
  platform::RegistryKey key_;
};

std::int32_t QueryText(platform::RegistryKey lKey, const std::string& sValueName, std::uint32_t size,
                       base::Variant& vValue) {
  std::string buffer(size, '\0');
  std::uint32_t type = kRegSz;
  const std::int32_t code = Registry().QueryValueEx(lKey, sValueName, type, buffer.data(), size);
  if (code != 0) {
    vValue = base::Variant();
    return code;
  }
  buffer.resize(std::min<std::size_t>(buffer.size(), size));
  vValue = std::move(buffer);
  return code;
}

std::int32_t QueryNumber(platform::RegistryKey lKey, const std::string& sValueName, base::Variant& vValue) {
  std::int32_t number = 0;
  std::uint32_t type = kRegDword;
  std::uint32_t size = sizeof number;
  const std::int32_t code = Registry().QueryValueEx(lKey, sValueName, type, &number, size);
  if (code == 0) vValue = number;
  return code;
}

}  // namespace

std::int32_t CreateKey(platform::RegistryKey lHive, const std::string& sKeyPath) {
  platform::RegistryKey key = 0;
  const std::int32_t code = Registry().CreateKeyEx(lHive, sKeyPath, kKeyAllAccess, key);
  if (code == 0) Registry().CloseKey(key);
  return code;
}

std::int32_t SetKeyValue(platform::RegistryKey lHive, const std::string& sKeyPath,
                         const std::string& sValueName, const base::Variant& vValue, std::int32_t lType) {
  platform::RegistryKey key = 0;
  const std::int32_t code = Registry().OpenKeyEx(lHive, sKeyPath, kKeyAllAccess, key);
  if (code != 0) return code;
  const KeyCloser closer(key);
  return SetValueEx(key, sValueName, lType, vValue);
}

std::string QueryValue(platform::RegistryKey lHive, const std::string& sKeyPath,
                       const std::string& sValueName) {
  // A key that can't be opened leaves the handle 0, with which every query fails.
  platform::RegistryKey key = 0;
  Registry().OpenKeyEx(lHive, sKeyPath, kKeyAllAccess, key);
  const KeyCloser closer(key);
  base::Variant value;
  QueryValueEx(key, sValueName, value);
  return TrimLastChar(base::ToText(value));
}

std::int32_t SetValueEx(platform::RegistryKey lKey, const std::string& sValueName, std::int32_t lType,
                        const base::Variant& vValue) {
  if (lType == kRegSz) {
    const std::string text = base::ToText(vValue);
    return Registry().SetValueEx(lKey, sValueName, kRegSz, text.data(),
                                 static_cast<std::uint32_t>(text.size()));
  }
  if (lType == kRegDword) {
    const std::int32_t number = base::ToInt32(vValue);
    return Registry().SetValueEx(lKey, sValueName, kRegDword, &number, sizeof number);
  }
  return 0;
}

std::int32_t QueryValueEx(platform::RegistryKey lKey, const std::string& sValueName, base::Variant& vValue) {
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  const std::int32_t code = Registry().QueryValueEx(lKey, sValueName, type, nullptr, size);
  if (code != 0) return code;
  if (type == kRegSz) return QueryText(lKey, sValueName, size, vValue);
  if (type == kRegDword) return QueryNumber(lKey, sValueName, vValue);
  return kUnknownType;
}

std::string TrimLastChar(std::string_view sText) {
  return std::string(sText.substr(0, sText.empty() ? 0 : sText.size() - 1));
}

}  // namespace modRegistryTools
