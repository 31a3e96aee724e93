// A tick of the connection and traffic monitor on Windows, beside the calls that it makes: the program may
// add a tenth.

// Before the system's header, which makes macros of some names that the program's headers have.
#include "support/Monitor.h"
#include "win32/RealMachine.h"

#include <windows.h>

#include "ui/win32/Win32Interface.h"

namespace {

/// An icon in the notification area as the program has one.
class TrayIcon {
 public:
  explicit TrayIcon(const ui::PictureRef& picture)
      : window_(
            CreateWindowExA(0, "STATIC", "", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr)) {
    record_.cbSize = 88;
    record_.hWnd = reinterpret_cast<std::uintptr_t>(window_);
    record_.uFlags = 7;
    record_.uCallbackMessage = WM_MOUSEMOVE;
    record_.hIcon = ui::TheInterface().screen->SmallIcon(picture);
    platform::TheMachine().notificationArea->ShellNotifyIcon(platform::NotifyIconMessage::kAdd, record_);
  }
  ~TrayIcon() {
    platform::TheMachine().notificationArea->ShellNotifyIcon(platform::NotifyIconMessage::kDelete, record_);
    DestroyWindow(window_);
  }
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;

  const platform::NotifyIconData& Record() const { return record_; }

 private:
  HWND window_;
  platform::NotifyIconData record_;
};

void Tick(benchmark::State& state) {
  bench::RealMachine machine;
  ui::win32::Win32Interface nativeInterface;
  bench::Monitor::Store(machine.memory.settings, 1);
  bench::Monitor().Ticks(state);
}

void YardstickCalls(benchmark::State& state) {
  bench::RealMachine machine;
  ui::win32::Win32Interface nativeInterface;
  const TrayIcon icon(ui::ResourcePicture("NETLIGHT01"));
  bench::Monitor::Calls(state, icon.Record());
}

/// Each of the calls alone, to see which one a tick is made of.
void OneCall(benchmark::State& state,
             void (*call)(const platform::Machine&, const platform::NotifyIconData&)) {
  bench::RealMachine machine;
  ui::win32::Win32Interface nativeInterface;
  const TrayIcon icon(ui::ResourcePicture("NETLIGHT01"));
  for (auto _ : state) call(platform::TheMachine(), icon.Record());
}

void ConnectedState(const platform::Machine& machine, const platform::NotifyIconData&) {
  std::int32_t flags = 0;
  benchmark::DoNotOptimize(machine.network->ConnectedState(flags));
}

void GetTcpStatistics(const platform::Machine& machine, const platform::NotifyIconData&) {
  platform::TcpStatistics statistics;
  machine.network->GetTcpStatistics(statistics);
  benchmark::DoNotOptimize(statistics);
}

void LocalIP(const platform::Machine& machine, const platform::NotifyIconData&) {
  benchmark::DoNotOptimize(machine.network->LocalIP());
}

void ShellNotifyIcon(const platform::Machine& machine, const platform::NotifyIconData& icon) {
  machine.notificationArea->ShellNotifyIcon(platform::NotifyIconMessage::kModify, icon);
}

BENCHMARK(Tick)->Name("Monitor/tick")->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(YardstickCalls)
    ->Name("Monitor/yardstick: the calls that a tick makes")
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(OneCall, ConnectedState, ConnectedState)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_CAPTURE(OneCall, GetTcpStatistics, GetTcpStatistics)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_CAPTURE(OneCall, LocalIP, LocalIP)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_CAPTURE(OneCall, ShellNotifyIcon, ShellNotifyIcon)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
