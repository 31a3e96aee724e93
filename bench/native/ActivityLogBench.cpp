// The activity log: naming a port, the file of a million rows, sorting and removing. Each beside what the
// same work costs without the program.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "activitylog/ctlRouterLog.h"
#include "base/Error.h"
#include "model/CMapProfile.h"
#include "platform/Machine.h"
#include "settings/CRegistry.h"
#include "support/MemoryMachine.h"
#include "ui/Form.h"

namespace {

constexpr std::int64_t kRows = 1'000'000;
constexpr std::size_t kBlock = 64 * 1024;

/// A router's plug-in that knows no port and hands out its event source, and what makes and connects it.
class LogRouter : public platform::LateBoundObject, public platform::ObjectFactory {
 public:
  base::Variant Get(std::string_view member) override {
    if (member != "IServer_EventHandler") return {};
    return platform::LateBoundRef(platform::LateBoundRef(), &source_);
  }
  void Put(std::string_view, const base::Variant&) override {}
  base::Variant Call(std::string_view, std::span<platform::Argument>) override { return std::string(); }

  platform::LateBoundRef Create(std::string_view) override {
    throw base::Error(base::ErrorNumber::kCannotCreateObject, "There are no classes here");
  }
  std::unique_ptr<platform::EventConnection> Connect(platform::LateBoundObject&,
                                                     const platform::EventInterface&,
                                                     platform::EventSink& sink) override {
    sink_ = &sink;
    return std::make_unique<platform::EventConnection>();
  }

  std::string IdentifyPort(std::int32_t port) {
    base::Variant arguments[] = {port, std::string(), false};
    sink_->OnEvent(2, arguments);
    return base::ToText(arguments[1]);
  }
  void Log(std::int32_t sourcePort) {
    base::Variant arguments[] = {"in", "203.0.113.99", sourcePort, "192.168.1.20", std::int32_t{80}, "http"};
    sink_->OnEvent(3, arguments);
  }

 private:
  struct Source : platform::LateBoundObject {
    base::Variant Get(std::string_view) override { return {}; }
    void Put(std::string_view, const base::Variant&) override {}
    base::Variant Call(std::string_view, std::span<platform::Argument>) override { return {}; }
  };

