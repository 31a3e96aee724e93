// Profiles that enter the list one by one, and the load of the state: both must stay near n log n. The
// yardstick is a balanced tree that takes the same names and nothing else.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "base/Conversions.h"
#include "model/CMapProfile.h"
#include "settings/CRegistry.h"
#include "support/MemoryMachine.h"

namespace {

enum class Order { kRandom, kAscending, kDescending, kAllEqual };

using Profiles = std::vector<std::shared_ptr<CMapProfile>>;
using Tree = std::multimap<std::string, std::shared_ptr<CMapProfile>>;

/// Distinct names as users give them, unless all are to be equal.
std::vector<std::string> Names(std::size_t count, Order order) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(1'000'000 + i).substr(1);
    names.push_back(order == Order::kAllEqual ? "Game server" : "Game server " + number);
  }
  if (order == Order::kDescending) std::reverse(names.begin(), names.end());
  if (order == Order::kRandom) std::shuffle(names.begin(), names.end(), std::mt19937(1));
  return names;
}

Profiles MakeProfiles(const std::vector<std::string>& names) {
  Profiles profiles;
  for (const std::string& name : names) {
    profiles.push_back(std::make_shared<CMapProfile>());
    profiles.back()->sName = name;
  }
  return profiles;
}

void AddAll(CRegistry& registry, const Profiles& profiles) {
  for (const auto& profile : profiles) registry.AddMapProfile(profile, nullptr);
}

void AddMapProfile(benchmark::State& state, Order order) {
  bench::MemoryMachine machine;
  machine.settings.keeps = false;
  const auto names = Names(static_cast<std::size_t>(state.range(0)), order);
  for (auto _ : state) {
    state.PauseTiming();
    const Profiles profiles = MakeProfiles(names);
    auto registry = std::make_unique<CRegistry>();
    state.ResumeTiming();
    AddAll(*registry, profiles);
    state.PauseTiming();
    if (registry->ccMapProfiles().Count() != profiles.size()) state.SkipWithError("profiles are missing");
    registry.reset();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}

void YardstickTree(benchmark::State& state, Order order) {
  bench::MemoryMachine machine;
  machine.settings.keeps = false;
  const Profiles profiles = MakeProfiles(Names(static_cast<std::size_t>(state.range(0)), order));
  {
    // Under the names that the list gives them.
    CRegistry registry;
    AddAll(registry, profiles);
  }
  for (auto _ : state) {
    auto tree = std::make_unique<Tree>();
    for (const auto& profile : profiles) tree->emplace(profile->sName, profile);
    state.PauseTiming();
    if (tree->size() != profiles.size()) state.SkipWithError("profiles are missing");
    tree.reset();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}

void EachOrder(void (*measure)(benchmark::State&, Order), const std::string& name) {
  static const std::pair<Order, const char*> orders[] = {{Order::kRandom, "random"},
                                                         {Order::kAscending, "ascending"},
                                                         {Order::kDescending, "descending"},
                                                         {Order::kAllEqual, "all equal"}};
  for (const auto& [order, word] : orders) {
    benchmark::RegisterBenchmark((name + "/" + word).c_str(), measure, order)
        ->Arg(1'000)
        ->Arg(10'000)
        ->Arg(100'000)
        ->Unit(benchmark::kMillisecond)
        ->Complexity(benchmark::oNLogN);
  }
}

/// The store as an earlier run has left it: `count` profiles of one mapping, in the order of their names.
void Store(std::size_t count) {
  CRegistry registry;
  for (const auto& profile : MakeProfiles(Names(count, Order::kRandom))) {
    profile->sDescription = "Ports for the game";
    const auto mapping = std::make_shared<CMapping>();
    mapping->sDescription("Voice");
    mapping->lBeginPort(27015);
    mapping->lEndPort(27030);
    profile->AddMapping(mapping);
    registry.AddMapProfile(profile, nullptr);
  }
}

void Load(benchmark::State& state) {
  bench::MemoryMachine machine;
  Store(static_cast<std::size_t>(state.range(0)));
  machine.settings.keeps = false;
  for (auto _ : state) {
    auto registry = std::make_unique<CRegistry>();
    state.PauseTiming();
    if (registry->ccMapProfiles().Count() != static_cast<std::size_t>(state.range(0))) {
      state.SkipWithError("profiles are missing");
    }
    registry.reset();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}

/// The values that the load asks for, by keys that are ready.
void YardstickReadingTheStore(benchmark::State& state) {
  bench::MemoryMachine machine;
  Store(static_cast<std::size_t>(state.range(0)));
  std::vector<std::string> keys;
  for (std::int64_t number = 1; number <= state.range(0); ++number) {
    const std::string profile = "MP_" + std::to_string(number) + "_";
    for (const char* name : {"Description", "Name", "MapCount", "WindowTitle", "WindowClass", "AutoActivate",
                             "Enabled", "MAP_1_Description", "MAP_1_BeginPort", "MAP_1_EndPort",
                             "MAP_1_Protocal", "MAP_1_ForwardIPAddress"}) {
      keys.push_back(profile + name);
    }
  }
  for (auto _ : state) {
    for (const std::string& key : keys) {
      benchmark::DoNotOptimize(
          machine.settings.GetSetting(CRegistry::kApplication, CRegistry::kSection, key, ""));
    }
  }
  state.SetComplexityN(state.range(0));
}

/// The number of profiles in the store is a 16-bit number.
void LoadSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1'000)
      ->Arg(10'000)
      ->Arg(32'767)
      ->Unit(benchmark::kMillisecond)
      ->Complexity(benchmark::oNLogN);
}

const bool isRegistered = [] {
  EachOrder(AddMapProfile, "Profiles/AddMapProfile");
  EachOrder(YardstickTree, "Profiles/yardstick: a tree of the names");
  return true;
}();

BENCHMARK(Load)->Name("Profiles/load of the state")->Apply(LoadSizes);
BENCHMARK(YardstickReadingTheStore)->Name("Profiles/yardstick: reading the store")->Apply(LoadSizes);

}  // namespace
