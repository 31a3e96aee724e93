#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "settings/CRegistry.h"
#include "shell/frmMain.h"
#include "shell/modCommon.h"
#include "support/World.h"

namespace support {

/// The whole program in memory: stored settings, a plug-in, the main window.
class Shell {
 public:
  static constexpr const char* kClass = "Test.Router";

  /// The title window, which takes seven seconds of the clock, is switched off.
  Shell() {
    ui::EventGuard::Reset();
    Store("ShowSplashOnStartup", "False");
  }

  /// The plug-in stands selected, as after a save of the running version.
  void SelectRouter() {
    Store("Version", modCommon::GetVersionString());
    Store("RouterCount", "1");
    Store("Router_1", kClass);
    Store("RouterClass", kClass);
  }
  void Store(const std::string& key, const std::string& value) { world.settings.Values()[key] = value; }
  /// A stored profile with one mapping to this computer, or to the host `forward`.
  void StoreProfile(int number, const std::string& name, bool enabled, int port = 80,
                    const char* forward = "-1") {
    const std::string prefix = "MP_" + std::to_string(number) + "_";
    Store("MapProfileCount", std::to_string(number));
    Store(prefix + "Name", name);
    Store(prefix + "Enabled", enabled ? "True" : "False");
    Store(prefix + "MapCount", "1");
    Store(prefix + "MAP_1_BeginPort", std::to_string(port));
    Store(prefix + "MAP_1_EndPort", std::to_string(port));
    Store(prefix + "MAP_1_ForwardIPAddress", forward);
  }

  void Start() {
    // Where the program keeps its files.
    world.process.path = world.folder.PathOf("Harbourline.exe");
    main = std::make_unique<frmMain>();
    main->Initialize();
    main->Load();
  }
  void End() { main.reset(); }

  /// The calls of one member.
  std::vector<std::string> Calls(const std::string& member) const {
    std::vector<std::string> calls;
    std::ranges::copy_if(router->calls, std::back_inserter(calls),
                         [&](const std::string& call) { return call.find(member) != call.npos; });
    return calls;
  }

  /// A click with the right button on the icon; `choose` gets the menu and may choose an entry.
  void OpenMenu(std::function<ui::Menu*(ui::Menu&)> choose = {}) {
    world.toolkit.choosePopup = std::move(choose);
    Tray().UserMouseMove(517 * world.toolkit.twipsPerPixel, 0);
  }
  /// Opens the menu and chooses the entry of that control name.
  void Choose(const std::string& name) {
    OpenMenu([&](ui::Menu& menu) { return Find(menu, name); });
  }
  static ui::Form& Tray() {
    for (ui::Form* form : ui::Form::LoadedForms()) {
      if (form->Name() == "frmSysTray") return *form;
    }
    throw std::runtime_error("no frmSysTray is loaded");
  }
  static ui::Menu* Find(ui::Control& menu, const std::string& name) {
    for (ui::Control* child : menu.Children()) {
      if (child->Name() == name) return static_cast<ui::Menu*>(child);
      if (ui::Menu* below = Find(*child, name)) return below;
    }
    return nullptr;
  }

  World world;
  std::shared_ptr<Script> router = world.objects.AddPlugIn(kClass, "Test Router");
  std::unique_ptr<frmMain> main;
};

}  // namespace support
