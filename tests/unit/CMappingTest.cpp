#include "model/CMapping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/Conversions.h"
#include "base/Error.h"
#include "model/CMapProfile.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::int32_t KeyNumber(const std::string& sKey) {
  EXPECT_TRUE(sKey.starts_with("Map_")) << sKey;
  return base::ToInt32(std::string_view(sKey).substr(4));
}

class CMappingTest : public testing::Test {
 protected:
  CMappingTest() {
    mapping.ErrorOccured.Connect([this](const std::string& message) { errors.push_back(message); });
  }

  void Load() { mapping.Load("Harbourline", "RouterSection", "M_"); }
  std::string FailureOfLoad() {
    try {
      Load();
    } catch (const base::Error& error) {
      return error.Text();
    }
    return "";
  }
  /// Reads `line` as the mapping's header with `bytes` as the rest of the file, and gives what is left of
  /// that.
  std::string Read(const std::string& line, const std::string& bytes, bool expected = true) {
    world.folder.Write("in", bytes);
    base::TextFileReader file(world.folder.PathOf("in"));
    EXPECT_EQ(mapping.ReadXML(file, line), expected);
    std::string rest;
    while (!file.AtEnd()) rest.append(file.ReadLine()).append("|");
    return rest;
  }
  static std::string Text(const CMapping& what) {
    return what.sDescription() + " " + base::ToText(what.lBeginPort()) + "-" + base::ToText(what.lEndPort()) +
           " " + base::ToText(what.Protocal()) + " " + base::ToText(what.iForwardIPAddress());
  }

  support::World world;
  CMapping mapping;
  std::vector<std::string> errors;
};

TEST_F(CMappingTest, StartsEmptyWithNeitherProtocol) {
  EXPECT_EQ(Text(mapping), " 0-0 0 0");
  EXPECT_EQ(mapping.sType(), "");
  EXPECT_EQ(mapping.sXMLTag(), "Mapping");
}

TEST_F(CMappingTest, HasAProtocolCodeAndItsText) {
  mapping.Protocal(0);
  EXPECT_EQ(mapping.sType(), "TCP");
  EXPECT_EQ(mapping.Protocal(), 0);
  mapping.Protocal(1);
  EXPECT_EQ(mapping.sType(), "UDP");
  EXPECT_EQ(mapping.Protocal(), 1);
  mapping.Protocal(2);
  EXPECT_EQ(mapping.sType(), "TCP+UDP");
  EXPECT_EQ(mapping.Protocal(), 2);
}

TEST_F(CMappingTest, ProtocalWrittenWith3OrMinus1ChangesNothing) {
  mapping.Protocal(1);
  mapping.Protocal(3);
  mapping.Protocal(-1);
  EXPECT_EQ(mapping.Protocal(), 1);
}

TEST_F(CMappingTest, LimitsNeitherPortsNorTheirOrder) {
  mapping.lBeginPort(2147483647);
  mapping.lEndPort(-5);
  EXPECT_EQ(mapping.lBeginPort(), 2147483647);
  EXPECT_EQ(mapping.lEndPort(), -5);
}

TEST_F(CMappingTest, TwoMappingsHaveKeysThatDifferByOneAndAProfileBetweenTakesTheNumberBetween) {
  const CMapping first;
  const CMapping second;
  EXPECT_EQ(KeyNumber(second.sKey()), KeyNumber(first.sKey()) + 1);
  const CMapProfile profile;
  const CMapping third;
  EXPECT_EQ(KeyNumber(profile.sKey()), KeyNumber(second.sKey()) + 1);
  EXPECT_EQ(KeyNumber(third.sKey()), KeyNumber(second.sKey()) + 2);
}

