#include "settings/CRegistry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Error.h"
#include "shell/modCommon.h"
#include "support/RecordingToolkit.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kPath = "HKEY_CURRENT_USER\\Software\\Harbourline\\RouterSection";

class CRegistryTest : public testing::Test {
 protected:
  using Values = std::map<std::string, std::string>;

  /// Loads the state from exactly these values.
  CRegistry& Load(const Values& values) {
    registry.reset();
    world.settings.Values() = values;
    registry.emplace();
    return *registry;
  }
  /// Text of the failure with which the load ends, empty when it doesn't.
  std::string FailureOfLoad(const Values& values) {
    registry.reset();
    world.settings.Values() = values;
    try {
      CRegistry loaded;
    } catch (const base::Error& error) {
      return error.Text();
    }
    return "";
  }
  static std::vector<std::string> Names(const CRegistry& state) {
    std::vector<std::string> names;
    for (const auto& profile : state.ccMapProfiles()) names.push_back(profile->sName);
    return names;
  }
  static std::shared_ptr<CMapProfile> MakeProfile(const std::string& sName) {
    auto profile = std::make_shared<CMapProfile>();
    profile->sName = sName;
    return profile;
  }

  support::World world;
  std::optional<CRegistry> registry;
};

TEST_F(CRegistryTest, AnEmptyStoreGivesTheDefaults) {
  registry.emplace();
  EXPECT_EQ(registry->Router, nullptr);
  EXPECT_FALSE(registry->RouterValid());
  EXPECT_TRUE(registry->LoadOnStartup);
  EXPECT_TRUE(registry->ShowSplashOnStartup);
  EXPECT_EQ(registry->TrayLights, 1);
  EXPECT_TRUE(registry->ccMapProfiles().IsEmpty());
  EXPECT_EQ(registry->Version(), "");
  EXPECT_TRUE(registry->ExportProfiles);
  EXPECT_FALSE(registry->AutomaticActivation);
  EXPECT_FALSE(registry->FilterOutProfiles);
  EXPECT_EQ(registry->LastMenuLocation, "");
}

TEST_F(CRegistryTest, TheLoadWritesNothing) {
  registry.emplace();
  EXPECT_THAT(world.journal, IsEmpty());
  EXPECT_FALSE(world.settings.HasSection());
}

TEST_F(CRegistryTest, LoadsEverySetting) {
  const CRegistry& state = Load({{"Version", "0.9.1"},
                                 {"LoadOnStartup", "False"},
                                 {"ShowSplashOnStartup", "False"},
                                 {"TrayLights", "3"},
                                 {"ExportProfiles", "False"},
                                 {"LastMenuLocation", "Router"},
                                 {"AutomaticActivation", "True"},
                                 {"FilterOutProfiles", "True"}});
  EXPECT_EQ(state.Version(), "0.9.1");
  EXPECT_FALSE(state.LoadOnStartup);
  EXPECT_FALSE(state.ShowSplashOnStartup);
  EXPECT_EQ(state.TrayLights, 3);
  EXPECT_FALSE(state.ExportProfiles);
  EXPECT_EQ(state.LastMenuLocation, "Router");
  EXPECT_TRUE(state.AutomaticActivation);
  EXPECT_TRUE(state.FilterOutProfiles);
}

TEST_F(CRegistryTest, ReadsInTheSettledOrder) {
  world.settings.Values() = {{"RouterCount", "1"}, {"Version", modCommon::GetVersionString()}};
  registry.emplace();
  std::vector<std::string> reads = world.settings.reads;
  ASSERT_GE(reads.size(), 100u);
  EXPECT_EQ(reads.front(), "RouterPlugIn_1");
  EXPECT_EQ(reads[99], "RouterPlugIn_100");
  reads.erase(reads.begin(), reads.begin() + 100);
  EXPECT_THAT(reads, ElementsAre("RouterCount", "Router_1", "Version", "RouterClass", "LoadOnStartup",
                                 "ShowSplashOnStartup", "TrayLights", "MapProfileCount", "ExportProfiles",
                                 "LastMenuLocation", "AutomaticActivation", "FilterOutProfiles"));
}

