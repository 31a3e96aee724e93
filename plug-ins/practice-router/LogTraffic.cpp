#include "LogTraffic.h"

#include <utility>
#include <vector>

namespace practice {

namespace {

constexpr UINT_PTR kTimerId = 1;
constexpr UINT kInterval = 500;  // milliseconds

// The ports at which strangers knock, and those for which people go out.
constexpr long kKnockedPorts[] = {21, 22, 23, 25, 80, 110, 135, 139, 443, 445, 1433, 3389, 5900, 8080};
constexpr long kVisitedPorts[] = {80, 443, 443, 443, 53, 53, 123, 25, 110, 143, 993};
constexpr const wchar_t* kNetworks[] = {L"192.0.2.", L"198.51.100.", L"203.0.113."};
constexpr const wchar_t* kVisitedNames[] = {L"www.example.com", L"mail.example.net", L"news.example.org",
                                            L"files.example.com"};

}  // namespace

TrafficTimer::TrafficTimer(std::function<void()> onTick) : onTick_(std::move(onTick)) {
  window_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            harbourline::module::Handle(), nullptr);
  if (!window_) return;
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
}

TrafficTimer::~TrafficTimer() {
  if (window_) DestroyWindow(window_);
}

void TrafficTimer::Run(bool running) {
  if (!window_ || running == running_) return;
  running_ = running;
  if (running) {
    SetTimer(window_, kTimerId, kInterval, nullptr);
  } else {
    KillTimer(window_, kTimerId);
  }
}

LRESULT CALLBACK TrafficTimer::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_TIMER && wParam == kTimerId) {
    // A tick may end in the end of this timer, so it runs from a copy.
    const std::function<void()> tick =
        reinterpret_cast<TrafficTimer*>(GetWindowLongPtrW(window, GWLP_USERDATA))->onTick_;
    tick();
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

TrafficMaker::TrafficMaker() : random_(GetTickCount() | 1u) {}

long TrafficMaker::Between(long least, long most) {
  return std::uniform_int_distribution<long>(least, most)(random_);
}

template <class T, std::size_t N>
const T& TrafficMaker::OneOf(const T (&choices)[N]) {
  return choices[Between(0, static_cast<long>(N) - 1)];
}

std::wstring TrafficMaker::OutsideAddress() {
  return OneOf(kNetworks) + std::to_wstring(Between(1, 254));
}

harbourline::LogLine TrafficMaker::Next(const std::wstring& localAddress, short localOctet,
                                        const ForwardingTable& table) {
  harbourline::LogLine line;
  const bool incoming = Between(0, 1) == 0;
  line.type = incoming ? L"in" : L"out";
  if (!incoming) {
    line.sourceIP = localAddress;
    line.sourcePort = Between(49152, 65535);
    line.destination = Between(0, 3) == 0 ? OneOf(kVisitedNames) : OutsideAddress();
    line.destinationPort = OneOf(kVisitedPorts);
    return line;
  }
  line.sourceIP = OutsideAddress();
  line.sourcePort = Between(1024, 65535);
  line.destination = localAddress;
  line.destinationPort = OneOf(kKnockedPorts);
  const std::vector<harbourline::Mapping>& entries = table.Entries();
  if (!entries.empty() && Between(0, 2) == 0) {
    const auto chosen = static_cast<std::size_t>(Between(0, static_cast<long>(entries.size()) - 1));
    const harbourline::Mapping& entry = entries[chosen];
    if (entry.forwardIPAddress == localOctet && entry.beginPort <= entry.endPort) {
      line.destinationPort = Between(entry.beginPort, entry.endPort);
    }
  }
  return line;
}

}  // namespace practice
