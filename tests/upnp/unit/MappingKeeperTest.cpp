#include "rules/MappingKeeper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeRouter.h"

namespace upnp {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kLocal[] = "192.168.1.5";
constexpr char kDevice[] = "uuid:router";

class MappingKeeperTest : public testing::Test {
 protected:
  void Apply(const std::vector<WishedMapping>& mappings) { keeper.Apply(Expand({mappings, 5}, kLocal)); }
  /// As if the program had been killed: what lives only in memory is gone.
  std::unique_ptr<MappingKeeper> NextRun() {
    afterCrash = std::make_unique<OwnMappings>(store);
    return std::make_unique<MappingKeeper>(router, kDevice, kLocal, *afterCrash, clock, progress);
  }
  Problem OnlyProblem() {
    EXPECT_THAT(keeper.Problems(), SizeIs(1));
    return keeper.Problems().empty() ? Problem{} : keeper.Problems()[0];
  }

  HandClock clock;
  FakeRouter router{clock};
  MemoryStore store;
  OwnMappings own{store};
  CountingProgress progress;
  MappingKeeper keeper{router, kDevice, kLocal, own, clock, progress};
  std::unique_ptr<OwnMappings> afterCrash;
};

TEST_F(MappingKeeperTest, PutsTheWishOnTheRouterWithAFiniteLease) {
  Apply({Wished(80, 80, true, true, 5, "Web")});
  ASSERT_TRUE(router.Has(80));
  EXPECT_TRUE(router.Has(80, Protocol::kUdp));
  EXPECT_EQ(router.table[PortKey(80, Protocol::kTcp)].client, kLocal);
  EXPECT_EQ(router.table[PortKey(80, Protocol::kTcp)].description, "Harbourline: Web");
  EXPECT_THAT(router.leases, testing::Each(MappingKeeper::kLease));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(MappingKeeperTest, AnActivationThatChangesNothingReadsTheTableOnceAndDoesNoMore) {
  Apply({Wished(80, 82, true, true, 5)});
  router.Put(9999, Protocol::kTcp, "192.168.1.9", "somebody");
  router.ResetCounters();
  Apply({Wished(80, 82, true, true, 5)});
  EXPECT_EQ(router.tableReads, 8);  // seven entries and the end
  EXPECT_EQ(router.lookups + router.adds + router.deletes, 0);
}

TEST_F(MappingKeeperTest, TakesOffWhatIsNoLongerWished) {
  Apply({Wished(80, 80, true, false, 5), Wished(90, 90, true, false, 5)});
  Apply({Wished(90, 90, true, false, 5)});
  EXPECT_FALSE(router.Has(80));
  EXPECT_TRUE(router.Has(90));
  Apply({});
  EXPECT_TRUE(router.table.empty());
  EXPECT_EQ(store.text, "");
}

TEST_F(MappingKeeperTest, NeverTouchesWhatOthersMade) {
  router.Put(6881, Protocol::kTcp, kLocal, "Torrent");              // another program here
  router.Put(3074, Protocol::kUdp, "192.168.1.9", "Console");       // another computer
  router.Put(22, Protocol::kTcp, "192.168.1.9", "Harbourline: x");  // this program on another computer
  const auto before = router.table.size();
  Apply({Wished(80, 80, true, false, 5)});
  Apply({});
  EXPECT_EQ(router.table.size(), before);
  EXPECT_EQ(router.deletes, 1);
}

TEST_F(MappingKeeperTest, APortThatAnotherProgramForwardsHereAlreadyIsFulfilledAndStaysTheirs) {
  router.Put(80, Protocol::kTcp, kLocal, "Other program");
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_EQ(router.adds, 0);
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  Apply({});
  EXPECT_TRUE(router.Has(80));
}

TEST_F(MappingKeeperTest, APortOfAnotherComputerIsToldByItsAddressAndNotAskedFor) {
  router.Put(80, Protocol::kTcp, "192.168.1.9", "Console");
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_EQ(router.adds, 0);
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kOwnedByAnother);
  EXPECT_THAT(Explain(OnlyProblem()), HasSubstr("192.168.1.9"));
  EXPECT_EQ(router.table[PortKey(80, Protocol::kTcp)].client, "192.168.1.9");
}

TEST_F(MappingKeeperTest, ConflictsThatTheTableHidesAreToldByTheRoutersRefusal) {
  router.refuseAdd = [](const PortMapping&) { return error::kOwnedByAnother; };
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kOwnedByAnother);
}

