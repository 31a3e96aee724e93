#include <gmock/gmock.h>

#include <filesystem>

#include "support/FullDisk.h"
#include "support/RouterLogTest.h"
#include "support/WithoutRights.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_view_literals;

constexpr ui::Color kRed = ui::Rgb(255, 0, 0);
constexpr ui::Color kNavy = ui::Rgb(0, 0, 128);

class RouterLogStore : public support::RouterLogTest {
 protected:
  /// A row of the file.
  static std::string Lines(const std::vector<std::string>& cells) {
    std::string lines;
    for (const std::string& cell : cells) lines += cell + "\r\n";
    return lines;
  }
  static std::string Incoming(int number) {
    return Lines(
        {"07/09/26 08:05", "in", "192.168.1.7", std::to_string(number), "203.0.113.9", "4000", "web"});
  }
  bool HasTraced() const {
    return world.debug.lines == std::vector<std::string>{"Error occured during loading of the log database."};
  }
};

TEST_F(RouterLogStore, AnEmptyListIsOneLineWithABlankAndTheDigit0) {
  OpenPage();
  EXPECT_EQ(Saved(), " 0\r\n");
}

TEST_F(RouterLogStore, WritesTheCountAndSevenLinesForEachRow) {
  SelectRouter();
  OpenPage();
  page->Reset();
  RaiseLog("in", "203.0.113.9", 4000, "192.168.1.7", 80, "web");
  world.clock.now = {2026, 12, 31, 0, 0, 59};
  RaiseLog("out", "192.168.1.7", -5, "www.example.com", 2147483647, "");
  EXPECT_EQ(Saved(),
            " 2\r\n"
            "07/09/26 18:05\r\nin\r\n192.168.1.7\r\n80\r\n203.0.113.9\r\n4000\r\nweb\r\n"
            "12/31/26 00:00\r\nout\r\nwww.example.com\r\n2147483647\r\n192.168.1.7\r\n-5\r\n\r\n");
}

TEST_F(RouterLogStore, ReadsWhatItWroteToTheLastByte) {
  const std::string file = " 3\r\n" + Incoming(1) + Lines({"", "", "", "0", "", "-1", "x"}) + Incoming(3);
  OpenPage(file);
  EXPECT_EQ(List().RowCount(), 3u);
  EXPECT_EQ(Saved(), file);
}

TEST_F(RouterLogStore, PutsTheLinesIntoTheColumnsInTheirOrder) {
  OpenPage(" 1\r\n" + Incoming(80));
  EXPECT_THAT(Row(0), ElementsAre("07/09/26 08:05", "in", "192.168.1.7", "80", "203.0.113.9", "4000", "web"));
  EXPECT_THAT(List().SubItemKeys(),
              ElementsAre("Type", "Dest URL/IP", "Dest Port", "Source", "Src Port", "Misc."));
}

TEST_F(RouterLogStore, KeepsTextsOfEveryLength) {
  SelectRouter();
  OpenPage();
  page->Reset();
  std::string expected = " 40\r\n";
  for (int length = 0; length < 40; ++length) {
    const std::string type(static_cast<std::size_t>(length), 't');
    const std::string address(static_cast<std::size_t>(39 - length), 'a');
    const std::string miscellaneous(static_cast<std::size_t>(length * 10 + 1), 'm');
    RaiseLog(type, "s", length, address, length * 1000, miscellaneous);
    expected += Lines({"07/09/26 18:05", type, address, std::to_string(length * 1000), "s",
                       std::to_string(length), miscellaneous});
  }
  EXPECT_EQ(Saved(), expected);
  page.reset();
  OpenPage();
  EXPECT_EQ(Saved(), expected);
}

TEST_F(RouterLogStore, NumbersItsRowsFrom1AndNeverAgain) {
  SelectRouter();
  OpenPage(" 2\r\n" + Incoming(1) + Incoming(2));
  page->Reset();
  EXPECT_THAT(Keys(), ElementsAre("K1", "K2"));
  world.toolkit.answers = {ui::MessageResult::kYes};
  Clear().UserClick();
  RaiseLog("in", "", 0, "", 0, "");
  EXPECT_THAT(Keys(), ElementsAre("K3"));
}

