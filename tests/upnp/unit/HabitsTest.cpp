#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeRouter.h"
#include "rules/MappingKeeper.h"

namespace upnp {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kLocal[] = "192.168.1.5";
constexpr char kDevice[] = "uuid:router";
constexpr Moment kHalfLease = std::chrono::seconds(MappingKeeper::kLease / 2);

/// The keeper at routers with habits that the standard doesn't know.
class HabitsTest : public testing::Test {
 protected:
  void Apply(const std::vector<WishedMapping>& mappings) { keeper.Apply(Expand({mappings, 5}, kLocal)); }
  void WantPort80() { Apply({Wished(80, 80, true, false, 5, "Web server")}); }
  /// Checks each half minute, as the plug-in does.
  void Watch(Moment time) {
    for (const Moment end = clock.Now() + time; clock.Now() < end;) {
      clock.Turn(std::chrono::seconds(30));
      keeper.Check();
    }
  }
  std::uint32_t LeaseOf80() { return router.table[PortKey(80, Protocol::kTcp)].lease; }
  bool IsTold(Trouble trouble) { return HasTrouble(keeper.Problems(), trouble); }

  HandClock clock;
  FakeRouter router{clock};
  MemoryStore store;
  OwnMappings own{store};
  CountingProgress progress;
  MappingKeeper keeper{router, kDevice, kLocal, own, clock, progress};
};

class EmptyTableCodes : public HabitsTest, public testing::WithParamInterface<int> {};

TEST_P(EmptyTableCodes, AnEmptyTableIsReadOnceAnAdditionWasReadBack) {
  router.emptyCode = router.missingCode = GetParam();
  router.leasesEnd = true;
  WantPort80();
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  Watch(std::chrono::hours(3));
  EXPECT_TRUE(router.IsOpen(80));
  router.Restart();
  Watch(std::chrono::seconds(30));
  EXPECT_TRUE(router.IsOpen(80));
  router.Restart();
  WantPort80();
  EXPECT_TRUE(router.IsOpen(80));
  Apply({});
  EXPECT_THAT(router.table, IsEmpty());
  EXPECT_EQ(store.text, "");
}

INSTANTIATE_TEST_SUITE_P(Codes, EmptyTableCodes,
                         testing::Values(error::kInvalidArguments, error::kActionFailed));

class UnreadableTables : public HabitsTest, public testing::WithParamInterface<int> {};

TEST_P(UnreadableTables, LeasesAreRenewedByOurOwnClock) {
  router.refuseTable = router.refuseLookup = GetParam();
  router.leasesEnd = true;
  WantPort80();
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  for (int i = 0; i < 400; ++i) {
    Watch(std::chrono::seconds(30));
    ASSERT_TRUE(router.IsOpen(80)) << i;
  }
  EXPECT_LT(router.adds, 10);
  Apply({});
  EXPECT_THAT(router.table, IsEmpty());
}

TEST_P(UnreadableTables, WhatIsHeldIsForgottenAtASignOfARestart) {
  router.refuseTable = router.refuseLookup = GetParam();
  WantPort80();
  router.Restart();
  keeper.Apply(Expand({{Wished(80, 80, true, false, 5)}, 5}, kLocal), MappingKeeper::Manner::kAnew);
  EXPECT_TRUE(router.IsOpen(80));
}

TEST_P(UnreadableTables, AnActivationThatChangesNothingAddsNothing) {
  router.refuseTable = router.refuseLookup = GetParam();
  WantPort80();
  router.ResetCounters();
  WantPort80();
  EXPECT_EQ(router.adds, 0);
}

INSTANTIATE_TEST_SUITE_P(Codes, UnreadableTables,
                         testing::Values(error::kInvalidAction, error::kInvalidArguments,
                                         error::kActionFailed, -911));

TEST_F(HabitsTest, ATableThatIsNeverToldByPositionIsReadPortByPort) {
  router.refuseTable = error::kActionFailed;
  WantPort80();
  Apply({});
  EXPECT_THAT(router.table, IsEmpty());
}

class FiniteLeases : public HabitsTest, public testing::WithParamInterface<int> {};

TEST_P(FiniteLeases, WhenTheyAreRefusedAPermanentOneIsTried) {
  router.refuseFinite = GetParam();
  Apply({Wished(80, 83, true, false, 5)});
  EXPECT_THAT(router.table, SizeIs(4));
  EXPECT_EQ(LeaseOf80(), 0u);
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  EXPECT_EQ(router.adds, 5);
}

INSTANTIATE_TEST_SUITE_P(Codes, FiniteLeases, testing::Values(402, 501, -911, 724, 725, 899));

class FinalRefusals : public HabitsTest, public testing::WithParamInterface<int> {};

TEST_P(FinalRefusals, GetNoSecondTry) {
  router.refuseAdd = [](const PortMapping&) { return GetParam(); };
  WantPort80();
  EXPECT_EQ(router.adds, 1);
}

INSTANTIATE_TEST_SUITE_P(Codes, FinalRefusals, testing::Values(606, 718, 728, 729));

TEST_F(HabitsTest, FiniteLeasesThatAreRefusedSeveralAtOnceAreAllMadePermanent) {
  router.permanentOnly = true;
  router.abilities.lanes = 3;
  MappingKeeper quick(router, kDevice, kLocal, own, clock, progress);
  quick.Apply(Expand({{Wished(5000, 5074, true, false, 5), Wished(80, 80, true, true, 5)}, 5}, kLocal));
  EXPECT_THAT(router.table, SizeIs(77));
  EXPECT_THAT(quick.Problems(), IsEmpty());
}

TEST_F(HabitsTest, FiniteLeasesThatAreNotKeptAreMadePermanent) {
  router.keepsPermanentOnly = true;
  Apply({Wished(80, 83, true, false, 5)});
  EXPECT_THAT(router.table, SizeIs(4));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(HabitsTest, ARouterThatKeepsNothingAtAllIsFoundOutByOnePortMore) {
  router.keepsNothing = true;
  Apply({Wished(80, 89, true, false, 5)});
  EXPECT_EQ(router.adds, 11);
  EXPECT_TRUE(IsTold(Trouble::kNotKept));
  EXPECT_EQ(store.text, "");
}

TEST_F(HabitsTest, ARefusalOfAMakersOwnIsToldByItsNumber) {
  router.refuseAdd = [](const PortMapping&) { return -911; };
  WantPort80();
  EXPECT_THAT(Explain(keeper.Problems().at(0)), HasSubstr("-911"));
}

TEST_F(HabitsTest, ARenewalThatIsRefusedIsMadeByDeletionAndAddition) {
  router.addsAnewOnly = true;
  router.leasesEnd = true;
  WantPort80();
  for (int i = 0; i < 400; ++i) {
    Watch(std::chrono::seconds(30));
    ASSERT_TRUE(router.IsOpen(80)) << i;
    ASSERT_THAT(keeper.Problems(), IsEmpty());
  }
  EXPECT_THAT(router.leases, testing::Each(MappingKeeper::kLease));
}

TEST_F(HabitsTest, ARenewalThatIsRefusedWithoutATableIsMadeByDeletionAndAddition) {
  router.addsAnewOnly = router.leasesEnd = true;
  router.refuseTable = router.refuseLookup = error::kInvalidAction;
  WantPort80();
  Watch(std::chrono::hours(3));
  EXPECT_TRUE(router.IsOpen(80));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(HabitsTest, ARenewalThatIsRefusedForGoodDoesNotStopTheAdditionWhenTheLeaseIsOver) {
  router.leasesEnd = true;
  WantPort80();
  router.refuseAdd = [this](const PortMapping&) { return router.Has(80) ? error::kNotAuthorized : 0; };
  Watch(kHalfLease + std::chrono::minutes(5));
  EXPECT_TRUE(router.Has(80));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  Watch(kHalfLease);
  EXPECT_TRUE(router.IsOpen(80));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(HabitsTest, ADescriptionThatIsCutIsOursAndIsRenewedAndTakenOff) {
  router.longestDescription = 5;
  router.leasesEnd = true;
  WantPort80();
  Watch(std::chrono::hours(2));
  EXPECT_TRUE(router.Has(80));
  Apply({});
  EXPECT_FALSE(router.Has(80));
  EXPECT_EQ(store.text, "");
}

TEST_F(HabitsTest, ADescriptionOfTheRoutersOwnIsOursInTheNextRunToo) {
  router.descriptions = "UPnP rule 7";
  WantPort80();
  OwnMappings afterCrash(store);
  MappingKeeper next(router, kDevice, kLocal, afterCrash, clock, progress);
  router.Put(81, Protocol::kTcp, kLocal, "UPnP rule 8");
  next.Apply({});
  EXPECT_FALSE(router.Has(80));
  EXPECT_TRUE(router.Has(81));
}

TEST_F(HabitsTest, WhatAnotherProgramPutInThePlaceOfACutDescriptionIsTheirs) {
  router.longestDescription = 5;
  WantPort80();
  router.Put(80, Protocol::kTcp, kLocal, "Other program");
  Apply({});
  EXPECT_TRUE(router.Has(80));
}

TEST_F(HabitsTest, AfterARestartEverythingIsAddedAnewWhateverTheTableSays) {
  Apply({Wished(80, 82, true, false, 5)});
  router.Put(90, Protocol::kTcp, kLocal, "Other program");
  router.open.clear();
  keeper.Apply(Expand({{Wished(80, 82, true, false, 5), Wished(90, 90, true, false, 5)}, 5}, kLocal),
               MappingKeeper::Manner::kAnew);
  EXPECT_THAT(router.open, SizeIs(3));
  EXPECT_EQ(router.deletes, 0);
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(HabitsTest, AfterARestartARouterThatHasTheEntryAlreadyGetsItByDeletion) {
  WantPort80();
  router.addsAnewOnly = true;
  router.open.clear();
  keeper.Apply(Expand({{Wished(80, 80, true, false, 5)}, 5}, kLocal), MappingKeeper::Manner::kAnew);
  EXPECT_THAT(router.open, SizeIs(1));
}

class LackingActions : public HabitsTest, public testing::WithParamInterface<const char*> {};

TEST_P(LackingActions, CountAsRefusedAndTheNextWayIsTaken) {
  router.resets = {GetParam()};
  WantPort80();
  EXPECT_TRUE(router.Has(80));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  EXPECT_TRUE(keeper.IsFinished());
  Apply({});
  EXPECT_FALSE(router.Has(80));
}

INSTANTIATE_TEST_SUITE_P(Calls, LackingActions, testing::Values("Entry", "EntryAt"));

TEST_F(HabitsTest, AnAdditionAtWhichTheConnectionIsCutIsToldAsARefusal) {
  router.resets = {"Add"};
  WantPort80();
  EXPECT_TRUE(IsTold(Trouble::kRefused));
  EXPECT_FALSE(IsTold(Trouble::kNoAnswer));
  EXPECT_TRUE(keeper.IsFinished());
}

TEST_F(HabitsTest, ARouterThatServesOneConnectionAtATimeGetsEverything) {
  router.oneConnection = true;
  router.abilities.lanes = 3;
  MappingKeeper patient(router, kDevice, kLocal, own, clock, progress);
  patient.Apply(Expand({{Wished(5000, 5099, true, false, 5)}, 5}, kLocal));
  EXPECT_THAT(router.table, SizeIs(100));
  EXPECT_THAT(patient.Problems(), IsEmpty());
  patient.RemoveAll();
  EXPECT_THAT(router.table, IsEmpty());
}

TEST_F(HabitsTest, PlaceholdersAreNoOwners) {
  router.tellsPlaceholders = true;
  router.endless = true;
  WantPort80();
  EXPECT_TRUE(router.Has(80));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  router.table.clear();
  keeper.Check();
  EXPECT_TRUE(router.Has(80));
}

TEST_F(HabitsTest, ARuleThatIsSwitchedOffIsNoOwnerAsFarAsTheRouterAllows) {
  router.Put(80, Protocol::kTcp, kLocal, "Other program");
  router.table[PortKey(80, Protocol::kTcp)].enabled = false;
  router.Put(81, Protocol::kTcp, "192.168.1.9", "Console");
  router.table[PortKey(81, Protocol::kTcp)].enabled = false;
  Apply({Wished(80, 80, true, false, 5), Wished(81, 81, true, false, 5)});
  EXPECT_TRUE(router.IsOpen(80));
  ASSERT_THAT(keeper.Problems(), SizeIs(1));
  EXPECT_EQ(keeper.Problems()[0].firstPort, 81);
  EXPECT_EQ(router.table[PortKey(81, Protocol::kTcp)].client, "192.168.1.9");
}

TEST_F(HabitsTest, ARangeOfTheRoutersOwnIsAnOwnerOfEachPort) {
  router.Put(8000, Protocol::kTcp, "192.168.1.9", "Range");
  router.table[PortKey(8000, Protocol::kTcp)].lastExternalPort = 8100;
  Apply({Wished(8050, 8050, true, false, 5), Wished(8101, 8101, true, false, 5)});
  EXPECT_TRUE(router.Has(8101));
  EXPECT_TRUE(IsTold(Trouble::kOwnedByAnother));
  EXPECT_FALSE(router.Has(8050));
}

TEST_F(HabitsTest, ALeaseThatIsToldAsNothingIsTheOneThatWasAsked) {
  router.tellsNoLease = router.leasesEnd = true;
  WantPort80();
  for (int i = 0; i < 400; ++i) {
    Watch(std::chrono::seconds(30));
    ASSERT_TRUE(router.IsOpen(80)) << i;
  }
}

TEST_F(HabitsTest, WatchingCostsTenCallsAtMostAndComesToEachPortInTurn) {
  Apply({Wished(5000, 5099, true, false, 5)});
  router.ResetCounters();
  keeper.Check();
  EXPECT_LE(router.lookups + router.tableReads + router.adds, 10);
  router.table.erase({5095, Protocol::kTcp});
  for (int i = 0; i < 10; ++i) keeper.Check();
  EXPECT_TRUE(router.Has(5095));
  router.table.clear();
  keeper.Check();
  EXPECT_THAT(router.table, SizeIs(100));
}

TEST_F(HabitsTest, WatchingATableThatIsReadAsAWholeOnlyCostsTenCallsInAHalfMinute) {
  router.refuseLookup = error::kInvalidAction;
  Apply({Wished(5000, 5099, true, false, 5)});
  router.ResetCounters();
  Watch(std::chrono::minutes(50));
  EXPECT_LE(router.lookups + router.tableReads, 1000 + 120);
  router.table.clear();
  Watch(std::chrono::minutes(10));
  EXPECT_THAT(router.table, SizeIs(100));
}

TEST_F(HabitsTest, APortThatAnotherProgramForwardsHereStaysTheirsWhileTheTableIsNotRead) {
  router.refuseLookup = error::kInvalidAction;
  router.Put(80, Protocol::kTcp, kLocal, "Other program");
  for (std::uint16_t port = 5000; port < 5100; ++port) router.Put(port, Protocol::kTcp, "192.168.1.9", "");
  WantPort80();
  Watch(std::chrono::minutes(10));
  EXPECT_EQ(router.adds, 0);
  EXPECT_EQ(router.table[PortKey(80, Protocol::kTcp)].description, "Other program");
}

TEST_F(HabitsTest, WatchingIsNoWorkUnderWay) {
  WantPort80();
  progress.steps.clear();
  Watch(std::chrono::hours(1));
  for (const auto& [done, total] : progress.steps) EXPECT_EQ(total, 0u);
}

TEST_F(HabitsTest, TheNextRenewalIsKnown) {
  EXPECT_FALSE(keeper.NextRenewal());
  router.longestLease = 20;
  WantPort80();
  EXPECT_EQ(keeper.NextRenewal(), clock.Now() + std::chrono::seconds(10));
}

TEST_F(HabitsTest, ANewerWishWaitsForOneCall) {
  const std::size_t limit = 20;
  router.refuseAdd = [this](const PortMapping&) {
    if (router.adds == limit) progress.patience = 0;
    return 0;
  };
  Apply({Wished(5000, 5099, true, false, 5)});
  EXPECT_FALSE(keeper.IsFinished());
  EXPECT_LE(router.adds, static_cast<int>(limit) + 1);
}

TEST_F(HabitsTest, TheFarewellAsksNothingAndTakesWhatIsMostAtRiskFirst) {
  router.longestLease = 600;
  WantPort80();
  router.longestLease = 0;
  Apply({Wished(80, 80, true, false, 5), Wished(90, 90, true, false, 5)});
  router.refuseFinite = 402;
  Apply({Wished(80, 80, true, false, 5), Wished(90, 90, true, false, 5), Wished(100, 100, true, false, 5)});
  router.ResetCounters();
  router.deleted.clear();
  keeper.RemoveAll();
  EXPECT_EQ(router.lookups + router.tableReads, 0);
  EXPECT_THAT(router.deleted, testing::ElementsAre(PortKey(100, Protocol::kTcp), PortKey(90, Protocol::kTcp),
                                                   PortKey(80, Protocol::kTcp)));
}

TEST_F(HabitsTest, AFarewellThatIsCutShortWritesDownWhatRemains) {
  Apply({Wished(5000, 5099, true, false, 5)});
  router.slowness = std::chrono::milliseconds(100);
  keeper.RemoveAll(clock.Now() + std::chrono::seconds(5));
  EXPECT_GE(router.table.size(), 49u);
  EXPECT_LE(router.table.size(), 51u);
  OwnMappings next(store);
  EXPECT_THAT(next.Owed(kDevice), SizeIs(router.table.size()));
  MappingKeeper nextKeeper(router, kDevice, kLocal, next, clock, progress);
  nextKeeper.RemoveOwed();
  EXPECT_THAT(router.table, IsEmpty());
  EXPECT_EQ(store.text, "");
}

TEST_F(HabitsTest, WhatAFarewellLeftAndSomebodyElseTookIsTheirs) {
  WantPort80();
  keeper.RemoveAll(clock.Now());
  router.Put(80, Protocol::kTcp, "192.168.1.9", "Console");
  OwnMappings next(store);
  MappingKeeper nextKeeper(router, kDevice, kLocal, next, clock, progress);
  nextKeeper.RemoveOwed();
  EXPECT_TRUE(router.Has(80));
  EXPECT_EQ(store.text, "");
}

TEST_F(HabitsTest, AGatewayWithoutATableIsTrustedByItsGrantsAndTheClock) {
  router.abilities.readsTable = false;
  router.refuseTable = router.refuseLookup = error::kInvalidAction;
  router.leasesEnd = true;
  MappingKeeper trusting(router, kDevice, kLocal, own, clock, progress);
  trusting.Apply(Expand({{Wished(80, 80, true, false, 5)}, 5}, kLocal));
  for (int i = 0; i < 400; ++i) {
    clock.Turn(std::chrono::seconds(30));
    trusting.Check();
    ASSERT_TRUE(router.IsOpen(80));
  }
  EXPECT_EQ(router.lookups + router.tableReads, 0);
}

TEST_F(HabitsTest, AGrantOfAnotherPortIsGivenBackAndToldAsTaken) {
  router.abilities.readsTable = false;
  router.grantsPort = 8080;
  MappingKeeper trusting(router, kDevice, kLocal, own, clock, progress);
  trusting.Apply(Expand({{Wished(80, 80, true, false, 5)}, 5}, kLocal));
  EXPECT_THAT(router.table, IsEmpty());
  EXPECT_TRUE(HasTrouble(trusting.Problems(), Trouble::kOwnedByAnother));
}

TEST_F(HabitsTest, AGatewayThatServesOnlyTheAskerIsNotAskedForOthers) {
  router.abilities.forOthers = false;
  MappingKeeper own80(router, kDevice, kLocal, own, clock, progress);
  own80.Apply(Expand({{Wished(80, 80, true, false, 17)}, 5}, kLocal));
  EXPECT_EQ(router.adds, 0);
  EXPECT_TRUE(HasTrouble(own80.Problems(), Trouble::kNotAuthorized));
}

}  // namespace
}  // namespace upnp