  Source source_;
  platform::EventSink* sink_ = nullptr;
};

/// The program's state with a folder of its own, and a window for the page.
class World {
 public:
  World() {
    std::random_device random;
    folder_ = std::filesystem::temp_directory_path() / ("harbourline-bench-" + std::to_string(random()));
    std::filesystem::create_directory(folder_);
    process_.path = Folder() + "\\Harbourline.exe";
    machine_.settings.keeps = false;
    platform::TheMachine().process = &process_;
    platform::TheMachine().clock = &clock_;
    platform::TheMachine().objects = &router;
    g_Registry = std::make_unique<CRegistry>();
    g_Registry->Router = platform::LateBoundRef(platform::LateBoundRef(), &router);
  }
  ~World() {
    page.reset();
    g_Registry.reset();
    std::filesystem::remove_all(folder_);
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  void OpenPage() { page = std::make_unique<ctlRouterLog>(&window_, "ctlRouterLog"); }
  ui::ListView& Rows() const {
    const auto& controls = page->Children();
    return static_cast<ui::ListView&>(
        **std::find_if(controls.begin(), controls.end(),
                       [](ui::Control* control) { return control->Name() == "lvRouterLog"; }));
  }
  std::string Database() const { return Folder() + "\\RouterLog.dat"; }

  LogRouter router;
  std::unique_ptr<ctlRouterLog> page;

 private:
  struct Process : platform::Process {
    std::string path;
    std::string ExecutablePath() override { return path; }
    bool EarlierInstanceRuns() override { return false; }
    std::string CurrentFolder() override { return {}; }
  };
  struct Clock : platform::Clock {
    platform::DateTime Now() override { return {2026, 11, 20, 23, 22, 22}; }
  };

  /// The program joins by "\\", which here is a plain character of a name in folder_.
  std::string Folder() const { return (folder_ / "files").string(); }

  std::filesystem::path folder_;
  Process process_;
  Clock clock_;
  bench::MemoryMachine machine_;
  ui::Form window_{"frmBench", "Bench", {}, 8000, 6000};
};

/// A log as a busy month leaves it; the bytes of its file.
std::string LogFile(std::int64_t rows) {
  static const char* const services[] = {"http", "https", "Game server", "domain", "smtp", "snmp-trap"};
  std::mt19937 random(1);
  const auto number = [&random](unsigned below) { return std::to_string(random() % below); };
  const auto twoDigits = [&random](unsigned below) {
    return std::to_string(100 + random() % below).substr(1);
  };
  std::ostringstream text;
  text << ' ' << rows << "\r\n";
  for (std::int64_t row = 0; row < rows; ++row) {
    const bool incoming = random() % 2 == 0;
    const std::string outside = "203.0.113." + number(256);
    const std::string inside = "192.168.1." + number(256);
    text << "11/" << 10 + random() % 20 << "/26 " << twoDigits(24) << ':' << twoDigits(60) << "\r\n"
         << (incoming ? "in" : "out") << "\r\n"
         << (incoming ? inside : outside) << "\r\n"
         << number(65'536) << "\r\n"
         << (incoming ? outside : inside) << "\r\n"
         << number(65'536) << "\r\n"
         << services[random() % std::size(services)] << "\r\n";
  }
  return std::move(text).str();
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.rdbuf()->pubsetbuf(nullptr, 0);
  for (std::size_t at = 0; at < bytes.size(); at += kBlock) {
    file.write(bytes.data() + at, static_cast<std::streamsize>(std::min(kBlock, bytes.size() - at)));
  }
}

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

void Event(benchmark::State& state) {
  World world;
  world.OpenPage();
  world.page->Reset();
  std::int32_t port = 0;
  for (auto _ : state) world.router.Log(++port);
  state.SetItemsProcessed(state.iterations());
}

void Sort(benchmark::State& state, std::int32_t column) {
  World world;
  WriteFile(world.Database(), LogFile(state.range(0)));
  world.OpenPage();
  for (auto _ : state) world.Rows().UserColumnClick(column);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void YardstickSort(benchmark::State& state) {
  std::mt19937 random(1);
  struct Row {
    std::uint64_t key;
    std::uint64_t secondKey;
    std::uint32_t row;
  };
  std::vector<Row> rows;
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    rows.push_back({random() % 65'536, random() % 43'200, static_cast<std::uint32_t>(i)});
  }
  for (auto _ : state) {
    auto sorted = rows;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Row& a, const Row& b) {
      return std::pair(a.key, a.secondKey) < std::pair(b.key, b.secondKey);
    });
    benchmark::DoNotOptimize(sorted.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Remove(benchmark::State& state) {
  World world;
  WriteFile(world.Database(), LogFile(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    world.OpenPage();
    ui::ListView& rows = world.Rows();
    for (std::size_t row = 0; row < rows.RowCount(); row += 2) rows.UserSelect(row, true);
    ui::Menu* remove = nullptr;
    for (ui::Control* menu : world.page->Children()) {
      if (menu->Name() != "mnuPopUpLog") continue;
      for (ui::Control* entry : menu->Children()) {
        if (entry->Name() == "mnuRemove") remove = static_cast<ui::Menu*>(entry);
      }
    }
    state.ResumeTiming();
    remove->UserClick();
    state.PauseTiming();
    if (rows.RowCount() != static_cast<std::size_t>(state.range(0)) / 2) state.SkipWithError("rows are left");
    world.page.reset();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
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
BENCHMARK(Event)->Name("Log/a row by an event");
BENCHMARK_CAPTURE(Sort, number, 6)
    ->Name("Log/sort by port and time")
    ->Arg(kRows)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Sort, text, 3)
    ->Name("Log/sort by address and time")
    ->Arg(kRows)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickSort)
    ->Name("Log/yardstick: sort of the numbers")
    ->Arg(kRows)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Remove)
    ->Name("Log/remove every other row")
    ->RangeMultiplier(10)
    ->Range(10'000, kRows)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
