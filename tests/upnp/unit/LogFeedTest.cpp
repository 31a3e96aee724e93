#include "log/LogFeed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace upnp::log {
namespace {

Packet PacketTo(std::uint16_t port) {
  return {Direction::kIn, "TCP", "203.0.113.9", 4000, "192.168.1.2", port};
}

class LogFeedTest : public testing::Test {
 protected:
  LogFeedTest()
      : feed([this](std::int32_t port) { return Name(port); }, [this](const Row& row) { Show(row); }) {}

  PortName Name(std::int32_t port) {
    questions.push_back(port);
    if (port == 666) throw std::runtime_error("the program fails");
    return {"port " + std::to_string(port), port == filteredPort};
  }
  void Show(const Row& row) {
    rows.push_back(row);
    times.push_back(now);
  }
  void Take(const std::vector<Packet>& packets, std::size_t dropped = 0) { feed.Take(packets, dropped, now); }
  std::size_t Notes() const {
    return static_cast<std::size_t>(
        std::count_if(rows.begin(), rows.end(), [](const Row& row) { return row.type == "note"; }));
  }

  std::int32_t filteredPort = -1;
  Time now{10'000};
  std::vector<std::int32_t> questions;
  std::vector<Row> rows;
  std::vector<Time> times;
  LogFeed feed;
};

TEST_F(LogFeedTest, MakesARowOfAPacketWithTheNameOfItsPort) {
  Take({PacketTo(80)});
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].type, "in");
  EXPECT_EQ(rows[0].source, "203.0.113.9");
  EXPECT_EQ(rows[0].sourcePort, 4000);
  EXPECT_EQ(rows[0].destination, "192.168.1.2");
  EXPECT_EQ(rows[0].destinationPort, 80);
  EXPECT_EQ(rows[0].miscellaneous, "port 80");
}

TEST_F(LogFeedTest, CallsWhatLeavesOut) {
  Packet packet = PacketTo(80);
  packet.direction = Direction::kOut;
  Take({packet});
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].type, "out");
}

TEST_F(LogFeedTest, DropsARowThatTheUserDoesntWantToSee) {
  filteredPort = 80;
  Take({PacketTo(80), PacketTo(81)});
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].destinationPort, 81);
}

TEST_F(LogFeedTest, DoesntCountWhatIsFilteredOut) {
  filteredPort = 80;
  Take(std::vector<Packet>(500, PacketTo(80)));
  Take({PacketTo(81)});
  EXPECT_EQ(rows.size(), 1u);
  EXPECT_FALSE(feed.HasUntold());
}

TEST_F(LogFeedTest, GoesOnBehindARowThatFails) {
  Take({PacketTo(666), PacketTo(81)});
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].destinationPort, 81);
}

TEST_F(LogFeedTest, TellsOnceHowManyRowsWereLeftOut) {
  Take(std::vector<Packet>(120, PacketTo(80)));
  EXPECT_EQ(rows.size(), 49u) << "one is kept for the telling";
  EXPECT_TRUE(feed.HasUntold());
  now += Time(999);
  feed.Tell(now);
  EXPECT_EQ(rows.size(), 49u);
  now += Time(1);
  feed.Tell(now);
  ASSERT_EQ(rows.size(), 50u);
  EXPECT_EQ(rows.back().type, "note");
  EXPECT_EQ(rows.back().miscellaneous, "71 more packets came too fast and were left out");
  EXPECT_FALSE(feed.HasUntold());
  feed.Tell(now + Time(5000));
  EXPECT_EQ(rows.size(), 50u);
}

TEST_F(LogFeedTest, SpeaksOfOnePacketInTheSingular) {
  Take(std::vector<Packet>(50, PacketTo(80)));
  now += Time(1000);
  feed.Tell(now);
  EXPECT_EQ(rows.back().miscellaneous, "1 more packet came too fast and was left out");
}

TEST_F(LogFeedTest, CountsPacketsThatWereDroppedOnTheWay) {
  Take({}, 1'000'000);
  now += Time(1000);
  feed.Tell(now);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].miscellaneous, "1000000 more packets came too fast and were left out");
}

TEST_F(LogFeedTest, AsksForNoNameOnceTheRowsAreUsedUp) {
  Take(std::vector<Packet>(500, PacketTo(80)));
  EXPECT_EQ(questions.size(), 49u);
}

TEST_F(LogFeedTest, ShowsNoMoreThanFiftyRowsInAnySecondOfAFlood) {
  for (int i = 0; i < 1000; ++i) {
    Take(std::vector<Packet>(20, PacketTo(80)));
    now += Time(10);
  }
  for (std::size_t i = 50; i < times.size(); ++i) {
    EXPECT_GE(times[i] - times[i - 50], Time(1000)) << "row " << i;
  }
  EXPECT_GE(rows.size(), 450u);
  EXPECT_GE(Notes(), 8u);
}

TEST_F(LogFeedTest, HasRoomAgainAfterASecond) {
  Take(std::vector<Packet>(49, PacketTo(80)));
  now += Time(1000);
  Take(std::vector<Packet>(49, PacketTo(80)));
  EXPECT_EQ(rows.size(), 98u);
  EXPECT_FALSE(feed.HasUntold());
}

TEST_F(LogFeedTest, ShowsASlowStreamWhole) {
  for (int i = 0; i < 200; ++i) {
    Take({PacketTo(80)});
    now += Time(25);
  }
  EXPECT_EQ(rows.size(), 200u);
  EXPECT_EQ(Notes(), 0u);
}

}  // namespace
}  // namespace upnp::log
