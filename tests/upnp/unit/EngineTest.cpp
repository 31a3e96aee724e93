#include "rules/Engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeRouter.h"

namespace upnp {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class FakeNetwork : public Network {
 public:
  SearchResult Search(const SearchAim& theAim) override {
    ++searches;
    aim = theAim;
    if (calledOff) return {{}, true};
    return {found, false};
  }
  std::vector<std::string> DefaultGateways() override { return routes; }
  std::unique_ptr<Gateway> Connect(const FoundGateway& gateway) override {
    return std::make_unique<BorrowedRouter>(*routers.at(gateway.device));
  }
  std::string LocalAddressTowards(const FoundGateway&) override { return localAddress; }

  std::vector<FoundGateway> found;
  std::map<std::string, FakeRouter*> routers;
  std::string localAddress = "192.168.1.5";
  std::vector<std::string> routes;
  SearchAim aim;  ///< of the last search
  bool calledOff = false;
  int searches = 0;
};

FoundGateway Found(const std::string& device, const std::string& host = "192.168.1.1") {
  FoundGateway gateway;
  gateway.device = device;
  gateway.deviceType = "urn:schemas-upnp-org:device:InternetGatewayDevice:1";
  gateway.serviceType = "urn:schemas-upnp-org:service:WANIPConnection:1";
  gateway.controlUrl = "http://" + host + ":5000/ctl";
  gateway.location = "http://" + host + ":5000/root.xml";
  gateway.localAddress = "192.168.1.5";
  gateway.connected = true;
  gateway.wanAddress = "1.2.3.4";
  return gateway;
}

SsdpMessage Alive(const std::string& device, std::optional<std::uint32_t> bootId) {
  return {SsdpMessage::Kind::kAlive,
          "urn:schemas-upnp-org:device:InternetGatewayDevice:1",
          device,
          "http://192.168.1.1:5000/root.xml",
          bootId,
          "192.168.1.1"};
}

class EngineTest : public testing::Test {
 protected:
  EngineTest() {
    network.found = {Found("uuid:a")};
    network.routers = {{"uuid:a", &router}, {"uuid:b", &second}};
  }
  void Want(std::vector<WishedMapping> mappings) { engine.Want({std::move(mappings), 5}); }
  void WantPort80() { Want({Wished(80, 80, true, false, 5)}); }
  bool Tells(Trouble trouble) { return HasTrouble(engine.State().problems, trouble); }

