#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/Conversions.h"
#include "base/Error.h"
#include "settings/CRegistry.h"
#include "support/BrokenReads.h"
#include "support/FullDisk.h"
#include "support/RecordingToolkit.h"
#include "support/WithoutRights.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kSuccess = "Import Complete Successfully";
const std::string kUnparsed = "Unable to parse file";
const std::string kPortions = "Some portions of the file could not be parsed.";

class ExchangeTest : public testing::Test {
 protected:
  /// Imports these bytes and gives the text of the message box.
  std::string Import(std::string_view bytes) {
    world.folder.Write("in.prf", bytes);
    registry.Import(world.folder.PathOf("in.prf"));
    return TakeMessage(ui::MessageIcon::kInformation);
  }
  std::string TakeMessage(ui::MessageIcon icon) {
    EXPECT_EQ(world.toolkit.messages.size(), 1u);
    if (world.toolkit.messages.empty()) return "";
    const ui::Message message = world.toolkit.messages.back();
    world.toolkit.messages.clear();
    EXPECT_EQ(message.icon, icon);
    EXPECT_EQ(message.buttons, ui::MessageButtons::kOk);
    EXPECT_EQ(message.title, "Harbourline");
    return message.text;
  }
  std::string Export(const std::vector<std::string>& sKeys) {
    registry.ExportByKeys(world.folder.PathOf("out.prf"), sKeys);
    EXPECT_EQ(TakeMessage(ui::MessageIcon::kInformation), "Export Complete Successfully");
    return world.folder.Read("out.prf");
  }
  std::string ExportAll() {
    std::vector<std::string> keys;
    for (const auto& profile : registry.ccMapProfiles()) keys.push_back(profile->sKey());
    return Export(keys);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& profile : registry.ccMapProfiles()) names.push_back(profile->sName);
    return names;
  }
  const CMapProfile& Only() const {
    EXPECT_EQ(registry.ccMapProfiles().Count(), 1u);
    return **registry.ccMapProfiles().begin();
  }
  /// The one mapping of the one profile.
  const CMapping& OnlyMapping() const {
    EXPECT_EQ(Only().ccMappings().Count(), 1u);
    return **Only().ccMappings().begin();
  }
  /// Imports one profile around these lines.
  std::string ImportMappings(const std::string& lines) {
    return Import("<MapProfile Name=\"p\">\r\n" + lines + "</MapProfile>\r\n");
  }

  support::World world;
  CRegistry registry;
};

const char kWholeFile[] =
    "<MapProfile Name=\"Game server\" Description=\"Ports for the game\" WindowTitle=\"\" WindowClass=\"\" "
    "AutoActivate=False Enabled=False>\r\n"
    "<Mapping Description=\"Game\" BeginPort=27015 EndPort=27030 Protocal=1 ForwardIPAddress=-1>\r\n"
    "</Mapping>\r\n"
    "<Mapping Description=\"Voice\" BeginPort=3784 EndPort=3784 Protocal=2 ForwardIPAddress=12>\r\n"
    "</Mapping>\r\n"
    "</MapProfile>\r\n";

TEST_F(ExchangeTest, AWholeFileComesInAndGoesOutByteForByte) {
  EXPECT_EQ(Import(kWholeFile), kSuccess);
  EXPECT_EQ(Only().sName, "Game server");
  EXPECT_EQ(Only().ccMappings().Count(), 2u);
  EXPECT_EQ(ExportAll(), kWholeFile);
}

TEST_F(ExchangeTest, TheExportHoldsTheProfilesOfTheKeysInTheirOrder) {
  Import(
      "<MapProfile Name=\"A\">\r\n</MapProfile>\r\n<MapProfile Name=\"B\">\r\n</MapProfile>\r\n"
      "<MapProfile Name=\"C\">\r\n</MapProfile>\r\n");
  std::vector<std::string> keys;
  for (const auto& profile : registry.ccMapProfiles()) keys.push_back(profile->sKey());
  const std::string rest =
      " Description=\"\" WindowTitle=\"\" WindowClass=\"\" AutoActivate=False Enabled=False>\r\n"
      "</MapProfile>\r\n";
  EXPECT_EQ(Export({keys[2], keys[0]}), "<MapProfile Name=\"C\"" + rest + "<MapProfile Name=\"A\"" + rest);
}

