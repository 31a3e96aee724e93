#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Conversions.h"
#include "base/Error.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "support/RecordingToolkit.h"
#include "support/World.h"
#include "ui/ComboBox.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RouterListTest : public testing::Test {
 protected:
  std::shared_ptr<support::Script> Install(const std::string& sClass, const std::string& sTitle) {
    return world.objects.AddPlugIn(sClass, sTitle);
  }
  CRegistry& Load() {
    registry.reset();
    world.objects.created.clear();
    return registry.emplace();
  }
  /// Titles in the order of the list, as the router page shows them.
  std::vector<std::string> Titles() {
    registry->PopulateRouterList(combo);
    std::vector<std::string> titles;
    for (std::int32_t i = 0; i < combo.ListCount(); ++i) titles.push_back(combo.List(i));
    return titles;
  }

  support::World world;
  std::optional<CRegistry> registry;
  ui::Form window{"frmTest", "Test", {}, 100, 100};
  ui::ComboBox combo{&window, "cbRouterSelection"};
};

TEST_F(RouterListTest, AWaitingPlugInWithNumber7AloneIsTakenUpAndTheValueIsGone) {
  Install("A.Router", "A");
  world.settings.Values() = {{"RouterPlugIn_7", "A.Router"}};
  Load();
  EXPECT_THAT(Titles(), ElementsAre("A"));
  EXPECT_FALSE(world.settings.Contains("RouterPlugIn_7"));
}

TEST_F(RouterListTest, AWaitingClassThatIsAlreadyKnownGivesOneEntryAheadOfTheOthers) {
  Install("A.Router", "A");
  Install("B.Router", "B");
  world.settings.Values() = {{"RouterCount", "2"},
                             {"Router_1", "A.Router"},
                             {"Router_2", "B.Router"},
                             {"RouterPlugIn_1", "B.Router"}};
  Load();
  EXPECT_THAT(Titles(), ElementsAre("B", "A"));
  registry->Save();
  EXPECT_EQ(world.settings.Value("Router_1"), "B.Router");
  EXPECT_EQ(world.settings.Value("Router_2"), "A.Router");
}

TEST_F(RouterListTest, WaitingValuesAbove100AreNeverLookedAt) {
  Install("A.Router", "A");
  Install("B.Router", "B");
  world.settings.Values() = {
      {"RouterPlugIn_100", "A.Router"}, {"RouterPlugIn_101", "B.Router"}, {"RouterPlugIn_0", "B.Router"}};
  Load();
  EXPECT_THAT(Titles(), ElementsAre("A"));
  EXPECT_TRUE(world.settings.Contains("RouterPlugIn_101"));
  EXPECT_TRUE(world.settings.Contains("RouterPlugIn_0"));
}

