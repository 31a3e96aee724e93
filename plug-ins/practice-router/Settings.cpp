#include "Settings.h"

#include "HarbourlineSettings.h"

namespace practice {

using harbourline::SettingsKey;

namespace {

constexpr wchar_t kPath[] = L"Software\\Harbourline Practice Router";

}  // namespace

Settings Settings::Load() {
  Settings settings;
  const SettingsKey key(kPath, SettingsKey::Access::kRead);
  settings.wanAddress = key.ReadText(L"WanAddress", settings.wanAddress);
  settings.functional = key.ReadFlag(L"Functional", settings.functional);
  settings.warning = key.ReadFlag(L"Warning", settings.warning);
  settings.refusePortForwarding = key.ReadFlag(L"RefusePortForwarding", settings.refusePortForwarding);
  settings.makeLogTraffic = key.ReadFlag(L"MakeLogTraffic", settings.makeLogTraffic);
  settings.enableLog = key.ReadFlag(L"EnableLog", settings.enableLog);
  settings.dmzHost = static_cast<long>(key.ReadNumber(L"DmzHost", static_cast<DWORD>(settings.dmzHost)));
  return settings;
}

void Settings::Save() const {
  const SettingsKey key(kPath, SettingsKey::Access::kWrite);
  key.WriteText(L"WanAddress", wanAddress);
  key.WriteNumber(L"Functional", functional);
  key.WriteNumber(L"Warning", warning);
  key.WriteNumber(L"RefusePortForwarding", refusePortForwarding);
  key.WriteNumber(L"MakeLogTraffic", makeLogTraffic);
  key.WriteNumber(L"EnableLog", enableLog);
  key.WriteNumber(L"DmzHost", static_cast<DWORD>(dmzHost));
}

}  // namespace practice