TEST_F(CMappingTest, SavesFiveValuesInOrder) {
  mapping.sDescription("Voice");
  mapping.lBeginPort(27015);
  mapping.lEndPort(27030);
  mapping.Protocal(1);
  mapping.iForwardIPAddress(-1);
  mapping.Save("Harbourline", "RouterSection", "MP_1_MAP_2_");
  EXPECT_THAT(world.journal, ElementsAre("MP_1_MAP_2_Description=Voice", "MP_1_MAP_2_BeginPort=27015",
                                         "MP_1_MAP_2_EndPort=27030", "MP_1_MAP_2_Protocal=1",
                                         "MP_1_MAP_2_ForwardIPAddress=-1"));
}

TEST_F(CMappingTest, LoadsAsBothProtocolsToThisComputerOnPort0WhenNothingIsStored) {
  Load();
  EXPECT_EQ(Text(mapping), " 0-0 2 -1");
}

TEST_F(CMappingTest, AMappingThatWasSavedWithThisComputerAsTargetLoadsSo) {
  mapping.iForwardIPAddress(-1);
  mapping.Save("Harbourline", "RouterSection", "M_");
  mapping.iForwardIPAddress(9);
  Load();
  EXPECT_EQ(mapping.iForwardIPAddress(), -1);
}

TEST_F(CMappingTest, LoadsWhatWasSaved) {
  mapping.sDescription("J\xE4ger \"x\"");
  mapping.lBeginPort(70000);
  mapping.lEndPort(-1);
  mapping.Protocal(0);
  mapping.iForwardIPAddress(254);
  mapping.Save("Harbourline", "RouterSection", "M_");
  CMapping loaded;
  loaded.Load("Harbourline", "RouterSection", "M_");
  EXPECT_EQ(Text(loaded), Text(mapping));
  EXPECT_NE(loaded.sKey(), mapping.sKey());
}

TEST_F(CMappingTest, KeepsTheProtocolsWhenAnUnknownCodeIsStored) {
  world.settings.Values() = {{"M_Protocal", "7"}};
  mapping.Protocal(1);
  Load();
  EXPECT_EQ(mapping.Protocal(), 1);
}

TEST_F(CMappingTest, FailsToLoadANumberThatIsNone) {
  for (const char* name : {"BeginPort", "EndPort", "Protocal", "ForwardIPAddress"}) {
    for (const char* text : {"", "abc", "\xE4"}) {
      world.settings.Values() = {{std::string("M_") + name, text}};
      EXPECT_THAT(FailureOfLoad(),
                  HasSubstr(std::string("\"M_") + name + "\" holds \"" + text + "\", which is not"));
    }
  }
}

TEST_F(CMappingTest, FailsToLoadANumberThatIsTooLargeForItsWidth) {
  for (const char* name : {"BeginPort", "EndPort", "Protocal"}) {
    world.settings.Values() = {{std::string("M_") + name, "2147483647"}};
    EXPECT_EQ(FailureOfLoad(), "");
    world.settings.Values() = {{std::string("M_") + name, "2147483648"}};
    EXPECT_THAT(FailureOfLoad(), HasSubstr(name));
  }
  world.settings.Values() = {{"M_ForwardIPAddress", "32767"}};
  EXPECT_EQ(FailureOfLoad(), "");
  world.settings.Values() = {{"M_ForwardIPAddress", "32768"}};
  EXPECT_THAT(FailureOfLoad(), HasSubstr("ForwardIPAddress"));
}

TEST_F(CMappingTest, WritesAnElementOfTwoLines) {
  mapping.sDescription("Voice");
  mapping.lBeginPort(3784);
  mapping.lEndPort(3784);
  mapping.Protocal(2);
  mapping.iForwardIPAddress(12);
  base::TextFileWriter file(world.folder.PathOf("out"));
  mapping.WriteXML(file);
  file.Close();
  EXPECT_EQ(world.folder.Read("out"),
            "<Mapping Description=\"Voice\" BeginPort=3784 EndPort=3784 Protocal=2 ForwardIPAddress=12>\r\n"
            "</Mapping>\r\n");
}

