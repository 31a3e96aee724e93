// What the user does on the pages of the window where a list is long: a million rows of the activity log are
// sorted, grow and shrink, and ten thousand profiles are shown. Each beside what the same work costs without
// the program.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/Conversions.h"
#include "model/CMapProfile.h"
#include "settings/CRegistry.h"
#include "support/LogPage.h"
#include "support/MemoryMachine.h"
#include "ui/Form.h"
#include "ui/ListView.h"

namespace {

constexpr std::int64_t kRows = 1'000'000;

void OpenLog(bench::LogPage& log, std::int64_t rows) {
  bench::WriteFile(log.Database(), bench::LogFile(rows));
  log.OpenPage();
}

// --- Sorting by the click on a column, whose kinds are these. Rows of equal keys stand in the order of their
// times.

std::uint64_t TimeOf(const ui::ListView& rows, std::size_t row) {
  std::uint64_t number = 0;
  // The digits of the day, the hour and the minute.
  for (const std::size_t place : {3u, 4u, 9u, 10u, 12u, 13u}) {
    number = number * 10 + static_cast<std::uint64_t>(rows.Text(row)[place] - '0');
  }
  return number;
}

struct TextColumn {
  static constexpr std::int32_t kColumn = 3;
  using Key = std::pair<std::string_view, std::uint64_t>;
  static Key KeyOf(const ui::ListView& rows, std::size_t row) {
    return {rows.Text(row, kColumn - 1), TimeOf(rows, row)};
  }
};

struct NumberColumn {
  static constexpr std::int32_t kColumn = 6;
  using Key = std::pair<std::uint64_t, std::uint64_t>;
  static Key KeyOf(const ui::ListView& rows, std::size_t row) {
    const std::string_view text = rows.Text(row, kColumn - 1);
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return {number, TimeOf(rows, row)};
  }
};

struct DateTimeColumn {
  static constexpr std::int32_t kColumn = 1;
  using Key = std::uint64_t;
  static Key KeyOf(const ui::ListView& rows, std::size_t row) { return TimeOf(rows, row); }
};

/// The row's place in the file, from 0.
std::uint32_t PlaceInFile(const ui::ListView& rows, std::size_t row) {
  return static_cast<std::uint32_t>(base::ToInt32(rows.Key(row).substr(1))) - 1;
}

void PutInOrderOfFile(ui::ListView& rows) {
  std::vector<std::uint32_t> order(rows.RowCount());
  for (std::size_t row = 0; row < order.size(); ++row) {
    order[PlaceInFile(rows, row)] = static_cast<std::uint32_t>(row);
  }
  rows.Reorder(order);
}

template <typename Column>
bool IsSorted(const ui::ListView& rows) {
  const bool descending = rows.SortOrder() == 1;
  for (std::size_t row = 1; row < rows.RowCount(); ++row) {
    const auto above = Column::KeyOf(rows, row - 1);
    const auto below = Column::KeyOf(rows, row);
    if (descending ? above < below : below < above) return false;
    if (above == below && PlaceInFile(rows, row - 1) > PlaceInFile(rows, row)) return false;
  }
  return true;
}

template <typename Column>
void Sort(benchmark::State& state) {
  bench::LogPage log;
  OpenLog(log, state.range(0));
  ui::ListView& rows = log.Rows();
  for (auto _ : state) {
    rows.UserColumnClick(Column::kColumn);
    state.PauseTiming();
    if (!IsSorted<Column>(rows)) state.SkipWithError("the rows aren't sorted");
    PutInOrderOfFile(rows);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Column>
void YardstickSort(benchmark::State& state) {
  struct Row {
    typename Column::Key key;
    std::uint32_t row;
  };
  bench::LogPage log;
  OpenLog(log, state.range(0));
  std::vector<Row> rows;
  for (std::size_t row = 0; row < log.Rows().RowCount(); ++row) {
    rows.push_back({Column::KeyOf(log.Rows(), row), static_cast<std::uint32_t>(row)});
  }
  for (auto _ : state) {
    state.PauseTiming();
    auto sorted = rows;
    state.ResumeTiming();
    std::stable_sort(sorted.begin(), sorted.end(), [](const Row& a, const Row& b) { return a.key < b.key; });
    benchmark::DoNotOptimize(sorted.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- A row that comes while the log is so long already.

void LiveRow(benchmark::State& state) {
  bench::LogPage log;
  OpenLog(log, state.range(0));
  log.page->Reset();
  std::int32_t port = 0;
  for (auto _ : state) log.router.Log(++port);
  if (log.Rows().RowCount() != static_cast<std::size_t>(state.range(0) + port)) {
    state.SkipWithError("rows are missing");
  }
  state.SetItemsProcessed(state.iterations());
}

// --- Removing the selected rows, every tenth one.

constexpr std::size_t kSelectedEvery = 10;

void Remove(benchmark::State& state) {
  bench::LogPage log;
  bench::WriteFile(log.Database(), bench::LogFile(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    log.OpenPage();
    ui::ListView& rows = log.Rows();
    const std::size_t count = rows.RowCount();
    for (std::size_t row = 0; row < count; row += kSelectedEvery) rows.UserSelect(row, true);
    state.ResumeTiming();
    log.RemoveEntry().UserClick();
    state.PauseTiming();
    if (rows.RowCount() != count - count / kSelectedEvery) state.SkipWithError("rows are left");
    log.page.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}

void YardstickErase(benchmark::State& state) {
  struct Row {
    std::unique_ptr<std::string> text;
    bool selected;
  };
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<Row> rows;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      rows.push_back({std::make_unique<std::string>("11/20/26 23:22"), i % kSelectedEvery == 0});
    }
    state.ResumeTiming();
    std::erase_if(rows, [](const Row& row) { return row.selected; });
    state.PauseTiming();
    benchmark::DoNotOptimize(rows.data());
    rows.clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}

// --- Filling the list of the profiles.

constexpr std::size_t kProfiles = 10'000;

std::vector<std::string> ProfileNames() {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < kProfiles; ++i) names.push_back("Game server " + std::to_string(i));
  std::shuffle(names.begin(), names.end(), std::mt19937(1));
  return names;
}

void FillProfiles(benchmark::State& state, bool autoOnly) {
  bench::MemoryMachine machine;
  machine.settings.keeps = false;
  CRegistry registry;
  for (const std::string& name : ProfileNames()) {
    const auto profile = std::make_shared<CMapProfile>();
    profile->sName = name;
    profile->bEnabled = true;
    profile->bAutoActivate = true;
    registry.AddMapProfile(profile, nullptr);
  }
  ui::Form window("frmBench", "Bench", {}, 8000, 6000);
  ui::ListView list(&window, "lvProfiles", {.columnHeaders = false, .labelEdit = true});
  for (auto _ : state) registry.PopulateMapProfileListView(list, autoOnly);
  if (list.RowCount() != kProfiles) state.SkipWithError("profiles are missing");
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kProfiles));
}

void YardstickFill(benchmark::State& state) {
  const auto names = ProfileNames();
  for (auto _ : state) {
    std::vector<std::array<std::string, 2>> rows;
    std::unordered_map<std::string, std::size_t> places;
    for (const std::string& name : names) {
      places.emplace(name, rows.size());
      rows.push_back({name, name});
    }
    benchmark::DoNotOptimize(rows.data());
    benchmark::DoNotOptimize(places);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kProfiles));
}

template <typename Column>
void RegisterSort(const std::string& kind) {
  const auto add = [&kind](const char* name, void (*measure)(benchmark::State&)) {
    benchmark::RegisterBenchmark((name + kind).c_str(), measure)->Arg(kRows)->Unit(benchmark::kMillisecond);
  };
  add("Pages/log, sort by ", Sort<Column>);
  add("Pages/log, yardstick: stable_sort by ", YardstickSort<Column>);
}

const bool isRegistered = [] {
  RegisterSort<TextColumn>("text");
  RegisterSort<NumberColumn>("number");
  RegisterSort<DateTimeColumn>("date and time");
  return true;
}();

// A fixed number of rows, so that the short log stays short.
BENCHMARK(LiveRow)->Name("Pages/log, a live row")->Arg(1'000)->Arg(kRows)->Iterations(1'000);

void RemoveSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(10'000)->Arg(100'000)->Arg(kRows)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}
BENCHMARK(Remove)->Name("Pages/log, remove every tenth row")->Apply(RemoveSizes);
BENCHMARK(YardstickErase)->Name("Pages/log, yardstick: erase_if")->Apply(RemoveSizes);

BENCHMARK_CAPTURE(FillProfiles, all, false)
    ->Name("Pages/profiles, fill the list")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FillProfiles, automatic, true)
    ->Name("Pages/profiles, fill the list of the automatic ones")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickFill)
    ->Name("Pages/profiles, yardstick: an array and a hash table")
    ->Unit(benchmark::kMillisecond);

}  // namespace
