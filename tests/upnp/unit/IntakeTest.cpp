#include "log/Intake.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace upnp::log {
namespace {

std::string LineTo(int port) {
  return "<4>IN=wan OUT=lan SRC=203.0.113.9 DST=192.168.1.2 PROTO=TCP SPT=4000 DPT=" + std::to_string(port);
}

TEST(RepeatFilterTest, DropsRepeatsWithinTwoSeconds) {
  RepeatFilter filter;
  const Packet packet{Direction::kIn, "TCP", "203.0.113.9", 1, "192.168.1.2", 80};
  EXPECT_FALSE(filter.IsRepeat(packet, Time(1000)));
  EXPECT_TRUE(filter.IsRepeat(packet, Time(1000)));
  EXPECT_TRUE(filter.IsRepeat(packet, Time(2999)));
  EXPECT_FALSE(filter.IsRepeat(packet, Time(3000)));
}

TEST(RepeatFilterTest, CountsFromTheOneThatWasTold) {
  RepeatFilter filter;
  const Packet packet{Direction::kIn, "TCP", "203.0.113.9", 1, "192.168.1.2", 80};
  int told = 0;
  for (int time = 0; time < 10'000; time += 100) told += filter.IsRepeat(packet, Time(time)) ? 0 : 1;
  EXPECT_EQ(told, 5) << "a knock that goes on is told every two seconds";
}

TEST(RepeatFilterTest, TellsPacketsApartByEveryPiece) {
  const Packet packet{Direction::kIn, "TCP", "203.0.113.9", 11, "192.168.1.2", 80};
  const Packet others[] = {{Direction::kOut, "TCP", "203.0.113.9", 11, "192.168.1.2", 80},
                           {Direction::kIn, "UDP", "203.0.113.9", 11, "192.168.1.2", 80},
                           {Direction::kIn, "TCP", "203.0.113.91", 1, "192.168.1.2", 80},
                           {Direction::kIn, "TCP", "203.0.113.9", 1, "192.168.1.2", 80},
                           {Direction::kIn, "TCP", "203.0.113.9", 11, "192.168.1.3", 80},
                           {Direction::kIn, "TCP", "203.0.113.9", 11, "192.168.1.2", 81}};
  for (const Packet& other : others) {
    RepeatFilter filter;
    EXPECT_FALSE(filter.IsRepeat(packet, Time(0)));
    EXPECT_FALSE(filter.IsRepeat(other, Time(0)));
  }
}

TEST(RepeatFilterTest, ForgetsTheOldestOfManyPackets) {
  RepeatFilter filter;
  Packet packet{Direction::kIn, "TCP", "203.0.113.9", 1, "192.168.1.2", 0};
  for (int port = 0; port < 5000; ++port) {
    packet.destinationPort = static_cast<std::uint16_t>(port);
    EXPECT_FALSE(filter.IsRepeat(packet, Time(0)));
  }
  EXPECT_TRUE(filter.IsRepeat(packet, Time(0)));
  packet.destinationPort = 0;
  EXPECT_FALSE(filter.IsRepeat(packet, Time(0)));
}

TEST(IntakeTest, HandsPacketsOnAndCountsWhatArrives) {
  Intake intake;
  EXPECT_EQ(intake.GetArrivals().datagrams, 0u);
  EXPECT_TRUE(intake.Take(LineTo(80), {}, Time(5)));
  EXPECT_FALSE(intake.Take(LineTo(81), {}, Time(6))) << "the other thread knows already";
  EXPECT_FALSE(intake.Take("nothing", {}, Time(7)));
  EXPECT_FALSE(intake.Take(LineTo(81), {}, Time(8)));

  const Arrivals arrivals = intake.GetArrivals();
  EXPECT_EQ(arrivals.datagrams, 4u);
  EXPECT_EQ(arrivals.packets, 3u);
  EXPECT_EQ(arrivals.last, Time(8));

  const Intake::Content content = intake.TakeContent();
  ASSERT_EQ(content.packets.size(), 2u);
  EXPECT_EQ(content.packets[0].destinationPort, 80);
  EXPECT_EQ(content.packets[1].destinationPort, 81);
  EXPECT_EQ(content.dropped, 0u);
  EXPECT_TRUE(intake.TakeContent().packets.empty());
  EXPECT_TRUE(intake.Take(LineTo(82), {}, Time(9)));
}

TEST(IntakeTest, HoldsABoundedNumberAndCountsTheRest) {
  Intake intake;
  for (int port = 1; port <= 600; ++port) intake.Take(LineTo(port), {}, Time(0));
  const Intake::Content content = intake.TakeContent();
  EXPECT_EQ(content.packets.size(), Intake::kMostPackets);
  EXPECT_EQ(content.dropped, 600 - Intake::kMostPackets);
  EXPECT_EQ(intake.TakeContent().dropped, 0u);
}

TEST(IntakeTest, LosesNothingBetweenTwoThreads) {
  Intake intake;
  std::size_t taken = 0;
  std::thread receiver([&intake] {
    for (int port = 1; port <= 5000; ++port) intake.Take(LineTo(port), {}, Time(0));
  });
  while (intake.GetArrivals().datagrams < 5000) {
    const Intake::Content content = intake.TakeContent();
    taken += content.packets.size() + content.dropped;
  }
  receiver.join();
  const Intake::Content content = intake.TakeContent();
  EXPECT_EQ(taken + content.packets.size() + content.dropped, 5000u);
}

}  // namespace
}  // namespace upnp::log