TEST_F(RouterListTest, AWaitingValueWhoseClassDoesNotExistIsConsumedWithoutATrace) {
  world.settings.Values() = {{"RouterPlugIn_57", "No.Such.Class"}};
  Load();
  EXPECT_THAT(Titles(), IsEmpty());
  EXPECT_FALSE(world.settings.Contains("RouterPlugIn_57"));
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(RouterListTest, AnEmptyWaitingValueStays) {
  world.settings.Values() = {{"RouterPlugIn_2", ""}};
  Load();
  EXPECT_TRUE(world.settings.Contains("RouterPlugIn_2"));
  EXPECT_THAT(world.objects.created, IsEmpty());
}

TEST_F(RouterListTest, APlugInWithAnotherOnesTitleIsDroppedAndForgottenAtTheNextSave) {
  Install("A.Router", "Same");
  auto second = Install("B.Router", "Same");
  world.settings.Values() = {{"RouterCount", "2"}, {"Router_1", "A.Router"}, {"Router_2", "B.Router"}};
  Load();
  EXPECT_THAT(Titles(), ElementsAre("Same"));
  EXPECT_EQ(second->alive, 0);
  registry->Save();
  EXPECT_EQ(world.settings.Value("RouterCount"), "1");
  EXPECT_EQ(world.settings.Value("Router_1"), "A.Router");
  EXPECT_FALSE(world.settings.Contains("Router_2"));
}

TEST_F(RouterListTest, TitlesThatDifferInTheCaseOfAnAccentedLetterAreOneKey) {
  Install("A.Router", "Z\xFCrich");
  Install("B.Router", "Z\xDCRICH");
  world.settings.Values() = {{"RouterCount", "2"}, {"Router_1", "A.Router"}, {"Router_2", "B.Router"}};
  Load();
  EXPECT_THAT(Titles(), ElementsAre("Z\xFCrich"));
  EXPECT_TRUE(registry->GetRouterByTitle("z\xDCrich"));
}

TEST_F(RouterListTest, TitlesThatDifferByCaseOnlyAreOneKey) {
  Install("A.Router", "Same");
  Install("B.Router", "SAME");
  Load();
  registry->AddRouter("A.Router");
  registry->AddRouter("B.Router");
  EXPECT_THAT(Titles(), ElementsAre("Same"));
  EXPECT_EQ(modServerHelper::ClassName(registry->GetRouterByTitle("sAmE")), "A.Router");
}

TEST_F(RouterListTest, AStoredVersionThatDiffersLeavesNoRouterSelectedAndTheClassIsNotRead) {
  Install("A.Router", "A");
  world.settings.Values() = {
      {"Version", "0.0.0"}, {"RouterCount", "1"}, {"Router_1", "A.Router"}, {"RouterClass", "A.Router"}};
  Load();
  EXPECT_FALSE(registry->RouterValid());
  EXPECT_THAT(world.settings.reads, testing::Not(testing::Contains("RouterClass")));
  registry->Save();
  EXPECT_FALSE(world.settings.Contains("RouterClass"));
}

TEST_F(RouterListTest, ASavedRouterClassThatIsNoLongerInstalledGivesNoSelectionAndNoMessage) {
  world.settings.Values() = {{"Version", modCommon::GetVersionString()},
                             {"RouterCount", "1"},
                             {"Router_1", "Gone.Router"},
                             {"RouterClass", "Gone.Router"}};
  Load();
  EXPECT_FALSE(registry->RouterValid());
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(RouterListTest, AStoredRouterWithAnEmptyClassIsPassedOver) {
  Install("A.Router", "A");
  world.settings.Values() = {{"RouterCount", "3"}, {"Router_1", ""}, {"Router_3", "A.Router"}};
  Load();
  EXPECT_THAT(Titles(), ElementsAre("A"));
  EXPECT_THAT(world.objects.created, ElementsAre("A.Router"));
}

TEST_F(RouterListTest, ARouterWithAnEmptyClassNameIsCountedButNotStored) {
  auto nameless = Install("A.Router", "A");
  Install("B.Router", "B");
  Load();
  registry->AddRouter("A.Router");
  registry->AddRouter("B.Router");
  nameless->Answer("IServer_ClassName", "");
  registry->Save();
  EXPECT_EQ(world.settings.Value("RouterCount"), "2");
  EXPECT_EQ(world.settings.Value("Router_1"), "B.Router");
  EXPECT_FALSE(world.settings.Contains("Router_2"));
  Load();
  EXPECT_THAT(Titles(), ElementsAre("B"));
}

TEST_F(RouterListTest, APlugInWhoseTitleFailsIsLeftOut) {
  auto broken = Install("Broken.Router", "Broken");
  broken->Fail("IServer_ServerTitle", 5, "no title");
  Load().AddRouter("Broken.Router");
  EXPECT_THAT(Titles(), IsEmpty());
  EXPECT_EQ(broken->alive, 0);
}

TEST_F(RouterListTest, APlugInThatLacksTheTitleOrAnswersWithAnObjectIsLeftOut) {
  auto broken = Install("Broken.Router", "Broken");
  broken->Lack("IServer_ServerTitle");
  Load().AddRouter("Broken.Router");
  broken->Answer("IServer_ServerTitle", base::ObjectRef());
  registry->AddRouter("Broken.Router");
  EXPECT_THAT(Titles(), IsEmpty());
}

TEST_F(RouterListTest, AFactoryThatMakesNothingIsPassedOver) {
  Install("A.Router", "A");
  world.objects.makesNothing = {"A.Router"};
  Load().AddRouter("A.Router");
  EXPECT_THAT(Titles(), IsEmpty());
}

TEST_F(RouterListTest, APlugInThatLacksAnyOtherMemberComesInAllTheSame) {
  auto poor = Install("Poor.Router", "Poor");
  poor->Lack("IServer_Version");
  poor->Lack("IServer_Functional");
  Load().AddRouter("Poor.Router");
  EXPECT_THAT(Titles(), ElementsAre("Poor"));
}

TEST_F(RouterListTest, AddingOnlyAsksForTheTitle) {
  auto script = Install("A.Router", "A");
  Load().AddRouter("A.Router");
  EXPECT_THAT(script->calls, ElementsAre("get IServer_ServerTitle"));
}

TEST_F(RouterListTest, AnEmptyTitleIsATitle) {
  Install("A.Router", "");
  Load().AddRouter("A.Router");
  EXPECT_THAT(Titles(), ElementsAre(""));
  EXPECT_NE(registry->GetRouterByTitle(""), nullptr);
}

TEST_F(RouterListTest, FindsARouterByItsExactClassNameOnly) {
  Install("A.Router", "A");
  Install("B.Router", "B");
  Load();
  registry->AddRouter("A.Router");
  registry->AddRouter("B.Router");
  EXPECT_EQ(registry->GetRouterByClass("B.Router"), registry->GetRouterByTitle("B"));
  EXPECT_EQ(registry->GetRouterByClass("b.router"), nullptr);
  EXPECT_EQ(registry->GetRouterByClass(""), nullptr);
}

TEST_F(RouterListTest, StopsTheSearchByClassAtTheFirstHit) {
  Install("A.Router", "A");
  auto second = Install("B.Router", "B");
  Load();
  registry->AddRouter("A.Router");
  registry->AddRouter("B.Router");
  second->calls.clear();
  EXPECT_NE(registry->GetRouterByClass("A.Router"), nullptr);
  EXPECT_THAT(second->calls, IsEmpty());
}

TEST_F(RouterListTest, FailsForATitleThatIsNotInTheList) {
  Load();
  EXPECT_THROW(registry->GetRouterByTitle("A"), base::Error);
  EXPECT_THROW(registry->RouterTitle("A"), base::Error);
  EXPECT_FALSE(registry->RouterValid());
}

TEST_F(RouterListTest, SelectingByTitleTellsThePlugInNothingAndSavesNothing) {
  auto script = Install("A.Router", "A");
  Load().AddRouter("A.Router");
  script->calls.clear();
  world.journal.clear();
  registry->RouterTitle("A");
  EXPECT_TRUE(registry->RouterValid());
  EXPECT_THAT(world.journal, IsEmpty());
}

TEST_F(RouterListTest, FillingTheControlReplacesItsEntriesAndChoosesTheSelectedRouter) {
  Install("A.Router", "A");
  Install("B.Router", "B");
  Load();
  registry->AddRouter("A.Router");
  registry->AddRouter("B.Router");
  registry->RouterTitle("B");
  combo.AddItem("stale");
  int clicks = 0;
  combo.Click.Connect([&] { ++clicks; });
  EXPECT_THAT(Titles(), ElementsAre("A", "B"));
  EXPECT_EQ(combo.ListIndex(), 1);
  EXPECT_EQ(clicks, 1);
}

TEST_F(RouterListTest, FillingTheControlWithoutASelectedRouterChoosesNothing) {
  Install("A.Router", "A");
  Load().AddRouter("A.Router");
  int clicks = 0;
  combo.Click.Connect([&] { ++clicks; });
  Titles();
  EXPECT_EQ(combo.ListIndex(), -1);
  EXPECT_EQ(clicks, 0);
}

TEST_F(RouterListTest, TitlesCompareExactlyWhenTheControlIsFilled) {
  auto script = Install("A.Router", "Alpha");
  Load().AddRouter("A.Router");
  registry->RouterTitle("ALPHA");
  int asked = 0;
  // The selected router answers in another case than the entry.
  script->Do("IServer_ServerTitle",
             [&](std::span<platform::Argument>) -> base::Variant { return ++asked % 2 ? "Alpha" : "ALPHA"; });
  EXPECT_THAT(Titles(), ElementsAre("Alpha"));
  EXPECT_EQ(combo.ListIndex(), -1);
}

TEST_F(RouterListTest, APlugInThatIsInstalledWhileTheProgramRunsComesInAtTheNextCheck) {
  Load();
  Install("Late.Router", "Late");
  world.settings.Values()["RouterPlugIn_12"] = "Late.Router";
  registry->CheckForPlugIns();
  EXPECT_THAT(Titles(), ElementsAre("Late"));
}

TEST_F(RouterListTest, APlugInThatCanNotNameItsClassIsSelectedByTheOneThatItWasMadeFrom) {
  world.objects.AddPlugIn("A.Router", "A")->Fail("IServer_ClassName", 7, "no answer");
  world.objects.AddPlugIn("B.Router", "B");
  for (const char* selected : {"A.Router", "B.Router"}) {
    registry.reset();
    world.settings.Values() = {{"Version", modCommon::GetVersionString()},
                               {"RouterCount", "2"},
                               {"Router_1", "A.Router"},
                               {"Router_2", "B.Router"},
                               {"RouterClass", selected}};
    const CRegistry& state = Load();
    EXPECT_EQ(state.Router, state.GetRouterByClass(selected)) << selected;
    EXPECT_TRUE(state.RouterValid());
  }
}

TEST_F(RouterListTest, APlugInWhoseTitleFailsLaterIsListedByItsFirstOneAndTheOthersAreListedToo) {
  auto failing = world.objects.AddPlugIn("A.Router", "A");
  world.objects.AddPlugIn("B.Router", "B");
  CRegistry& state = Load();
  state.AddRouter("A.Router");
  state.AddRouter("B.Router");
  state.RouterTitle("A");
  failing->Fail("IServer_ServerTitle", 7, "no answer");
  EXPECT_EQ(support::ErrorTextOf([&] { state.PopulateRouterList(combo); }), "no answer");
  ASSERT_EQ(combo.ListCount(), 2);
  EXPECT_EQ(combo.List(0), "A");
  EXPECT_EQ(combo.List(1), "B");
  EXPECT_EQ(combo.ListIndex(), 0);
}

TEST_F(RouterListTest, AHandlerThatFailsWhileTheListIsFilledLosesNoEntry) {
  world.objects.AddPlugIn("A.Router", "A");
  world.objects.AddPlugIn("B.Router", "B");
  CRegistry& state = Load();
  state.AddRouter("A.Router");
  state.AddRouter("B.Router");
  state.RouterTitle("A");
  combo.Click.Connect([] { throw base::Error(7, "no answer"); });
  EXPECT_EQ(support::ErrorTextOf([&] { state.PopulateRouterList(combo); }), "no answer");
  EXPECT_EQ(combo.ListCount(), 2);
}

TEST_F(RouterListTest, AListThatIsFilledAnewWhileItIsFilledHasEachEntryOnce) {
  world.objects.AddPlugIn("A.Router", "A");
  world.objects.AddPlugIn("B.Router", "B");
  CRegistry& state = Load();
  state.AddRouter("A.Router");
  state.AddRouter("B.Router");
  state.RouterTitle("A");
  bool again = true;
  combo.Click.Connect([&] {
    if (std::exchange(again, false)) state.PopulateRouterList(combo);
  });
  state.PopulateRouterList(combo);
  EXPECT_EQ(combo.ListCount(), 2);
}

}  // namespace
