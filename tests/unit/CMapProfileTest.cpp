#include "model/CMapProfile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/Conversions.h"
#include "base/Error.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::shared_ptr<CMapping> MakeMapping(const std::string& sDescription, std::int32_t lPort) {
  auto mapping = std::make_shared<CMapping>();
  mapping->sDescription(sDescription);
  mapping->lBeginPort(lPort);
  mapping->lEndPort(lPort);
  mapping->Protocal(1);
  mapping->iForwardIPAddress(-1);
  return mapping;
}

std::vector<std::string> Descriptions(const CMapProfile& profile) {
  std::vector<std::string> descriptions;
  for (const auto& mapping : profile.ccMappings()) descriptions.push_back(mapping->sDescription());
  return descriptions;
}

class CMapProfileTest : public testing::Test {
 protected:
  CMapProfileTest() {
    profile.ErrorOccured.Connect([this](const std::string& message) { errors.push_back(message); });
  }

  template <typename Action>
  static base::Error FailureOf(Action action) {
    try {
      action();
    } catch (const base::Error& error) {
      return error;
    }
    return base::Error(0, "");
  }
  void Load() { profile.Load("Harbourline", "RouterSection", "MP_1_"); }
  /// Reads `line` as the profile's header with `bytes` as the rest of the file, and gives what is left of
  /// that.
  std::string Read(const std::string& line, const std::string& bytes, bool expected = true) {
    world.folder.Write("in", bytes);
    base::TextFileReader file(world.folder.PathOf("in"));
    EXPECT_EQ(profile.ReadXML(file, line), expected);
    std::string rest;
    while (!file.AtEnd()) rest.append(file.ReadLine()).append("|");
    return rest;
  }

  support::World world;
  CMapProfile profile;
  std::vector<std::string> errors;
};

TEST_F(CMapProfileTest, StartsEmptyWithAllBooleansFalse) {
  EXPECT_EQ(profile.sName + profile.sDescription + profile.sWindowTitle + profile.sWindowClass, "");
  EXPECT_FALSE(profile.bAutoActivate || profile.bEnabled || profile.bClear || profile.bSet);
  EXPECT_TRUE(profile.ccMappings().IsEmpty());
}

TEST_F(CMapProfileTest, AnswersATagThatIsNotTheOneOfTheFile) {
  EXPECT_EQ(profile.sXMLTag(), "Profile");
}

TEST_F(CMapProfileTest, KeepsMappingsInTheOrderOfAddingByTheirKeys) {
  const auto first = MakeMapping("first", 1);
  const auto second = MakeMapping("second", 2);
  profile.AddMapping(second);
  profile.AddMapping(first);
  EXPECT_THAT(Descriptions(profile), ElementsAre("second", "first"));
  EXPECT_EQ(profile.GetMapping(first->sKey()), first);
  profile.RemoveMapping(second->sKey());
  EXPECT_THAT(Descriptions(profile), ElementsAre("first"));
}

TEST_F(CMapProfileTest, FailsForAnUnknownMappingKey) {
  EXPECT_EQ(FailureOf([&] { profile.GetMapping("Map_x"); }).Number(), base::ErrorNumber::kKeyUnknown);
  EXPECT_EQ(FailureOf([&] { profile.RemoveMapping("Map_x"); }).Number(), base::ErrorNumber::kKeyUnknown);
}

TEST_F(CMapProfileTest, RefusesTheSameMappingTwice) {
  const auto mapping = MakeMapping("m", 1);
  profile.AddMapping(mapping);
  EXPECT_EQ(FailureOf([&] { profile.AddMapping(mapping); }).Number(), base::ErrorNumber::kKeyTaken);
  EXPECT_EQ(profile.ccMappings().Count(), 1u);
}