TEST_F(MappingKeeperTest, ARangeThatFailsInTheMiddleIsSetBack) {
  router.refuseAdd = [](const PortMapping& mapping) { return mapping.externalPort == 5070 ? 729 : 0; };
  Apply({Wished(5000, 5100, true, false, 5), Wished(80, 80, true, false, 5)});
  EXPECT_EQ(router.table.size(), 1u);
  EXPECT_TRUE(router.Has(80));
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kUsedByRouter);
  EXPECT_EQ(OnlyProblem().firstPort, 5070);
  EXPECT_THAT(store.text, testing::Not(HasSubstr("50")));
}

TEST_F(MappingKeeperTest, OneProtocolThatIsRefusedLeavesTheOther) {
  router.refuseAdd = [](const PortMapping& mapping) { return mapping.protocol == Protocol::kUdp ? 501 : 0; };
  Apply({Wished(80, 80, true, true, 5)});
  EXPECT_TRUE(router.Has(80));
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kRefused);
  EXPECT_EQ(OnlyProblem().protocol, Protocol::kUdp);
}

TEST_F(MappingKeeperTest, RefusalsAreToldByName) {
  const std::vector<std::pair<int, Trouble>> cases = {{606, Trouble::kNotAuthorized},
                                                      {729, Trouble::kUsedByRouter},
                                                      {728, Trouble::kTableFull},
                                                      {501, Trouble::kRefused}};
  for (const auto& [code, trouble] : cases) {
    router.refuseAdd = [code = code](const PortMapping&) { return code; };
    Apply({Wished(80, 80, true, false, 17)});
    EXPECT_EQ(OnlyProblem().trouble, trouble);
    EXPECT_THAT(Explain(OnlyProblem()), HasSubstr(std::to_string(code)));
  }
}

TEST_F(MappingKeeperTest, ARouterThatTakesOnlyPermanentLeasesGetsThemFromThenOn) {
  router.permanentOnly = true;
  Apply({Wished(80, 83, true, false, 5)});
  EXPECT_EQ(router.table.size(), 4u);
  router.ResetCounters();
  Apply({Wished(80, 83, true, false, 5), Wished(90, 90, true, false, 5)});
  EXPECT_EQ(router.adds, 1);
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  clock.Turn(std::chrono::hours(3));
  router.ResetCounters();
  keeper.Check();
  EXPECT_EQ(router.adds, 0);
}

TEST_F(MappingKeeperTest, ARouterThatSaysYesAndDoesNothingIsFoundOut) {
  router.keepsNothing = true;
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kNotKept);
  EXPECT_TRUE(LeavesTheWishUnmet(OnlyProblem()));
}

TEST_F(MappingKeeperTest, ARouterThatFailsEveryCallIsToldWithinAFewCalls) {
  router.refuseAdd = [](const PortMapping&) { return 501; };
  router.refuseTable = router.refuseLookup = 501;
  Apply({Wished(5000, 5999, true, false, 5)});
  EXPECT_EQ(OnlyProblem().code, 501);
  EXPECT_LE(router.adds + router.lookups + router.tableReads + router.deletes, 10);
}

TEST_F(MappingKeeperTest, ARouterThatTellsOnlyItsWholeTableIsReadThatWay) {
  router.refuseLookup = error::kInvalidAction;
  Apply({Wished(80, 81, true, false, 5)});
  EXPECT_THAT(keeper.Problems(), IsEmpty());
  router.table.erase({80, Protocol::kTcp});
  keeper.Check();
  EXPECT_TRUE(router.Has(80));
}

