#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Variant.h"
#include "platform/RegistryFunctions.h"

/// Direct access to any value of the machine's registry. Results are the machine's codes, 0 for success,
/// unless a member says otherwise. Two types are known; text is 8-bit.
namespace modRegistryTools {

inline constexpr std::int32_t kRegSz = 1;
inline constexpr std::int32_t kRegDword = 4;
/// Every right to a key.
inline constexpr std::uint32_t kKeyAllAccess = 63;

std::int32_t CreateKey(platform::RegistryKey lHive, const std::string& sKeyPath);

/// The code of the opening when the key can't be opened, else that of SetValueEx.
std::int32_t SetKeyValue(platform::RegistryKey lHive, const std::string& sKeyPath,
                         const std::string& sValueName, const base::Variant& vValue, std::int32_t lType);

/// The value as text without its last character, which is the terminator of a string that was stored with
/// one. Empty when the key or the value can't be read.
std::string QueryValue(platform::RegistryKey lHive, const std::string& sKeyPath,
                       const std::string& sValueName);

/// Writes a string without a terminator, or a 32-bit integer. A type that isn't known writes nothing and
/// gives 0. A value that can't be converted to the type fails with base::Error.
std::int32_t SetValueEx(platform::RegistryKey lKey, const std::string& sValueName, std::int32_t lType,
                        const base::Variant& vValue);

/// Leaves `vValue` as it is when the value's type and size can't be read; empties it when a string then
/// can't. -1 for a type that isn't known.
std::int32_t QueryValueEx(platform::RegistryKey lKey, const std::string& sValueName, base::Variant& vValue);

std::string TrimLastChar(std::string_view sText);

}  // namespace modRegistryTools
