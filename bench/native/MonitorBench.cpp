// What the program itself adds to a tick of the connection and traffic monitor: here the machine answers at
// once.

#include "support/Monitor.h"
#include "ui/HeadlessToolkit.h"

namespace {

void Tick(benchmark::State& state) {
  bench::MemoryMachine machine;
  ui::HeadlessToolkit toolkit;
  bench::Monitor::Store(machine.settings, static_cast<std::int16_t>(state.range(0)));
  bench::Monitor().Ticks(state);
  if (!toolkit.messages.empty()) state.SkipWithError("a tick failed");
}

void YardstickCalls(benchmark::State& state) {
  bench::MemoryMachine machine;
  ui::HeadlessToolkit toolkit;
  bench::Monitor::Calls(state, {});
}

BENCHMARK(Tick)->Name("Monitor/tick, mode")->DenseRange(1, 3);
BENCHMARK(YardstickCalls)->Name("Monitor/yardstick: the calls that a tick makes");

}  // namespace