TEST_F(CRegistryTest, TakesTheExecutablesFolderAsInstallPathAndTheHelpFileFromThere) {
  registry.emplace();
  EXPECT_EQ(registry->InstallPath(), "C:\\Programs\\Harbourline");
  EXPECT_EQ(modCommon::HelpFile(), "C:\\Programs\\Harbourline\\Harbourline.hlp");
}

TEST_F(CRegistryTest, AFolderWhoseNameHasABackslashAsSecondByteIsTheInstallPath) {
  world.codePage.leadBytes = "\x83";
  world.process.path = "C:\\\x83\\\\Harbourline.exe";
  registry.emplace();
  EXPECT_EQ(registry->InstallPath(), "C:\\\x83\\");
  EXPECT_EQ(modCommon::HelpFile(), "C:\\\x83\\\\Harbourline.hlp");
}

TEST_F(CRegistryTest, SavesEverythingInTheSettledOrder) {
  world.objects.AddPlugIn("First.Router", "First");
  world.objects.AddPlugIn("Second.Router", "Second");
  CRegistry& state = Load({});
  state.AddRouter("First.Router");
  state.AddRouter("Second.Router");
  state.RouterTitle("Second");
  state.AddMapProfile(MakeProfile("Game"), nullptr);
  state.LastMenuLocation = "Help";
  world.journal.clear();
  world.settings.reads.clear();
  state.Save();
  EXPECT_THAT(
      world.journal,
      ElementsAre("delete Harbourline\\RouterSection", "RouterCount=2", "get IServer_ClassName",
                  "Router_1=First.Router", "get IServer_ClassName", "Router_2=Second.Router",
                  "get IServer_ClassName", "RouterClass=Second.Router",
                  "Version=" + modCommon::GetVersionString(), "LoadOnStartup=True",
                  "ShowSplashOnStartup=True", "TrayLights=1",
                  "autostart Harbourline C:\\Programs\\Harbourline\\Harbourline.exe", "MapProfileCount=1",
                  "MP_1_Description=", "MP_1_Name=Game", "MP_1_MapCount=0",
                  "MP_1_WindowTitle=", "MP_1_WindowClass=", "MP_1_AutoActivate=False", "MP_1_Enabled=False",
                  "ExportProfiles=True", "LastMenuLocation=Help", "AutomaticActivation=False",
                  "FilterOutProfiles=False", "call IServer_SaveSettings()"));
  EXPECT_EQ(world.settings.reads.size(), 100u);
}

TEST_F(CRegistryTest, SavesWithoutASection) {
  registry.emplace();
  registry->Save();
  EXPECT_EQ(world.settings.Value("RouterCount"), "0");
  EXPECT_FALSE(world.settings.Contains("RouterClass"));
}

TEST_F(CRegistryTest, SavesNothingOfWhatStoodInTheSectionBefore) {
  Load({{"MP_1_Name", "stale"}, {"SomethingElse", "1"}}).Save();
  EXPECT_FALSE(world.settings.Contains("MP_1_Name"));
  EXPECT_FALSE(world.settings.Contains("SomethingElse"));
}

TEST_F(CRegistryTest, TakesInAPlugInThatWasInstalledMeanwhileBeforeTheSectionGoes) {
  CRegistry& state = Load({});
  world.objects.AddPlugIn("Late.Router", "Late");
  world.settings.Values()["RouterPlugIn_3"] = "Late.Router";
  state.Save();
  EXPECT_EQ(world.settings.Value("Router_1"), "Late.Router");
  EXPECT_FALSE(world.settings.Contains("RouterPlugIn_3"));
}

TEST_F(CRegistryTest, SavesTheRunningVersionAndKeepsTheStoredOneInMemory) {
  CRegistry& state = Load({{"Version", "0.0.1"}});
  state.Save();
  EXPECT_EQ(world.settings.Value("Version"), modCommon::GetVersionString());
  EXPECT_EQ(state.Version(), "0.0.1");
}

TEST_F(CRegistryTest, RemovesTheAutostartEntryWhenItIsNotWanted) {
  CRegistry& state = Load({});
  state.Save();
  EXPECT_EQ(world.systemHelper.entries["Harbourline"], "C:\\Programs\\Harbourline\\Harbourline.exe");
  state.LoadOnStartup = false;
  state.Save();
  EXPECT_THAT(world.systemHelper.entries, IsEmpty());
}

