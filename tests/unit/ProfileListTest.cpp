#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "base/Conversions.h"
#include "base/Error.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "support/World.h"
#include "ui/Form.h"
#include "ui/ListView.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ProfileListTest : public testing::Test {
 protected:
  std::shared_ptr<CMapProfile> Add(const std::string& sName) {
    auto profile = std::make_shared<CMapProfile>();
    profile->sName = sName;
    registry.AddMapProfile(profile, nullptr);
    return profile;
  }
  std::string NameAfterAdding(const std::string& sName) { return Add(sName)->sName; }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& profile : registry.ccMapProfiles()) names.push_back(profile->sName);
    return names;
  }
  std::vector<std::string> Rows() const {
    std::vector<std::string> rows;
    for (std::size_t row = 0; row < list.RowCount(); ++row) {
      rows.push_back(std::string(list.Text(row)) + "|" + std::string(list.Text(row, 1)) +
                     (list.Selected(row) ? "*" : ""));
    }
    return rows;
  }

  support::World world;
  CRegistry registry;
  ui::Form window{"frmTest", "Test", {}, 100, 100};
  ui::ListView list{&window, "lvProfiles"};
};

TEST_F(ProfileListTest, AddingGameWhenGameExistsGivesGame1AndAgainGame2) {
  EXPECT_EQ(NameAfterAdding("Game"), "Game");
  EXPECT_EQ(NameAfterAdding("Game"), "Game(1)");
  EXPECT_EQ(NameAfterAdding("Game"), "Game(2)");
  EXPECT_THAT(Names(), ElementsAre("Game", "Game(1)", "Game(2)"));
}

TEST_F(ProfileListTest, AddingGameInLowerCaseWhenGameExistsKeepsItsName) {
  Add("Game");
  EXPECT_EQ(NameAfterAdding("game"), "game");
}

TEST_F(ProfileListTest, AddingGame1WhenGame1ExistsGivesGame11) {
  Add("Game(1)");
  EXPECT_EQ(NameAfterAdding("Game(1)"), "Game(1)(1)");
}

TEST_F(ProfileListTest, CGoesBetweenBAndDAndLowerCaseABehindD) {
  Add("B");
  Add("D");
  Add("C");
  Add("a");
  EXPECT_THAT(Names(), ElementsAre("B", "C", "D", "a"));
}

TEST_F(ProfileListTest, AnEmptyNameIsLegalAndSortsFirst) {
  Add("A");
  Add("");
  EXPECT_THAT(Names(), ElementsAre("", "A"));
  EXPECT_EQ(NameAfterAdding(""), "(1)");
}

TEST_F(ProfileListTest, CharactersBeyondAsciiSortByTheirCode) {
  Add("\xE4");
  Add("z");
  Add("\xFF");
  EXPECT_THAT(Names(), ElementsAre("z", "\xE4", "\xFF"));
}

TEST_F(ProfileListTest, TheLastMatchingNameGivesTheNumberAndNotTheGreatest) {
  Add("Game");
  Add("Game(10)");
  Add("Game(2)");
  EXPECT_EQ(NameAfterAdding("Game"), "Game(3)");
}

TEST_F(ProfileListTest, ANumberedNameThatIsTakenCollidesAndStandsBehindItsEqual) {
  Add("Game");
  Add("Game(10)");
  const auto three = Add("Game(3)");
  const auto two = Add("Game(2)");
  registry.RemoveMapProfile(three->sKey(), nullptr);
  registry.AddMapProfile(three, nullptr);
  const auto fourth = Add("Game");
  EXPECT_EQ(fourth->sName, "Game(4)");
  registry.RemoveMapProfile(fourth->sKey(), nullptr);
  registry.RemoveMapProfile(three->sKey(), nullptr);
  Add("Game(9)");
  // The last name says 9, so 10 is next, which is there already.
  const auto collided = Add("Game");
  EXPECT_EQ(collided->sName, "Game(10)");
  EXPECT_THAT(Names(), ElementsAre("Game", "Game(10)", "Game(10)", "Game(2)", "Game(9)"));
  EXPECT_EQ(std::next(registry.ccMapProfiles().begin(), 2)->get(), collided.get());
}

