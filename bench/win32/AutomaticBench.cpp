// A tick of automatic activation over 1,000 profiles on Windows: one window search each and nothing else of
// note.

#include "support/Engine.h"
#include "win32/RealMachine.h"

namespace {

void Tick(benchmark::State& state) {
  bench::RealMachine machine;
  machine.memory.settings.keeps = false;
  bench::Engine().Ticks(state);
}

void YardstickSearches(benchmark::State& state) {
  bench::RealMachine machine;
  bench::Engine::Searches(state);
}

BENCHMARK(Tick)->Name("Automatic/tick over 1,000 profiles")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(YardstickSearches)
    ->Name("Automatic/yardstick: 1,000 window searches")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