TEST_F(MappingKeeperTest, ATableWithoutEndIsLeftAndTheWishIsServed) {
  router.endless = true;
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_EQ(router.tableReads, static_cast<int>(kMostTableEntries));
  EXPECT_TRUE(router.Has(80));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(MappingKeeperTest, ARouterThatRepeatsOneEntryForEverIsLeftAtOnce) {
  router.Put(7000, Protocol::kTcp, "192.168.1.9", "Console");
  router.repeatsFirstEntry = true;
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_EQ(router.tableReads, 2);
  EXPECT_TRUE(router.Has(80));
}

TEST_F(MappingKeeperTest, ATableWithoutEndIsTriedOnce) {
  router.endless = true;
  Apply({Wished(80, 80, true, false, 5)});
  router.ResetCounters();
  Apply({Wished(81, 81, true, false, 5)});
  EXPECT_EQ(router.tableReads, 0);
  EXPECT_FALSE(router.Has(80));
  EXPECT_TRUE(router.Has(81));
}

TEST_F(MappingKeeperTest, ALongTableOfASlowRouterIsLeftInTime) {
  router.endless = true;
  router.slowness = std::chrono::milliseconds(20);
  const Moment begin = clock.Now();
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_TRUE(router.Has(80));
  EXPECT_LT(clock.Now() - begin, std::chrono::seconds(10));
}

TEST_F(MappingKeeperTest, WhatTheRouterForgetsComesBackAtTheNextCheck) {
  Apply({Wished(80, 82, true, false, 5)});
  router.table.clear();
  keeper.Check();
  EXPECT_EQ(router.table.size(), 3u);
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(MappingKeeperTest, ACheckOfWhatIsThereAddsNothingAndReadsNoTable) {
  Apply({Wished(80, 82, true, false, 5)});
  router.ResetCounters();
  clock.Turn(std::chrono::seconds(30));
  keeper.Check();
  EXPECT_EQ(router.lookups, 3);
  EXPECT_EQ(router.adds + router.tableReads + router.deletes, 0);
}

TEST_F(MappingKeeperTest, LeasesAreRenewedAtHalfTime) {
  Apply({Wished(80, 80, true, false, 5)});
  router.ResetCounters();
  clock.Turn(std::chrono::seconds(MappingKeeper::kLease / 2 - 1));
  keeper.Check();
  EXPECT_EQ(router.adds, 0);
  clock.Turn(std::chrono::seconds(1));
  keeper.Check();
  EXPECT_EQ(router.adds, 1);
  router.ResetCounters();
  keeper.Check();
  EXPECT_EQ(router.adds, 0);
  clock.Turn(std::chrono::seconds(MappingKeeper::kLease / 2));
  keeper.Check();
  EXPECT_EQ(router.adds, 1);
}

TEST_F(MappingKeeperTest, AShorterLeaseOfTheRouterIsRenewedAtItsHalf) {
  router.longestLease = 600;
  Apply({Wished(80, 80, true, false, 5)});
  router.ResetCounters();
  clock.Turn(std::chrono::seconds(300));
  keeper.Check();
  EXPECT_EQ(router.adds, 1);
}

TEST_F(MappingKeeperTest, ARouterThatRefusesToRenewGetsTheMappingAnew) {
  Apply({Wished(80, 80, true, false, 5)});
  router.refuseAdd = [this](const PortMapping&) { return router.Has(80) ? error::kOwnedByAnother : 0; };
  clock.Turn(std::chrono::seconds(MappingKeeper::kLease / 2));
  keeper.Check();
  EXPECT_TRUE(router.Has(80));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(MappingKeeperTest, WhatWasRefusedIsTriedAgainAfterFiveMinutesAndNotAtEachCheck) {
  router.refuseAdd = [](const PortMapping&) { return 728; };
  Apply({Wished(80, 80, true, false, 5)});
  router.ResetCounters();
  clock.Turn(std::chrono::seconds(30));
  keeper.Check();
  EXPECT_EQ(router.adds, 0);
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kTableFull);
  router.refuseAdd = nullptr;
  clock.Turn(std::chrono::minutes(5));
  keeper.Check();
  EXPECT_TRUE(router.Has(80));
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(MappingKeeperTest, AMappingThatSomebodyTookOverIsToldAndLeft) {
  Apply({Wished(80, 80, true, false, 5)});
  router.Put(80, Protocol::kTcp, "192.168.1.9", "Console");
  keeper.Check();
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kOwnedByAnother);
  Apply({});
  EXPECT_TRUE(router.Has(80));
}

TEST_F(MappingKeeperTest, APortOfOursThatAnotherProgramHereTookOverIsTheirs) {
  Apply({Wished(80, 80, true, false, 5)});
  router.Put(80, Protocol::kTcp, kLocal, "Other program");
  Apply({});
  EXPECT_TRUE(router.Has(80));
}

TEST_F(MappingKeeperTest, WhatTheRouterForgotIsForgottenInOurListToo) {
  Apply({Wished(80, 80, true, false, 5)});
  router.table.clear();
  Apply({});
  EXPECT_EQ(store.text, "");
  EXPECT_EQ(router.deletes, 0);
}

TEST_F(MappingKeeperTest, WhatIsAboutToBeAddedIsWrittenDownBefore) {
  bool writtenBefore = false;
  store.onSave = [&] {
    writtenBefore = writtenBefore || (router.adds == 0 && store.text.find("TCP 80") == 0);
  };
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_TRUE(writtenBefore);
}

TEST_F(MappingKeeperTest, ACrashLeavesNothingBehindForEver) {
  router.permanentOnly = true;
  Apply({Wished(80, 80, true, false, 5), Wished(90, 90, true, false, 17)});
  const auto next = NextRun();
  next->Apply(Expand({{}, 5}, kLocal));
  EXPECT_TRUE(router.table.empty());
  EXPECT_EQ(store.text, "");
}

TEST_F(MappingKeeperTest, AMappingFromBeforeACrashIsTakenOverAndRenewed) {
  Apply({Wished(80, 80, true, false, 5)});
  router.table[PortKey(80, Protocol::kTcp)].lease = 1000;
  const auto next = NextRun();
  router.ResetCounters();
  next->Apply(Expand({{Wished(80, 80, true, false, 5)}, 5}, kLocal));
  EXPECT_EQ(router.adds, 0);
  clock.Turn(std::chrono::seconds(500));
  next->Check();
  EXPECT_EQ(router.adds, 1);
}

TEST_F(MappingKeeperTest, AtANewAddressTheOldMappingsGoAndTheNewOnesCome) {
  Apply({Wished(80, 80, true, false, 5), Wished(81, 81, true, false, 5)});
  MappingKeeper moved(router, kDevice, "192.168.1.6", own, clock, progress);
  moved.Apply(Expand({{Wished(80, 80, true, false, 5)}, 5}, "192.168.1.6"));
  EXPECT_EQ(router.table.size(), 1u);
  EXPECT_EQ(router.table[PortKey(80, Protocol::kTcp)].client, "192.168.1.6");
  EXPECT_THAT(moved.Problems(), IsEmpty());
}

TEST_F(MappingKeeperTest, AnOldMappingThatTheRouterDoesNotLetGoIsToldAndNotForgotten) {
  Apply({Wished(80, 80, true, false, 5), Wished(81, 81, true, false, 5)});
  router.refuseDelete = error::kNotAuthorized;
  MappingKeeper moved(router, kDevice, "192.168.1.6", own, clock, progress);
  moved.Apply(Expand({{Wished(80, 80, true, false, 5)}, 5}, "192.168.1.6"));
  EXPECT_TRUE(HasTrouble(moved.Problems(), Trouble::kOldLeft));
  EXPECT_TRUE(HasTrouble(moved.Problems(), Trouble::kOwnedByAnother));
  EXPECT_THAT(store.text, HasSubstr("TCP 80 192.168.1.5"));
  EXPECT_THAT(store.text, HasSubstr("TCP 81 192.168.1.5"));
  router.refuseDelete = 0;
  moved.Apply(Expand({{Wished(80, 80, true, false, 5)}, 5}, "192.168.1.6"));
  EXPECT_THAT(moved.Problems(), IsEmpty());
  EXPECT_EQ(router.table.size(), 1u);
}

TEST_F(MappingKeeperTest, ASilentRouterIsLeftAfterASecondTryAndAnotherQuestion) {
  Apply({Wished(80, 80, true, false, 5)});
  router.silent = true;
  router.unanswered = 0;
  Apply({});
  EXPECT_EQ(router.unanswered, 4);
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kNoAnswer);
  EXPECT_FALSE(keeper.IsFinished());
  EXPECT_THAT(store.text, HasSubstr("TCP 80"));
}

TEST_F(MappingKeeperTest, ARouterThatFallsSilentInTheMiddleIsTakenUpAgain) {
  router.silentAfterAdds = 40;
  Apply({Wished(5000, 5099, true, false, 5)});
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kNoAnswer);
  EXPECT_THAT(store.text, HasSubstr("TCP 5039"));
  router.silentAfterAdds = -1;
  Apply({Wished(5000, 5099, true, false, 5)});
  EXPECT_EQ(router.table.size(), 100u);
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(MappingKeeperTest, ProgressIsToldOnTheWayAndCanEndTheWork) {
  progress.patience = 40;
  Apply({Wished(5000, 5999, true, false, 5)});
  EXPECT_EQ(router.table.size(), 1000u);
  EXPECT_THAT(progress.steps, testing::Contains(std::pair<std::size_t, std::size_t>(512, 1000)));
  progress.steps.clear();
  progress.patience = 5;
  keeper.Apply({});
  Apply({Wished(5000, 5999, true, false, 5)});
  EXPECT_FALSE(keeper.IsFinished());
  EXPECT_EQ(OnlyProblem().trouble, Trouble::kBusy);
}

TEST_F(MappingKeeperTest, ALongFarewellCanBeEnded) {
  Apply({Wished(5000, 5999, true, false, 5)});
  progress.steps.clear();
  progress.patience = 4;
  keeper.RemoveAll();
  EXPECT_FALSE(keeper.IsFinished());
  EXPECT_GT(router.table.size(), 500u);
  EXPECT_THAT(store.text, HasSubstr("TCP 5999"));
}

TEST_F(MappingKeeperTest, EntriesForOneCallerFromTheInternetAreNoConflict) {
  router.Put(80, Protocol::kTcp, "192.168.1.9", "special");
  router.table[PortKey(80, Protocol::kTcp)].remoteHost = "8.8.8.8";
  router.refuseAdd = [this](const PortMapping& mapping) {
    router.table.erase(mapping.Key());
    return 0;
  };
  Apply({Wished(80, 80, true, false, 5)});
  EXPECT_THAT(keeper.Problems(), IsEmpty());
}

TEST_F(MappingKeeperTest, TheFarewellTakesOursAndLeavesTheRest) {
  router.Put(22, Protocol::kTcp, "192.168.1.9", "Console");
  Apply({Wished(80, 82, true, true, 5), Wished(90, 90, true, false, 17)});
  keeper.RemoveAll();
  EXPECT_EQ(router.table.size(), 1u);
  EXPECT_EQ(store.text, "");
}

TEST_F(MappingKeeperTest, ARouterThatDropsDescriptionsGivesOursBack) {
  Apply({Wished(80, 80, true, false, 5)});
  router.table[PortKey(80, Protocol::kTcp)].description = "";
  router.Put(81, Protocol::kTcp, kLocal, "");
  Apply({});
  EXPECT_FALSE(router.Has(80));
  EXPECT_TRUE(router.Has(81));
}

}  // namespace
}  // namespace upnp