TEST_F(ProfileListTest, ARestWithoutDigitsCountsAs0) {
  Add("Game");
  Add("Game(x)");
  EXPECT_EQ(NameAfterAdding("Game"), "Game(1)");
  EXPECT_EQ(NameAfterAdding("Game"), "Game(1)");
}

TEST_F(ProfileListTest, TheStemAloneMatches) {
  Add("Game");
  Add("Game(");
  EXPECT_EQ(NameAfterAdding("Game"), "Game(1)");
}

TEST_F(ProfileListTest, ANegativeNumberCounts) {
  Add("Game");
  Add("Game(-5)");
  EXPECT_EQ(NameAfterAdding("Game"), "Game(-4)");
}

TEST_F(ProfileListTest, ANumberThatLeavesNoRoomForTheNextIsPassedOver) {
  Add("Game");
  Add("Game(3)");
  Add("Game(99999999999)");
  EXPECT_EQ(NameAfterAdding("Game"), "Game(4)");
  Add("Net");
  Add("Net(2147483647)");
  EXPECT_EQ(NameAfterAdding("Net"), "Net(1)");
  Add("Web");
  Add("Web(2147483646)");
  EXPECT_EQ(NameAfterAdding("Web"), "Web(2147483647)");
}

TEST_F(ProfileListTest, ARenamedProfileTakesItsNewPlaceWhenItIsRemovedAndAdded) {
  const auto profile = Add("A");
  Add("B");
  profile->sName = "C";
  registry.RemoveMapProfile(profile->sKey(), nullptr);
  registry.AddMapProfile(profile, nullptr);
  EXPECT_THAT(Names(), ElementsAre("B", "C"));
  EXPECT_EQ(NameAfterAdding("A"), "A");
}

TEST_F(ProfileListTest, AProfileAddedTwiceFailsByItsKey) {
  const auto profile = Add("A");
  EXPECT_THROW(registry.AddMapProfile(profile, nullptr), base::Error);
  EXPECT_EQ(registry.ccMapProfiles().Count(), 1u);
  profile->sName = "A";
  registry.RemoveMapProfile(profile->sKey(), nullptr);
  EXPECT_EQ(NameAfterAdding("A"), "A");
}

/// The rules by the book: walks over the whole collection.
class PlainList {
 public:
  std::string Add(std::string sName) {
    if (std::ranges::find(names_, sName) != names_.end()) {
      const std::string stem = sName + "(";
      double number = 1;
      for (const std::string& name : names_) {
        if (name.starts_with(stem)) number = base::LeadingNumber(name.substr(stem.size())) + 1;
      }
      sName += "(" + base::ToText(base::ToInt32(number)) + ")";
    }
    auto place = names_.end();
    for (auto name = names_.begin(); name != names_.end(); ++name) {
      if (*name > sName && (place == names_.end() || *name < *place)) place = name;
    }
    names_.insert(place, sName);
    return sName;
  }
  const std::vector<std::string>& Names() const { return names_; }

 private:
  std::vector<std::string> names_;
};

TEST_F(ProfileListTest, AgreesWithAPlainWalkOverManyNames) {
  PlainList plain;
  std::mt19937 random(20261121);
  const std::string letters = "aA(1)9\xFF";
  for (int i = 0; i < 1500; ++i) {
    std::string sName;
    for (std::size_t length = random() % 5; length > 0; --length) sName += letters[random() % letters.size()];
    EXPECT_EQ(NameAfterAdding(sName), plain.Add(sName));
  }
  EXPECT_EQ(Names(), plain.Names());
}

