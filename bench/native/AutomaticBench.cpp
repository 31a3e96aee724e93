// A tick of automatic activation over 1,000 profiles: one window search each and nothing else of note.

#include "support/Engine.h"
#include "support/MemoryMachine.h"
#include "ui/HeadlessToolkit.h"

namespace {

/// A desktop of 200 top-level windows, most of them hidden, as Windows has them after a while. None is a
/// game's.
void FillDesktop(bench::MemoryWindows& windows) {
  for (int i = 0; i < 200; ++i) {
    windows.windows.push_back({"WindowClass" + std::to_string(i % 40), "Document " + std::to_string(i)});
  }
}

void Tick(benchmark::State& state) {
  bench::MemoryMachine machine;
  machine.settings.keeps = false;
  ui::HeadlessToolkit toolkit;
  FillDesktop(machine.windows);
  bench::Engine().Ticks(state);
  if (!toolkit.messages.empty()) state.SkipWithError("a tick failed");
}

void YardstickSearches(benchmark::State& state) {
  bench::MemoryMachine machine;
  FillDesktop(machine.windows);
  bench::Engine::Searches(state);
}

BENCHMARK(Tick)->Name("Automatic/tick over 1,000 profiles")->Unit(benchmark::kMicrosecond);
BENCHMARK(YardstickSearches)
    ->Name("Automatic/yardstick: 1,000 window searches")
    ->Unit(benchmark::kMicrosecond);

}  // namespace
