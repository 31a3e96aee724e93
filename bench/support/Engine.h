#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

#include "automatic/ctlAutomatic.h"
#include "platform/Machine.h"
#include "settings/CRegistry.h"
#include "ui/Form.h"
#include "ui/Timer.h"

namespace bench {

/// A tick of automatic activation over profiles that follow a program each, none of which runs, beside the
/// bare search for their windows: on whatever machine is in place.
class Engine {
 public:
  static constexpr int kProfiles = 1'000;

  static std::string WindowTitle(int profile) { return "Game " + std::to_string(profile); }
  static constexpr const char* kWindowClass = "GameWindow";

  Engine() {
    g_Registry = std::make_unique<CRegistry>();
    g_Registry->AutomaticActivation = true;
    for (int i = 0; i < kProfiles; ++i) {
      const auto profile = std::make_shared<CMapProfile>();
      profile->sName = "Profile " + std::to_string(i);
      profile->sWindowClass = kWindowClass;
      profile->sWindowTitle = WindowTitle(i);
      profile->bAutoActivate = true;
      g_Registry->AddMapProfile(profile, nullptr);
    }
    page_ = std::make_unique<ctlAutomatic>(&window_, "ctlAutomatic");
    page_->Populate();
  }
  ~Engine() {
    page_.reset();
    g_Registry.reset();
  }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  void Ticks(benchmark::State& state) {
    const auto& children = page_->Children();
    const auto timer = std::find_if(children.begin(), children.end(),
                                    [](ui::Control* child) { return child->GetKind() == ui::Kind::kTimer; });
    for (auto _ : state) static_cast<ui::Timer*>(*timer)->UserTick();
    state.SetItemsProcessed(state.iterations() * kProfiles);
  }

  static void Searches(benchmark::State& state) {
    std::vector<std::string> titles;
    for (int i = 0; i < kProfiles; ++i) titles.push_back(WindowTitle(i));
    platform::WindowList& windows = *platform::TheMachine().windows;
    for (auto _ : state) {
      for (const std::string& title : titles) {
        benchmark::DoNotOptimize(windows.FindWindow(kWindowClass, title.c_str()));
      }
    }
    state.SetItemsProcessed(state.iterations() * kProfiles);
  }

 private:
  ui::Form window_{"frmBench", "Bench", {}, 8000, 6000};
  std::unique_ptr<ctlAutomatic> page_;
};

}  // namespace bench
