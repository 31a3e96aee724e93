// An exchange file of 100 MB, profiles of ten mappings: import against expat, which merely parses the same
// content written as well-formed XML, and export against writing the same bytes.

#include <benchmark/benchmark.h>
#include <expat.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "settings/CRegistry.h"
#include "support/MemoryMachine.h"
#include "ui/HeadlessToolkit.h"

namespace {

constexpr std::size_t kFileSize = 100'000'000;
constexpr int kMappings = 10;
constexpr int kBlock = 64 * 1024;

/// In the current folder.
constexpr const char* kExchangeFile = "exchange.prf";
constexpr const char* kXmlFile = "exchange.xml";
constexpr const char* kOutput = "exchange.out";

using File = std::unique_ptr<std::FILE, decltype([](std::FILE* file) { std::fclose(file); })>;

File Open(const char* path, const char* mode) {
  File file(std::fopen(path, mode));
  if (!file) throw std::runtime_error(std::string("can't open ") + path);
  return file;
}

/// Both files, until the end of the program. They say the same. The one for expat has a declaration, a root,
/// and quotes around every value.
class Files {
 public:
  Files() : exchange_(kExchangeFile, std::ios::binary), xml_(kXmlFile, std::ios::binary) {
    xml_ << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n<Profiles>\r\n";
    while (size_ < kFileSize) WriteProfile();
    xml_ << "</Profiles>\r\n";
    if (!exchange_.flush() || !xml_.flush()) throw std::runtime_error("can't write the exchange files");
  }
  ~Files() {
    std::remove(kExchangeFile);
    std::remove(kXmlFile);
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  int Profiles() const { return profiles_; }

 private:
  void WriteProfile() {
    const std::string name = "Game server " + std::to_string(10'000'000 + ++profiles_).substr(1);
    Line("<MapProfile Name=\"" + name + "\" Description=\"Ports for the game and its voice chat\"",
         " WindowTitle=\"Game\" WindowClass=\"GameWindow\"",
         {{"AutoActivate", "False"}, {"Enabled", "True"}});
    for (int i = 0; i < kMappings; ++i) {
      const int port = 1024 + (profiles_ * kMappings + i) % 60000;
      Line("<Mapping Description=\"Voice chat " + std::to_string(i) + "\"", "",
           {{"BeginPort", std::to_string(port)},
            {"EndPort", std::to_string(port + 15)},
            {"Protocal", std::to_string(i % 3)},
            {"ForwardIPAddress", i % 4 ? "-1" : "12"}});
      Both("</Mapping>\r\n");
    }
    Both("</MapProfile>\r\n");
  }

  void Line(const std::string& head, const std::string& quoted,
            const std::vector<std::pair<std::string, std::string>>& plain) {
    Both(head + quoted);
    for (const auto& [name, value] : plain) {
      Write(" " + name + "=" + value);
      xml_ << " " << name << "=\"" << value << "\"";
    }
    Both(">\r\n");
  }

  void Both(const std::string& text) {
    Write(text);
    xml_ << text;
  }

  void Write(const std::string& text) {
    exchange_ << text;
    size_ += text.size();
  }

  std::ofstream exchange_;
  std::ofstream xml_;
  std::size_t size_ = 0;
  int profiles_ = 0;
};

/// Makes both files once in a run; the number of profiles in them.
std::size_t MakeFiles() {
  static const Files files;
  return static_cast<std::size_t>(files.Profiles());
}

std::string Bytes(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A state without profiles that asks nothing and is saved nowhere.
struct World {
  World() { machine.settings.keeps = false; }
  bench::MemoryMachine machine;
  ui::HeadlessToolkit toolkit;
};

void SetBytes(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void Import(benchmark::State& state) {
  const std::size_t profiles = MakeFiles();
  World world;
  for (auto _ : state) {
    CRegistry registry;
    registry.Import(kExchangeFile);
    state.PauseTiming();
    if (registry.ccMapProfiles().Count() != profiles) state.SkipWithError("profiles are missing");
    if (world.toolkit.messages.back().text != "Import Complete Successfully")
      state.SkipWithError("not imported");
    registry.Release();
    state.ResumeTiming();
  }
  SetBytes(state, kFileSize);
}

/// No handlers: expat looks for the end of every name and value, checks that all is well-formed, and that is
/// all.
void YardstickExpat(benchmark::State& state) {
  MakeFiles();
  for (auto _ : state) {
    const File file = Open(kXmlFile, "rb");
    const XML_Parser parser = XML_ParserCreate(nullptr);
    for (bool isLast = false; !isLast;) {
      const std::size_t count = std::fread(XML_GetBuffer(parser, kBlock), 1, kBlock, file.get());
      isLast = count < static_cast<std::size_t>(kBlock);
      if (XML_ParseBuffer(parser, static_cast<int>(count), isLast) != XML_STATUS_OK) {
        state.SkipWithError("expat finds the file malformed");
        break;
      }
    }
    XML_ParserFree(parser);
  }
  SetBytes(state, kFileSize);
}

/// As a program has it that takes the elements: a handler for each, which does nothing.
void YardstickExpatWithHandlers(benchmark::State& state) {
  MakeFiles();
  for (auto _ : state) {
    const File file = Open(kXmlFile, "rb");
    const XML_Parser parser = XML_ParserCreate(nullptr);
    std::size_t attributes = 0;
    XML_SetUserData(parser, &attributes);
    XML_SetElementHandler(
        parser,
        [](void* user, const XML_Char*, const XML_Char** values) {
          for (; *values; values += 2) ++*static_cast<std::size_t*>(user);
        },
        [](void*, const XML_Char*) {});
    for (bool isLast = false; !isLast;) {
      const std::size_t count = std::fread(XML_GetBuffer(parser, kBlock), 1, kBlock, file.get());
      isLast = count < static_cast<std::size_t>(kBlock);
      XML_ParseBuffer(parser, static_cast<int>(count), isLast);
    }
    XML_ParserFree(parser);
    benchmark::DoNotOptimize(attributes);
  }
  SetBytes(state, kFileSize);
}

void Export(benchmark::State& state) {
  MakeFiles();
  World world;
  CRegistry registry;
  registry.Import(kExchangeFile);
  std::vector<std::string> keys;
  for (const auto& profile : registry.ccMapProfiles()) keys.push_back(profile->sKey());
  for (auto _ : state) registry.ExportByKeys(kOutput, keys);
  if (Bytes(kOutput) != Bytes(kExchangeFile))
    state.SkipWithError("the export differs from what was imported");
  std::remove(kOutput);
  SetBytes(state, kFileSize);
}

void YardstickWriting(benchmark::State& state) {
  MakeFiles();
  const std::string bytes = Bytes(kExchangeFile);
  for (auto _ : state) {
    const File file = Open(kOutput, "wb");
    if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size())
      state.SkipWithError("not written");
  }
  std::remove(kOutput);
  SetBytes(state, kFileSize);
}

/// The same bytes by a bare loop that has the lines and writes one after the other.
void YardstickWritingLines(benchmark::State& state) {
  MakeFiles();
  const std::string bytes = Bytes(kExchangeFile);
  std::vector<std::string_view> lines;
  for (std::size_t start = 0; start < bytes.size();) {
    const std::size_t end = bytes.find('\n', start) + 1;
    lines.push_back(std::string_view(bytes).substr(start, end - start));
    start = end;
  }
  for (auto _ : state) {
    std::ofstream file(kOutput, std::ios::binary);
    for (const std::string_view line : lines) file << line;
    if (!file.flush()) state.SkipWithError("not written");
  }
  std::remove(kOutput);
  SetBytes(state, kFileSize);
}

BENCHMARK(Import)->Name("Exchange/import of 100 MB")->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickExpat)->Name("Exchange/yardstick: expat merely parses")->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickExpatWithHandlers)
    ->Name("Exchange/expat tells the elements")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Export)->Name("Exchange/export of 100 MB")->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickWriting)->Name("Exchange/yardstick: writing the bytes")->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickWritingLines)
    ->Name("Exchange/yardstick: writing the lines")
    ->Unit(benchmark::kMillisecond);

}  // namespace
