#include "platform/SettingsSection.h"

#include "base/Conversions.h"
#include "base/Error.h"
#include "platform/Machine.h"

namespace platform {

std::string SettingsSection::FullKey(std::string_view key) const {
  std::string full;
  full.reserve(prefix_.size() + key.size());
  return full.append(prefix_).append(key);
}

std::string SettingsSection::ReadText(std::string_view key, std::string_view defaultValue) const {
  return TheMachine().settings->GetSetting(application_, section_, FullKey(key), defaultValue);
}

template <typename Value, typename Convert>
Value SettingsSection::Read(std::string_view key, Value defaultValue, std::string_view wanted,
                            std::string_view range, Convert convert) const {
  const std::string text = ReadText(key, base::ToText(defaultValue));
  try {
    return convert(std::string_view(text));
  } catch (const base::Error& error) {
    std::string message = "The stored value \"" + FullKey(key) + "\" holds \"" + text + "\", which is ";
    message.append(error.Number() == base::ErrorNumber::kOverflow ? range : wanted);
    message.append(" (").append(TheMachine().settings->PathOf(application_, section_)).append(").");
    throw base::Error(error.Number(), message);
  }
}

std::int16_t SettingsSection::ReadInt16(std::string_view key, std::int16_t defaultValue) const {
  return Read(key, defaultValue, "not a whole number", "not between -32768 and 32767",
              [](std::string_view text) { return base::ToInt16(text); });
}

std::int32_t SettingsSection::ReadInt32(std::string_view key, std::int32_t defaultValue) const {
  return Read(key, defaultValue, "not a whole number", "not between -2147483648 and 2147483647",
              [](std::string_view text) { return base::ToInt32(text); });
}

bool SettingsSection::ReadBoolean(std::string_view key, bool defaultValue) const {
  return Read(key, defaultValue, "neither True nor False", "neither True nor False",
              [](std::string_view text) { return base::ToBoolean(text); });
}

void SettingsSection::Write(std::string_view key, std::string_view value) const {
  TheMachine().settings->SaveSetting(application_, section_, FullKey(key), value);
}

void SettingsSection::Write(std::string_view key, std::int16_t value) const {
  Write(key, base::ToText(value));
}

void SettingsSection::Write(std::string_view key, std::int32_t value) const {
  Write(key, base::ToText(value));
}

void SettingsSection::Write(std::string_view key, bool value) const {
  Write(key, base::ToText(value));
}

}  // namespace platform
