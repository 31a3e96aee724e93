#include "ui/EventGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "support/RecordingToolkit.h"
#include "ui/Button.h"
#include "ui/Form.h"
#include "ui/Timer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ui::EventGuard;

struct Place {
  std::string path;
  std::string Path() const { return path; }
};

class UiEventGuard : public support::InterfaceTest {
 protected:
  /// An event at `place` that fails with `text`.
  static bool Fail(const std::string& place, const std::string& text,
                   EventGuard::Repeats repeats = EventGuard::Repeats::kNo) {
    return EventGuard::Run(Place{place}, "Click", repeats, [&] { throw base::Error(5, text); });
  }
};

TEST_F(UiEventGuard, SaysNothingWhenNothingFails) {
  EXPECT_TRUE(EventGuard::Run(Place{"a"}, "Click", EventGuard::Repeats::kNo, [] {}));
  EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(UiEventGuard, ShowsOneBoxWithTheTextAndTheNumber) {
  EXPECT_FALSE(Fail("a", "It broke"));
  ASSERT_EQ(toolkit.messages.size(), 1u);
  EXPECT_EQ(toolkit.messages[0].text, "It broke (5)");
  EXPECT_EQ(toolkit.messages[0].title, "Harbourline");
  EXPECT_EQ(toolkit.messages[0].icon, ui::MessageIcon::kCritical);
  EXPECT_EQ(toolkit.messages[0].buttons, ui::MessageButtons::kOk);
}

TEST_F(UiEventGuard, ShowsAnyOtherFailureWithItsText) {
  EventGuard::Run(Place{"a"}, "Click", EventGuard::Repeats::kNo, [] { throw std::runtime_error("No way"); });
  EventGuard::Run(Place{"a"}, "Click", EventGuard::Repeats::kNo, [] { throw std::bad_alloc(); });
  EXPECT_THAT(Messages(), ElementsAre("No way", std::bad_alloc().what()));
}

TEST_F(UiEventGuard, TheSameFailureIsSilentWhileItsBoxIsUp) {
  int inside = 0;
  toolkit.whileMessage = [&](const ui::Message&) {
    if (++inside < 10) Fail("a", "It broke");
  };
  Fail("a", "It broke");
  EXPECT_THAT(Messages(), ElementsAre("It broke (5)"));
  EXPECT_EQ(inside, 1);
}

TEST_F(UiEventGuard, TheSameFailureIsToldAgainAfterItsBox) {
  Fail("a", "It broke");
  Fail("a", "It broke");
  EXPECT_THAT(Messages(), ElementsAre("It broke (5)", "It broke (5)"));
}

TEST_F(UiEventGuard, AnotherFailureOrAnotherPlaceIsToldWhileABoxIsUp) {
  toolkit.whileMessage = [&](const ui::Message& message) {
    if (message.text == "It broke (5)" && toolkit.messages.size() == 1) {
      Fail("a", "It broke more");
      Fail("b", "It broke");
    }
  };
  Fail("a", "It broke");
  EXPECT_THAT(Messages(), ElementsAre("It broke (5)", "It broke more (5)", "It broke (5)"));
}

TEST_F(UiEventGuard, AFailureDeepInTheLoopOfABoxInABoxIsStillTheSame) {
  toolkit.whileMessage = [&](const ui::Message& message) {
    if (message.text == "First (5)") Fail("b", "Second");
    if (message.text == "Second (5)") Fail("a", "First");
  };
  Fail("a", "First");
  EXPECT_THAT(Messages(), ElementsAre("First (5)", "Second (5)"));
}

TEST_F(UiEventGuard, ABoxThatCanNotBeShownSilencesNothingLater) {
  toolkit.whileMessage = [](const ui::Message&) { throw std::runtime_error("no screen"); };
  EXPECT_THROW(Fail("a", "It broke"), std::runtime_error);
  toolkit.whileMessage = nullptr;
  toolkit.messages.clear();
  Fail("a", "It broke");
  EXPECT_THAT(Messages(), ElementsAre("It broke (5)"));
}

TEST_F(UiEventGuard, ATimerTellsAFailureOnce) {
  for (int i = 0; i < 3; ++i) Fail("a", "It broke", EventGuard::Repeats::kYes);
  EXPECT_THAT(Messages(), ElementsAre("It broke (5)"));
  Fail("b", "It broke", EventGuard::Repeats::kYes);
  EXPECT_EQ(toolkit.messages.size(), 2u);
}

TEST_F(UiEventGuard, ATextThatVariesFromTickToTickShowsOneBox) {
  for (int i = 0; i < 100; ++i) Fail("a", "No answer after " + std::to_string(i), EventGuard::Repeats::kYes);
  EXPECT_THAT(Messages(), ElementsAre("No answer after 0 (5)"));
}

TEST_F(UiEventGuard, OfManyDifferentFailuresOfOneTimerAFewAreShownAndTheOthersTraced) {
  for (int i = 1; i <= 1000; ++i) {
    EventGuard::Run(Place{"a"}, "Tick", EventGuard::Repeats::kYes, [i] { throw base::Error(i, "It broke"); });
  }
  EXPECT_THAT(Messages(), ElementsAre("It broke (1)", "It broke (2)", "It broke (3)"));
}

TEST_F(UiEventGuard, StepsOfOneTaskThatMeetTheSameFailureShowItOnce) {
  {
    const EventGuard::Once once;
    Fail("a", "It broke");
    Fail("b", "It broke");
    Fail("b", "Something else");
  }
  Fail("b", "It broke");
  EXPECT_THAT(Messages(), ElementsAre("It broke (5)", "Something else (5)", "It broke (5)"));
}

TEST_F(UiEventGuard, WhatATimerToldIsForgottenAtAReset) {
  Fail("a", "It broke", EventGuard::Repeats::kYes);
  EventGuard::Reset();
  Fail("a", "It broke", EventGuard::Repeats::kYes);
  EXPECT_EQ(toolkit.messages.size(), 2u);
}

TEST_F(UiEventGuard, AClickIsToldAgainAfterATimerToldTheSame) {
  Fail("a", "It broke", EventGuard::Repeats::kYes);
  Fail("a", "It broke", EventGuard::Repeats::kNo);
  EXPECT_EQ(toolkit.messages.size(), 2u);
}

TEST_F(UiEventGuard, AFailingTimerShowsOneBoxAndGoesOnTicking) {
  ui::Form window("frmTest", "Test", {}, 100, 100);
  ui::Timer timer(&window, "tmTest");
  int ticks = 0;
  timer.Tick.Connect([&] {
    ++ticks;
    throw base::Error(-2147023174, "The RPC server is unavailable");
  });
  timer.Interval(333);
  timer.Enabled(true);
  window.Load();
  toolkit.whileMessage = [&](const ui::Message&) { toolkit.Advance(10 * 333); };
  toolkit.Advance(333);
  EXPECT_EQ(ticks, 11) << "a box that nobody closes doesn't end the ticks";
  toolkit.Advance(10 * 333);
  EXPECT_EQ(ticks, 21);
  EXPECT_THAT(Messages(), ElementsAre("The RPC server is unavailable (-2147023174)"));
}

TEST_F(UiEventGuard, TheBoxOfOneTimerStopsNoOther) {
  ui::Form window("frmTest", "Test", {}, 100, 100);
  ui::Timer failing(&window, "tmFailing");
  ui::Timer other(&window, "tmOther");
  int ticks = 0;
  failing.Tick.Connect([] { throw base::Error(9, "no answer"); });
  other.Tick.Connect([&] { ++ticks; });
  for (ui::Timer* timer : {&failing, &other}) {
    timer->Interval(333);
    timer->Enabled(true);
  }
  window.Load();
  toolkit.whileMessage = [&](const ui::Message&) { toolkit.Advance(10 * 333); };
  toolkit.Advance(333);
  EXPECT_GE(ticks, 10);
}

TEST_F(UiEventGuard, ThePlaceIsTheControlAndItsEvent) {
  ui::Form window("frmTest", "Test", {}, 100, 100);
  ui::Button first(&window, "cmdFirst");
  ui::Button second(&window, "cmdSecond");
  first.Click.Connect([] { throw base::Error(5, "It broke"); });
  second.Click.Connect([] { throw base::Error(5, "It broke"); });
  toolkit.whileMessage = [&](const ui::Message&) {
    first.UserClick();
    if (toolkit.messages.size() == 1) second.UserClick();
  };
  first.UserClick();
  EXPECT_THAT(Messages(), ElementsAre("It broke (5)", "It broke (5)"));
}

}  // namespace
