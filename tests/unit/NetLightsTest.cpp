#include "shell/NetLights.h"

#include <gtest/gtest.h>

namespace {

constexpr bool kCalm = false;
constexpr bool kWarn = true;

/// Feeds a monitor with counters that have grown by the given steps since the last tick.
class Traffic {
 public:
  NetLights lights;

  Traffic() { lights.Compare(counters_); }

  std::int32_t Lights(std::uint32_t in, std::uint32_t out, bool warn = kCalm) {
    Grow(in, out);
    const std::int32_t position = lights.ActivityLights(warn);
    lights.Store();
    return position;
  }

  std::int32_t Bar(std::uint32_t segments, bool warn = kCalm) {
    Grow(segments, 0);
    const std::int32_t position = lights.SpeedBar(warn);
    lights.Store();
    return position;
  }

 private:
  void Grow(std::uint32_t in, std::uint32_t out) {
    counters_.inSegments += in;
    counters_.outSegments += out;
    EXPECT_TRUE(lights.Compare(counters_));
  }

  platform::TcpStatistics counters_{1000, 2000};
};

TEST(NetLightsTest, FirstTickHasNothingToCompareWithAndTheSecondComparesWithIt) {
  NetLights lights;
  EXPECT_FALSE(lights.Compare({5000, 5000}));
  EXPECT_TRUE(lights.Compare({5000, 5000}));
  EXPECT_EQ(lights.ActivityLights(kCalm), 1);
}

TEST(NetLightsTest, FlashIsTrueEveryOtherTick) {
  NetLights lights;
  EXPECT_TRUE(lights.Flip());
  EXPECT_FALSE(lights.Flip());
  EXPECT_TRUE(lights.Flip());
}

TEST(NetLightsTest, ActivityLightsTellIdleSendingReceivingAndBoth) {
  Traffic traffic;
  EXPECT_EQ(traffic.Lights(0, 0), 1);
  EXPECT_EQ(traffic.Lights(0, 1), 2);
  EXPECT_EQ(traffic.Lights(1, 0), 3);
  EXPECT_EQ(traffic.Lights(1, 1), 4);
}

TEST(NetLightsTest, ActivityLightsOnAWarningAreTheSameFourOnRed) {
  Traffic traffic;
  EXPECT_EQ(traffic.Lights(0, 0, kWarn), 5);
  EXPECT_EQ(traffic.Lights(0, 1, kWarn), 6);
  EXPECT_EQ(traffic.Lights(1, 0, kWarn), 7);
  EXPECT_EQ(traffic.Lights(1, 1, kWarn), 8);
}

TEST(NetLightsTest, ActivityLightsCompareSignedSoACounterBeyondTheMiddleCountsAsLess) {
  NetLights lights;
  lights.Compare({0x7FFFFFFF, 0});
  lights.Compare({0x80000000, 0});
  EXPECT_EQ(lights.ActivityLights(kCalm), 1);
}

TEST(NetLightsTest, SpeedBarWithoutTrafficIsEmpty) {
  Traffic traffic;
  EXPECT_EQ(traffic.Bar(0), 10);
  EXPECT_EQ(traffic.Bar(0, kWarn), 15);
}

TEST(NetLightsTest, SpeedBarIsEmptyWhenTheCountersGoBackwards) {
  Traffic traffic;
  EXPECT_EQ(traffic.Bar(100), 14);
  EXPECT_EQ(traffic.Bar(static_cast<std::uint32_t>(-900)), 10);
  EXPECT_EQ(traffic.Bar(100), 14);
  EXPECT_EQ(traffic.Bar(static_cast<std::uint32_t>(-900), kWarn), 15);
}

TEST(NetLightsTest, SpeedBarAtThePeakIsFullBecauseFourAndAHalfGoesToTheEvenFour) {
  Traffic traffic;
  EXPECT_EQ(traffic.Bar(100), 14);
  EXPECT_EQ(traffic.Bar(100), 14);
}

TEST(NetLightsTest, SpeedBarAtThePeakOnAWarningIsLevelTenWhichIsTheLastPicture) {
  Traffic traffic;
  EXPECT_EQ(traffic.Bar(100, kWarn), 20);
}

TEST(NetLightsTest, SpeedBarShowsTheShareOfThePeak) {
  Traffic traffic;
  traffic.Bar(1000);
  // 4 * delta / peak + 0.5, a half to the even neighbour.
  EXPECT_EQ(traffic.Bar(0), 10);     // 0.5 goes to 0
  EXPECT_EQ(traffic.Bar(200), 11);   // 1.3
  EXPECT_EQ(traffic.Bar(250), 12);   // 1.5 goes to 2
  EXPECT_EQ(traffic.Bar(500), 12);   // 2.5 goes to 2
  EXPECT_EQ(traffic.Bar(750), 14);   // 3.5 goes to 4
  EXPECT_EQ(traffic.Bar(800), 14);   // 3.7
  EXPECT_EQ(traffic.Bar(1000), 14);  // 4.5 goes to 4
}

TEST(NetLightsTest, SpeedBarOnAWarningAddsFiveBeforeItRounds) {
  Traffic traffic;
  traffic.Bar(1000);
  EXPECT_EQ(traffic.Bar(0, kWarn), 16);    // 5.5 goes to 6
  EXPECT_EQ(traffic.Bar(250, kWarn), 16);  // 6.5 goes to 6
  EXPECT_EQ(traffic.Bar(500, kWarn), 18);  // 7.5 goes to 8
}

TEST(NetLightsTest, AnyTrafficAtAllShowsAtLeastOneBox) {
  Traffic traffic;
  traffic.Bar(100000);
  EXPECT_EQ(traffic.Bar(1), 11);
}

TEST(NetLightsTest, AfterAMinuteWithoutANewPeakTheScaleShrinksByFourAtEveryTick) {
  Traffic traffic;
  traffic.Bar(4096);
  for (int tick = 0; tick < 180; ++tick) EXPECT_EQ(traffic.Bar(1), 11) << tick;
  // From here the peak is 1024, 256, 64, 16, 4, 1.
  EXPECT_EQ(traffic.Bar(16), 11);   // 4 * 16 / 1024
  EXPECT_EQ(traffic.Bar(100), 12);  // 4 * 100 / 256 + 0.5 = 2.06
  EXPECT_EQ(traffic.Bar(60), 14);   // 4 * 60 / 64 + 0.5 = 4.25
  EXPECT_EQ(traffic.Bar(8), 12);    // 4 * 8 / 16 + 0.5 = 2.5
  EXPECT_EQ(traffic.Bar(4), 14);    // the peak itself
  EXPECT_EQ(traffic.Bar(1), 14);    // an ordinary packet fills the bar
}

TEST(NetLightsTest, AShrunkenPeakGoesToTheNearestWholeNumberAHalfToTheEvenNeighbour) {
  Traffic traffic;
  traffic.Bar(10);
  for (int tick = 0; tick < 180; ++tick) traffic.Bar(0);
  // 10 / 4 = 2.5 becomes 2, so 1 is half of it.
  EXPECT_EQ(traffic.Bar(1), 12);
}

TEST(NetLightsTest, TrafficThatBeatsThePeakSetsItAndItsAgeAnew) {
  Traffic traffic;
  traffic.Bar(100);
  for (int tick = 0; tick < 179; ++tick) traffic.Bar(0);
  EXPECT_EQ(traffic.Bar(400), 14);
  for (int tick = 0; tick < 180; ++tick) traffic.Bar(0);
  EXPECT_EQ(traffic.Bar(50), 12);  // the peak is 100 now: 4 * 50 / 100 + 0.5 = 2.5
}

TEST(NetLightsTest, ThePeakStandsStillWhileOtherModesShow) {
  Traffic traffic;
  traffic.Bar(100);
  for (int tick = 0; tick < 500; ++tick) traffic.Lights(1, 1);
  EXPECT_EQ(traffic.Bar(50), 12);
}

TEST(NetLightsTest, AConnectionThatCameBackShowsAllThatWentByInOneTick) {
  NetLights lights;
  lights.Compare({100, 100});
  lights.Flip();  // ticks without a connection read no counters
  lights.Flip();
  lights.Compare({5000, 5000});
  EXPECT_EQ(lights.SpeedBar(kCalm), 14);
}

}  // namespace
