#include "rules/Problem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace upnp {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr Trouble kAll[] = {Trouble::kNoRouter,       Trouble::kNoAnswer,      Trouble::kBadPort,
                            Trouble::kBadHost,        Trouble::kTooManyPorts,  Trouble::kClash,
                            Trouble::kOwnedByAnother, Trouble::kNotAuthorized, Trouble::kUsedByRouter,
                            Trouble::kTableFull,      Trouble::kRefused,       Trouble::kNotKept,
                            Trouble::kOldLeft,        Trouble::kBusy,          Trouble::kDoubleNat,
                            Trouble::kWanDown,        Trouble::kNoExposedHost};

Problem Make(Trouble trouble) {
  return {trouble, 5000, 5010, Protocol::kUdp, "192.168.1.9", 718};
}

TEST(ProblemTest, EachIsToldInSentencesOfItsOwn) {
  std::vector<std::string> texts;
  for (const Trouble trouble : kAll) {
    const std::string text = Explain(Make(trouble));
    EXPECT_GT(text.size(), 40u);
    EXPECT_TRUE(text.ends_with('.') || text.ends_with('?')) << text;
    EXPECT_THAT(texts, Not(testing::Contains(text)));
    texts.push_back(text);
  }
}

TEST(ProblemTest, WhatConcernsPortsNamesThem) {
  for (const Trouble trouble :
       {Trouble::kBadPort, Trouble::kBadHost, Trouble::kTooManyPorts, Trouble::kClash,
        Trouble::kOwnedByAnother, Trouble::kNotAuthorized, Trouble::kUsedByRouter, Trouble::kTableFull,
        Trouble::kRefused, Trouble::kNotKept, Trouble::kOldLeft}) {
    EXPECT_THAT(Explain(Make(trouble)), HasSubstr("UDP ports 5000 to 5010"));
  }
}

TEST(ProblemTest, RefusalsCarryTheNumberThatHelpsInASearch) {
  EXPECT_THAT(Explain(Make(Trouble::kNotAuthorized)), HasSubstr("606"));
  EXPECT_THAT(Explain(Make(Trouble::kUsedByRouter)), HasSubstr("729"));
  EXPECT_THAT(Explain(Make(Trouble::kTableFull)), HasSubstr("728"));
  EXPECT_THAT(Explain(Make(Trouble::kRefused)), HasSubstr("718"));
}

TEST(ProblemTest, AnOwnerWithoutAnAddressIsAnotherComputer) {
  Problem problem = Make(Trouble::kOwnedByAnother);
  EXPECT_THAT(Explain(problem), HasSubstr("192.168.1.9"));
  problem.who.clear();
  EXPECT_THAT(Explain(problem), HasSubstr("another computer"));
}

TEST(ProblemTest, ASinglePortIsNoRange) {
  EXPECT_EQ(PortsText(80, 80, Protocol::kTcp), "TCP port 80");
}

TEST(ProblemTest, WhatStandsOnTheRouterIsNotUnmet) {
  for (const Trouble trouble :
       {Trouble::kDoubleNat, Trouble::kWanDown, Trouble::kOldLeft, Trouble::kNoExposedHost}) {
    EXPECT_FALSE(LeavesTheWishUnmet(Make(trouble)));
  }
  for (const Trouble trouble : {Trouble::kNoRouter, Trouble::kNoAnswer, Trouble::kOwnedByAnother,
                                Trouble::kBusy, Trouble::kNotKept, Trouble::kTooManyPorts}) {
    EXPECT_TRUE(LeavesTheWishUnmet(Make(trouble)));
  }
}

}  // namespace
}  // namespace upnp