  HandClock clock;
  FakeRouter router{clock};
  FakeRouter second{clock};
  MemoryStore store;
  OwnMappings own{store};
  CountingProgress progress;
  FakeNetwork network;
  MemoryRouters routerStore;
  KnownRouters known{routerStore};
  NoTrace trace;
  Engine engine{network, own, known, clock, progress, trace, ""};
};

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

TEST_F(EngineTest, TheChoiceOfTheUserIsTakenEvenIfAnotherRanksHigher) {
  network.found = {Found("uuid:a"), Found("uuid:b")};
  Engine chosen(network, own, known, clock, progress, trace, "uuid:b");
  chosen.Want({{Wished(80, 80, true, false, 5)}, 5});
  EXPECT_TRUE(second.Has(80));
  EXPECT_FALSE(router.Has(80));
}

TEST_F(EngineTest, AChosenRouterThatIsNotThereIsNotReplacedByAnotherForSomeMinutes) {
  Engine chosen(network, own, known, clock, progress, trace, "uuid:b");
  chosen.Want({{Wished(80, 80, true, false, 5)}, 5});
  EXPECT_TRUE(router.table.empty());
  EXPECT_TRUE(HasTrouble(chosen.State().problems, Trouble::kNoAnswer));
  network.found.push_back(Found("uuid:b"));
  chosen.Check();
  EXPECT_TRUE(second.Has(80));
}

TEST_F(EngineTest, AChosenRouterThatStaysAwayIsReplacedAndItsReturnIsTakenUp) {
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

TEST_F(EngineTest, ARouterThatIsSilentForAMomentIsNotExchangedForAnother) {
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

TEST_F(EngineTest, ARouterThatWasReplacedIsTakenUpAgainWhenItReturns) {
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

TEST_F(EngineTest, TheGatewayOfTheDefaultRouteTakesOverWhenItIsFoundLater) {
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

TEST_F(EngineTest, TheDefaultGatewayThatAnnouncesItselfLateIsLookedFor) {
  network.found = {Found("uuid:b", "192.168.1.2")};
  network.routes = {"192.168.1.1"};
  WantPort80();
  known.Accept(Found("uuid:a"));
  clock.Turn(std::chrono::minutes(1));
  network.found.push_back(Found("uuid:a"));
  engine.Hear(Alive("uuid:a", 1));
  EXPECT_EQ(engine.State().current.device, "uuid:a");
}

TEST_F(EngineTest, ASearchThatWasCalledOffSaysNothingAboutTheRouter) {
  WantPort80();
  network.calledOff = true;
  engine.SearchAgain();
  EXPECT_TRUE(engine.State().functional);
  EXPECT_EQ(engine.State().gateways.size(), 1u);
}

TEST_F(EngineTest, WithoutARouterAWishSearchesOnce) {
  network.found.clear();
  WantPort80();
  EXPECT_EQ(network.searches, 1);
}

TEST_F(EngineTest, ASilentRouterIsLookedForLessAndLessOften) {
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

TEST_F(EngineTest, ANewWishAndANewNetworkAreNotMadeToWaitForTheNextSearch) {
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

FoundGateway Hotel() {
  FoundGateway hotel = Found("uuid:b", "10.0.0.1");
  hotel.name = "Hotel Box";
  return hotel;
}

TEST_F(EngineTest, TheFirstRouterThatIsEverUsedIsTheUsersOwn) {
  WantPort80();
  EXPECT_TRUE(known.Has("uuid:a"));
  EXPECT_FALSE(engine.State().foreign);
}

TEST_F(EngineTest, WithoutAWishNoRouterBecomesTheUsersOwn) {
  Want({});
  EXPECT_TRUE(known.IsEmpty());
}

TEST_F(EngineTest, OnAnotherRouterNothingIsOpenedAndTheUserIsTold) {
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

TEST_F(EngineTest, AnOutageAtHomeIsNoReasonToLeaveForAnotherRouter) {
  WantPort80();
  network.found = {Found("uuid:a"), Hotel()};
  network.found[0].connected = router.connected = false;
  clock.Turn(Engine::kBetterInterval);
  engine.Check();
  engine.SearchAgain();
  EXPECT_EQ(engine.State().current.device, "uuid:a");
  EXPECT_TRUE(router.Has(80));
}

TEST_F(EngineTest, AWanThatIsDownHasAnotherRouterOfTheUsersLookedFor) {
  WantPort80();
  known.Accept(Hotel());
  network.found = {Found("uuid:a"), Hotel()};
  network.found[0].connected = router.connected = false;
  clock.Turn(Engine::kBetterInterval);
  engine.Check();
  EXPECT_EQ(engine.State().current.device, "uuid:b");
  EXPECT_TRUE(second.Has(80));
}

TEST_F(EngineTest, BackHomeFromAnotherRouterTheOwnOneIsUsedAtOnce) {
  known.Accept(Found("uuid:a"));
  network.found = {Hotel()};
  WantPort80();
  second.silent = true;
  network.found = {Found("uuid:a")};
  engine.LookAround();
  EXPECT_TRUE(router.Has(80));
}

TEST_F(EngineTest, InAnotherNetworkTheRouterThatWasLeftBehindIsNotWaitedFor) {
  network.routes = {"192.168.1.1"};
  WantPort80();
  known.Accept(Hotel());
  router.silent = true;
  network.routes = {"10.0.0.1"};
  network.found = {Hotel()};
  engine.LookAround();
  EXPECT_TRUE(second.Has(80));
}

TEST_F(EngineTest, AYesOpensThePortsOnAnotherRouterAndIsRemembered) {
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

TEST_F(EngineTest, TheChoiceInTheDialogIsAYesWhateverIsChosen) {
  known.Accept(Found("uuid:a"));
  network.found = {Hotel()};
  WantPort80();
  engine.Choose("");
  EXPECT_TRUE(second.Has(80));
}

TEST_F(EngineTest, OnAnotherRouterAnEmptyWishIsNoWarning) {
  known.Accept(Found("uuid:a"));
  network.found = {Hotel()};
  Want({});
  EXPECT_FALSE(engine.State().warning);
  EXPECT_FALSE(engine.State().foreign);
  EXPECT_EQ(second.tableReads + second.deletes, 0);
}

TEST_F(EngineTest, ARouterWithAnotherIdentifierAfterItsRestartNeedsNoSecondYes) {
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

TEST_F(EngineTest, AnotherChoiceTakesTheMappingsAlong) {
  network.found = {Found("uuid:a"), Found("uuid:b", "192.168.1.2")};
  WantPort80();
  engine.Choose("uuid:b");
  EXPECT_TRUE(router.table.empty());
  EXPECT_TRUE(second.Has(80));
  EXPECT_EQ(engine.State().current.device, "uuid:b");
}

TEST_F(EngineTest, ARouterInUseStaysInUseWhenABetterOneIsFound) {
  WantPort80();
  FoundGateway better = Found("uuid:b");
  better.deviceType = "urn:schemas-upnp-org:device:InternetGatewayDevice:2";
  network.found.push_back(better);
  engine.SearchAgain();
  EXPECT_EQ(engine.State().current.device, "uuid:a");
  EXPECT_EQ(engine.State().gateways.size(), 2u);
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
