#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EngineWorld.h"

namespace upnp {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

using RouterChoiceTest = EngineTest;

FoundGateway Hotel() {
  FoundGateway hotel = Found("uuid:b", "10.0.0.1");
  hotel.name = "Hotel Box";
  return hotel;
}

TEST_F(RouterChoiceTest, TheChoiceOfTheUserIsTakenEvenIfAnotherRanksHigher) {
  network.found = {Found("uuid:a"), Found("uuid:b")};
  Engine chosen(network, own, known, clock, progress, trace, "uuid:b");
  chosen.Want({{Wished(80, 80, true, false, 5)}, 5});
  EXPECT_TRUE(second.Has(80));
  EXPECT_FALSE(router.Has(80));
}

TEST_F(RouterChoiceTest, AChosenRouterThatIsNotThereIsNotReplacedByAnotherForSomeMinutes) {
  Engine chosen(network, own, known, clock, progress, trace, "uuid:b");
  chosen.Want({{Wished(80, 80, true, false, 5)}, 5});
  EXPECT_TRUE(router.table.empty());
  EXPECT_TRUE(HasTrouble(chosen.State().problems, Trouble::kNoAnswer));
  network.found.push_back(Found("uuid:b"));
  chosen.Check();
  EXPECT_TRUE(second.Has(80));
}

TEST_F(RouterChoiceTest, AChosenRouterThatStaysAwayIsReplacedAndItsReturnIsTakenUp) {
  known.Accept(Found("uuid:a"));
  Engine chosen(network, own, known, clock, progress, trace, "uuid:b");
  chosen.Want({{Wished(80, 80, true, false, 5)}, 5});
  clock.Turn(Engine::kHoldOn - std::chrono::seconds(1));
  chosen.Check();
  EXPECT_TRUE(router.table.empty());
  clock.Turn(std::chrono::seconds(1));
  chosen.Check();
  EXPECT_TRUE(router.Has(80));
  EXPECT_FALSE(chosen.State().warning);
  network.found.push_back(Found("uuid:b", "192.168.1.2"));
  clock.Turn(Engine::kBetterInterval);
  chosen.Check();
  EXPECT_TRUE(second.Has(80));
  EXPECT_FALSE(router.Has(80));
}

TEST_F(RouterChoiceTest, ARouterThatIsSilentForAMomentIsNotExchangedForAnother) {
  WantPort80();
  known.Accept(Found("uuid:b", "192.168.1.2"));
  router.silent = true;
  network.found = {Found("uuid:b", "192.168.1.2")};
  engine.Check();
  clock.Turn(std::chrono::seconds(15));
  engine.Check();
  EXPECT_TRUE(second.table.empty());
  EXPECT_TRUE(Tells(Trouble::kNoAnswer));
  router.silent = false;
  network.found = {Found("uuid:a"), Found("uuid:b", "192.168.1.2")};
  engine.Check();
  EXPECT_EQ(engine.State().current.device, "uuid:a");
  EXPECT_TRUE(second.table.empty());
}

TEST_F(RouterChoiceTest, ARouterThatWasReplacedIsTakenUpAgainWhenItReturns) {
  WantPort80();
  known.Accept(Found("uuid:b", "192.168.1.2"));
  router.silent = true;
  network.found = {Found("uuid:b", "192.168.1.2")};
  engine.Check();
  clock.Turn(Engine::kHoldOn);
  engine.Check();
  EXPECT_TRUE(second.Has(80));
  router.silent = false;
  network.found = {Found("uuid:a"), Found("uuid:b", "192.168.1.2")};
  clock.Turn(Engine::kBetterInterval);
  engine.Check();
  EXPECT_EQ(engine.State().current.device, "uuid:a");
  EXPECT_FALSE(second.Has(80));
}

TEST_F(RouterChoiceTest, TheGatewayOfTheDefaultRouteTakesOverWhenItIsFoundLater) {
  network.found = {Found("uuid:b", "192.168.1.2")};
  WantPort80();
  known.Accept(Found("uuid:a"));
  EXPECT_TRUE(second.Has(80));
  network.routes = {"192.168.1.1"};
  network.found = {Found("uuid:b", "192.168.1.2"), Found("uuid:a")};
  engine.LookAround();
  EXPECT_TRUE(router.Has(80));
  EXPECT_FALSE(second.Has(80));
  EXPECT_THAT(network.aim.routes, testing::ElementsAre("192.168.1.1"));
}

TEST_F(RouterChoiceTest, TheDefaultGatewayThatAnnouncesItselfLateIsLookedFor) {
  network.found = {Found("uuid:b", "192.168.1.2")};
  network.routes = {"192.168.1.1"};
  WantPort80();
  known.Accept(Found("uuid:a"));
  clock.Turn(std::chrono::minutes(1));
  network.found.push_back(Found("uuid:a"));
  engine.Hear(Alive("uuid:a", 1));
  EXPECT_EQ(engine.State().current.device, "uuid:a");
}

TEST_F(RouterChoiceTest, ASearchThatWasCalledOffSaysNothingAboutTheRouter) {
  WantPort80();
  network.calledOff = true;
  engine.SearchAgain();
  EXPECT_TRUE(engine.State().functional);
  EXPECT_EQ(engine.State().gateways.size(), 1u);
}

TEST_F(RouterChoiceTest, WithoutARouterAWishSearchesOnce) {
  network.found.clear();
  WantPort80();
  EXPECT_EQ(network.searches, 1);
}

TEST_F(RouterChoiceTest, ASilentRouterIsLookedForLessAndLessOften) {
  network.found.clear();
  WantPort80();
  std::vector<int> waits;
  for (int i = 0; i < 5; ++i) {
    const Moment wait = engine.NextCheck() - clock.Now();
    waits.push_back(static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(wait).count()));
    clock.Turn(wait);
    engine.Check();
  }
  EXPECT_THAT(waits, testing::ElementsAre(7, 15, 30, 60, 60));
  network.found = {Found("uuid:a")};
  engine.Check();
  EXPECT_EQ(engine.NextCheck() - clock.Now(), Engine::kCheckInterval);
}

