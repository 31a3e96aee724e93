#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "FakeRouter.h"
#include "rules/TraceFile.h"
#include "rules/TracingGateway.h"

namespace upnp {
namespace {

namespace fs = std::filesystem;

class LineTrace : public Trace {
 public:
  void Line(const std::string& text) override { lines.push_back(text); }
  std::vector<std::string> lines;
};

class TraceFileTest : public testing::Test {
 protected:
  TraceFileTest()
      : folder_(fs::temp_directory_path() /
                ("harbourline-trace-" +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()))) {}
  ~TraceFileTest() override {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  fs::path Newer() const { return folder_ / "sub" / "UpnpRouter.log"; }
  fs::path Older() const { return folder_ / "sub" / "UpnpRouter.1.log"; }
  static std::string ContentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  fs::path folder_;
};

TEST_F(TraceFileTest, NothingIsMadeBeforeItIsSwitchedOn) {
  TraceFile trace(Newer());
  trace.Line("unheard");
  EXPECT_FALSE(fs::exists(Newer().parent_path()));
}

TEST_F(TraceFileTest, EveryLineHasItsTimeAndStaysOneLine) {
  TraceFile trace(Newer());
  trace.SwitchOn(true);
  trace.Line("a router called \"x\r\ny\"");
  trace.SwitchOn(false);
  trace.Line("unheard");
  EXPECT_THAT(ContentOf(Newer()),
              testing::MatchesRegex("20..-..-.. ..:..:..\\.... a router called \"x  y\"\r\n"));
}

TEST_F(TraceFileTest, TwoGenerationsOfOneMegabyteAreKept) {
  TraceFile trace(Newer());
  trace.SwitchOn(true);
  const std::string text(900, 'x');
  for (int i = 0; i < 4000; ++i) trace.Line(std::to_string(i) + " " + text);
  trace.SwitchOn(false);
  EXPECT_LE(fs::file_size(Newer()), TraceFile::kMost);
  EXPECT_LE(fs::file_size(Older()), TraceFile::kMost);
  EXPECT_GT(fs::file_size(Older()), TraceFile::kMost / 2);
  EXPECT_THAT(ContentOf(Newer()), testing::HasSubstr(" 3999 "));
  EXPECT_EQ(std::distance(fs::directory_iterator(Newer().parent_path()), fs::directory_iterator()), 2);
}

TEST_F(TraceFileTest, ALaterRunGoesOnInTheSameFile) {
  for (const char* text : {"first", "second"}) {
    TraceFile trace(Newer());
    trace.SwitchOn(true);
    trace.Line(text);
  }
  EXPECT_THAT(ContentOf(Newer()), testing::AllOf(testing::HasSubstr("first"), testing::HasSubstr("second")));
}

TEST(TracingGatewayTest, EachCallIsALineWithItsAnswer) {
  HandClock clock;
  FakeRouter router(clock);
  LineTrace trace;
  TracingGateway gateway(std::make_unique<BorrowedRouter>(router), trace, clock);
  PortMapping mapping;
  mapping.externalPort = mapping.internalPort = 80;
  mapping.client = "192.168.1.5";
  mapping.lease = 3600;
  mapping.description = "Harbourline: Web";
  EXPECT_TRUE(gateway.Add(mapping).answer.IsDone());
  gateway.Entry({81, Protocol::kUdp}, mapping);
  router.silent = true;
  std::string address;
  gateway.ExternalAddress(address);
  EXPECT_THAT(trace.lines,
              testing::ElementsAre(
                  "add TCP 80 to 192.168.1.5:80 for 3600 s, \"Harbourline: Web\": done, for 3600 s (0 ms)",
                  "entry of UDP 81: error 714 (0 ms)", "WAN address: no answer (0 ms)"));
}

}  // namespace
}  // namespace upnp
