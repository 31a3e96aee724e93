#include "activitylog/PortDefinitions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "activitylog/WellKnownPorts.h"
#include "base/Conversions.h"
#include "base/Error.h"
#include "support/TemporaryFolder.h"
#include "support/WithoutRights.h"

namespace {

class PortDefinitionsFile : public testing::Test {
 protected:
  void Read(std::string_view bytes) {
    folder.Write("Ports.dat", bytes);
    ReadPortDefinitions(folder.PathOf("Ports.dat"), definitions);
  }
  std::int32_t FailureOfReading() {
    try {
      ReadPortDefinitions(folder.PathOf("Ports.dat"), definitions);
      return 0;
    } catch (const base::Error& error) {
      return error.Number();
    }
  }
  /// "-" for a port that isn't defined.
  std::string Of(std::int32_t lPort) const {
    const CPortDefinition* definition = definitions.TryGet(base::ToText(lPort));
    if (!definition) return "-";
    EXPECT_EQ(definition->lPort, lPort);
    return definition->sDescription;
  }

  support::TemporaryFolder folder;
  PortDefinitions definitions;
};

TEST_F(PortDefinitionsFile, HoldsPairsOfAPortAndItsDescription) {
  Read("80\r\nmy web\r\n8080\r\nmy proxy\r\n");
  EXPECT_EQ(definitions.Count(), 2u);
  EXPECT_EQ(Of(80), "my web");
  EXPECT_EQ(Of(8080), "my proxy");
}

TEST_F(PortDefinitionsFile, MayEndItsLinesByALineFeedAloneAndLackTheLastEnd) {
  Read("80\nmy web\n8080\nmy proxy");
  EXPECT_EQ(Of(80), "my web");
  EXPECT_EQ(Of(8080), "my proxy");
}

TEST_F(PortDefinitionsFile, LosesALastPortWithoutADescription) {
  Read("80\r\nmy web\r\n8080\r\n");
  EXPECT_EQ(definitions.Count(), 1u);
  EXPECT_EQ(Of(8080), "-");
}

TEST_F(PortDefinitionsFile, DefinesNothingWithOneLineAlone) {
  for (const std::string_view bytes : {"80", "80\r\n", "80\n", "\n", "\r"}) {
    Read(bytes);
    EXPECT_TRUE(definitions.IsEmpty()) << bytes;
  }
}

TEST_F(PortDefinitionsFile, KeepsALastPortWhoseDescriptionIsAnEmptyLine) {
  Read("80\r\n\r\n");
  EXPECT_EQ(Of(80), "");
}

TEST_F(PortDefinitionsFile, LetsTheFirstOfTwoPairsOfOnePortStand) {
  Read("80\r\nfirst\r\n80\r\nsecond\r\n080\r\nthird\r\n81\r\nother\r\n");
  EXPECT_EQ(definitions.Count(), 2u);
  EXPECT_EQ(Of(80), "first");
  EXPECT_EQ(Of(81), "other");
}

TEST_F(PortDefinitionsFile, TakesTheDigitsThatALineBeginsWith) {
  Read("80/tcp and more\r\nweb\r\n  21 ftp\r\nfiles\r\n22.6x\r\nrounded\r\n-5\r\nnegative\r\n");
  EXPECT_EQ(Of(80), "web");
  EXPECT_EQ(Of(21), "files");
  EXPECT_EQ(Of(23), "rounded");
  EXPECT_EQ(Of(-5), "negative");
}

TEST_F(PortDefinitionsFile, TakesALineWithoutANumberForPort0) {
  Read("web\r\nnone\r\n\r\nempty\r\n");
  EXPECT_EQ(definitions.Count(), 1u);
  EXPECT_EQ(Of(0), "none");
}

TEST_F(PortDefinitionsFile, LeavesOutAPortThatFitsNo32Bits) {
  Read(
      "2147483647\r\nlargest\r\n2147483648\r\ntoo large\r\n-2147483649\r\ntoo "
      "small\r\n1e400\r\nhuge\r\n80\r\nweb\r\n");
  EXPECT_EQ(definitions.Count(), 2u);
  EXPECT_EQ(Of(2147483647), "largest");
  EXPECT_EQ(Of(80), "web");
}

TEST_F(PortDefinitionsFile, MayBeEmpty) {
  Read("");
  EXPECT_TRUE(definitions.IsEmpty());
}

TEST_F(PortDefinitionsFile, MayHoldZeroBytesAnd8BitCharacters) {
  using namespace std::string_view_literals;
  Read("80\0x\r\nwe\0b \xE4\r\n"sv);
  EXPECT_EQ(Of(80), "we\0b \xE4"sv);
}

TEST_F(PortDefinitionsFile, MayHoldLinesOfMegabytes) {
  const std::string digits(2'000'000, '1');
  const std::string text(3'000'000, 'x');
  Read("80" + std::string(1'000'000, ' ') + "\r\n" + text + "\r\n" + digits +
       "\r\ntoo large\r\n81\r\nnext\r\n");
  EXPECT_EQ(definitions.Count(), 2u);
  EXPECT_EQ(Of(80), text);
  EXPECT_EQ(Of(81), "next");
}

TEST_F(PortDefinitionsFile, IsAFailureWhenItIsMissing) {
  EXPECT_EQ(FailureOfReading(), base::ErrorNumber::kFileNotFound);
  EXPECT_TRUE(definitions.IsEmpty());
}

TEST_F(PortDefinitionsFile, IsAFailureWhenAFolderStandsInItsPlace) {
  folder.MakeFolder("Ports.dat");
  EXPECT_EQ(FailureOfReading(), base::ErrorNumber::kPathAccess);
  EXPECT_TRUE(definitions.IsEmpty());
}

#ifdef __linux__
TEST_F(PortDefinitionsFile, IsAFailureWhenItMayNotBeRead) {
  folder.Write("Ports.dat", "80\r\nweb\r\n");
  const support::WithoutRights rights(folder.PathOf("Ports.dat"), support::WithoutRights::To::kReadAndWrite);
  EXPECT_EQ(FailureOfReading(), base::ErrorNumber::kPathAccess);
  EXPECT_TRUE(definitions.IsEmpty());
}

TEST_F(PortDefinitionsFile, IsReadWhereNothingMayBeWritten) {
  folder.Write("Ports.dat", "80\r\nweb\r\n");
  const support::WithoutRights rights(folder.Path(), support::WithoutRights::To::kWrite);
  EXPECT_EQ(FailureOfReading(), 0);
  EXPECT_EQ(Of(80), "web");
}
#endif

TEST_F(PortDefinitionsFile, MayDefineManyPorts) {
  std::string bytes;
  for (int port = 0; port < 70'000; ++port) {
    bytes += std::to_string(port % 65'536) + "\r\nservice " + std::to_string(port) + "\r\n";
  }
  Read(bytes);
  EXPECT_EQ(definitions.Count(), 65'536u);
  EXPECT_EQ(Of(0), "service 0");
  EXPECT_EQ(Of(65'535), "service 65535");
}

TEST(WellKnownPortsTable, Has92Rows) {
  EXPECT_EQ(WellKnownPorts().size(), 92u);
}

TEST(WellKnownPortsTable, FindsEachOfItsRows) {
  for (const WellKnownPort& port : WellKnownPorts()) {
    EXPECT_EQ(WellKnownPortDescription(port.lPort), port.sDescription);
    EXPECT_FALSE(port.sDescription.empty());
  }
}

TEST(WellKnownPortsTable, SpellsTheNamesAsTheyStand) {
  EXPECT_EQ(WellKnownPortDescription(7), "echo");
  EXPECT_EQ(WellKnownPortDescription(80), "http");
  EXPECT_EQ(WellKnownPortDescription(115), "ftp");
  EXPECT_EQ(WellKnownPortDescription(117), "Path");
  EXPECT_EQ(WellKnownPortDescription(144), "NeWS");
  EXPECT_EQ(WellKnownPortDescription(170), "Print-srv");
  EXPECT_EQ(WellKnownPortDescription(315), "Load");
  EXPECT_EQ(WellKnownPortDescription(512), "Exec/biff");
  EXPECT_EQ(WellKnownPortDescription(514), "Shell");
  EXPECT_EQ(WellKnownPortDescription(515), "Printer");
  EXPECT_EQ(WellKnownPortDescription(601), "maitrd");
  EXPECT_EQ(WellKnownPortDescription(751), "kerberos_master");
  EXPECT_EQ(WellKnownPortDescription(1080), "SOCKS Proxy");
  EXPECT_EQ(WellKnownPortDescription(1359), "FTSRV");
  EXPECT_EQ(WellKnownPortDescription(1434), "MS SQL Monitor");
}

TEST(WellKnownPortsTable, KnowsNoOtherPort) {
  for (const std::int32_t port : {22, 3389, 0, -1, 6, 8, 1435, 65'535, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(WellKnownPortDescription(port), "") << port;
  }
}

}  // namespace