TEST_F(ExchangeTest, TheExportHoldsAProfileAsOftenAsItsKeyComes) {
  Import(
      "<MapProfile Name=\"A\">\r\n</MapProfile>\r\n<MapProfile Name=\"B\">\r\n</MapProfile>\r\n"
      "<MapProfile Name=\"C\">\r\n</MapProfile>\r\n<MapProfile Name=\"D\">\r\n</MapProfile>\r\n");
  std::vector<std::string> keys;
  for (const auto& profile : registry.ccMapProfiles()) keys.push_back(profile->sKey());
  const std::string file = Export({keys[1], keys[3], keys[3], keys[0], keys[1], keys[2], keys[3]});
  std::string names;
  for (std::size_t at = file.find(" Name=\""); at != file.npos; at = file.find(" Name=\"", at + 1))
    names += file[at + 7];
  EXPECT_EQ(names, "BDDABCD");
}

TEST_F(ExchangeTest, AnExportOfNothingIsAnEmptyFileThatReplacesTheOldOne) {
  world.folder.Write("out.prf", "old");
  EXPECT_EQ(Export({}), "");
}

TEST_F(ExchangeTest, AnExportOfAnUnknownKeyFailsWithoutAMessage) {
  EXPECT_THROW(registry.ExportByKeys(world.folder.PathOf("out.prf"), std::vector<std::string>{"Map_x"}),
               base::Error);
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(ExchangeTest, ADescriptionWithADoubleQuoteComesBackWithASingleOne) {
  Import("<MapProfile Name=\"p\">\r\n</MapProfile>\r\n");
  (*registry.ccMapProfiles().begin())->sDescription = "say \"hi\"";
  const std::string file = ExportAll();
  registry.RemoveMapProfile(Only().sKey(), nullptr);
  EXPECT_EQ(Import(file), kSuccess);
  EXPECT_EQ(Only().sDescription, "say 'hi'");
}

TEST_F(ExchangeTest, ATextWithASpecialCharacterInsideItsQuotesComesBackUnchanged) {
  Import("<MapProfile Name=\"p\">\r\n</MapProfile>\r\n");
  const std::string sText = " a > b = c </MapProfile> 'd' <Mapping> \xE4\x80 ";
  (*registry.ccMapProfiles().begin())->sDescription = sText;
  const std::string file = ExportAll();
  registry.RemoveMapProfile(Only().sKey(), nullptr);
  EXPECT_EQ(Import(file), kSuccess);
  EXPECT_EQ(Only().sDescription, sText);
}

TEST_F(ExchangeTest, AProfileWithNoAttributesHasAnEmptyNameAndNoError) {
  EXPECT_EQ(Import("<MapProfile>\r\n</MapProfile>\r\n"), kSuccess);
  EXPECT_THAT(Names(), ElementsAre(""));
}

TEST_F(ExchangeTest, ALongerTagIsNoProfileHeader) {
  EXPECT_EQ(Import("<MapProfiles Name=\"x\">\r\n</MapProfile>\r\n"), kSuccess);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ExchangeTest, ATagInLowerCaseIsNoProfileHeader) {
  EXPECT_EQ(Import("<mapprofile Name=\"x\">\r\n</mapprofile>\r\n"), kSuccess);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ExchangeTest, LeadingBlanksBeforeATagAndTrailingOnesAfterAClosingTagAreAccepted) {
  EXPECT_EQ(
      Import(
          "  <MapProfile Name=\"x\">\r\n   <Mapping BeginPort=80>\r\n  </Mapping>  \r\n </MapProfile>   \r\n"
          "<MapProfile Name=\"y\">\r\n</MapProfile>\r\n"),
      kSuccess);
  EXPECT_THAT(Names(), ElementsAre("x", "y"));
}

TEST_F(ExchangeTest, ALastUnquotedAttributeWithATrailingBlankFails) {
  EXPECT_EQ(ImportMappings("<Mapping Protocal=2> \r\n</Mapping>\r\n"), kUnparsed);
  EXPECT_EQ(OnlyMapping().sType(), "");
}

TEST_F(ExchangeTest, ALastQuotedAttributeWithTrailingTextDoesNoHarm) {
  EXPECT_EQ(ImportMappings("<Mapping Description=\"d\"> and more\r\n</Mapping>\r\n"), kSuccess);
  EXPECT_EQ(OnlyMapping().sDescription(), "d");
}

TEST_F(ExchangeTest, AutoActivateMinus1IsTrueAnd0IsFalse) {
  EXPECT_EQ(Import("<MapProfile Name=\"a\" AutoActivate=-1>\r\n</MapProfile>\r\n"), kSuccess);
  EXPECT_TRUE(Only().bAutoActivate);
  registry.RemoveMapProfile(Only().sKey(), nullptr);
  EXPECT_EQ(Import("<MapProfile Name=\"a\" AutoActivate=0>\r\n</MapProfile>\r\n"), kSuccess);
  EXPECT_FALSE(Only().bAutoActivate);
}

TEST_F(ExchangeTest, APortInQuotesIsAccepted) {
  EXPECT_EQ(ImportMappings("<Mapping BeginPort=\"80\">\r\n</Mapping>\r\n"), kSuccess);
  EXPECT_EQ(OnlyMapping().lBeginPort(), 80);
}

TEST_F(ExchangeTest, EnabledIsTakenFromTheFileThoughNothingIsDoneOnTheRouter) {
  auto script = world.objects.AddPlugIn("A.Router", "A");
  registry.AddRouter("A.Router");
  registry.RouterTitle("A");
  script->calls.clear();
  EXPECT_EQ(Import("<MapProfile Name=\"a\" Enabled=True>\r\n</MapProfile>\r\n"), kSuccess);
  EXPECT_TRUE(Only().bEnabled);
  EXPECT_THAT(script->calls, IsEmpty());
}

TEST_F(ExchangeTest, AMappingFollowedAtOnceByAnotherLosesTheSecond) {
  EXPECT_EQ(
      ImportMappings("<Mapping Description=\"first\">\r\n<Mapping Description=\"second\">\r\n</Mapping>\r\n"),
      kPortions);
  EXPECT_EQ(OnlyMapping().sDescription(), "first");
}

TEST_F(ExchangeTest, AProfileWithoutAClosingTagAtTheEndOfTheFileComesInWithoutComplaint) {
  EXPECT_EQ(Import("<MapProfile Name=\"a\">\r\n<Mapping BeginPort=80>\r\n</Mapping>\r\n"), kSuccess);
  EXPECT_EQ(OnlyMapping().lBeginPort(), 80);
}

TEST_F(ExchangeTest, ALineWithAWindowsEndIsReadWithoutItAndOneWithALineFeedToo) {
  EXPECT_EQ(Import("<MapProfile Name=\"a\">\n<Mapping Protocal=2>\r\n</Mapping>\n</MapProfile>\n"), kSuccess);
  EXPECT_EQ(OnlyMapping().Protocal(), 2);
}

TEST_F(ExchangeTest, AFileWithoutAProfileReportsSuccess) {
  EXPECT_EQ(Import(""), kSuccess);
  EXPECT_EQ(Import("some\r\ntext\r\n"), kSuccess);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ExchangeTest, LinesOutsideProfilesAreSkipped) {
  EXPECT_EQ(
      Import("before\r\n<Mapping BeginPort=1>\r\n<MapProfile Name=\"a\">\r\n</MapProfile>\r\nbetween\r\n"
             "</MapProfile>\r\n<MapProfile Name=\"b\">\r\n</MapProfile>\r\nafter"),
      kSuccess);
  EXPECT_THAT(Names(), ElementsAre("a", "b"));
}

TEST_F(ExchangeTest, ImportingTwiceDoublesTheProfilesUnderNumberedNames) {
  Import("<MapProfile Name=\"b\">\r\n</MapProfile>\r\n<MapProfile Name=\"a\">\r\n</MapProfile>\r\n");
  Import("<MapProfile Name=\"b\">\r\n</MapProfile>\r\n<MapProfile Name=\"a\">\r\n</MapProfile>\r\n");
  EXPECT_THAT(Names(), ElementsAre("a", "a(1)", "b", "b(1)"));
}

TEST_F(ExchangeTest, TheLastErrorOfAFileIsTold) {
  EXPECT_EQ(Import("<MapProfile Name=\"a\">\r\n<Mapping>\r\n<Mapping>\r\n</MapProfile>\r\n"
                   "<MapProfile Enabled=x>\r\n</MapProfile>\r\n<MapProfile Name=\"c\">\r\n</MapProfile>\r\n"),
            kUnparsed);
  EXPECT_THAT(Names(), ElementsAre("", "a", "c"));
}

TEST_F(ExchangeTest, TheNextImportStartsWithSuccessAgain) {
  Import("<MapProfile Enabled=x>\r\n");
  EXPECT_EQ(Import("<MapProfile Name=\"z\">\r\n"), kSuccess);
}

TEST_F(ExchangeTest, AnElementKeepsTheAttributesBeforeItsFaultAndTheImportGoesOn) {
  EXPECT_EQ(Import("<MapProfile Name=\"a\" Description=\"d\" AutoActivate=maybe Enabled=True>\r\n"
                   "<Mapping BeginPort=80 EndPort=99999999999 Protocal=2>\r\n</Mapping>\r\n</MapProfile>\r\n"
                   "<MapProfile Name=\"b\">\r\n</MapProfile>\r\n"),
            kUnparsed);
  EXPECT_THAT(Names(), ElementsAre("a", "b"));
  const CMapProfile& first = **registry.ccMapProfiles().begin();
  EXPECT_EQ(first.sDescription, "d");
  EXPECT_FALSE(first.bEnabled);
  ASSERT_EQ(first.ccMappings().Count(), 1u);
  EXPECT_EQ((*first.ccMappings().begin())->lBeginPort(), 80);
  EXPECT_EQ((*first.ccMappings().begin())->lEndPort(), 0);
}

TEST_F(ExchangeTest, AFileThatEndsInTheMiddleOfAQuoteKeepsWhatCameBefore) {
  EXPECT_EQ(Import("<MapProfile Name=\"a\">\r\n<Mapping BeginPort=80 Description=\"abc"), kPortions);
  EXPECT_EQ(OnlyMapping().lBeginPort(), 80);
}

TEST_F(ExchangeTest, AFileThatEndsInTheMiddleOfAQuoteOfAProfileKeepsWhatCameBeforeToo) {
  EXPECT_EQ(Import("<MapProfile Description=\"d\" Name=\"abc"), kUnparsed);
  EXPECT_EQ(Only().sDescription, "d");
  EXPECT_EQ(Only().sName, "");
}

TEST_F(ExchangeTest, APositionBeyond32767FailsThatElementAndNotTheImport) {
  const std::string wide(40000, 'w');
  EXPECT_EQ(Import("<MapProfile Name=\"a\" Description=\"" + wide + "\" Enabled=True>\r\n" +
                   "<Mapping BeginPort=80 Description=\"" + wide + "\">\r\n</Mapping>\r\n</MapProfile>\r\n" +
                   "<MapProfile Name=\"b\">\r\n</MapProfile>\r\n"),
            kUnparsed);
  EXPECT_THAT(Names(), ElementsAre("a", "b"));
  EXPECT_EQ((*registry.ccMapProfiles().begin())->sDescription, "");
}

TEST_F(ExchangeTest, BinaryJunkEndsInNothingLost) {
  std::string junk;
  for (int i = 0; i < 4096; ++i) junk += static_cast<char>(i * 7 + i / 256);
  EXPECT_EQ(Import(junk + "\r\n<MapProfile Name=\"a\">\r\n" + junk + "\r\n</MapProfile>\r\n"), kSuccess);
  EXPECT_THAT(Names(), ElementsAre("a"));
}

TEST_F(ExchangeTest, NulBytesAreOrdinaryCharacters) {
  EXPECT_EQ(Import(std::string("<MapProfile Name=\"a\0b\">\r\n", 24)), kSuccess);
  EXPECT_THAT(Names(), ElementsAre(std::string("a\0b", 3)));
}

TEST_F(ExchangeTest, ALineOfManyMegabytesIsSkipped) {
  EXPECT_EQ(
      Import("<MapProfile Name=\"a\">\r\n" + std::string(20 * 1024 * 1024, '<') + "\r\n</MapProfile>\r\n"),
      kSuccess);
  EXPECT_THAT(Names(), ElementsAre("a"));
}

TEST_F(ExchangeTest, ALineOfManyMegabytesMayStandAnywhere) {
  const std::string wide(5 * 1024 * 1024, 'w');
  EXPECT_EQ(Import("<MapProfile Name=\"a\" Description=\"" + wide +
                   "\">\r\n<Mapping BeginPort=80>\r\n</Mapping>\r\n</MapProfile>\r\n"),
            kUnparsed);
  EXPECT_EQ(ImportMappings("<Mapping Description=\"" + wide + "\">\r\n</Mapping>\r\n"), kUnparsed);
  EXPECT_EQ(ImportMappings("<Mapping BeginPort=80>\r\n" + wide + "\r\n"), kPortions);
  EXPECT_EQ(Import(wide + "<MapProfile Name=\"x\">"), kSuccess);
  EXPECT_THAT(Names(), ElementsAre("a", "p", "p(1)"));
}

TEST_F(ExchangeTest, EveryByteBelongsToAValueButTheQuoteAndTheLineFeed) {
  std::string sText;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != '"' && byte != '\n') sText += static_cast<char>(byte);
  }
  EXPECT_EQ(Import("<MapProfile Name=\"a\" Description=\"" + sText + "\" WindowTitle=\"t\">\r\n"), kSuccess);
  EXPECT_EQ(Only().sDescription, sText);
  EXPECT_EQ(Only().sWindowTitle, "t");
}