TEST_F(CMapProfileTest, SavesItsValuesInOrderWithTheMappingsInBetween) {
  profile.sName = "Game server";
  profile.sDescription = "Ports for the game";
  profile.sWindowTitle = "Game";
  profile.sWindowClass = "GameClass";
  profile.bEnabled = true;
  profile.AddMapping(MakeMapping("Game", 1));
  profile.AddMapping(MakeMapping("Voice", 2));
  profile.Save("Harbourline", "RouterSection", "MP_1_");
  EXPECT_THAT(world.journal,
              ElementsAre("MP_1_Description=Ports for the game", "MP_1_Name=Game server", "MP_1_MapCount=2",
                          "MP_1_MAP_1_Description=Game", "MP_1_MAP_1_BeginPort=1", "MP_1_MAP_1_EndPort=1",
                          "MP_1_MAP_1_Protocal=1", "MP_1_MAP_1_ForwardIPAddress=-1",
                          "MP_1_MAP_2_Description=Voice", "MP_1_MAP_2_BeginPort=2", "MP_1_MAP_2_EndPort=2",
                          "MP_1_MAP_2_Protocal=1", "MP_1_MAP_2_ForwardIPAddress=-1", "MP_1_WindowTitle=Game",
                          "MP_1_WindowClass=GameClass", "MP_1_AutoActivate=False", "MP_1_Enabled=True"));
}

TEST_F(CMapProfileTest, LoadsWhatWasSavedButNotTheMarks) {
  profile.sName = "N\xE4me";
  profile.sDescription = "D";
  profile.sWindowTitle = "T";
  profile.sWindowClass = "C";
  profile.bAutoActivate = true;
  profile.bEnabled = true;
  profile.bClear = true;
  profile.bSet = true;
  profile.AddMapping(MakeMapping("Game", 1));
  profile.AddMapping(MakeMapping("Voice", 2));
  profile.Save("Harbourline", "RouterSection", "MP_1_");
  CMapProfile loaded;
  loaded.Load("Harbourline", "RouterSection", "MP_1_");
  EXPECT_EQ(loaded.sName, "N\xE4me");
  EXPECT_EQ(loaded.sDescription, "D");
  EXPECT_EQ(loaded.sWindowTitle, "T");
  EXPECT_EQ(loaded.sWindowClass, "C");
  EXPECT_TRUE(loaded.bAutoActivate);
  EXPECT_TRUE(loaded.bEnabled);
  EXPECT_FALSE(loaded.bClear);
  EXPECT_FALSE(loaded.bSet);
  EXPECT_THAT(Descriptions(loaded), ElementsAre("Game", "Voice"));
}

TEST_F(CMapProfileTest, AProfileWithNoMappingsSavesWithMapCount0AndLoadsBackEmpty) {
  profile.Save("Harbourline", "RouterSection", "MP_1_");
  EXPECT_EQ(world.settings.Value("MP_1_MapCount"), "0");
  Load();
  EXPECT_TRUE(profile.ccMappings().IsEmpty());
}

TEST_F(CMapProfileTest, LoadsEmptyWhenNothingIsStored) {
  Load();
  EXPECT_EQ(profile.sName, "");
  EXPECT_FALSE(profile.bAutoActivate);
  EXPECT_FALSE(profile.bEnabled);
  EXPECT_TRUE(profile.ccMappings().IsEmpty());
}

TEST_F(CMapProfileTest, AMapCountGreaterThanTheStoredMappingsYieldsMappingsWithDefaults) {
  world.settings.Values() = {{"MP_1_MapCount", "2"}, {"MP_1_MAP_1_Description", "only"}};
  Load();
  EXPECT_THAT(Descriptions(profile), ElementsAre("only", ""));
  for (const auto& mapping : profile.ccMappings()) EXPECT_EQ(mapping->Protocal(), 2);
}

TEST_F(CMapProfileTest, ANegativeMapCountYieldsNoMappings) {
  world.settings.Values() = {{"MP_1_MapCount", "-1"}};
  Load();
  EXPECT_TRUE(profile.ccMappings().IsEmpty());
}