TEST_F(RouterChoiceTest, ANewWishAndANewNetworkAreNotMadeToWaitForTheNextSearch) {
  network.found.clear();
  WantPort80();
  for (int i = 0; i < 5; ++i) engine.Check();
  WantPort80();
  EXPECT_EQ(engine.NextCheck() - clock.Now(), std::chrono::seconds(7));
  const int searches = network.searches;
  engine.LookAround();
  EXPECT_EQ(network.searches, searches + 1);
  EXPECT_EQ(engine.NextCheck() - clock.Now(), std::chrono::seconds(7));
}

TEST_F(RouterChoiceTest, TheFirstRouterThatIsEverUsedIsTheUsersOwn) {
  WantPort80();
  EXPECT_TRUE(known.Has("uuid:a"));
  EXPECT_FALSE(engine.State().foreign);
}

TEST_F(RouterChoiceTest, WithoutAWishNoRouterBecomesTheUsersOwn) {
  Want({});
  EXPECT_TRUE(known.IsEmpty());
}

TEST_F(RouterChoiceTest, OnAnotherRouterNothingIsOpenedAndTheUserIsTold) {
  known.Accept(Found("uuid:a"));
  network.found = {Hotel()};
  WantPort80();
  engine.Check();
  EXPECT_TRUE(second.table.empty());
  EXPECT_TRUE(engine.State().foreign);
  EXPECT_TRUE(engine.State().unmet);
  EXPECT_TRUE(engine.State().warning);
  ASSERT_TRUE(Tells(Trouble::kForeignRouter));
  EXPECT_THAT(Explain(engine.State().problems.at(0)),
              testing::AllOf(HasSubstr("Hotel Box at 10.0.0.1"), HasSubstr("\"Use this router\""),
                             HasSubstr("Configure")));
}

TEST_F(RouterChoiceTest, AnOutageAtHomeIsNoReasonToLeaveForAnotherRouter) {
  WantPort80();
  network.found = {Found("uuid:a"), Hotel()};
  network.found[0].connected = router.connected = false;
  clock.Turn(Engine::kBetterInterval);
  engine.Check();
  engine.SearchAgain();
  EXPECT_EQ(engine.State().current.device, "uuid:a");
  EXPECT_TRUE(router.Has(80));
}

