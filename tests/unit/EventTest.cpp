#include "base/Event.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Listener {
  explicit Listener(std::vector<std::string>& heard, std::string name)
      : heard_(heard), name_(std::move(name)) {}
  void Hear(int value) {
    heard_.push_back(name_ + std::to_string(value));
    if (then) then();
  }
  std::function<void()> then;

 private:
  std::vector<std::string>& heard_;
  std::string name_;
};

class EventTest : public testing::Test {
 protected:
  void Connect(Listener& listener) { event.Connect<&Listener::Hear>(&listener); }
  std::vector<std::string> Raise(int value) {
    heard.clear();
    event.Raise(value);
    return heard;
  }

  std::vector<std::string> heard;
  base::Event<int> event;
  Listener a{heard, "a"};
  Listener b{heard, "b"};
  Listener c{heard, "c"};
};

TEST_F(EventTest, RunsHandlersInTheOrderOfConnecting) {
  Connect(a);
  event.Connect([this](int value) { heard.push_back("function" + std::to_string(value)); });
  Connect(b);
  EXPECT_THAT(Raise(1), ElementsAre("a1", "function1", "b1"));
}

TEST_F(EventTest, RunsAFunctionThatWasConnectedFirstBeforeOthers) {
  event.Connect([this](int) { heard.push_back("function"); });
  Connect(a);
  EXPECT_THAT(Raise(1), ElementsAre("function", "a1"));
}

TEST_F(EventTest, DoesNothingWithoutHandlers) {
  EXPECT_THAT(Raise(1), IsEmpty());
  EXPECT_FALSE(event.HasHandlers());
}

TEST_F(EventTest, RunsAHandlerAsOftenAsItIsConnected) {
  Connect(a);
  Connect(a);
  EXPECT_THAT(Raise(1), ElementsAre("a1", "a1"));
  event.Disconnect(&a);
  EXPECT_THAT(Raise(1), IsEmpty());
}

TEST_F(EventTest, KnowsWhetherAnybodyIsConnected) {
  Connect(a);
  Connect(b);
  EXPECT_TRUE(event.HasHandlers());
  event.Disconnect(&a);
  EXPECT_TRUE(event.HasHandlers());
  event.Disconnect(&b);
  EXPECT_FALSE(event.HasHandlers());
}

TEST_F(EventTest, KeepsTheOrderWhenTheFirstGoesAndAnotherComes) {
  Connect(a);
  Connect(b);
  event.Disconnect(&a);
  Connect(c);
  EXPECT_THAT(Raise(1), ElementsAre("b1", "c1"));
}

TEST_F(EventTest, HandsAReferenceToEveryHandler) {
  base::Event<int&> count;
  count.Connect([](int& value) { ++value; });
  count.Connect([](int& value) { value *= 10; });
  int value = 1;
  count.Raise(value);
  EXPECT_EQ(value, 20);
}

TEST_F(EventTest, RunsAHandlerThatIsConnectedMeanwhileFromTheNextRaiseOn) {
  Connect(a);
  bool once = true;
  a.then = [&] {
    if (once) Connect(b), Connect(c);
    once = false;
  };
  EXPECT_THAT(Raise(1), ElementsAre("a1"));
  EXPECT_THAT(Raise(2), ElementsAre("a2", "b2", "c2"));
}

TEST_F(EventTest, DoesNotRunAHandlerThatIsReplacedMeanwhileByItself) {
  Connect(a);
  a.then = [&] {
    event.Disconnect(&a);
    Connect(a);
  };
  EXPECT_THAT(Raise(1), ElementsAre("a1"));
  EXPECT_THAT(Raise(2), ElementsAre("a2"));
}

TEST_F(EventTest, DoesNotRunAHandlerThatIsDisconnectedMeanwhile) {
  Connect(a);
  Connect(b);
  Connect(c);
  a.then = [&] { event.Disconnect(&b); };
  EXPECT_THAT(Raise(1), ElementsAre("a1", "c1"));
  EXPECT_THAT(Raise(2), ElementsAre("a2", "c2"));
}

TEST_F(EventTest, KeepsTheOthersPlacesWhenOneLeavesAndOneComesWhileTheyRun) {
  Connect(a);
  Connect(b);
  Connect(c);
  Listener d(heard, "d");
  b.then = [&] {
    event.Disconnect(&b);
    Connect(d);
  };
  EXPECT_THAT(Raise(1), ElementsAre("a1", "b1", "c1"));
  EXPECT_THAT(Raise(2), ElementsAre("a2", "c2", "d2"));
}

TEST_F(EventTest, MayBeRaisedByAHandler) {
  Connect(a);
  Connect(b);
  int depth = 0;
  a.then = [&] {
    if (++depth == 1) event.Raise(2);
  };
  EXPECT_THAT(Raise(1), ElementsAre("a1", "a2", "b2", "b1"));
}

TEST_F(EventTest, EndsTheRaiseWithTheFailureOfAHandler) {
  Connect(a);
  Connect(b);
  a.then = [] { throw std::runtime_error("a"); };
  EXPECT_THROW(event.Raise(1), std::runtime_error);
  EXPECT_THAT(heard, ElementsAre("a1"));
  a.then = nullptr;
  event.Disconnect(&b);
  Connect(c);
  EXPECT_THAT(Raise(2), ElementsAre("a2", "c2"));
}

TEST_F(EventTest, MayBeEndedByItsOnlyHandler) {
  auto owner = std::make_unique<base::Event<int>>();
  Listener last(heard, "last");
  last.then = [&] { owner.reset(); };
  owner->Connect<&Listener::Hear>(&last);
  owner->Raise(1);
  EXPECT_THAT(heard, ElementsAre("last1"));
}

TEST_F(EventTest, MayBeEndedByTheHandlerThatStayedWhenTheOthersLeft) {
  auto owner = std::make_unique<base::Event<int>>();
  Listener last(heard, "last");
  last.then = [&] { owner.reset(); };
  owner->Connect<&Listener::Hear>(&last);
  owner->Connect<&Listener::Hear>(&a);
  owner->Disconnect(&a);
  owner->Raise(1);
  EXPECT_THAT(heard, ElementsAre("last1"));
}

TEST_F(EventTest, LetsGoOfWhatAFunctionHolds) {
  auto held = std::make_shared<int>(1);
  {
    base::Event<> owner;
    owner.Connect([held] {});
    EXPECT_EQ(held.use_count(), 2);
  }
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(EventTest, StaysSmall) {
  EXPECT_LE(sizeof(event), 3 * sizeof(void*));
}

}  // namespace