TEST_F(ProfileListTest, RemovingAnUnknownKeyIsIgnored) {
  Add("A");
  registry.RemoveMapProfile("Map_x", nullptr);
  registry.RemoveMapProfile("Map_x", &list);
  EXPECT_THAT(Names(), ElementsAre("A"));
}

TEST_F(ProfileListTest, RemovingTakesTheRowAwayToo) {
  const auto profile = std::make_shared<CMapProfile>();
  registry.AddMapProfile(profile, &list);
  EXPECT_EQ(list.RowCount(), 1u);
  registry.RemoveMapProfile(profile->sKey(), &list);
  EXPECT_EQ(list.RowCount(), 0u);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ProfileListTest, RemovingAProfileWithoutARowIsIgnored) {
  const auto profile = Add("A");
  registry.RemoveMapProfile(profile->sKey(), &list);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ProfileListTest, ARowWhoseProfileIsGoneIsTakenAwayAllTheSame) {
  const auto profile = std::make_shared<CMapProfile>();
  registry.AddMapProfile(profile, &list);
  registry.RemoveMapProfile(profile->sKey(), nullptr);
  registry.RemoveMapProfile(profile->sKey(), &list);
  EXPECT_EQ(list.RowCount(), 0u);
}

TEST_F(ProfileListTest, RemovingAnActiveProfileDoesNotTouchTheRouter) {
  auto script = world.objects.AddPlugIn("A.Router", "A");
  registry.AddRouter("A.Router");
  registry.RouterTitle("A");
  const auto profile = Add("A");
  profile->bEnabled = true;
  script->calls.clear();
  registry.RemoveMapProfile(profile->sKey(), nullptr);
  EXPECT_THAT(script->calls, IsEmpty());
}

TEST_F(ProfileListTest, FindsAProfileByItsKey) {
  const auto profile = Add("A");
  EXPECT_EQ(registry.GetMapProfileByKey(profile->sKey()), profile);
  EXPECT_THROW(registry.GetMapProfileByKey("Map_x"), base::Error);
}

TEST_F(ProfileListTest, AddingWithAListAppendsARowAndSelectsIt) {
  for (const char* sName : {"B", "A"}) {
    auto profile = std::make_shared<CMapProfile>();
    profile->sName = sName;
    profile->bEnabled = true;
    registry.AddMapProfile(profile, &list);
  }
  EXPECT_THAT(Rows(), ElementsAre("B|B", "A|A*"));
  EXPECT_EQ(list.Key(1), (*registry.ccMapProfiles().begin())->sKey());
  EXPECT_THAT(list.SubItemKeys(), ElementsAre("Name"));
}

TEST_F(ProfileListTest, FillingAListShowsAllProfilesPlainAndSelectsTheSmallestName) {
  Add("Web")->bEnabled = true;
  Add("Game");
  list.AddRow("stale", "stale");
  registry.PopulateMapProfileListView(list, false);
  EXPECT_THAT(Rows(), ElementsAre("Game|Game*", "Web|Web"));
  EXPECT_EQ(list.CellColor(1, 0), ui::kDefaultColor);
}

TEST_F(ProfileListTest, FillingAListOfAutomaticProfilesSkipsTheOthersAndMarksActiveOnes) {
  Add("Alone")->bEnabled = true;
  const auto game = Add("Game");
  game->bAutoActivate = true;
  game->bEnabled = true;
  Add("Web")->bAutoActivate = true;
  registry.PopulateMapProfileListView(list, true);
  EXPECT_THAT(Rows(), ElementsAre("Game (Active)|Game (Active)*", "Web|Web"));
  EXPECT_EQ(list.CellColor(0, 0), ui::Rgb(128, 0, 0));
  EXPECT_EQ(list.CellColor(1, 0), ui::kDefaultColor);
}

TEST_F(ProfileListTest, FillingAListWithNothingLeavesItEmptyWithoutASelection) {
  Add("A");
  registry.PopulateMapProfileListView(list, true);
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_FALSE(list.SelectedRow().has_value());
}

}  // namespace