TEST_F(CMappingTest, ReadsAnElementOfTwoLinesAndNoMore) {
  EXPECT_EQ(
      Read("<Mapping Description=\"Game\" BeginPort=27015 EndPort=27030 Protocal=1 ForwardIPAddress=-1>",
           "</Mapping>\r\n<Mapping>\r\n"),
      "<Mapping>|");
  EXPECT_EQ(Text(mapping), "Game 27015-27030 1 -1");
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMappingTest, ReadsNothingFromTheFileWhenTheLineIsNoHeader) {
  EXPECT_EQ(Read("<Other>", "</Mapping>\r\n", false), "</Mapping>|");
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMappingTest, AHeaderLineWithoutAFollowingClosingLineStillYieldsAMapping) {
  EXPECT_EQ(Read("<Mapping BeginPort=80>", "<Mapping BeginPort=81>\r\n</Mapping>\r\n"), "</Mapping>|");
  EXPECT_EQ(mapping.lBeginPort(), 80);
  EXPECT_THAT(errors, ElementsAre("Some portions of the file could not be parsed."));
}

TEST_F(CMappingTest, AHeaderLineAtTheEndOfTheFileStillYieldsAMapping) {
  Read("<Mapping BeginPort=80>", "");
  EXPECT_EQ(mapping.lBeginPort(), 80);
  EXPECT_THAT(errors, ElementsAre("Some portions of the file could not be parsed."));
}

TEST_F(CMappingTest, RelaysTheErrorOfALineThatCannotBeParsed) {
  Read("<Mapping BeginPort=80 EndPort=x>", "</Mapping>\r\n");
  EXPECT_THAT(errors, ElementsAre("Unable to parse file"));
  EXPECT_EQ(Text(mapping), " 80-0 0 0");
}

TEST_F(CMappingTest, RefusesAForwardAddressBeyond16Bits) {
  Read("<Mapping BeginPort=80 ForwardIPAddress=40000>", "</Mapping>\r\n");
  EXPECT_THAT(errors, ElementsAre("Unable to parse file"));
  EXPECT_EQ(mapping.iForwardIPAddress(), 0);
}

TEST_F(CMappingTest, AcceptsANumberInQuotes) {
  Read("<Mapping BeginPort=\"80\" Description=12>", "</Mapping>\r\n");
  EXPECT_EQ(Text(mapping), "12 80-0 0 0");
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMappingTest, IgnoresAnAttributeThatItDoesNotKnow) {
  Read("<Mapping Colour=\"red\" beginport=5 BeginPort=80>", "</Mapping>\r\n");
  EXPECT_EQ(mapping.lBeginPort(), 80);
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMappingTest, GivesItsValuesInTheirTypes) {
  mapping.sDescription("d");
  mapping.lBeginPort(1);
  mapping.lEndPort(2);
  mapping.Protocal(1);
  mapping.iForwardIPAddress(-1);
  const auto value = [this](std::string_view name) {
    base::Variant given = "untouched";
    mapping.m_XML_GetValue(name, given);
    return support::Describe(given);
  };
  EXPECT_EQ(value("Description"), "\"d\"");
  EXPECT_EQ(value("BeginPort"), "1:32");
  EXPECT_EQ(value("EndPort"), "2:32");
  EXPECT_EQ(value("Protocal"), "1:32");
  EXPECT_EQ(value("ForwardIPAddress"), "-1:16");
  EXPECT_EQ(value("description"), "\"untouched\"");
  EXPECT_EQ(value("Protocol"), "\"untouched\"");
}

TEST_F(CMappingTest, DuplicateGivesEqualValuesAndADifferentKey) {
  mapping.sDescription("d");
  mapping.lBeginPort(1);
  mapping.lEndPort(2);
  mapping.Protocal(2);
  mapping.iForwardIPAddress(9);
  const auto copy = mapping.Duplicate();
  EXPECT_EQ(Text(*copy), Text(mapping));
  EXPECT_NE(copy->sKey(), mapping.sKey());
}

TEST_F(CMappingTest, DuplicateOfAMappingWithNeitherProtocolIsTcp) {
  EXPECT_EQ(mapping.sType(), "");
  EXPECT_EQ(mapping.Duplicate()->sType(), "TCP");
}

}  // namespace
