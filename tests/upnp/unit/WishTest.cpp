#include "rules/Wish.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeRouter.h"

namespace upnp {
namespace {

constexpr char kLocal[] = "192.168.1.5";

WantedState ExpandOne(const WishedMapping& mapping) {
  return Expand({{mapping}, 5}, kLocal);
}

TEST(WishTest, APortForBothProtocolsBecomesTwoPorts) {
  const WantedState wanted = ExpandOne(Wished(80, 80, true, true, 5));
  ASSERT_EQ(wanted.ports.size(), 2u);
  EXPECT_EQ(wanted.ports[0].mapping.Key(), PortKey(80, Protocol::kTcp));
  EXPECT_EQ(wanted.ports[1].mapping.Key(), PortKey(80, Protocol::kUdp));
  EXPECT_TRUE(wanted.problems.empty());
}

TEST(WishTest, ARangeBecomesSinglePortsToTheSamePorts) {
  const WantedState wanted = ExpandOne(Wished(5000, 5002, false, true, 5));
  ASSERT_EQ(wanted.ports.size(), 3u);
  EXPECT_EQ(wanted.ports[2].mapping.externalPort, 5002);
  EXPECT_EQ(wanted.ports[2].mapping.internalPort, 5002);
  EXPECT_EQ(wanted.ranges.size(), 1u);
}

TEST(WishTest, ThisComputerIsKnownByTheAddressThatTheRouterSees) {
  // The program counts another adapter's address: its last octet is this computer all the same.
  const WantedState wanted = Expand({{Wished(80, 80, true, false, 42)}, 42}, kLocal);
  EXPECT_EQ(wanted.ports.at(0).mapping.client, kLocal);
}

TEST(WishTest, AnotherComputerIsInTheNetworkOfThisOne) {
  EXPECT_EQ(ExpandOne(Wished(80, 80, true, false, 17)).ports.at(0).mapping.client, "192.168.1.17");
}

TEST(WishTest, PortsThatAreNoneAreToldAndNeverSent) {
  for (const auto& [begin, end] : {std::pair(0, 0), {70000, 70000}, {80, 70000}, {-1, 80}, {90, 80}}) {
    const WantedState wanted = ExpandOne(Wished(begin, end, true, false, 5));
    EXPECT_TRUE(wanted.ports.empty()) << begin;
    ASSERT_EQ(wanted.problems.size(), 1u) << begin;
    EXPECT_EQ(wanted.problems[0].trouble, Trouble::kBadPort);
    EXPECT_TRUE(LeavesTheWishUnmet(wanted.problems[0]));
  }
}

TEST(WishTest, TheFirstAndTheLastPortAreSent) {
  EXPECT_EQ(ExpandOne(Wished(1, 1, true, false, 5)).ports.size(), 1u);
  EXPECT_EQ(ExpandOne(Wished(65535, 65535, true, false, 5)).ports.size(), 1u);
}

TEST(WishTest, AComputerThatCannotBeIsTold) {
  for (const int octet : {0, 255, -1, 300}) {
    const WantedState wanted = ExpandOne(Wished(80, 80, true, false, octet));
    EXPECT_TRUE(wanted.ports.empty());
    ASSERT_EQ(wanted.problems.size(), 1u);
    EXPECT_EQ(wanted.problems[0].trouble, Trouble::kBadHost);
  }
}

TEST(WishTest, ARangeBeyondTheLimitIsLeftOutAsAWholeAndTheRestIsSent) {
  const WantedState wanted =
      Expand({{Wished(10000, 30000, true, false, 5), Wished(80, 80, true, false, 5)}, 5}, kLocal);
  ASSERT_EQ(wanted.ports.size(), 1u);
  EXPECT_EQ(wanted.ports[0].mapping.externalPort, 80);
  ASSERT_EQ(wanted.problems.size(), 1u);
  EXPECT_EQ(wanted.problems[0].trouble, Trouble::kTooManyPorts);
  const std::string text = Explain(wanted.problems[0]);
  EXPECT_THAT(text, testing::HasSubstr(std::to_string(kMostPorts)));
  EXPECT_THAT(text, testing::HasSubstr("TCP ports 10000 to 30000"));
}

TEST(WishTest, ARangeOfExactlyTheLimitIsSent) {
  EXPECT_EQ(ExpandOne(Wished(1001, 1000 + kMostPorts, true, false, 5)).ports.size(),
            static_cast<std::size_t>(kMostPorts));
  EXPECT_TRUE(ExpandOne(Wished(1001, 1001 + kMostPorts, true, false, 5)).ports.empty());
}

TEST(WishTest, TwoProfilesMayWantTheSamePortForTheSameComputer) {
  const WantedState wanted =
      Expand({{Wished(80, 82, true, false, 5), Wished(82, 83, true, false, 5)}, 5}, kLocal);
  EXPECT_EQ(wanted.ports.size(), 4u);
  EXPECT_TRUE(wanted.problems.empty());
}

TEST(WishTest, OnePortForTwoComputersGoesToTheFirstAndIsTold) {
  const WantedState wanted =
      Expand({{Wished(80, 80, true, false, 17), Wished(79, 81, true, false, 5)}, 5}, kLocal);
  ASSERT_EQ(wanted.ports.size(), 1u);
  EXPECT_EQ(wanted.ports[0].mapping.client, "192.168.1.17");
  ASSERT_EQ(wanted.problems.size(), 1u);
  EXPECT_EQ(wanted.problems[0].trouble, Trouble::kClash);
}

TEST(WishTest, ADescriptionBearsOurMarkAndNoSignThatBreaksACall) {
  EXPECT_EQ(MarkedDescription("Web server"), "Harbourline: Web server");
  EXPECT_EQ(MarkedDescription("a<b>&\"c'\n"), "Harbourline: a b   c");
  EXPECT_LE(MarkedDescription(std::string(5000, 'x')).size(), 64u);
  for (const char* text : {"", "Web", "<>"}) EXPECT_TRUE(BearsOurMark(MarkedDescription(text))) << text;
  EXPECT_FALSE(BearsOurMark("Harbour"));
  EXPECT_FALSE(BearsOurMark("libminiupnpc"));
}

Wish TakeIn(WishMemory& memory, std::vector<WishedMapping> mappings) {
  return memory.Take({std::move(mappings), 5});
}

TEST(WishMemoryTest, TheRequestIsTheWholeWishOfThisComputer) {
  WishMemory memory;
  TakeIn(memory, {Wished(80, 80, true, false, 5)});
  EXPECT_TRUE(TakeIn(memory, {}).mappings.empty());
}

TEST(WishMemoryTest, AMappingForAnotherComputerStaysUntilItIsCleared) {
  WishMemory memory;
  const WishedMapping other = Wished(80, 80, true, false, 17);
  TakeIn(memory, {other});
  EXPECT_THAT(TakeIn(memory, {Wished(90, 90, true, false, 5)}).mappings, testing::Contains(other));
  WishedMapping clear = other;
  clear.clear = true;
  EXPECT_TRUE(TakeIn(memory, {clear}).mappings.empty());
  EXPECT_TRUE(TakeIn(memory, {}).mappings.empty());
}

TEST(WishMemoryTest, AMappingForAnotherComputerThatIsSentTwiceStaysOne) {
  WishMemory memory;
  TakeIn(memory, {Wished(80, 80, true, false, 17)});
  EXPECT_EQ(TakeIn(memory, {Wished(80, 80, true, false, 17)}).mappings.size(), 1u);
}

}  // namespace
}  // namespace upnp