TEST_F(CRegistryTest, LoadOnStartupChangedAndThenACrashLeavesTheAutostartEntryAsItWas) {
  CRegistry& state = Load({});
  state.LoadOnStartup = false;
  EXPECT_THAT(world.journal, IsEmpty());
}

TEST_F(CRegistryTest, AfterAnUpgradeTheRouterClassIsIgnoredAndGoneAfterTheNextSave) {
  world.objects.AddPlugIn("A.Router", "A");
  CRegistry& state = Load(
      {{"Version", "0.0.1"}, {"RouterCount", "1"}, {"Router_1", "A.Router"}, {"RouterClass", "A.Router"}});
  EXPECT_FALSE(state.RouterValid());
  state.Save();
  EXPECT_EQ(world.settings.Value("Router_1"), "A.Router");
  EXPECT_FALSE(world.settings.Contains("RouterClass"));
}

TEST_F(CRegistryTest, WithTheSameVersionTheRouterIsSelectedByItsClass) {
  world.objects.AddPlugIn("A.Router", "A");
  world.objects.AddPlugIn("B.Router", "B");
  const CRegistry& state = Load({{"Version", modCommon::GetVersionString()},
                                 {"RouterCount", "2"},
                                 {"Router_1", "A.Router"},
                                 {"Router_2", "B.Router"},
                                 {"RouterClass", "B.Router"}});
  EXPECT_EQ(state.Router, state.GetRouterByTitle("B"));
}

TEST_F(CRegistryTest, AProfileListSavedWithThreeProfilesComesBackInNameOrderWithNewKeys) {
  CRegistry& state = Load({});
  for (const char* sName : {"Web", "Game", "Mail"}) state.AddMapProfile(MakeProfile(sName), nullptr);
  std::vector<std::string> keys;
  for (const auto& profile : state.ccMapProfiles()) keys.push_back(profile->sKey());
  state.Save();
  CRegistry again;
  EXPECT_THAT(Names(again), ElementsAre("Game", "Mail", "Web"));
  for (const std::string& key : keys) EXPECT_FALSE(again.ccMapProfiles().Contains(key));
}

TEST_F(CRegistryTest, ComesBackFromASaveAsItWas) {
  CRegistry& state = Load({});
  state.LoadOnStartup = false;
  state.ShowSplashOnStartup = false;
  state.TrayLights = 2;
  state.ExportProfiles = false;
  state.LastMenuLocation = "J\xE4ger";
  state.AutomaticActivation = true;
  state.FilterOutProfiles = true;
  state.Save();
  CRegistry again;
  EXPECT_FALSE(again.LoadOnStartup);
  EXPECT_FALSE(again.ShowSplashOnStartup);
  EXPECT_EQ(again.TrayLights, 2);
  EXPECT_FALSE(again.ExportProfiles);
  EXPECT_EQ(again.LastMenuLocation, "J\xE4ger");
  EXPECT_TRUE(again.AutomaticActivation);
  EXPECT_TRUE(again.FilterOutProfiles);
}

TEST_F(CRegistryTest, StoredProfilesOfOneNameAreNumberedAsIfTheyWereAdded) {
  const CRegistry& state = Load({{"MapProfileCount", "2"}, {"MP_1_Name", "Game"}, {"MP_2_Name", "Game"}});
  EXPECT_THAT(Names(state), ElementsAre("Game", "Game(1)"));
}

TEST_F(CRegistryTest, AProfileCountOf3WithOneStoredYieldsTwoMoreWithoutAName) {
  const CRegistry& state = Load({{"MapProfileCount", "3"}, {"MP_1_Name", "Game"}});
  EXPECT_THAT(Names(state), ElementsAre("", "(1)", "Game"));
}

TEST_F(CRegistryTest, MoreThan32767ProfilesComeBack) {
  CRegistry& state = Load({});
  for (int i = 0; i < 32768; ++i) state.AddMapProfile(MakeProfile("Profile " + std::to_string(i)), nullptr);
  state.Save();
  EXPECT_EQ(world.settings.Value("MapProfileCount"), "32768");
  const CRegistry again;
  EXPECT_EQ(again.ccMapProfiles().Count(), 32768u);
}

