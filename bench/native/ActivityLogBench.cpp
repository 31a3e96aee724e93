// The activity log: naming a port, and the file of a million rows. Each beside what the same work costs
// without the program.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "model/CMapProfile.h"
#include "settings/CRegistry.h"
#include "support/LogPage.h"

namespace {

constexpr std::int64_t kRows = 1'000'000;

using bench::LogFile;
using bench::WriteFile;
using World = bench::LogPage;

std::size_t ResidentBytes() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return pages * 4096;
}

/// Without line ends, the count and what the numbers of the rows are.
std::size_t TextOf(const ui::ListView& rows) {
  std::size_t text = 0;
  for (std::size_t row = 0; row < rows.RowCount(); ++row) {
    for (std::size_t cell = 0; cell < 7; ++cell) text += rows.Text(row, cell).size();
  }
  return text;
}

void Load(benchmark::State& state) {
  World world;
  WriteFile(world.Database(), LogFile(state.range(0)));
  double memory = 0;
  for (auto _ : state) {
    const std::size_t before = ResidentBytes();
    world.OpenPage();
    state.PauseTiming();
    if (world.Rows().RowCount() != static_cast<std::size_t>(state.range(0)))
      state.SkipWithError("rows are missing");
    // The first time only: later ones find memory that the process has kept.
    if (memory == 0) {
      memory = static_cast<double>(ResidentBytes() - before) / static_cast<double>(TextOf(world.Rows()));
    }
    world.page.reset();
    state.ResumeTiming();
  }
  state.counters["memory/text"] = memory;
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void YardstickGetline(benchmark::State& state) {
  World world;
  WriteFile(world.Database(), LogFile(state.range(0)));
  for (auto _ : state) {
    std::ifstream file(world.Database(), std::ios::binary);
    std::string line;
    std::int64_t lines = 0;
    while (std::getline(file, line)) ++lines;
    if (lines != state.range(0) * 7 + 1) state.SkipWithError("lines are missing");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Save(benchmark::State& state) {
  World world;
  const std::string bytes = LogFile(state.range(0));
  WriteFile(world.Database(), bytes);
  world.OpenPage();
  for (auto _ : state) world.page->SaveContentsToDatabase();
  if (std::filesystem::file_size(world.Database()) != bytes.size()) state.SkipWithError("bytes are missing");
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void YardstickWrite(benchmark::State& state) {
  World world;
  const std::string bytes = LogFile(state.range(0));
  for (auto _ : state) WriteFile(world.Database(), bytes);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

constexpr std::int32_t kProfiles = 1'000;
constexpr std::int32_t kMappings = 10;

/// Ranges that cover no port asked for, in an order that no machine foresees.
std::pair<std::int32_t, std::int32_t> RandomRange(std::mt19937& random) {
  const auto begin = static_cast<std::int32_t>(1'024 + random() % 60'000);
  return {begin, begin + static_cast<std::int32_t>(random() % 16)};
}
constexpr std::int32_t kPort = 80;

void IdentifyPort(benchmark::State& state) {
  World world;
  std::mt19937 random(1);
  for (std::int32_t i = 0; i < kProfiles; ++i) {
    const auto profile = std::make_shared<CMapProfile>();
    profile->sName = "Profile " + std::to_string(i);
    profile->bEnabled = true;
    for (std::int32_t j = 0; j < kMappings; ++j) {
      const auto mapping = std::make_shared<CMapping>();
      const auto [begin, end] = RandomRange(random);
      mapping->lBeginPort(begin);
      mapping->lEndPort(end);
      profile->AddMapping(mapping);
    }
    g_Registry->AddMapProfile(profile, nullptr);
  }
  world.OpenPage();
  world.page->Reset();
  for (auto _ : state) {
    if (world.router.IdentifyPort(kPort) != "http") state.SkipWithError("the port has another name");
  }
  state.SetItemsProcessed(state.iterations() * kProfiles * kMappings);
}

void YardstickRanges(benchmark::State& state) {
  struct Range {
    std::int32_t begin;
    std::int32_t end;
  };
  std::mt19937 random(1);
  std::vector<Range> ranges;
  for (std::int32_t i = 0; i < kProfiles * kMappings; ++i) {
    const auto [begin, end] = RandomRange(random);
    ranges.push_back({begin, end});
  }
  std::int32_t port = kPort;
  for (auto _ : state) {
    benchmark::DoNotOptimize(port);
    for (std::size_t i = 0; i < ranges.size(); ++i) {
      if (ranges[i].begin <= port && port <= ranges[i].end) {
        benchmark::DoNotOptimize(i);
        break;
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * kProfiles * kMappings);
}

BENCHMARK(Load)->Name("Log/load of RouterLog.dat")->Arg(kRows)->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickGetline)
    ->Name("Log/yardstick: getline over the file")
    ->Arg(kRows)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Save)->Name("Log/save of RouterLog.dat")->Arg(kRows)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(YardstickWrite)
    ->Name("Log/yardstick: writing the bytes")
    ->Arg(kRows)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(IdentifyPort)->Name("Log/IdentifyPort over 10,000 mappings")->Unit(benchmark::kMicrosecond);
BENCHMARK(YardstickRanges)->Name("Log/yardstick: 10,000 ranges in an array")->Unit(benchmark::kMicrosecond);

}  // namespace
