#include "RouterState.h"

namespace practice {

void CallList::Add(const std::wstring& call, const std::wstring& answer) {
  SYSTEMTIME now = {};
  GetLocalTime(&now);
  wchar_t time[16] = {};
  wsprintfW(time, L"%02u:%02u:%02u", now.wHour, now.wMinute, now.wSecond);
  if (!lines_.empty() && lines_.front().call == call && lines_.front().answer == answer) {
    lines_.front().time = time;
    ++lines_.front().count;
    return;
  }
  lines_.push_front({time, call, answer, 1});
  constexpr std::size_t kMost = 200;
  if (lines_.size() > kMost) lines_.pop_back();
}

std::wstring RouterState::HostAddress(long octet) const {
  const std::size_t lastPoint = localAddress.rfind(L'.');
  const std::wstring network =
      lastPoint == std::wstring::npos ? L"*." : localAddress.substr(0, lastPoint + 1);
  return network + std::to_wstring(octet);
}

}  // namespace practice
