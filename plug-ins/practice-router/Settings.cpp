#include "Settings.h"

#include "HarbourlinePlugIn.h"

namespace practice {

namespace {

constexpr wchar_t kPath[] = L"Software\\Harbourline Practice Router";

struct Key {
  HKEY handle = nullptr;
  ~Key() {
    if (handle) RegCloseKey(handle);
  }
};

std::wstring ReadText(HKEY key, const wchar_t* name, const std::wstring& otherwise) {
  DWORD bytes = 0;
  if (RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS)
    return otherwise;
  std::wstring text(bytes / sizeof(wchar_t), L'\0');
  if (RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) != ERROR_SUCCESS)
    return otherwise;
  return std::wstring(text.c_str());
}

DWORD ReadNumber(HKEY key, const wchar_t* name, DWORD otherwise) {
  DWORD number = 0;
  DWORD bytes = sizeof number;
  return RegGetValueW(key, nullptr, name, RRF_RT_REG_DWORD, nullptr, &number, &bytes) == ERROR_SUCCESS
             ? number
             : otherwise;
}

bool ReadFlag(HKEY key, const wchar_t* name, bool otherwise) {
  return ReadNumber(key, name, otherwise ? 1 : 0) != 0;
}

void Require(LSTATUS status) {
  if (status == ERROR_SUCCESS) return;
  throw harbourline::Failure(L"The practice router can't save its settings.",
                             HRESULT_FROM_WIN32(static_cast<unsigned long>(status)));
}

void WriteNumber(HKEY key, const wchar_t* name, DWORD number) {
  Require(RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number));
}

void WriteText(HKEY key, const wchar_t* name, const std::wstring& text) {
  Require(RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                         static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
}

}  // namespace

Settings Settings::Load() {
  Settings settings;
  Key key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kPath, 0, KEY_QUERY_VALUE, &key.handle) != ERROR_SUCCESS)
    return settings;
  settings.wanAddress = ReadText(key.handle, L"WanAddress", settings.wanAddress);
  settings.functional = ReadFlag(key.handle, L"Functional", settings.functional);
  settings.warning = ReadFlag(key.handle, L"Warning", settings.warning);
  settings.refusePortForwarding =
      ReadFlag(key.handle, L"RefusePortForwarding", settings.refusePortForwarding);
  settings.makeLogTraffic = ReadFlag(key.handle, L"MakeLogTraffic", settings.makeLogTraffic);
  settings.enableLog = ReadFlag(key.handle, L"EnableLog", settings.enableLog);
  settings.dmzHost =
      static_cast<long>(ReadNumber(key.handle, L"DmzHost", static_cast<DWORD>(settings.dmzHost)));
  return settings;
}

void Settings::Save() const {
  Key key;
  Require(
      RegCreateKeyExW(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key.handle, nullptr));
  WriteText(key.handle, L"WanAddress", wanAddress);
  WriteNumber(key.handle, L"Functional", functional);
  WriteNumber(key.handle, L"Warning", warning);
  WriteNumber(key.handle, L"RefusePortForwarding", refusePortForwarding);
  WriteNumber(key.handle, L"MakeLogTraffic", makeLogTraffic);
  WriteNumber(key.handle, L"EnableLog", enableLog);
  WriteNumber(key.handle, L"DmzHost", static_cast<DWORD>(dmzHost));
}

}  // namespace practice
