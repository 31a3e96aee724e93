#include "driver/Controls.h"
#include "driver/Input.h"
#include "support/Files.h"
#include "support/Scene.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Date and time as the log writes them.
std::string Minute() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  char text[32] = "";
  wsprintfA(text, "%02d/%02d/%02d %02d:%02d", now.wMonth, now.wDay, now.wYear % 100, now.wHour, now.wMinute);
  return text;
}

/// A row of the file; the cells after the time with "|" between them.
std::string Row(const std::string& time, const std::string& cells) {
  return Replaced(time + "|" + cells + "|", "|", "\r\n");
}

class LogTest : public Scene {
 protected:
  LogTest() { SelectRecording(); }

  std::string LogFile() const { return program.Folder() + "\\RouterLog.dat"; }
  std::string PortsFile() const { return program.Folder() + "\\Ports.dat"; }

  static void Raise(const std::string& event) {
    ASSERT_TRUE(WaitFor([&] { return Recording::Raise(Recording::kClass, event); }));
  }
  /// Description and filter that the program answers for a port, as the plug-in receives them.
  std::string Identify(const std::string& port) {
    Raise("IdentifyPort|" + port);
    const std::string line = recording.Lines().back();
    const std::string expected =
        "Harbourline.Recording raised IdentifyPort|" + port + " -> 00000000 BYREF+BSTR ";
    return line.rfind(expected, 0) == 0 ? Replaced(line.substr(expected.size()), "BYREF+BOOL ", "") : line;
  }
};

TEST_F(LogTest, APortIsNamedByTheFirstOfFourSourcesThatKnowsIt) {
  StoreProfiles({"+Game", "+Voice", "Off"});
  settings::Write("MP_2_MAP_1_BeginPort", "1001");
  WriteFile(PortsFile(),
            "1000\r\nnever asked\r\n80\r\nMy server\r\n80\r\nToo late\r\n8080 and more\r\nPages\r\n"
            "no number\r\nNothing\r\n1020\r\nOff in the file\r\n9999\r\n");
  ASSERT_TRUE(StartWithRouter());
  EXPECT_EQ(Identify("1000"), "\"Game\", False");
  EXPECT_EQ(Identify("1001"), "\"Game/Voice\", False");
  EXPECT_EQ(Identify("1011"), "\"Voice\", False");
  EXPECT_THAT(recording.Calls("IServer_GetPortForwardingDescription"), ElementsAre())
      << "what a profile covers is asked of nobody else";

  Recording::Script("Result_IServer_GetPortForwardingDescription", "text:The router's own");
  EXPECT_EQ(Identify("80"), "\"The router's own\", False");
  Recording::Script("Result_IServer_GetPortForwardingDescription", "text:");
  EXPECT_EQ(Identify("80"), "\"My server\", False");
  EXPECT_EQ(Identify("8080"), "\"Pages\", False");
  EXPECT_EQ(Identify("0"), "\"Nothing\", False");
  EXPECT_EQ(Identify("1020"), "\"Off in the file\", False") << "a profile that is off covers nothing";
  EXPECT_EQ(Identify("443"), "\"https\", False");
  EXPECT_EQ(Identify("9999"), "\"\", False");
  EXPECT_EQ(Identify("22"), "\"\", False");
  EXPECT_THAT(
      recording.Calls("IServer_GetPortForwardingDescription"),
      ElementsAre("METHOD+GET (BYREF+I4 80)", "METHOD+GET (BYREF+I4 80)", "METHOD+GET (BYREF+I4 8080)",
                  "METHOD+GET (BYREF+I4 0)", "METHOD+GET (BYREF+I4 1020)", "METHOD+GET (BYREF+I4 443)",
                  "METHOD+GET (BYREF+I4 9999)", "METHOD+GET (BYREF+I4 22)"));

  WriteFile(PortsFile(), "443\r\nRead again\r\n");
  EXPECT_EQ(Identify("443"), "\"https\", False") << "the file is read once a run";
}

