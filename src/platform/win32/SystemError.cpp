#include "platform/win32/SystemError.h"

#include <cstdio>

namespace platform::win32 {
namespace {

std::string Formatted(DWORD code) {
  char buffer[512];
  const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      code, 0, buffer, sizeof buffer, nullptr);
  std::string text(buffer, length);
  return text.substr(0, text.find_last_not_of(" \r\n") + 1);
}

}  // namespace

std::string SystemMessage(HRESULT code) {
  std::string text = Formatted(static_cast<DWORD>(code));
  if (text.empty() && HRESULT_FACILITY(code) == FACILITY_WIN32) text = Formatted(HRESULT_CODE(code));
  if (!text.empty()) return text;
  char number[32];
  std::snprintf(number, sizeof number, "Error 0x%08lX", static_cast<unsigned long>(code));
  return number;
}

base::Error ComError(std::string_view what, HRESULT code) {
  return base::Error(code, std::string(what) + ": " + SystemMessage(code));
}

base::Error WindowsError(std::string_view what, LSTATUS code) {
  return ComError(what, HRESULT_FROM_WIN32(static_cast<DWORD>(code)));
}

}  // namespace platform::win32
