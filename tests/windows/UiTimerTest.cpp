#include "ui/Timer.h"

#include <memory>

#include "base/Error.h"
#include "support/Ui.h"

namespace {

class UiTimerTest : public support::UiTest {
 protected:
  UiTimerTest() {
    timer_->AttachPeers();
    timer_->Tick.Connect([this] { ++ticks_; });
  }

  std::unique_ptr<ui::Timer> timer_ = std::make_unique<ui::Timer>(nullptr, "tmTest");
  int ticks_ = 0;
};

TEST_F(UiTimerTest, TicksAtItsInterval) {
  timer_->Interval(50);
  timer_->Enabled(true);
  const ULONGLONG start = GetTickCount64();
  ASSERT_TRUE(RunUntil([&] { return ticks_ == 5; }));
  EXPECT_GE(GetTickCount64() - start, 200u);
  EXPECT_LE(GetTickCount64() - start, 2000u);
}

TEST_F(UiTimerTest, DoesNotTickUnlessEnabledAndNeverWithAnIntervalOfZero) {
  timer_->Interval(20);
  RunFor(100);
  timer_->Interval(0);
  timer_->Enabled(true);
  RunFor(100);
  EXPECT_EQ(ticks_, 0);
}

TEST_F(UiTimerTest, NoTickComesAfterItIsStopped) {
  timer_->Interval(20);
  timer_->Enabled(true);
  ASSERT_TRUE(RunUntil([&] { return ticks_ > 0; }));
  // A tick falls due while nobody looks.
  Sleep(60);
  timer_->Enabled(false);
  const int before = ticks_;
  RunFor(100);
  EXPECT_EQ(ticks_, before);
}

TEST_F(UiTimerTest, ANewIntervalStartsAnew) {
  timer_->Interval(400);
  timer_->Enabled(true);
  RunFor(250);
  timer_->Interval(400);
  RunFor(250);
  EXPECT_EQ(ticks_, 0);
  EXPECT_TRUE(RunUntil([&] { return ticks_ == 1; }));
}

TEST_F(UiTimerTest, ATimerThatIsGoneTicksNoMore) {
  timer_->Interval(20);
  timer_->Enabled(true);
  ASSERT_TRUE(RunUntil([&] { return ticks_ > 0; }));
  Sleep(60);
  timer_.reset();
  const int before = ticks_;
  RunFor(100);
  EXPECT_EQ(ticks_, before);
}

TEST_F(UiTimerTest, MayBeStoppedByItsOwnTick) {
  timer_->Tick.Connect([this] { timer_->Enabled(false); });
  timer_->Interval(20);
  timer_->Enabled(true);
  RunFor(150);
  EXPECT_EQ(ticks_, 1);
}

TEST_F(UiTimerTest, ManyTimersEachKeepTheirOwn) {
  ui::Timer other(nullptr, "tmOther");
  int otherTicks = 0;
  other.Tick.Connect([&] { ++otherTicks; });
  other.AttachPeers();
  other.Interval(30);
  other.Enabled(true);
  timer_->Interval(30);
  timer_->Enabled(true);
  ASSERT_TRUE(RunUntil([&] { return ticks_ > 2 && otherTicks > 2; }));
  other.Enabled(false);
  const int before = otherTicks;
  const int mine = ticks_;
  ASSERT_TRUE(RunUntil([&] { return ticks_ > mine + 2; }));
  EXPECT_EQ(otherTicks, before);
}

}  // namespace