TEST_F(RouterLogStore, ShowsOnlyTheExactTypeInInRed) {
  SelectRouter();
  OpenPage();
  page->Reset();
  for (const char* type : {"in", "IN", "In", " in", "in ", "out", ""}) RaiseLog(type, "s", 1, "d", 2, "m");
  for (std::size_t row = 0; row < List().RowCount(); ++row) {
    for (std::size_t cell = 0; cell < 7; ++cell) {
      EXPECT_EQ(List().CellColor(row, cell), row == 0 ? kRed : kNavy) << row << " " << cell;
    }
  }
}

TEST_F(RouterLogStore, ColoursTheRowsThatItReadsToo) {
  OpenPage(" 2\r\n" + Incoming(1) + Lines({"t", "out", "d", "1", "s", "2", "m"}));
  EXPECT_EQ(List().CellColor(0, 0), kRed);
  EXPECT_EQ(List().CellColor(0, 6), kRed);
  EXPECT_EQ(List().CellColor(1, 0), kNavy);
}

TEST_F(RouterLogStore, AllowsClearingOnceThereIsARow) {
  OpenPage();
  EXPECT_FALSE(Clear().Enabled());
  page.reset();
  OpenPage(" 1\r\n" + Incoming(1));
  EXPECT_TRUE(Clear().Enabled());
}

TEST_F(RouterLogStore, LoadsTheRowsThereAreWhenTheCountIsLarger) {
  OpenPage(" 5\r\n" + Incoming(1) + Incoming(2));
  EXPECT_THAT(Column(3), ElementsAre("1", "2"));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_TRUE(HasTraced());
}

TEST_F(RouterLogStore, NeverReadsTheLinesBehindTheCount) {
  OpenPage(" 1\r\n" + Incoming(1) + Incoming(2) + "rubbish");
  EXPECT_THAT(Column(3), ElementsAre("1"));
  EXPECT_THAT(world.debug.lines, IsEmpty());
}

TEST_F(RouterLogStore, DropsARowThatLacksALine) {
  for (int missing = 1; missing < 7; ++missing) {
    std::string file = " 2\r\n" + Incoming(1);
    const std::vector<std::string> cells{"t", "in", "d", "2", "s", "3", "m"};
    file += Lines({cells.begin(), cells.end() - missing});
    OpenPage(file);
    EXPECT_THAT(Column(3), ElementsAre("1")) << missing;
    page.reset();
  }
}

TEST_F(RouterLogStore, TakesALastLineWithoutItsEnd) {
  OpenPage(" 1\nt\nin\nd\n1\ns\n2\nm");
  EXPECT_THAT(Row(0), ElementsAre("t", "in", "d", "1", "s", "2", "m"));
  page.reset();
  OpenPage(" 1\r\nt\r\nin\r\nd\r\n1\r\ns\r\n2\r\n");
  EXPECT_THAT(Keys(), IsEmpty()) << "an empty last line needs its end to be there";
}