TEST_F(LogTest, OnlyPortsOfActiveProfilesAreFilteredOut) {
  StoreProfiles({"+Game", "Off"});
  settings::Write("FilterOutProfiles", "True");
  ASSERT_TRUE(StartWithRouter());
  EXPECT_EQ(Identify("1001"), "\"Game\", True");
  EXPECT_EQ(Identify("1002"), "\"\", False");
  EXPECT_EQ(Identify("1010"), "\"\", False");
  EXPECT_EQ(Identify("80"), "\"http\", False");
}

TEST_F(LogTest, RowsStandInTheFileAsTheyCameAndComeBackAtTheNextStart) {
  ASSERT_TRUE(StartWithRouter());
  const std::string before = Minute();
  Raise("Log|in|203.0.113.9|40000|192.0.2.77|80|http");
  Raise("Log|out|192.0.2.77|50000|www.example.com|443|");
  Raise("Log|IN|198.51.100.1|1|M\xFCller|1005|Port of M\xFCller");
  Raise("Log|||-1||2147483647|x");
  const std::string after = Minute();
  ASSERT_TRUE(program.Exit());
  const auto file = [&](const std::string& nameOf443) {
    return " 4\r\n" + Row(before, "in|192.0.2.77|80|203.0.113.9|40000|http") +
           Row(before, "out|www.example.com|443|192.0.2.77|50000|" + nameOf443) +
           Row(before, "IN|M\xFCller|1005|198.51.100.1|1|Port of M\xFCller") +
           Row(before, "||2147483647||-1|x");
  };
  EXPECT_EQ(Replaced(ReadFile(LogFile()), after, before), file(""));

  // The row without a name gets one where it can; the others keep theirs.
  StoreProfiles({"+Web"});
  settings::Write("MP_1_MAP_1_BeginPort", "1");
  settings::Write("MP_1_MAP_1_EndPort", "2000");
  ASSERT_TRUE(StartWithRouter());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(Replaced(ReadFile(LogFile()), after, before), file("Web"));
}

TEST_F(LogTest, AnEmptyLogIsOneLine) {
  ASSERT_TRUE(StartWithRouter());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(ReadFile(LogFile()), " 0\r\n");
}

TEST_F(LogTest, ThePageShowsTheLastRowOfTheLoadedLogFirst) {
  std::string file = " 200\r\n";
  for (int row = 1; row <= 200; ++row) file += Row("01/02/26 03:04", "in|a|1|b|2|row " + std::to_string(row));
  WriteFile(LogFile(), file);
  settings::Write("LastMenuLocation", "LogConfiguration");
  ASSERT_TRUE(StartWithRouter());
  ASSERT_TRUE(WaitFor([] {
    const auto icon = Program::Icon();
    if (!icon) return false;
    for (int click = 0; click < 2; ++click) {
      desktop::Click(icon->x, icon->y, desktop::MouseButton::kLeft);
    }
    const ULONGLONG end = GetTickCount64() + 1'000;
    const auto list = [] { return desktop::FindControl("Harbourline.exe", "ctlRouterLog.lvRouterLog"); };
    while (!IsWindowVisible(list()) && GetTickCount64() < end) Sleep(20);
    return IsWindowVisible(list()) != FALSE;
  }));
  const HWND list = desktop::FindControl("Harbourline.exe", "ctlRouterLog.lvRouterLog");
  const auto isInView = [&](std::size_t row) {
    const auto items = desktop::ItemsOf(list);
    return items.size() == 200 && !IsRectEmpty(&items[row].place);
  };
  EXPECT_TRUE(WaitFor([&] { return isInView(199); }));
  EXPECT_FALSE(isInView(0));
  EXPECT_TRUE(program.Exit());
}

TEST_F(LogTest, WhatADamagedFileStillHasIsKept) {
  const std::string row = Row("01/02/26 03:04", "in|a|1|b|2|c");
  WriteFile(LogFile(), " 7\r\n" + row + row + "01/02/26 03:05\r\nin\r\nb\r\nno port\r\n");
  ASSERT_TRUE(StartWithRouter());
  EXPECT_FALSE(program.FindBox());
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(ReadFile(LogFile()), " 2\r\n" + row + row);
}

}  // namespace
