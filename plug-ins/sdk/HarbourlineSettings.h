#pragma once

// What a plug-in remembers from run to run, under a registry key of its own. Not needed by a plug-in that
// remembers nothing. Link with advapi32.

#include <windows.h>

#include <string>

#include "HarbourlineValues.h"

namespace harbourline {

/// The values of one key below HKEY_CURRENT_USER. A value that is missing or of another kind reads as its
/// default.
class SettingsKey {
 public:
  enum class Access { kRead, kWrite };

  /// Reading a key that isn't there gives the defaults. Throws Failure when the registry refuses to write.
  SettingsKey(const wchar_t* path, Access access) {
    if (access == Access::kRead) {
      RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_QUERY_VALUE, &handle_);
    } else {
      Require(
          RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &handle_, nullptr));
    }
  }
  ~SettingsKey() {
    if (handle_) RegCloseKey(handle_);
  }
  SettingsKey(const SettingsKey&) = delete;
  SettingsKey& operator=(const SettingsKey&) = delete;

  std::wstring ReadText(const wchar_t* name, const std::wstring& otherwise) const {
    DWORD bytes = 0;
    if (!handle_ ||
        RegGetValueW(handle_, nullptr, name, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS) {
      return otherwise;
    }
    std::wstring text(bytes / sizeof(wchar_t), L'\0');
    if (RegGetValueW(handle_, nullptr, name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) != ERROR_SUCCESS) {
      return otherwise;
    }
    return std::wstring(text.c_str());
  }

  DWORD ReadNumber(const wchar_t* name, DWORD otherwise) const {
    DWORD number = 0;
    DWORD bytes = sizeof number;
    const bool there = handle_ && RegGetValueW(handle_, nullptr, name, RRF_RT_REG_DWORD, nullptr, &number,
                                               &bytes) == ERROR_SUCCESS;
    return there ? number : otherwise;
  }

  bool ReadFlag(const wchar_t* name, bool otherwise) const {
    return ReadNumber(name, otherwise ? 1 : 0) != 0;
  }

  void WriteText(const wchar_t* name, const std::wstring& text) const {
    Require(RegSetValueExW(handle_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
  }
  void WriteNumber(const wchar_t* name, DWORD number) const {
    Require(
        RegSetValueExW(handle_, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number));
  }

 private:
  static void Require(LSTATUS status) {
    if (status == ERROR_SUCCESS) return;
    throw Failure(L"The plug-in can't save its settings.",
                  HRESULT_FROM_WIN32(static_cast<unsigned long>(status)));
  }

  HKEY handle_ = nullptr;
};

}  // namespace harbourline