TEST_F(CMapProfileTest, FailsToLoadAMapCountThatIsNoNumberOf16Bits) {
  for (const char* text : {"", "x", "32768"}) {
    world.settings.Values() = {{"MP_1_MapCount", text}};
    EXPECT_THAT(FailureOf([&] { Load(); }).Text(),
                HasSubstr(std::string("\"MP_1_MapCount\" holds \"") + text + "\", which is not"));
  }
}

TEST_F(CMapProfileTest, FailsToLoadABooleanThatIsNone) {
  for (const char* name : {"MP_1_AutoActivate", "MP_1_Enabled"}) {
    for (const char* text : {"", "yes"}) {
      world.settings.Values() = {{name, text}};
      EXPECT_THAT(FailureOf([&] { Load(); }).Text(), HasSubstr(std::string(name) + "\" holds \"" + text));
    }
    world.settings.Values() = {{name, "-1"}};
    EXPECT_EQ(FailureOf([&] { Load(); }).Number(), 0);
  }
}

TEST_F(CMapProfileTest, NamesTheMappingWhoseNumberDoesNotLoad) {
  world.settings.Values() = {{"MP_1_MapCount", "2"}, {"MP_1_MAP_2_EndPort", "x"}};
  EXPECT_THAT(FailureOf([&] { Load(); }).Text(), HasSubstr("\"MP_1_MAP_2_EndPort\""));
}

TEST_F(CMapProfileTest, WritesHeaderMappingsAndTrailer) {
  profile.sName = "Game \"server\"";
  profile.bEnabled = true;
  profile.AddMapping(MakeMapping("Game", 27015));
  base::TextFileWriter file(world.folder.PathOf("out"));
  profile.WriteXML(file);
  file.Close();
  EXPECT_EQ(world.folder.Read("out"),
            "<MapProfile Name=\"Game 'server'\" Description=\"\" WindowTitle=\"\" WindowClass=\"\" "
            "AutoActivate=False Enabled=True>\r\n"
            "<Mapping Description=\"Game\" BeginPort=27015 EndPort=27015 Protocal=1 ForwardIPAddress=-1>\r\n"
            "</Mapping>\r\n"
            "</MapProfile>\r\n");
}

TEST_F(CMapProfileTest, ReadsUpToItsTrailer) {
  EXPECT_EQ(
      Read(
          "<MapProfile Name=\"Game\" Description=\"D\" WindowTitle=\"T\" WindowClass=\"C\" AutoActivate=True "
          "Enabled=True>",
          "<Mapping Description=\"a\">\r\n</Mapping>\r\n<Mapping Description=\"b\">\r\n</Mapping>\r\n"
          "</MapProfile>\r\nrest\r\n"),
      "rest|");
  EXPECT_EQ(profile.sName, "Game");
  EXPECT_EQ(profile.sDescription, "D");
  EXPECT_EQ(profile.sWindowTitle, "T");
  EXPECT_EQ(profile.sWindowClass, "C");
  EXPECT_TRUE(profile.bAutoActivate);
  EXPECT_TRUE(profile.bEnabled);
  EXPECT_THAT(Descriptions(profile), ElementsAre("a", "b"));
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMapProfileTest, ReadsNothingWhenTheLineIsNoHeader) {
  EXPECT_EQ(Read("<Profile Name=\"x\">", "a\r\n", false), "a|");
}

TEST_F(CMapProfileTest, SkipsALineThatIsNeitherTrailerNorMapping) {
  Read("<MapProfile>",
       "junk\r\n\r\n<MapProfile Name=\"inner\">\r\n<Mapping Description=\"a\">\r\n</Mapping>\r\n");
  EXPECT_THAT(Descriptions(profile), ElementsAre("a"));
  EXPECT_EQ(profile.sName, "");
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMapProfileTest, AcceptsTheEndOfTheFileInPlaceOfItsTrailer) {
  Read("<MapProfile Name=\"x\">", "<Mapping Description=\"a\">\r\n</Mapping>");
  EXPECT_THAT(Descriptions(profile), ElementsAre("a"));
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMapProfileTest, RelaysTheErrorsOfItselfAndOfItsMappings) {
  Read("<MapProfile Enabled=perhaps>", "<Mapping BeginPort=x>\r\n</Mapping>\r\n<Mapping>\r\n<Mapping>\r\n");
  EXPECT_THAT(errors, ElementsAre("Unable to parse file", "Unable to parse file",
                                  "Some portions of the file could not be parsed."));
  EXPECT_EQ(profile.ccMappings().Count(), 2u);
}