TEST_F(CRegistryTest, AProfileCountBeyond32BitsIsTold) {
  EXPECT_EQ(FailureOfLoad({{"MapProfileCount", "2147483648"}}),
            "The stored value \"MapProfileCount\" holds \"2147483648\", which is not between -2147483648 and "
            "2147483647 (" +
                kPath + ").");
}

TEST_F(CRegistryTest, NegativeCountsLoadNothing) {
  const CRegistry& state = Load({{"MapProfileCount", "-2"}, {"RouterCount", "-32768"}});
  EXPECT_TRUE(state.ccMapProfiles().IsEmpty());
  EXPECT_THAT(world.objects.created, IsEmpty());
}

TEST_F(CRegistryTest, ARouterCountThatIsNoNumberIsTold) {
  EXPECT_EQ(FailureOfLoad({{"RouterCount", "abc"}}),
            "The stored value \"RouterCount\" holds \"abc\", which is not a whole number (" + kPath + ").");
}

TEST_F(CRegistryTest, EveryNumberThatIsNoneIsTold) {
  for (const char* key : {"RouterCount", "TrayLights", "MapProfileCount"}) {
    for (const char* text : {"", "x", "\xE4\xF6", "1 2"}) {
      EXPECT_THAT(FailureOfLoad({{key, text}}), HasSubstr(std::string("\"") + key + "\" holds \"" + text +
                                                          "\", which is not a whole number"));
    }
    EXPECT_THAT(FailureOfLoad({{key, "99999999999"}}), HasSubstr("which is not between -"));
  }
  for (const char* key : {"RouterCount", "TrayLights"}) {
    EXPECT_THAT(FailureOfLoad({{key, "32768"}}), HasSubstr("which is not between -32768 and 32767"));
  }
}

TEST_F(CRegistryTest, EveryBooleanThatIsNoneIsTold) {
  for (const char* key : {"LoadOnStartup", "ShowSplashOnStartup", "ExportProfiles", "AutomaticActivation",
                          "FilterOutProfiles"}) {
    for (const char* text : {"", "yes", "Wahr", "\xFF"}) {
      EXPECT_THAT(FailureOfLoad({{key, text}}), HasSubstr(std::string("\"") + key + "\" holds \"" + text +
                                                          "\", which is neither True nor False"));
    }
    EXPECT_EQ(FailureOfLoad({{key, "1"}}), "");
  }
}

TEST_F(CRegistryTest, TextsMayBeEmptyAndHoldAnyCharacter) {
  const CRegistry& state =
      Load({{"Version", "\xE4"}, {"RouterClass", "\xE4"}, {"LastMenuLocation", "\xFF\xFE"}});
  EXPECT_EQ(state.Version(), "\xE4");
  EXPECT_EQ(state.LastMenuLocation, "\xFF\xFE");
}

TEST_F(CRegistryTest, AFailureInAProfileNamesItsValue) {
  EXPECT_THAT(
      FailureOfLoad({{"MapProfileCount", "2"}, {"MP_2_MapCount", "1"}, {"MP_2_MAP_1_BeginPort", "eighty"}}),
      HasSubstr("\"MP_2_MAP_1_BeginPort\" holds \"eighty\""));
}

TEST_F(CRegistryTest, AStartThatFailsLosesNoAnnouncedPlugIn) {
  world.objects.AddPlugIn("Late.Router", "Late");
  EXPECT_NE(FailureOfLoad({{"RouterPlugIn_3", "Late.Router"}, {"TrayLights", "x"}}), "");
  EXPECT_EQ(world.settings.Value("RouterPlugIn_3"), "Late.Router");
}

TEST_F(CRegistryTest, AnAnnouncedPlugInIsForgottenWhenTheLoadIsThrough) {
  world.objects.AddPlugIn("Late.Router", "Late");
  CRegistry& state = Load({{"RouterPlugIn_3", "Late.Router"}});
  EXPECT_FALSE(world.settings.Contains("RouterPlugIn_3"));
  state.RouterTitle("Late");
  EXPECT_TRUE(state.RouterValid());
}