TEST_F(RouterChoiceTest, AWanThatIsDownHasAnotherRouterOfTheUsersLookedFor) {
  WantPort80();
  known.Accept(Hotel());
  network.found = {Found("uuid:a"), Hotel()};
  network.found[0].connected = router.connected = false;
  clock.Turn(Engine::kBetterInterval);
  engine.Check();
  EXPECT_EQ(engine.State().current.device, "uuid:b");
  EXPECT_TRUE(second.Has(80));
}

TEST_F(RouterChoiceTest, BackHomeFromAnotherRouterTheOwnOneIsUsedAtOnce) {
  known.Accept(Found("uuid:a"));
  network.found = {Hotel()};
  WantPort80();
  second.silent = true;
  network.found = {Found("uuid:a")};
  engine.LookAround();
  EXPECT_TRUE(router.Has(80));
}

TEST_F(RouterChoiceTest, InAnotherNetworkTheRouterThatWasLeftBehindIsNotWaitedFor) {
  network.routes = {"192.168.1.1"};
  WantPort80();
  known.Accept(Hotel());
  router.silent = true;
  network.routes = {"10.0.0.1"};
  network.found = {Hotel()};
  engine.LookAround();
  EXPECT_TRUE(second.Has(80));
}

TEST_F(RouterChoiceTest, AYesOpensThePortsOnAnotherRouterAndIsRemembered) {
  known.Accept(Found("uuid:a"));
  network.found = {Hotel()};
  WantPort80();
  engine.AcceptRouter();
  EXPECT_TRUE(second.Has(80));
  EXPECT_FALSE(engine.State().foreign);
  EXPECT_FALSE(engine.State().warning);
  KnownRouters later(routerStore);
  EXPECT_TRUE(later.Has("uuid:b"));
}

TEST_F(RouterChoiceTest, TheChoiceInTheDialogIsAYesWhateverIsChosen) {
  known.Accept(Found("uuid:a"));
  network.found = {Hotel()};
  WantPort80();
  engine.Choose("");
  EXPECT_TRUE(second.Has(80));
}

TEST_F(RouterChoiceTest, OnAnotherRouterAnEmptyWishIsNoWarning) {
  known.Accept(Found("uuid:a"));
  network.found = {Hotel()};
  Want({});
  EXPECT_FALSE(engine.State().warning);
  EXPECT_FALSE(engine.State().foreign);
  EXPECT_EQ(second.tableReads + second.deletes, 0);
}

TEST_F(RouterChoiceTest, ARouterWithAnotherIdentifierAfterItsRestartNeedsNoSecondYes) {
  network.found[0].model = "Model 7";
  WantPort80();
  const std::string remembered = store.text;
  FoundGateway again = Found("uuid:b");
  again.model = "Model 7";
  router.silent = true;
  network.found.clear();
  engine.Check();
  router.silent = false;
  router.table.clear();
  network.found = {again};
  engine.Check();
  EXPECT_TRUE(router.Has(80));
  EXPECT_EQ(store.text, remembered);
  EXPECT_FALSE(engine.State().warning);
  // What it announces is understood under its new identifier.
  router.table.clear();
  clock.Turn(Engine::kQuietAfterNews);
  engine.Hear(Alive("uuid:b", 1));
  engine.Hear(Alive("uuid:b", 2));
  EXPECT_TRUE(router.Has(80));
}

TEST_F(RouterChoiceTest, AnotherChoiceTakesTheMappingsAlong) {
  network.found = {Found("uuid:a"), Found("uuid:b", "192.168.1.2")};
  WantPort80();
  engine.Choose("uuid:b");
  EXPECT_TRUE(router.table.empty());
  EXPECT_TRUE(second.Has(80));
  EXPECT_EQ(engine.State().current.device, "uuid:b");
}

TEST_F(RouterChoiceTest, ARouterInUseStaysInUseWhenABetterOneIsFound) {
  WantPort80();
  FoundGateway better = Found("uuid:b");
  better.deviceType = "urn:schemas-upnp-org:device:InternetGatewayDevice:2";
  network.found.push_back(better);
  engine.SearchAgain();
  EXPECT_EQ(engine.State().current.device, "uuid:a");
  EXPECT_EQ(engine.State().gateways.size(), 2u);
}

}  // namespace
}  // namespace upnp