TEST_F(CMapProfileTest, NoLongerRelaysTheErrorsOfAMappingThatIsRead) {
  Read("<MapProfile>", "<Mapping>\r\n</Mapping>\r\n</MapProfile>\r\n");
  (*profile.ccMappings().begin())->ErrorOccured.Raise("late");
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMapProfileTest, ReadsABooleanFromANumber) {
  Read("<MapProfile AutoActivate=-1 Enabled=0>", "");
  EXPECT_TRUE(profile.bAutoActivate);
  EXPECT_FALSE(profile.bEnabled);
}

TEST_F(CMapProfileTest, IgnoresAnAttributeThatItDoesNotKnow) {
  Read("<MapProfile name=\"lower\" Colour=3 Name=\"x\">", "");
  EXPECT_EQ(profile.sName, "x");
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(CMapProfileTest, GivesItsValuesInTheirTypes) {
  profile.sName = "n";
  profile.sDescription = "d";
  profile.sWindowTitle = "t";
  profile.sWindowClass = "c";
  profile.bAutoActivate = true;
  const auto value = [this](std::string_view name) {
    base::Variant given = "untouched";
    profile.m_XML_GetValue(name, given);
    return support::Describe(given);
  };
  EXPECT_EQ(value("Name"), "\"n\"");
  EXPECT_EQ(value("Description"), "\"d\"");
  EXPECT_EQ(value("WindowTitle"), "\"t\"");
  EXPECT_EQ(value("WindowClass"), "\"c\"");
  EXPECT_EQ(value("AutoActivate"), "True");
  EXPECT_EQ(value("Enabled"), "False");
  EXPECT_EQ(value("name"), "\"untouched\"");
}

TEST_F(CMapProfileTest, ClearMappingsLeavesTheMappingObjectsToWhoeverStillHoldsThem) {
  const auto mapping = MakeMapping("held", 1);
  profile.AddMapping(mapping);
  profile.ClearMappings();
  EXPECT_TRUE(profile.ccMappings().IsEmpty());
  EXPECT_EQ(mapping->sDescription(), "held");
  EXPECT_EQ(mapping.use_count(), 1);
  profile.AddMapping(mapping);
  EXPECT_THAT(Descriptions(profile), ElementsAre("held"));
}

TEST_F(CMapProfileTest, DuplicateKeepsValuesAndMarksAndCopiesTheMappingsUnderNewKeys) {
  profile.sName = "n";
  profile.sDescription = "d";
  profile.sWindowTitle = "t";
  profile.sWindowClass = "c";
  profile.bAutoActivate = true;
  profile.bClear = true;
  profile.bSet = true;
  profile.AddMapping(MakeMapping("a", 1));
  profile.AddMapping(MakeMapping("b", 2));
  const auto copy = profile.Duplicate();
  EXPECT_EQ(copy->sName + copy->sDescription + copy->sWindowTitle + copy->sWindowClass, "ndtc");
  EXPECT_TRUE(copy->bAutoActivate && copy->bClear && copy->bSet);
  EXPECT_NE(copy->sKey(), profile.sKey());
  EXPECT_THAT(Descriptions(*copy), ElementsAre("a", "b"));
  for (const auto& mapping : copy->ccMappings()) EXPECT_FALSE(profile.ccMappings().Contains(mapping->sKey()));
}

TEST_F(CMapProfileTest, DuplicateKeepsEnabledSoAnEditedProfileThatWasActiveStaysMarkedActive) {
  profile.bEnabled = true;
  EXPECT_TRUE(profile.Duplicate()->bEnabled);
}

}  // namespace
