#include "Settings.h"

#include <shlobj.h>

#include <array>

#include "HarbourlineSettings.h"
#include "Text.h"

namespace upnp {

using harbourline::SettingsKey;

namespace {

constexpr wchar_t kPath[] = L"Software\\Harbourline UPnP Router";

std::string LoadList(const wchar_t* name) {
  return Utf8(SettingsKey(kPath, SettingsKey::Access::kRead).ReadText(name, {}));
}

void SaveList(const wchar_t* name, const std::string& text) {
  try {
    SettingsKey(kPath, SettingsKey::Access::kWrite).WriteText(name, Wide(text));
  } catch (const harbourline::Failure&) {
    return;
  }
}

}  // namespace

Settings Settings::Load() {
  Settings settings;
  const SettingsKey key(kPath, SettingsKey::Access::kRead);
  settings.chosenDevice = Utf8(key.ReadText(L"ChosenRouter", {}));
  settings.enableLog = key.ReadFlag(L"EnableLog", settings.enableLog);
  const DWORD lease = key.ReadNumber(L"Lease", settings.lease);
  if (lease >= 20 && lease <= 7 * 24 * 3600) settings.lease = lease;
  settings.trace = key.ReadFlag(L"Trace", settings.trace);
  const DWORD port = key.ReadNumber(L"SyslogPort", settings.syslogPort);
  if (port >= 1 && port <= 65535) settings.syslogPort = static_cast<std::uint16_t>(port);
  return settings;
}

void Settings::Save() const {
  const SettingsKey key(kPath, SettingsKey::Access::kWrite);
  key.WriteText(L"ChosenRouter", Wide(chosenDevice));
  key.WriteNumber(L"EnableLog", enableLog);
  key.WriteNumber(L"SyslogPort", syslogPort);
  key.WriteNumber(L"Trace", trace);
}

std::filesystem::path TracePath() {
  std::array<wchar_t, MAX_PATH> folder{};
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder.data()))) return {};
  return std::filesystem::path(folder.data()) / L"Harbourline" / L"UpnpRouter.log";
}

std::string StoredMappings::LoadMappings() {
  return LoadList(L"Mappings");
}

void StoredMappings::SaveMappings(const std::string& text) {
  SaveList(L"Mappings", text);
}

std::string StoredRouters::LoadRouters() {
  return LoadList(L"KnownRouters");
}

void StoredRouters::SaveRouters(const std::string& text) {
  SaveList(L"KnownRouters", text);
}

}  // namespace upnp