/// Programs that start at logon, on a machine that refuses any change of them.
class RefusingSystemHelper : public platform::SystemHelper {
 public:
  void SetAutoStart(bool, std::string_view, std::string_view) override {
    throw base::Error(5, "No room for the logon entry");
  }
};

TEST_F(CRegistryTest, ALogonEntryThatCanNotBeWrittenIsToldAndEverythingElseIsSaved) {
  const auto script = world.objects.AddPlugIn("A.Router", "A");
  CRegistry& state = Load({});
  state.AddRouter("A.Router");
  state.RouterTitle("A");
  state.AddMapProfile(MakeProfile("Game"), nullptr);
  state.FilterOutProfiles = true;
  state.Save();
  const auto whole = world.settings.Values();
  world.settings.Values().clear();
  script->calls.clear();
  RefusingSystemHelper refusing;
  platform::TheMachine().systemHelper = &refusing;
  try {
    state.Save();
    ADD_FAILURE() << "the failure isn't told";
  } catch (const base::Error& error) {
    EXPECT_EQ(error.Text(), "No room for the logon entry");
  }
  EXPECT_EQ(world.settings.Values(), whole);
  EXPECT_THAT(script->calls, testing::Contains("call IServer_SaveSettings()"));
  platform::TheMachine().systemHelper = &world.systemHelper;
}

TEST_F(CRegistryTest, AStateThatFailedToLoadIsNeverSaved) {
  const std::map<std::string, std::string> before = {
      {"TrayLights", "x"}, {"MapProfileCount", "1"}, {"MP_1_Name", "Game"}};
  EXPECT_NE(FailureOfLoad(before), "");
  EXPECT_EQ(world.settings.Values(), before);
  EXPECT_THAT(world.systemHelper.entries, IsEmpty());
  EXPECT_THAT(world.journal, IsEmpty());
}

TEST_F(CRegistryTest, ItsEndSavesAndThenLetsGoOfEverythingInOrder) {
  struct Watch {
    std::shared_ptr<support::Script> script;
    int aliveAtSave = 0;
  } watch;
  watch.script = world.objects.AddPlugIn("A.Router", "A");
  watch.script->Do("IServer_SaveSettings", [&](std::span<platform::Argument>) -> base::Variant {
    watch.aliveAtSave = watch.script->alive;
    return {};
  });
  CRegistry& state = Load({});
  state.AddRouter("A.Router");
  state.RouterTitle("A");
  auto profile = MakeProfile("Game");
  const std::weak_ptr<CMapProfile> watchedProfile = profile;
  state.AddMapProfile(profile, nullptr);
  profile.reset();
  state.Release();
  EXPECT_EQ(watch.aliveAtSave, 1);
  EXPECT_EQ(watch.script->alive, 0);
  EXPECT_TRUE(watchedProfile.expired());
  EXPECT_EQ(state.Router, nullptr);
  EXPECT_TRUE(state.ccMapProfiles().IsEmpty());
}

TEST_F(CRegistryTest, LetsGoOfTheRoutersBeforeTheProfiles) {
  // A plug-in that is asked last, when its object goes, still meets the profiles.
  struct Last : support::ScriptedObject {
    Last(std::shared_ptr<support::Script> script, CRegistry& owner, std::size_t& seen)
        : ScriptedObject(std::move(script)), owner_(owner), seen_(seen) {}
    ~Last() override { seen_ = owner_.ccMapProfiles().Count(); }
    CRegistry& owner_;
    std::size_t& seen_;
  };
  CRegistry& state = Load({});
  state.AddMapProfile(MakeProfile("Game"), nullptr);
  std::size_t seen = 0;
  auto script = world.objects.AddPlugIn("A.Router", "A");
  state.Router = std::make_shared<Last>(script, state, seen);
  state.Release();
  EXPECT_EQ(seen, 1u);
}

TEST_F(CRegistryTest, ItsEndSavesOnlyOnce) {
  Load({}).Release();
  world.journal.clear();
  registry->Release();
  registry.reset();
  EXPECT_THAT(world.journal, IsEmpty());
}

