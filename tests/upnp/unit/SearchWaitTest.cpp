#include "rules/SearchWait.h"

#include <gtest/gtest.h>

namespace upnp {
namespace {

using std::chrono::milliseconds;

SsdpMessage AnswerOf(const std::string& device, const std::string& sender, const std::string& path = "/") {
  SsdpMessage message;
  message.device = device;
  message.sender = sender;
  message.location = "http://" + sender + ":80" + path;
  return message;
}

SearchAim Remembered() {
  SearchAim aim;
  aim.device = "uuid:mine";
  aim.address = "192.168.1.1";
  aim.routes = {"192.168.1.254"};
  return aim;
}

TEST(SearchWaitTest, AQuickAnswerOfAnyoneIsWaitedOutToTheEnd) {
  SearchWait wait(Remembered());
  wait.Take(AnswerOf("uuid:other", "192.168.1.9"), milliseconds(20));
  EXPECT_FALSE(wait.IsOver(milliseconds(1200)));
  EXPECT_TRUE(wait.IsOver(milliseconds(1300)));
}

TEST(SearchWaitTest, TheRememberedRouterEndsTheWait) {
  SearchWait wait(Remembered());
  wait.Take(AnswerOf("uuid:mine", "192.168.7.7"), milliseconds(20));
  EXPECT_FALSE(wait.IsOver(milliseconds(60)));
  EXPECT_TRUE(wait.IsOver(milliseconds(120)));
}

TEST(SearchWaitTest, TheRememberedRouterIsKnownByItsAddressToo) {
  SearchWait wait(Remembered());
  wait.Take(AnswerOf("uuid:new", "192.168.1.1"), milliseconds(20));
  EXPECT_TRUE(wait.IsOver(milliseconds(120)));
}

TEST(SearchWaitTest, TheDefaultGatewayEndsTheWaitWhenNoRouterIsRemembered) {
  SearchAim aim;
  aim.routes = {"192.168.1.254"};
  SearchWait wait(aim);
  wait.Take(AnswerOf("uuid:a", "192.168.1.1"), milliseconds(20));
  EXPECT_FALSE(wait.IsOver(milliseconds(900)));
  wait.Take(AnswerOf("uuid:b", "192.168.1.254"), milliseconds(900));
  EXPECT_TRUE(wait.IsOver(milliseconds(1000)));
}

TEST(SearchWaitTest, TheDefaultGatewayDoesNotEndTheWaitForAnotherThatIsRemembered) {
  SearchWait wait(Remembered());
  wait.Take(AnswerOf("uuid:b", "192.168.1.254"), milliseconds(20));
  EXPECT_FALSE(wait.IsOver(milliseconds(1000)));
}

TEST(SearchWaitTest, AThoroughSearchHearsEverybody) {
  SearchAim aim = Remembered();
  aim.thorough = true;
  SearchWait wait(aim);
  wait.Take(AnswerOf("uuid:mine", "192.168.1.1"), milliseconds(20));
  EXPECT_FALSE(wait.IsOver(milliseconds(1200)));
  EXPECT_TRUE(wait.IsOver(milliseconds(1300)));
}

TEST(SearchWaitTest, SilenceIsWaitedForLongerWithASecondCall) {
  SearchWait wait(Remembered());
  EXPECT_FALSE(wait.WantsSecondCall(milliseconds(900)));
  EXPECT_TRUE(wait.WantsSecondCall(milliseconds(1000)));
  EXPECT_FALSE(wait.IsOver(milliseconds(2900)));
  EXPECT_TRUE(wait.IsOver(milliseconds(3000)));
}

TEST(SearchWaitTest, OneSenderHasTwoLocationsAtMost) {
  SearchWait wait(Remembered());
  for (int i = 0; i < 40; ++i)
    wait.Take(AnswerOf("uuid:" + std::to_string(i), "192.168.1.9", "/" + std::to_string(i)), milliseconds(1));
  EXPECT_EQ(wait.Answers().size(), 2u);
  wait.Take(AnswerOf("uuid:mine", "192.168.1.1"), milliseconds(2));
  EXPECT_EQ(wait.Answers().size(), 3u);
}

TEST(SearchWaitTest, ManySendersDoNotCrowdOutTheRememberedRouter) {
  SearchWait wait(Remembered());
  for (int i = 2; i < 200; ++i)
    wait.Take(AnswerOf("uuid:x", "192.168.1." + std::to_string(i)), milliseconds(1));
  EXPECT_EQ(wait.Answers().size(), SearchWait::kMostLocations);
  wait.Take(AnswerOf("uuid:mine", "192.168.1.1"), milliseconds(2));
  EXPECT_EQ(wait.Answers().size(), SearchWait::kMostLocations + 1);
}

}  // namespace
}  // namespace upnp
