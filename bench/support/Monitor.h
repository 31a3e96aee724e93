#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "base/Conversions.h"
#include "platform/Machine.h"
#include "settings/CRegistry.h"
#include "shell/frmMain.h"
#include "shell/modCommon.h"
#include "support/MemoryMachine.h"
#include "ui/Timer.h"
#include "ui/Toolkit.h"

namespace bench {

/// A tick of the connection and traffic monitor, beside the calls that it makes of the machine: on whatever
/// machine and interface is in place.
class Monitor {
 public:
  /// The state as an earlier run has left it: a router, no title window.
  static void Store(platform::SettingsStore& settings, std::int16_t trayLights) {
    const auto save = [&](std::string_view key, std::string_view value) {
      settings.SaveSetting(CRegistry::kApplication, CRegistry::kSection, key, value);
    };
    save("RouterCount", "1");
    save("Router_1", "Memory.Router");
    save("RouterClass", "Memory.Router");
    save("Version", modCommon::GetVersionString());
    save("ShowSplashOnStartup", "False");
    save("TrayLights", base::ToText(trayLights));
  }

  Monitor() { window_.Load(); }
  ~Monitor() { window_.Unload(); }
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  /// A tick as the timer's peer brings it.
  void Ticks(benchmark::State& state) {
    auto& timer = static_cast<ui::Timer&>(Child("timerNetLights"));
    // The first tick has nothing to compare with.
    timer.UserTick();
    for (auto _ : state) timer.UserTick();
  }

  /// The same calls in the same order, on an icon of its own.
  static void Calls(benchmark::State& state, const platform::NotifyIconData& icon) {
    const platform::Machine& machine = platform::TheMachine();
    MemoryRouter router;
    const ui::PictureRef picture = ui::ResourcePicture("NETLIGHT01");
    for (auto _ : state) {
      std::int32_t flags = 0;
      benchmark::DoNotOptimize(machine.network->ConnectedState(flags));
      platform::TcpStatistics statistics;
      machine.network->GetTcpStatistics(statistics);
      benchmark::DoNotOptimize(statistics);
      platform::Argument argument{machine.network->LocalIP(), true};
      benchmark::DoNotOptimize(router.Call("IServer_CheckForWarning", {&argument, 1}));
      benchmark::DoNotOptimize(ui::TheInterface().screen->SmallIcon(picture));
      machine.notificationArea->ShellNotifyIcon(platform::NotifyIconMessage::kModify, icon);
    }
  }

 private:
  ui::Control& Child(std::string_view name) {
    const auto& children = window_.Children();
    const auto found = std::find_if(children.begin(), children.end(),
                                    [&](ui::Control* child) { return child->Name() == name; });
    if (found == children.end()) throw std::logic_error("the window has no such control");
    return **found;
  }

  frmMain window_;
};

}  // namespace bench