TEST_F(CRegistryTest, ItsDestructionSaves) {
  Load({}).LastMenuLocation = "Help";
  registry.reset();
  EXPECT_EQ(world.settings.Value("LastMenuLocation"), "Help");
}

TEST_F(CRegistryTest, AFailureOfTheLastSaveGoesToTheCallerAfterEverythingIsLetGo) {
  auto script = world.objects.AddPlugIn("A.Router", "A");
  CRegistry& state = Load({});
  state.AddRouter("A.Router");
  world.settings.unwritable = {"TrayLights"};
  EXPECT_THROW(state.Release(), base::Error);
  EXPECT_EQ(script->alive, 0);
}

TEST_F(CRegistryTest, AFailureOfTheSaveInItsDestructionDoesNotEndTheProgram) {
  auto script = world.objects.AddPlugIn("A.Router", "A");
  Load({}).AddRouter("A.Router");
  world.settings.unwritable = {"TrayLights"};
  registry.reset();
  EXPECT_EQ(script->alive, 0);
  EXPECT_THAT(world.debug.lines, ElementsAre("The store refuses TrayLights"));
}

TEST_F(CRegistryTest, AValueThatCanNotBeWrittenIsToldAndTheRestIsWrittenAndThePlugInSaves) {
  auto script = world.objects.AddPlugIn("A.Router", "A");
  CRegistry& state = Load({});
  state.AddRouter("A.Router");
  state.RouterTitle("A");
  auto profile = MakeProfile("Game");
  profile->AddMapping(std::make_shared<CMapping>());
  state.AddMapProfile(profile, nullptr);
  for (const char* key : {"RouterCount",          "Router_1",
                          "RouterClass",          "Version",
                          "LoadOnStartup",        "ShowSplashOnStartup",
                          "TrayLights",           "MapProfileCount",
                          "MP_1_Description",     "MP_1_Name",
                          "MP_1_MapCount",        "MP_1_MAP_1_Description",
                          "MP_1_MAP_1_BeginPort", "MP_1_MAP_1_EndPort",
                          "MP_1_MAP_1_Protocal",  "MP_1_MAP_1_ForwardIPAddress",
                          "MP_1_WindowTitle",     "MP_1_WindowClass",
                          "MP_1_AutoActivate",    "MP_1_Enabled",
                          "ExportProfiles",       "LastMenuLocation",
                          "AutomaticActivation",  "FilterOutProfiles"}) {
    SCOPED_TRACE(key);
    world.settings.unwritable.clear();
    state.Save();
    auto all = world.settings.Values();
    ASSERT_EQ(all.erase(key), 1u);
    world.settings.unwritable = {key};
    script->calls.clear();
    EXPECT_EQ(support::ErrorTextOf([&] { state.Save(); }), std::string("The store refuses ") + key);
    EXPECT_EQ(world.settings.Values(), all);
    EXPECT_THAT(script->calls, testing::Contains("call IServer_SaveSettings()"));
  }
}

TEST_F(CRegistryTest, AValueThatCanNotBeWrittenDoesNotHideWhatFailedInThePlugIn) {
  auto script = world.objects.AddPlugIn("A.Router", "A");
  CRegistry& state = Load({});
  state.AddRouter("A.Router");
  state.RouterTitle("A");
  world.settings.unwritable = {"TrayLights"};
  script->Fail("IServer_SaveSettings", 77, "no room in the router");
  EXPECT_THAT(support::ErrorTextOf([&] { state.Save(); }),
              testing::AllOf(HasSubstr("The store refuses TrayLights"), HasSubstr("no room in the router")));
}

TEST_F(CRegistryTest, AFailureOfThePlugInDuringASaveGoesToTheCaller) {
  auto script = world.objects.AddPlugIn("A.Router", "A");
  CRegistry& state = Load({});
  state.AddRouter("A.Router");
  state.RouterTitle("A");
  script->Fail("IServer_SaveSettings", 77, "disk");
  EXPECT_THROW(state.Save(), base::Error);
  EXPECT_EQ(world.settings.Value("FilterOutProfiles"), "False");
}

}  // namespace
