#include "shell/modCommon.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/Conversions.h"
#include "base/Error.h"
#include "support/World.h"

namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

TEST(modCommon, JoinsTheVersionsPartsByPoints) {
  const std::string version = modCommon::GetVersionString();
  const std::string beginning =
      base::ToText(modCommon::MajorVersion()) + "." + base::ToText(modCommon::MinorVersion()) + ".";
  ASSERT_TRUE(version.starts_with(beginning)) << version;
  EXPECT_TRUE(base::IsNumeric(version.substr(beginning.size()))) << version;
}

TEST(modCommon, JoinsAFolderAndAFile) {
  support::World world;
  EXPECT_EQ(modCommon::MakeFullPath("C:\\Folder", "a.dat"), "C:\\Folder\\a.dat");
  EXPECT_EQ(modCommon::MakeFullPath("C:\\", "a.dat"), "C:\\a.dat");
  EXPECT_EQ(modCommon::MakeFullPath("", "a.dat"), "\\a.dat");
  EXPECT_EQ(modCommon::MakeFullPath("C:\\Folder", ""), "C:\\Folder\\");
}

TEST(modCommon, ABackslashThatIsTheSecondByteOfACharacterEndsNoFolder) {
  support::World world;
  world.codePage.leadBytes = "\x83";
  EXPECT_EQ(modCommon::MakeFullPath("C:\\\x83\\", "a.dat"), "C:\\\x83\\\\a.dat");
  EXPECT_EQ(modCommon::MakeFullPath("C:\\\x83\\\\", "a.dat"), "C:\\\x83\\\\a.dat");
  EXPECT_EQ(modCommon::MakeFullPath("C:\\\x83\x83\\", "a.dat"), "C:\\\x83\x83\\a.dat");
}

TEST(modCommon, KeepsTheHelpFile) {
  modCommon::HelpFile("C:\\Help.hlp");
  EXPECT_EQ(modCommon::HelpFile(), "C:\\Help.hlp");
}

TEST(modCommon, MakesKeysThatCountUp) {
  modCommon::UniqueKeyCounter counter;
  EXPECT_EQ(counter.Next("Map_"), "Map_0");
  EXPECT_EQ(counter.Next("Map_"), "Map_1");
  EXPECT_EQ(counter.Next("Other"), "Other2");
}

TEST(modCommon, RestartsTheCountInTheCallWhoseNextNumberWouldOverflow) {
  modCommon::UniqueKeyCounter counter(kMost - 1);
  EXPECT_EQ(counter.Next("K"), "K2147483646");
  EXPECT_EQ(counter.Next("K"), "K0");
  EXPECT_EQ(counter.Next("K"), "K1");
}

TEST(modCommon, CountsKeysOfAllPrefixesInOneSequence) {
  const std::string first = modCommon::GetUniqueKey("A");
  const std::string second = modCommon::GetUniqueKey("B");
  EXPECT_EQ(base::ToInt32(std::string_view(second).substr(1)),
            base::ToInt32(std::string_view(first).substr(1)) + 1);
}

TEST(modCommon, TakesTheLastOctetOfAnAddress) {
  EXPECT_EQ(modCommon::GetLastOctet("192.168.1.7"), 7);
  EXPECT_EQ(modCommon::GetLastOctet("10.0.0.254"), 254);
  EXPECT_EQ(modCommon::GetLastOctet("192.168.1.7 and more"), 7);
  EXPECT_EQ(modCommon::GetLastOctet("192.168.1.x"), 0);
  EXPECT_EQ(modCommon::GetLastOctet("1.2.3.4.5"), 4);
  EXPECT_EQ(modCommon::GetLastOctet("...32767"), 32767);
}

TEST(modCommon, TakesNoOctetOfATextWithoutThreePoints) {
  EXPECT_EQ(modCommon::GetLastOctet(""), 0);
  EXPECT_EQ(modCommon::GetLastOctet("7"), 0);
  EXPECT_EQ(modCommon::GetLastOctet("192.168.7"), 0);
  EXPECT_EQ(modCommon::GetLastOctet("192.168.1."), 0);
}

TEST(modCommon, FailsForALastOctetBeyond16Bits) {
  try {
    modCommon::GetLastOctet("1.2.3.40000");
    FAIL();
  } catch (const base::Error& error) {
    EXPECT_EQ(error.Number(), base::ErrorNumber::kOverflow);
  }
}

TEST(modCommon, AsksTheMachineForTheConnection) {
  support::World world;
  world.network.flags = 18;
  std::int32_t lFlags = 0;
  EXPECT_TRUE(modCommon::IsConnectedToInternet(lFlags));
  EXPECT_EQ(lFlags, 18);
  EXPECT_TRUE(modCommon::IsConnected());
  world.network.connected = false;
  EXPECT_FALSE(modCommon::IsConnectedToInternet(lFlags));
  EXPECT_FALSE(modCommon::IsConnected());
}

TEST(modCommon, HasTheColoursOfTheShell) {
  EXPECT_EQ(modCommon::ColorTitle(), ui::Rgb(51, 153, 102));
  EXPECT_EQ(modCommon::ColorHelpText(), ui::Rgb(0, 128, 128));
  EXPECT_EQ(modCommon::ColorDarkRed(), 128);
  EXPECT_EQ(modCommon::ColorNavy(), 128 * 65536);
  EXPECT_EQ(modCommon::ColorBackground(), 253 + 235 * 256 + 200 * 65536);
}

}  // namespace
