#include "rules/GatewaySession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace upnp {
namespace {

/// A router that counts its connections, and cuts those beyond `mostAtOnce`.
class BusyRouter : public Gateway {
 public:
  explicit BusyRouter(int connections) : mostAtOnce(connections) {}

  Traits Abilities() const override {
    Traits traits;
    traits.lanes = 3;
    return traits;
  }
  Granted Add(const PortMapping& mapping) override { return {Serve(), mapping.lease, mapping.externalPort}; }
  Answer Delete(const PortKey&) override { return Serve(); }
  Answer EntryAt(std::uint32_t, PortMapping&) override { return Serve(); }
  Answer Entry(const PortKey&, PortMapping&) override { return Serve(); }
  Answer ExternalAddress(std::string&) override { return Serve(); }
  Answer Status(ConnectionStatus&) override { return Serve(); }

  const int mostAtOnce;
  std::atomic<int> calls{0};
  std::atomic<int> seenAtOnce{0};
  std::atomic<bool> silent{false};

 private:
  Answer Serve() {
    ++calls;
    const int now = ++busy_;
    for (int seen = seenAtOnce; seen < now && !seenAtOnce.compare_exchange_weak(seen, now);) continue;
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
    const bool served = now <= mostAtOnce && !silent;
    --busy_;
    return served ? Answer::Done() : Answer::NoAnswer();
  }

  std::atomic<int> busy_{0};
};

std::vector<PortKey> Keys(std::uint16_t count) {
  std::vector<PortKey> keys;
  for (std::uint16_t port = 1; port <= count; ++port) keys.emplace_back(port, Protocol::kTcp);
  return keys;
}

int CountDone(const std::vector<Answer>& answers) {
  return static_cast<int>(
      std::count_if(answers.begin(), answers.end(), [](const Answer& answer) { return answer.IsDone(); }));
}

bool Always() {
  return true;
}

TEST(GatewaySessionTest, AFewCallsGoTwoAtOnceAtMost) {
  BusyRouter router(10);
  GatewaySession session(router);
  EXPECT_EQ(CountDone(session.DeleteAll(Keys(8), Always)), 8);
  EXPECT_EQ(router.calls, 8);
  EXPECT_LE(router.seenAtOnce, 2);
}

TEST(GatewaySessionTest, ManyCallsGoThreeAtOnceWhenTheRouterHasShownThatItBearsThem) {
  BusyRouter router(10);
  GatewaySession session(router);
  EXPECT_EQ(CountDone(session.DeleteAll(Keys(60), Always)), 60);
  EXPECT_EQ(session.Lanes(), 3);
  EXPECT_EQ(router.seenAtOnce, 3);
}

TEST(GatewaySessionTest, ARouterThatBearsTwoGetsNoMore) {
  BusyRouter router(2);
  GatewaySession session(router);
  EXPECT_EQ(CountDone(session.DeleteAll(Keys(60), Always)), 60);
  EXPECT_LE(session.Lanes(), 2);
}

TEST(GatewaySessionTest, ARouterThatBearsOneGetsEverythingOneByOne) {
  BusyRouter router(1);
  GatewaySession session(router);
  EXPECT_EQ(CountDone(session.DeleteAll(Keys(60), Always)), 60);
  EXPECT_EQ(session.Lanes(), 1);
}

TEST(GatewaySessionTest, ASilentRouterIsLeftSoon) {
  BusyRouter router(10);
  router.silent = true;
  GatewaySession session(router);
  const std::vector<Answer> answers = session.DeleteAll(Keys(60), Always);
  EXPECT_EQ(CountDone(answers), 0);
  EXPECT_LE(router.calls, 10);
  EXPECT_THAT(answers, testing::Contains(testing::Property(&Answer::IsNoAnswer, true)));
}

TEST(GatewaySessionTest, ABatchIsEndedBetweenTwoCalls) {
  BusyRouter router(10);
  GatewaySession session(router);
  const std::vector<Answer> answers = session.DeleteAll(Keys(60), [&] { return router.calls < 20; });
  EXPECT_LE(router.calls, 25);
  EXPECT_TRUE(answers.back().IsNotTried());
}

}  // namespace
}  // namespace upnp
