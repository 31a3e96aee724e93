#include "ui/Timer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UiTimer : public testing::Test {
 protected:
  UiTimer()
      : window("frmTest", "Test", {}, 100, 100), first(&window, "tmFirst"), second(&window, "tmSecond") {
    ui::EventGuard::Reset();
    first.Tick.Connect([this] { Tell("first"); });
    second.Tick.Connect([this] { Tell("second"); });
    window.Load();
  }

  static void Start(ui::Timer& timer, std::int32_t interval) {
    timer.Interval(interval);
    timer.Enabled(true);
  }
  void Tell(const std::string& who) { ticks.push_back(who); }

  ui::HeadlessToolkit toolkit;
  ui::Form window;
  ui::Timer first;
  ui::Timer second;
  std::vector<std::string> ticks;
};

TEST_F(UiTimer, IsOffAndWithoutIntervalAtFirst) {
  EXPECT_FALSE(first.Enabled());
  EXPECT_EQ(first.Interval(), 0);
  toolkit.Advance(100000);
  EXPECT_THAT(ticks, IsEmpty());
}

TEST_F(UiTimer, TicksWhenItsIntervalHasPassed) {
  Start(first, 333);
  toolkit.Advance(332);
  EXPECT_THAT(ticks, IsEmpty());
  toolkit.Advance(1);
  EXPECT_THAT(ticks, ElementsAre("first"));
  toolkit.Advance(666);
  EXPECT_EQ(ticks.size(), 3u);
}

TEST_F(UiTimer, NeverTicksWithoutAnInterval) {
  first.Enabled(true);
  toolkit.Advance(1000);
  first.Interval(-5);
  toolkit.Advance(1000);
  EXPECT_THAT(ticks, IsEmpty());
}

TEST_F(UiTimer, ManyTickInTheOrderInWhichTheyFallDue) {
  Start(first, 300);
  Start(second, 200);
  toolkit.Advance(900);
  // At 600 both fall due; the one that was made first comes first.
  EXPECT_THAT(ticks, ElementsAre("second", "first", "second", "first", "second", "second", "first"));
}

TEST_F(UiTimer, MayStopItselfInItsTick) {
  Start(first, 100);
  first.Tick.Connect([this] { first.Enabled(false); });
  toolkit.Advance(1000);
  EXPECT_THAT(ticks, ElementsAre("first"));
  first.Enabled(true);
  toolkit.Advance(99);
  EXPECT_EQ(ticks.size(), 1u);
  toolkit.Advance(1);
  EXPECT_EQ(ticks.size(), 2u);
}

TEST_F(UiTimer, MayStopAnotherThatFallsDueAtTheSameMoment) {
  Start(first, 100);
  Start(second, 100);
  first.Tick.Connect([this] { second.Enabled(false); });
  toolkit.Advance(300);
  EXPECT_THAT(ticks, ElementsAre("first", "first", "first"));
}

TEST_F(UiTimer, ANewIntervalStartsAnew) {
  Start(first, 100);
  toolkit.Advance(90);
  first.Interval(100);
  toolkit.Advance(90);
  EXPECT_THAT(ticks, IsEmpty());
  toolkit.Advance(10);
  EXPECT_EQ(ticks.size(), 1u);
}

TEST_F(UiTimer, MayChangeItsIntervalInItsTick) {
  Start(first, 100);
  first.Tick.Connect([this] { first.Interval(1000); });
  toolkit.Advance(1099);
  EXPECT_EQ(ticks.size(), 1u);
  toolkit.Advance(1);
  EXPECT_EQ(ticks.size(), 2u);
}

TEST_F(UiTimer, SwitchingItOnTwiceDoesNotStartItAnew) {
  Start(first, 100);
  toolkit.Advance(90);
  first.Enabled(true);
  toolkit.Advance(10);
  EXPECT_EQ(ticks.size(), 1u);
}

TEST_F(UiTimer, ATickIsDroppedWhileTheOneBeforeItRuns) {
  Start(first, 100);
  Start(second, 100);
  bool waited = false;
  first.Tick.Connect([&] {
    if (!waited) {
      waited = true;
      toolkit.Advance(500);
      Tell("first ends");
    }
  });
  toolkit.Advance(100);
  // The second goes on meanwhile: at 100, which it had due, and 200 to 600.
  EXPECT_THAT(ticks,
              ElementsAre("first", "second", "second", "second", "second", "second", "second", "first ends"));
  ticks.clear();
  toolkit.Advance(100);
  EXPECT_THAT(ticks, ElementsAre("first", "second"));
}

TEST_F(UiTimer, AFailingTickDoesNotBlockTheNext) {
  Start(first, 100);
  first.Tick.Connect([] { throw base::Error(5, "No"); });
  toolkit.Advance(300);
  EXPECT_EQ(ticks.size(), 3u);
  EXPECT_EQ(toolkit.messages.size(), 1u);
}

TEST_F(UiTimer, ATickThatWasUnderWayWhenItWasStoppedIsDropped) {
  Start(first, 100);
  first.Enabled(false);
  first.UserTick();
  EXPECT_THAT(ticks, IsEmpty());
}

TEST_F(UiTimer, TicksOnlyWhileItsWindowIsLoaded) {
  Start(first, 100);
  window.Unload();
  toolkit.Advance(1000);
  EXPECT_THAT(ticks, IsEmpty());
  window.Load();
  toolkit.Advance(100);
  EXPECT_THAT(ticks, ElementsAre("first"));
}

TEST_F(UiTimer, MayUnloadItsWindowInItsTick) {
  Start(first, 100);
  Start(second, 100);
  first.Tick.Connect([this] { window.Unload(); });
  toolkit.Advance(1000);
  EXPECT_THAT(ticks, ElementsAre("first"));
  EXPECT_FALSE(window.IsLoaded());
}

TEST_F(UiTimer, TicksOnAWindowThatNobodySees) {
  window.Visible(false);
  Start(first, 100);
  toolkit.Advance(100);
  EXPECT_EQ(ticks.size(), 1u);
}

}  // namespace