TEST_F(RouterLogStore, IsEmptyAtTheFirstStart) {
  OpenPage();
  EXPECT_THAT(Keys(), IsEmpty());
  EXPECT_TRUE(HasTraced());
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(RouterLogStore, IsEmptyForACountThatIsNone) {
  for (const auto count :
       {""sv, "\r\n"sv, "x\r\n"sv, "1x\r\n"sv, "5000000000\r\n"sv, "1e99\r\n"sv, "\0\r\n"sv}) {
    world.debug.lines.clear();
    OpenPage(std::string(count) + Incoming(1));
    EXPECT_THAT(Keys(), IsEmpty()) << count;
    EXPECT_TRUE(HasTraced()) << count;
    page.reset();
  }
}

TEST_F(RouterLogStore, IsEmptyForACountBelow1) {
  for (const char* count : {"0", " 0", "-1", "-2147483648"}) {
    OpenPage(count + std::string("\r\n") + Incoming(1));
    EXPECT_THAT(Keys(), IsEmpty()) << count;
    EXPECT_THAT(world.debug.lines, IsEmpty()) << count;
    page.reset();
  }
}

TEST_F(RouterLogStore, ReadsTheCountAsANumberIsRead) {
  for (const char* count : {"1", " 1 ", "+1", "1.4", "0.1e1"}) {
    OpenPage(count + std::string("\r\n") + Incoming(1) + Incoming(2));
    EXPECT_EQ(List().RowCount(), 1u) << count;
    page.reset();
  }
}

TEST_F(RouterLogStore, ReservesNothingForAHugeCount) {
  OpenPage("2147483647\r\n" + Incoming(1));
  EXPECT_EQ(List().RowCount(), 1u);
}

TEST_F(RouterLogStore, EndsAtAPortThatIsNoNumber) {
  for (const char* port : {"", "x", "80 http", "2147483648", "-2147483649"}) {
    for (const bool destination : {true, false}) {
      OpenPage(" 3\r\n" + Incoming(1) +
               Lines({"t", "in", "d", destination ? port : "2", "s", destination ? "2" : port, "m"}) +
               Incoming(3));
      EXPECT_THAT(Column(3), ElementsAre("1")) << port;
      page.reset();
    }
  }
}

TEST_F(RouterLogStore, HoldsPortsAsTheTextOfTheirNumber) {
  OpenPage(" 1\r\n" + Lines({"t", "in", "d", " 080.2 ", "s", "-0", "m"}));
  EXPECT_THAT(Row(0), ElementsAre("t", "in", "d", "80", "s", "0", "m"));
}

TEST_F(RouterLogStore, HoldsLinesOfMegabytesZeroBytesAnd8BitCharacters) {
  const std::string longText(3'000'000, 'x');
  const std::string oddText("a\0b\xE4\x1A", 5);
  const std::string file = " 2\r\n" + Lines({longText, "in", oddText, "1", longText, "2", longText}) +
                           Lines({"t", "out", oddText, "3", "s", "4", "m"});
  OpenPage(file);
  ASSERT_EQ(List().RowCount(), 2u);
  EXPECT_EQ(List().Text(0, 6), longText);
  EXPECT_EQ(List().Text(1, 2), oddText);
  EXPECT_EQ(Saved(), file);
}

TEST_F(RouterLogStore, TakesNumbersOfMegabytesAsItTakesShortOnes) {
  const std::string blanks(2'000'000, ' ');
  const std::string digits(2'000'000, '1');
  OpenPage(blanks + "2\r\n" + Lines({"t", "in", "d", blanks + "80" + blanks, "s", "1", "m"}) +
           Lines({"t", "in", "d", digits, "s", "1", "m"}));
  EXPECT_THAT(Column(3), ElementsAre("80"));
  EXPECT_TRUE(HasTraced());
  page.reset();
  OpenPage(digits + "\r\n" + Incoming(1));
  EXPECT_THAT(Keys(), IsEmpty());
  page.reset();
  OpenPage(digits);
  EXPECT_THAT(Keys(), IsEmpty());
}

TEST_F(RouterLogStore, IsEmptyWhenAFolderStandsInTheFilesPlaceAndSavesNothing) {
  world.folder.MakeFolder("RouterLog.dat");
  OpenPage();
  EXPECT_THAT(Keys(), IsEmpty());
  page->SaveContentsToDatabase();
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(RouterLogStore, EndsASaveThatCanNotBeginWithoutAWord) {
  g_Registry.reset();
  world.process.path = world.folder.PathOf("missing") + "/no/such/folder/Harbourline.exe";
  g_Registry = std::make_unique<CRegistry>();
  OpenPage();
  page->SaveContentsToDatabase();
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

#ifdef __linux__
TEST_F(RouterLogStore, KeepsTheOldFileWhenItMayNotBeWritten) {
  const std::string file = " 2\r\n" + Incoming(1) + Incoming(2);
  OpenPage(file);
  world.toolkit.answers = {ui::MessageResult::kYes};
  Clear().UserClick();
  {
    const support::WithoutRights rights(world.folder.PathOf("RouterLog.dat"),
                                        support::WithoutRights::To::kWrite);
    page->SaveContentsToDatabase();
  }
  EXPECT_EQ(world.folder.Read("RouterLog.dat"), file);
  EXPECT_THAT(world.debug.lines, ElementsAre("Error occured during saving of the log database."));
  EXPECT_EQ(Saved(), " 0\r\n");
}

TEST_F(RouterLogStore, LeavesAFileAloneThatItMayNeitherReadNorWrite) {
  const std::string file = " 1\r\n" + Incoming(1);
  world.folder.Write("RouterLog.dat", file);
  {
    const support::WithoutRights rights(world.folder.PathOf("RouterLog.dat"),
                                        support::WithoutRights::To::kReadAndWrite);
    OpenPage();
    EXPECT_THAT(Keys(), IsEmpty());
    page->SaveContentsToDatabase();
  }
  EXPECT_EQ(world.folder.Read("RouterLog.dat"), file);
}

TEST_F(RouterLogStore, SavesNothingIntoAFolderThatMayNotBeWritten) {
  SelectRouter();
  OpenPage();
  page->Reset();
  RaiseLog("in", "s", 1, "d", 2, "m");
  {
    const support::WithoutRights rights(world.folder.Path(), support::WithoutRights::To::kWrite);
    page->SaveContentsToDatabase();
  }
  EXPECT_FALSE(world.folder.Contains("RouterLog.dat"));
  EXPECT_EQ(List().RowCount(), 1u);
}

TEST_F(RouterLogStore, KeepsItsRowsWhenTheDiskIsFullAndSavesThemLater) {
  const std::string file = " 3\r\n" + Incoming(1) + Incoming(2) + Lines({"t", "in", "d", "3", "s", "4", "m"});
  OpenPage(file);
  world.folder.Write("RouterLog.dat", "what was there");
  {
    const support::FullDisk disk(10);
    page->SaveContentsToDatabase();
  }
  EXPECT_THAT(world.debug.lines, ElementsAre("Error occured during saving of the log database."));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_EQ(List().RowCount(), 3u);
  EXPECT_EQ(world.folder.Read("RouterLog.dat"), "what was there") << "a full disk leaves the old file whole";
  EXPECT_EQ(world.folder.Files(), std::vector<std::string>{"RouterLog.dat"});
  EXPECT_EQ(Saved(), file);
}

TEST_F(RouterLogStore, WritesItsFileDirectlyWhereTheFolderTakesNoOther) {
  OpenPage(" 1\r\n" + Incoming(1));
  world.toolkit.answers = {ui::MessageResult::kYes};
  Clear().UserClick();
  {
    const std::string file = world.folder.PathOf("RouterLog.dat");
    const support::WithoutRights rights(std::filesystem::path(file).parent_path(),
                                        support::WithoutRights::To::kWrite, file);
    page->SaveContentsToDatabase();
  }
  EXPECT_EQ(world.folder.Read("RouterLog.dat"), " 0\r\n");
}
#endif

TEST_F(RouterLogStore, ReplacesALongerFile) {
  OpenPage(" 1\r\n" + Incoming(1) + std::string(100'000, 'x'));
  EXPECT_EQ(Saved(), " 1\r\n" + Incoming(1));
}

TEST_F(RouterLogStore, SavesTheRowsInTheOrderThatTheListHas) {
  OpenPage(" 2\r\n" + Incoming(2) + Incoming(1));
  List().UserColumnClick(4);
  EXPECT_EQ(Saved(), " 2\r\n" + Incoming(1) + Incoming(2));
}

TEST_F(RouterLogStore, LosesClearedRowsOnDiskOnlyAtTheNextSave) {
  const std::string file = " 1\r\n" + Incoming(1);
  OpenPage(file);
  world.toolkit.answers = {ui::MessageResult::kYes};
  Clear().UserClick();
  EXPECT_EQ(world.folder.Read("RouterLog.dat"), file);
  EXPECT_EQ(Saved(), " 0\r\n");
}

TEST_F(RouterLogStore, SavesWhenThePageEnds) {
  SelectRouter();
  OpenPage();
  page->Reset();
  window.Load();
  RaiseLog("in", "s", 1, "d", 2, "m");
  EXPECT_FALSE(world.folder.Contains("RouterLog.dat"));
  window.Unload();
  EXPECT_EQ(world.folder.Read("RouterLog.dat"), " 1\r\n07/09/26 18:05\r\nin\r\nd\r\n2\r\ns\r\n1\r\nm\r\n");
}

TEST_F(RouterLogStore, NamesAnUnnamedRowsDestinationWhenItIsLoaded) {
  AddProfile("Game", true, {{5000, 5010}});
  g_Registry->FilterOutProfiles = true;
  SelectRouter()->Do("IServer_GetPortForwardingDescription", [](std::span<platform::Argument> arguments) {
    return base::Variant(base::ToInt32(arguments[0].value) == 6000 ? "by plug-in" : "");
  });
  world.folder.Write("Ports.dat", "7000\r\nby file\r\n");
  std::string file = " 5\r\n";
  for (const char* port : {"5005", "6000", "7000", "80", "22"}) {
    file += Lines({"t", "out", "d", port, "s", "5005", ""});
  }
  OpenPage(file);
  EXPECT_THAT(Column(6), ElementsAre("Game", "by plug-in", "by file", "http", ""));
}

TEST_F(RouterLogStore, KeepsAStoredDescriptionEvenIfItIsOutOfDate) {
  AddProfile("Game", true, {{1, 65535}});
  OpenPage(" 2\r\n" + Incoming(80) + Lines({"t", "in", "d", "80", "s", "1", " "}));
  EXPECT_THAT(Column(6), ElementsAre("web", " "));
}

TEST_F(RouterLogStore, LeavesARowUnnamedForWhichThePlugInFailsAndLosesNone) {
  SelectRouter()->Fail("IServer_GetPortForwardingDescription", 1000, "no answer");
  const std::string file = " 3\r\n" + Incoming(1) + Lines({"t", "in", "d", "80", "s", "3", ""}) + Incoming(3);
  OpenPage(file);
  EXPECT_THAT(Column(3), ElementsAre("1", "80", "3"));
  EXPECT_THAT(Column(6), ElementsAre("web", "", "web")) << "the list of well-known ports is not asked either";
  EXPECT_THAT(world.debug.lines, ElementsAre("Port 80 isn't named: no answer (1000)"));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  EXPECT_EQ(Saved(), file);
}

TEST_F(RouterLogStore, ShowsARowAtOnceAndScrollsToIt) {
  SelectRouter();
  OpenPage();
  page->Reset();
  support::WatchedPeers peers(window);
  peers.toolkit.TakeRows(List());
  RaiseLog("in", "s", 1, "d", 2, "m");
  EXPECT_THAT(peers.toolkit.TakeRows(List()),
              ElementsAre("added 0 1", "see 0", "fit 0 header", "fit 1 header", "fit 2 header",
                          "fit 3 header", "fit 4 header", "fit 5 header", "fit 6 header"));
}

TEST_F(RouterLogStore, LoadsAndSavesManyRows) {
  std::string file = " 20000\r\n";
  for (int row = 0; row < 20'000; ++row) file += Incoming(row);
  OpenPage(file);
  EXPECT_EQ(List().RowCount(), 20'000u);
  EXPECT_EQ(List().Key(19'999), "K20000");
  EXPECT_EQ(List().Find("K777"), 776u);
  EXPECT_EQ(Saved(), file);
}

}  // namespace
