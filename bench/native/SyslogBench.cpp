// A router's log of 200,000 lines: reading its packets, against a regular expression for the lines of one
// kind, and against merely finding the ends of the lines.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "log/Intake.h"

namespace {

constexpr int kLines = 200'000;

std::string OutsideAddress(int number) {
  return "203.0.113." + std::to_string(number % 254 + 1);
}

std::string PacketFilterLine(int number) {
  return "<4>Nov 20 23:22:22 router kernel: [311423.870453] reject wan in: IN=eth1 OUT= "
         "MAC=02:00:00:00:00:01:02:00:00:00:00:02:08:00 SRC=" +
         OutsideAddress(number) +
         " DST=198.51.100.7 LEN=60 TOS=0x00 PREC=0x00 TTL=52 ID=54321 DF PROTO=TCP SPT=" +
         std::to_string(1024 + number % 60'000) + " DPT=" + std::to_string(number % 10'000) +
         " WINDOW=64240 RES=0x00 SYN URGP=0";
}

std::string ForwardLine(int number) {
  return "firewall,info forward: in:ether5 out:ether1, src-mac 02:00:00:00:00:01, proto TCP (SYN), "
         "192.168.1.76:" +
         std::to_string(1024 + number % 60'000) + "->" + OutsideAddress(number) + ":443, len 52";
}

std::string BlockedLine(int number) {
  return "Apr 10 04:13:25 router Unrecognized attempt blocked from " + OutsideAddress(number) +
         ":1986 to 198.51.100.7 UDP:" + std::to_string(number % 10'000);
}

std::string OtherLine(int number) {
  return "<30>Nov 20 23:22:22 router dnsmasq-dhcp[1093]: DHCPACK(br-lan) 192.168.1." +
         std::to_string(number % 250) + " 02:00:00:00:00:01 laptop";
}

/// Of ten lines, seven are of the packet filter, one has no packet.
const std::string& Log() {
  static const std::string log = [] {
    std::string text;
    for (int i = 0; i < kLines; ++i) {
      const int kind = i % 10;
      text += kind == 7   ? ForwardLine(i)
              : kind == 8 ? BlockedLine(i)
              : kind == 9 ? OtherLine(i)
                          : PacketFilterLine(i);
      text += '\n';
    }
    return text;
  }();
  return log;
}

template <class Use>
void ForEachLine(Use use) {
  std::string_view rest = Log();
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    use(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
}

upnp::log::Sides HomeSides() {
  return {{{*upnp::log::ReadAddress("192.168.1.0"), 24}}, upnp::log::ReadAddress("198.51.100.7")};
}

void SetLines(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * kLines);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Log().size()));
}

void Read(benchmark::State& state) {
  upnp::log::LineReader reader;
  const upnp::log::Sides sides = HomeSides();
  for (auto _ : state) {
    int packets = 0;
    ForEachLine([&](std::string_view line) { packets += reader.Read(line, sides).has_value(); });
    if (packets != kLines / 10 * 9) state.SkipWithError("packets were not found");
  }
  SetLines(state);
}

/// As the thread does it that receives them: with repeats dropped, and a bounded number handed on.
void TakeIn(benchmark::State& state) {
  const upnp::log::Sides sides = HomeSides();
  for (auto _ : state) {
    upnp::log::Intake intake;
    ForEachLine([&](std::string_view line) { intake.Take(line, sides, upnp::log::Time(0)); });
    if (intake.GetArrivals().packets != kLines / 10 * 9) state.SkipWithError("packets were not found");
  }
  SetLines(state);
}

/// What a first version would do, for the lines of the packet filter only.
void YardstickExpression(benchmark::State& state) {
  const std::regex expression("SRC=([0-9.]+) DST=([0-9.]+) .*PROTO=([A-Z]+) SPT=([0-9]+) DPT=([0-9]+)",
                              std::regex::optimize);
  for (auto _ : state) {
    int packets = 0;
    ForEachLine([&](std::string_view line) {
      std::cmatch match;
      packets += std::regex_search(line.data(), line.data() + line.size(), match, expression);
    });
    if (packets != kLines / 10 * 7) state.SkipWithError("packets were not found");
  }
  SetLines(state);
}

void YardstickLineEnds(benchmark::State& state) {
  for (auto _ : state) {
    std::size_t bytes = 0;
    ForEachLine([&](std::string_view line) { bytes += line.size(); });
    benchmark::DoNotOptimize(bytes);
  }
  SetLines(state);
}

BENCHMARK(Read)->Name("Syslog/reading 200,000 lines")->Unit(benchmark::kMillisecond);
BENCHMARK(TakeIn)->Name("Syslog/taking 200,000 lines in")->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickExpression)
    ->Name("Syslog/yardstick: one regular expression")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickLineEnds)->Name("Syslog/yardstick: finding the line ends")->Unit(benchmark::kMillisecond);

}  // namespace
