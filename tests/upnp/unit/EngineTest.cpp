#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EngineWorld.h"

namespace upnp {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(EngineTest, TheFirstWishFindsTheRouterAndIsFulfilled) {
  WantPort80();
  EXPECT_TRUE(router.Has(80));
  EXPECT_TRUE(engine.State().functional);
  EXPECT_FALSE(engine.State().unmet);
  EXPECT_FALSE(engine.State().warning);
  EXPECT_EQ(engine.State().current.wanAddress, "1.2.3.4");
}

TEST_F(EngineTest, WithoutARouterAWishIsUnmetAndTold) {
  network.found.clear();
  WantPort80();
  EXPECT_TRUE(engine.State().unmet);
  EXPECT_TRUE(engine.State().warning);
  EXPECT_TRUE(Tells(Trouble::kNoRouter));
}

TEST_F(EngineTest, WithoutARouterAnEmptyWishIsNoFailure) {
  network.found.clear();
  Want({});
  EXPECT_FALSE(engine.State().unmet);
  EXPECT_FALSE(engine.State().warning);
  EXPECT_FALSE(engine.State().functional);
}

TEST_F(EngineTest, ARouterThatComesLaterGetsTheWish) {
  network.found.clear();
  WantPort80();
  network.found = {Found("uuid:a")};
  engine.Check();
  EXPECT_TRUE(router.Has(80));
  EXPECT_FALSE(engine.State().warning);
}

TEST_F(EngineTest, ACheckBeforeAnyWishLeavesTheRouterAlone) {
  store.text = "TCP 80 192.168.1.5 uuid:a\n";
  router.Put(80, Protocol::kTcp, "192.168.1.5", "Harbourline: Web");
  engine.Check();
  engine.Check();
  EXPECT_TRUE(router.Has(80));
  EXPECT_EQ(router.adds + router.deletes, 0);
  EXPECT_TRUE(engine.State().functional);
}

TEST_F(EngineTest, AnActivationThatChangesNothingAsksOnlyForTheTable) {
  WantPort80();
  router.ResetCounters();
  const int searches = network.searches;
  WantPort80();
  EXPECT_EQ(router.tableReads, 2);
  EXPECT_EQ(router.adds + router.deletes + router.lookups, 0);
  EXPECT_EQ(network.searches, searches);
}

TEST_F(EngineTest, ARouterThatRestartsByItsUpTimeGetsEverythingAtTheNextCheck) {
  WantPort80();
  engine.Check();
  router.table.clear();
  router.upTime = 3;
  engine.Check();
  EXPECT_TRUE(router.Has(80));
}

TEST_F(EngineTest, ARouterThatAnnouncesAnotherBootGetsEverythingAtOnce) {
  WantPort80();
  engine.Hear(Alive("uuid:a", 7));
  router.table.clear();
  engine.Hear(Alive("uuid:a", 8));
  EXPECT_TRUE(router.Has(80));
}

TEST_F(EngineTest, ARouterThatTookItsLeaveAndIsBackGetsEverythingAtOnce) {
  WantPort80();
  SsdpMessage gone = Alive("uuid:a", std::nullopt);
  gone.kind = SsdpMessage::Kind::kGone;
  engine.Hear(gone);
  router.table.clear();
  engine.Hear(Alive("uuid:a", std::nullopt));
  EXPECT_TRUE(router.Has(80));
}

TEST_F(EngineTest, AnAnnouncementThatTellsNothingNewCostsNothing) {
  WantPort80();
  engine.Hear(Alive("uuid:a", 7));
  router.ResetCounters();
  for (int i = 0; i < 20; ++i) engine.Hear(Alive("uuid:a", 7));
  for (int i = 0; i < 20; ++i) engine.Hear(Alive("uuid:stranger", 9));
  EXPECT_EQ(router.tableReads + router.lookups + router.adds, 0);
  EXPECT_EQ(network.searches, 1);
}

TEST_F(EngineTest, ARouterThatAnnouncesItselfFromTwoPlacesIsSoughtOnceInAWhile) {
  WantPort80();
  SsdpMessage elsewhere = Alive("uuid:a", std::nullopt);
  elsewhere.location = "http://192.168.1.1:5999/root.xml";
  router.ResetCounters();
  for (int i = 0; i < 20; ++i) engine.Hear(elsewhere);
  EXPECT_EQ(network.searches, 1);
  EXPECT_EQ(router.tableReads, 0);
  clock.Turn(std::chrono::seconds(10));
  for (int i = 0; i < 20; ++i) engine.Hear(elsewhere);
  EXPECT_EQ(network.searches, 2);
}

TEST_F(EngineTest, ANewWanAddressHasTheTableLookedThrough) {
  WantPort80();
  engine.Check();
  router.ResetCounters();
  router.wanAddress = "1.2.3.5";
  engine.Check();
  EXPECT_GT(router.tableReads, 0);
  EXPECT_EQ(engine.State().current.wanAddress, "1.2.3.5");
}

TEST_F(EngineTest, ASilentRouterIsToldAndItsMappingsComeBackWithIt) {
  WantPort80();
  router.silent = true;
  network.found.clear();
  engine.Check();
  EXPECT_FALSE(engine.State().functional);
  EXPECT_TRUE(engine.State().warning);
  EXPECT_TRUE(Tells(Trouble::kNoAnswer));
  router.silent = false;
  router.table.clear();
  network.found = {Found("uuid:a")};
  engine.Check();
  EXPECT_TRUE(router.Has(80));
  EXPECT_TRUE(engine.State().functional);
}

TEST_F(EngineTest, ARouterWithANewAddressIsKnownByItsIdentifier) {
  WantPort80();
  router.silent = true;
  network.found = {Found("uuid:a", "10.0.0.1")};
  network.routers["uuid:a"] = &second;
  engine.Check();
  EXPECT_EQ(engine.State().current.Address(), "10.0.0.1");
  EXPECT_TRUE(second.Has(80));
}

TEST_F(EngineTest, AWishThatMeetsASilentRouterLooksForItOnce) {
  WantPort80();
  router.silent = true;
  network.found.clear();
  const int searches = network.searches;
  Want({Wished(90, 90, true, false, 5)});
  EXPECT_TRUE(engine.State().unmet);
  EXPECT_EQ(network.searches, searches + 1);
}

TEST_F(EngineTest, OwnAddressThatChangesMovesTheMappings) {
  WantPort80();
  network.localAddress = "192.168.1.6";
  engine.Check();
  EXPECT_EQ(router.table[PortKey(80, Protocol::kTcp)].client, "192.168.1.6");
}

TEST_F(EngineTest, ARouterBehindARouterIsToldWithoutFailingTheWish) {
  router.wanAddress = "100.64.0.9";
  network.found[0].wanAddress = "100.64.0.9";
  WantPort80();
  EXPECT_TRUE(Tells(Trouble::kDoubleNat));
  EXPECT_TRUE(engine.State().warning);
  EXPECT_FALSE(engine.State().unmet);
  EXPECT_THAT(Explain(engine.State().problems.at(0)), HasSubstr("100.64.0.9"));
}

TEST_F(EngineTest, AWanConnectionThatIsDownIsTold) {
  WantPort80();
  router.connected = false;
  engine.Check();
  EXPECT_TRUE(Tells(Trouble::kWanDown));
  EXPECT_FALSE(engine.State().unmet);
}

TEST_F(EngineTest, AFloodOfRestartsReadsTheTableOnceInTenSeconds) {
  WantPort80();
  router.ResetCounters();
  for (std::uint32_t boot = 0; boot < 1000; ++boot) {
    engine.Hear(Alive("uuid:a", boot));
    clock.Turn(std::chrono::milliseconds(10));
    if (clock.Now() >= engine.NextCheck()) engine.Check();
  }
  EXPECT_LE(router.tableReads, 2 * 2);
  router.table.clear();
  clock.Turn(Engine::kQuietAfterNews);
  if (clock.Now() >= engine.NextCheck()) engine.Check();
  EXPECT_TRUE(router.Has(80));
}

TEST_F(EngineTest, NobodySaysGoodbyeForTheRouterInUse) {
  WantPort80();
  SsdpMessage gone = Alive("uuid:a", std::nullopt);
  gone.kind = SsdpMessage::Kind::kGone;
  gone.sender = "192.168.1.66";
  engine.Hear(gone);
  router.ResetCounters();
  engine.Hear(Alive("uuid:a", std::nullopt));
  EXPECT_EQ(router.tableReads, 0);
}

TEST_F(EngineTest, NobodyAnnouncesARestartForTheRouterInUse) {
  WantPort80();
  engine.Hear(Alive("uuid:a", 1));
  router.ResetCounters();
  SsdpMessage lie = Alive("uuid:a", 2);
  lie.sender = "192.168.1.66";
  lie.location = "http://192.168.1.66:80/";
  engine.Hear(lie);
  EXPECT_EQ(router.tableReads, 0);
  EXPECT_EQ(network.searches, 1);
}

TEST_F(EngineTest, AMappingForAnotherComputerStaysThroughRequestsThatAreSilentAboutIt) {
  Want({Wished(80, 80, true, false, 17)});
  Want({});
  EXPECT_TRUE(router.Has(80));
  router.table.clear();
  engine.Check();
  EXPECT_TRUE(router.Has(80));
  WishedMapping clear = Wished(80, 80, true, false, 17);
  clear.clear = true;
  Want({clear});
  EXPECT_FALSE(router.Has(80));
}

TEST_F(EngineTest, ADmzHostIsToldAndDoesNothingToTheRouter) {
  WantPort80();
  router.ResetCounters();
  engine.WantExposedHost(true);
  EXPECT_TRUE(Tells(Trouble::kNoExposedHost));
  EXPECT_FALSE(engine.State().warning);
  EXPECT_EQ(router.adds + router.deletes, 0);
  engine.WantExposedHost(false);
  EXPECT_THAT(engine.State().problems, IsEmpty());
}

TEST_F(EngineTest, AfterARestartEverythingIsAddedAnewWhateverTheTableSays) {
  WantPort80();
  engine.Check();
  router.open.clear();
  router.upTime = 3;
  engine.Check();
  EXPECT_TRUE(router.IsOpen(80));
}

TEST_F(EngineTest, AtANewWanAddressEverythingIsAddedAnew) {
  WantPort80();
  engine.Check();
  router.open.clear();
  router.wanAddress = "1.2.3.5";
  engine.Check();
  EXPECT_TRUE(router.IsOpen(80));
}

TEST_F(EngineTest, ARouterThatWasSilentGetsEverythingAnew) {
  WantPort80();
  router.refuseTable = router.refuseLookup = error::kInvalidAction;
  WantPort80();
  router.silent = true;
  const auto found = std::exchange(network.found, {});
  engine.Check();
  EXPECT_FALSE(engine.State().functional);
  router.Restart();
  router.silent = false;
  network.found = found;
  engine.Check();
  EXPECT_TRUE(router.IsOpen(80));
}

TEST_F(EngineTest, TheUserCanHaveEverythingSetAnew) {
  WantPort80();
  router.open.clear();
  router.addsAnewOnly = true;
  router.ResetCounters();
  engine.SetAnew();
  EXPECT_TRUE(router.IsOpen(80));
  EXPECT_EQ(router.deletes, 1);
  EXPECT_FALSE(engine.State().unmet);
}

TEST_F(EngineTest, ARouterThatCutsTheConnectionAtTheQuestionForItsStatusIsNotSilent) {
  WantPort80();
  router.resets = {"Status"};
  network.found[0].connected = false;
  engine.Check();
  EXPECT_TRUE(engine.State().functional);
  EXPECT_THAT(engine.State().problems, IsEmpty());
  router.resets = {"Status", "ExternalAddress"};
  network.found.clear();
  engine.Check();
  EXPECT_FALSE(engine.State().functional);
}

TEST_F(EngineTest, TheNextCheckComesWhenALeaseIsToBeRenewed) {
  router.longestLease = 20;
  router.leasesEnd = true;
  WantPort80();
  EXPECT_EQ(engine.NextCheck(), clock.Now() + std::chrono::seconds(10));
  for (int i = 0; i < 20; ++i) {
    clock.now = engine.NextCheck();
    engine.Check();
    ASSERT_TRUE(router.IsOpen(80)) << i;
  }
}

TEST_F(EngineTest, WhatTheFarewellLeftIsTakenOffAtTheNextStart) {
  WantPort80();
  router.silent = true;
  engine.Leave();
  EXPECT_THAT(engine.Remaining(), testing::SizeIs(1));
  router.silent = false;
  OwnMappings nextOwn(store);
  Engine next(network, nextOwn, known, clock, progress, trace, "");
  next.Check();
  EXPECT_TRUE(router.table.empty());
  EXPECT_EQ(store.text, "");
}

TEST_F(EngineTest, TheFarewellTakesFiveSecondsAtMost) {
  Want({Wished(5000, 5499, true, false, 5)});
  router.slowness = std::chrono::milliseconds(50);
  const Moment begin = clock.Now();
  engine.Leave();
  EXPECT_LE(clock.Now() - begin, std::chrono::milliseconds(5100));
  EXPECT_THAT(engine.Remaining(), testing::SizeIs(router.table.size()));
  EXPECT_THAT(engine.Remaining(), testing::SizeIs(400));
}

TEST_F(EngineTest, TheFarewellLeavesNothingOfOurs) {
  WantPort80();
  router.Put(22, Protocol::kTcp, "192.168.1.9", "Console");
  engine.Leave();
  EXPECT_FALSE(router.Has(80));
  EXPECT_TRUE(router.Has(22));
}

TEST_F(EngineTest, AfterTheFarewellTheRouterIsLeftAlone) {
  WantPort80();
  engine.Check();
  engine.Leave();
  router.ResetCounters();
  router.upTime = 1;
  engine.Check();
  engine.Hear(Alive("uuid:a", 99));
  EXPECT_EQ(router.tableReads + router.lookups + router.adds + router.deletes, 0);
}

TEST_F(EngineTest, WorkThatWasEndedFromOutsideIsTakenUpAtTheNextCheck) {
  WantPort80();
  progress.patience = progress.steps.size() + 6;
  Want({Wished(5000, 5999, true, false, 5)});
  EXPECT_TRUE(engine.IsUnfinished());
  EXPECT_TRUE(engine.State().unmet);
  progress.patience = static_cast<std::size_t>(-1);
  engine.Check();
  EXPECT_EQ(router.table.size(), 1000u);
  EXPECT_FALSE(engine.State().unmet);
}

}  // namespace
}  // namespace upnp