TEST_F(ExchangeTest, AFileThatCannotBeOpenedIsToldAndNoProfileEnters) {
  const std::string sPath = world.folder.PathOf("missing.prf");
  registry.Import(sPath);
  EXPECT_EQ(TakeMessage(ui::MessageIcon::kWarning), "Unable to open file " + sPath);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ExchangeTest, AFolderInPlaceOfAFileIsTold) {
  world.folder.MakeFolder("folder.prf");
  const std::string sPath = world.folder.PathOf("folder.prf");
  registry.Import(sPath);
  EXPECT_EQ(TakeMessage(ui::MessageIcon::kWarning), "Unable to open file " + sPath);
  registry.ExportByKeys(sPath, {});
  EXPECT_EQ(TakeMessage(ui::MessageIcon::kWarning), "Unable to open file " + sPath);
}

TEST_F(ExchangeTest, APathThatLeadsNowhereIsToldAndTheListStaysAsItIs) {
  Import(kWholeFile);
  for (const std::string& sPath : {std::string(), world.folder.Path() + "/no/such/folder/a.prf",
                                   world.folder.PathOf(std::string(100'000, 'n'))}) {
    registry.Import(sPath);
    EXPECT_EQ(TakeMessage(ui::MessageIcon::kWarning), "Unable to open file " + sPath);
    registry.ExportByKeys(sPath, std::vector<std::string>{Only().sKey()});
    EXPECT_EQ(TakeMessage(ui::MessageIcon::kWarning), "Unable to open file " + sPath);
  }
  EXPECT_EQ(ExportAll(), kWholeFile);
}

TEST_F(ExchangeTest, AnImportAfterOneThatFailedStartsAfresh) {
  registry.Import(world.folder.PathOf("missing.prf"));
  TakeMessage(ui::MessageIcon::kWarning);
  EXPECT_EQ(Import(kWholeFile), kSuccess);
  EXPECT_EQ(ExportAll(), kWholeFile);
}

#ifdef __linux__
TEST_F(ExchangeTest, AFileThatMayNotBeReadIsTold) {
  world.folder.Write("secret.prf", kWholeFile);
  const std::string sPath = world.folder.PathOf("secret.prf");
  const support::WithoutRights rights(sPath, support::WithoutRights::To::kReadAndWrite);
  registry.Import(sPath);
  EXPECT_EQ(TakeMessage(ui::MessageIcon::kWarning), "Unable to open file " + sPath);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ExchangeTest, AnErrorInTheMiddleOfAFileIsAFailureAndLeavesNoPartOfAProfile) {
  std::string bytes;
  constexpr int kProfiles = 500;
  for (int i = 0; i < kProfiles; ++i) bytes += kWholeFile;
  world.folder.Write("in.prf", bytes);
  const int outcome = support::WithBrokenReads(64 * 1024, [&] {
    const std::string failure = support::ErrorTextOf([&] { registry.Import(world.folder.PathOf("in.prf")); });
    if (failure != "Unable to read file " + world.folder.PathOf("in.prf")) return 1;
    if (!world.toolkit.messages.empty()) return 2;
    const std::size_t count = registry.ccMapProfiles().Count();
    if (count == 0 || count >= kProfiles) return 3;
    for (const auto& profile : registry.ccMapProfiles()) {
      if (profile->ccMappings().Count() != 2) return 4;
    }
    return 0;
  });
  EXPECT_EQ(outcome, 0);
}

TEST_F(ExchangeTest, AFileThatCanBeOpenedButNotReadIsTold) {
  registry.Import("/proc/self/mem");
  EXPECT_EQ(TakeMessage(ui::MessageIcon::kWarning), "Unable to open file /proc/self/mem");
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ExchangeTest, AFileThatMayNotBeWrittenIsToldAndKeepsWhatItHolds) {
  Import(kWholeFile);
  world.folder.Write("kept.prf", "kept");
  const std::string sPath = world.folder.PathOf("kept.prf");
  {
    const support::WithoutRights rights(sPath, support::WithoutRights::To::kWrite);
    registry.ExportByKeys(sPath, std::vector<std::string>{Only().sKey()});
  }
  EXPECT_EQ(TakeMessage(ui::MessageIcon::kWarning), "Unable to open file " + sPath);
  EXPECT_EQ(world.folder.Read("kept.prf"), "kept");
}

TEST_F(ExchangeTest, AFullDiskFailsTheExportWithoutASuccessMessage) {
  Import(kWholeFile);
  const support::FullDisk disk(10);
  EXPECT_THROW(ExportAll(), base::Error);
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(ExchangeTest, AFullDiskLeavesTheOldFileWholeAndNoOtherBehind) {
  Import(kWholeFile);
  world.folder.Write("out.prf", "what was there");
  const auto files = world.folder.Files();
  {
    const support::FullDisk disk(10);
    EXPECT_THROW(ExportAll(), base::Error);
  }
  EXPECT_EQ(world.folder.Read("out.prf"), "what was there");
  EXPECT_EQ(world.folder.Files(), files);
}

TEST_F(ExchangeTest, AFileThatCanNotBeReplacedStaysAsItWas) {
  Import(kWholeFile);
  world.folder.Write("out.prf", "what was there");
  const auto files = world.folder.Files();
  world.files.refuses = true;
  EXPECT_THROW(ExportAll(), base::Error);
  EXPECT_EQ(world.folder.Read("out.prf"), "what was there");
  EXPECT_EQ(world.folder.Files(), files);
}

TEST_F(ExchangeTest, AFolderThatTakesNoOtherFileHasItsFileWrittenDirectly) {
  Import(kWholeFile);
  world.folder.Write("out.prf", "what was there");
  const std::string file = world.folder.PathOf("out.prf");
  {
    const support::WithoutRights rights(std::filesystem::path(file).parent_path(),
                                        support::WithoutRights::To::kWrite, file);
    EXPECT_EQ(ExportAll(), kWholeFile);
  }
}
#endif

TEST_F(ExchangeTest, AProfileWithMoreMappingsThanCanBeStoredIsRefusedAndTheRestComesIn) {
  std::string sMappings;
  for (int i = 0; i < 32768; ++i) sMappings += "<Mapping Description=\"\" BeginPort=1>\r\n</Mapping>\r\n";
  EXPECT_EQ(Import("<MapProfile Name=\"Too large\">\r\n" + sMappings +
                   "</MapProfile>\r\n<MapProfile Name=\"Small\">\r\n</MapProfile>\r\n"),
            "The profile \"Too large\" has 32768 mappings. A profile can have 32767 at most, so it was not "
            "imported.");
  EXPECT_THAT(Names(), ElementsAre("Small"));
}

TEST_F(ExchangeTest, AProfileWithAsManyMappingsAsCanBeStoredComesInAndIsLoadedAgain) {
  std::string sMappings;
  for (int i = 0; i < 32767; ++i) sMappings += "<Mapping Description=\"\" BeginPort=1>\r\n</Mapping>\r\n";
  Import("<MapProfile Name=\"Large\">\r\n" + sMappings + "</MapProfile>\r\n");
  registry.Save();
  const CRegistry again;
  EXPECT_EQ((*again.ccMapProfiles().begin())->ccMappings().Count(), 32767u);
}

TEST_F(ExchangeTest, TheMessageComesAfterTheFileIsClosed) {
  Import(kWholeFile);
  std::string atMessage;
  world.toolkit.whileMessage = [&](const ui::Message&) { atMessage = world.folder.Read("out.prf"); };
  EXPECT_EQ(ExportAll(), kWholeFile);
  EXPECT_EQ(atMessage, kWholeFile);
}

TEST_F(ExchangeTest, AnImportedProfileHasNoMarksAndANewKey) {
  Import(kWholeFile);
  EXPECT_FALSE(Only().bClear);
  EXPECT_FALSE(Only().bSet);
  EXPECT_TRUE(Only().sKey().starts_with("Map_"));
}

TEST_F(ExchangeTest, AnImportedProfileMayOutliveTheStateAndStillRaiseItsErrors) {
  std::shared_ptr<CMapProfile> profile;
  {
    CRegistry state;
    world.folder.Write("in.prf", kWholeFile);
    state.Import(world.folder.PathOf("in.prf"));
    profile = *state.ccMapProfiles().begin();
  }
  EXPECT_FALSE(profile->ErrorOccured.HasHandlers());
  profile->ErrorOccured.Raise("late");
}

}  // namespace
