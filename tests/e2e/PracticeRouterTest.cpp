#include <regex>
#include <set>
#include <sstream>

#include "support/Files.h"
#include "support/Scene.h"

namespace {

struct LogRow {
  std::string time, type, destination, destinationPort, source, sourcePort, miscellaneous;
};

std::vector<LogRow> ReadLog(const std::string& path) {
  std::istringstream file(Replaced(ReadFile(path), "\r\n", "\n"));
  std::string count;
  std::getline(file, count);
  std::vector<LogRow> rows;
  for (LogRow row; std::getline(file, row.time);) {
    for (std::string* cell : {&row.type, &row.destination, &row.destinationPort, &row.source, &row.sourcePort,
                              &row.miscellaneous}) {
      std::getline(file, *cell);
    }
    rows.push_back(row);
  }
  EXPECT_EQ(count, " " + std::to_string(rows.size()));
  return rows;
}

/// The router that ships with the program makes the log's traffic.
class PracticeRouterTest : public Scene {
 protected:
  static constexpr char kPractice[] = "Harbourline.PracticeRouter";
  static constexpr char kStored[] = "Software\\Harbourline Practice Router";
  // The traffic of some ticks, of which the router has two a second.
  static constexpr ULONGLONG kSomeTraffic = 1'700;
  static constexpr std::size_t kLines = 2;

  PracticeRouterTest() {
    RegisterPlugIn(HARBOURLINE_PRACTICE_ROUTER);
    RegDeleteTreeA(HKEY_CURRENT_USER, kStored);
    EnableLog(true);
    settings::Write({{"Version", HARBOURLINE_VERSION},
                     {"RouterCount", "1"},
                     {"Router_1", kPractice},
                     {"RouterClass", kPractice}});
  }
  ~PracticeRouterTest() override { RegDeleteTreeA(HKEY_CURRENT_USER, kStored); }

  static void EnableLog(bool enabled) {
    const DWORD value = enabled ? 1 : 0;
    RegSetKeyValueA(HKEY_CURRENT_USER, kStored, "EnableLog", REG_DWORD, &value, sizeof value);
  }
  /// An active profile that covers every port.
  static void CoverEveryPort() {
    StoreProfiles({"+Everything"});
    settings::Write({{"MP_1_MAP_1_BeginPort", "0"}, {"MP_1_MAP_1_EndPort", "65535"}});
  }
  /// The router's own window comes up where the icon is.
  static void CloseItsWindow() {
    const HWND window = WaitFor([] { return FindWindowA(nullptr, "Practice Router"); });
    PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_TRUE(WaitFor([=] { return !IsWindowVisible(window); }));
  }
  /// The log after some traffic and the end of the program.
  std::vector<LogRow> LogOfARun() {
    EXPECT_TRUE(program.StartAndWait());
    CloseItsWindow();
    EXPECT_TRUE(StaysSo(kSomeTraffic, [this] { return !program.HasEnded(); }));
    EXPECT_TRUE(program.Exit());
    return ReadLog(program.Folder() + "\\RouterLog.dat");
  }
};

TEST_F(PracticeRouterTest, ItsTrafficStandsInTheLogUnderTheNamesThatTheProgramGave) {
  const std::vector<LogRow> rows = LogOfARun();
  EXPECT_GE(rows.size(), kLines);
  const std::regex stranger(
      "(192\\.0\\.2|198\\.51\\.100|203\\.0\\.113)\\.[0-9]+|[a-z]+\\.example\\.(com|net|org)");
  const std::map<std::string, std::string> names = {{"80", "http"}, {"443", "https"}, {"53", "domain"},
                                                    {"25", "smtp"}, {"22", ""},       {"3389", ""}};
  std::set<std::string> own;
  for (const LogRow& row : rows) {
    ASSERT_THAT(row.type, testing::AnyOf("in", "out"));
    const bool incoming = row.type == "in";
    own.insert(incoming ? row.destination : row.source);
    EXPECT_TRUE(std::regex_match(incoming ? row.source : row.destination, stranger)) << row.source;
    if (const auto name = names.find(row.destinationPort); name != names.end()) {
      EXPECT_EQ(row.miscellaneous, name->second) << row.destinationPort;
    }
  }
  EXPECT_EQ(own.size(), 1u) << "one side of each line is this computer";
}

TEST_F(PracticeRouterTest, ItAsksForTheNameOfAProfileToo) {
  CoverEveryPort();
  const std::vector<LogRow> rows = LogOfARun();
  EXPECT_GE(rows.size(), kLines);
  for (const LogRow& row : rows) EXPECT_EQ(row.miscellaneous, "Everything");
}

TEST_F(PracticeRouterTest, WhatIsFilteredOutNeverReachesTheLog) {
  CoverEveryPort();
  settings::Write("FilterOutProfiles", "True");
  EXPECT_TRUE(LogOfARun().empty());
}

TEST_F(PracticeRouterTest, WithItsLogSwitchedOffThereIsNoTraffic) {
  EnableLog(false);
  EXPECT_TRUE(LogOfARun().empty());
}

TEST_F(PracticeRouterTest, ItsErrorStandsInTheReport) {
  ASSERT_TRUE(program.StartAndWait());
  const auto button = WaitFor([]() -> HWND {
    for (const desktop::Window& window : desktop::TopLevelWindows()) {
      for (const desktop::Window& part : desktop::Inside(window.handle)) {
        if (part.className == "Button" && part.text == "Raise an error") return part.handle;
      }
    }
    return nullptr;
  });
  ASSERT_TRUE(button);
  PostMessageA(button, BM_CLICK, 0, 0);
  const HWND report = WaitFor([this] { return program.Find("frmErrors"); });
  ASSERT_TRUE(report);
  EXPECT_TRUE(WaitFor([=] {
    for (const desktop::Window& part : desktop::Inside(report)) {
      if (part.text.find(" - The practice router was asked for an error. (") != part.text.npos) return true;
    }
    return false;
  }));
}

}  // namespace
