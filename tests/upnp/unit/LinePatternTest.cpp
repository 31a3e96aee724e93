#include "log/LinePattern.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "log/Characters.h"
#include "log/PatternTable.h"

namespace upnp::log {
namespace {

std::optional<LineFields> Match(const char* pattern, std::string_view line) {
  std::string small(line);
  std::transform(small.begin(), small.end(), small.begin(), ToLower);
  return LinePattern(pattern).Match(line, small);
}

TEST(LinePatternTest, FindsItsPiecesAnywhereInTheLine) {
  const auto fields = Match("from {source}:{sourcePort} to {destination} {protocol}:{destinationPort}",
                            "Apr 1 host: from 1.2.3.4:5 to 6.7.8.9 UDP:10 and more");
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->source.text, "1.2.3.4");
  EXPECT_EQ(fields->source.port, 5);
  EXPECT_EQ(fields->destination.text, "6.7.8.9");
  EXPECT_EQ(fields->destination.port, 10);
  EXPECT_EQ(fields->protocol, "UDP");
}

TEST(LinePatternTest, TakesABlankForSeveralAndLettersOfEitherCase) {
  EXPECT_TRUE(Match("FROM {source} to {destination}", "From   1.2.3.4 \t TO  5.6.7.8"));
  EXPECT_FALSE(Match("from {source} to {destination}", "from 1.2.3.4to 5.6.7.8"));
}

TEST(LinePatternTest, TriesAgainWhereItsBeginningComesASecondTime) {
  EXPECT_TRUE(Match("from {source}", "from here, from 1.2.3.4"));
}

TEST(LinePatternTest, SkipsUpToTheTextThatFollows) {
  const auto fields = Match("a{skip}, {source}", "a b c, 1.2.3.4");
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->source.text, "1.2.3.4");
  EXPECT_TRUE(Match("a{skip}, {source}", "a, 1.2.3.4"));
  EXPECT_FALSE(Match("a{skip}, {source}", "a b c 1.2.3.4"));
}

TEST(LinePatternTest, LeavesThePointAtTheEndOfASentenceOut) {
  const auto fields = Match("from {source}", "A knock from 1.2.3.4.");
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->source.text, "1.2.3.4");
}

TEST(LinePatternTest, ReadsInterfacesUpToTheNextMark) {
  const auto fields = Match("in:{in} out:{out},", "in:ether1-wan out:br-lan, more");
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->inInterface, "ether1-wan");
  EXPECT_EQ(fields->outInterface, "br-lan");
  const auto arrow = Match("x {in}->{out} ", "x LAN->WAN ");
  ASSERT_TRUE(arrow);
  EXPECT_EQ(arrow->inInterface, "LAN");
  EXPECT_EQ(arrow->outInterface, "WAN");
}

TEST(LinePatternTest, TakesAnInterfaceInBracketsForNone) {
  const auto fields = Match("in:{in} out:{out}, x", "in:(none) out:(unknown 0), x");
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->inInterface, "");
  EXPECT_EQ(fields->outInterface, "");
}

TEST(LinePatternTest, RefusesAPatternThatCantMatch) {
  for (const char* pattern :
       {"", "{source}", "{skip}a", "a{skip}", "a{skip}{source}", "a{sauce}", "a{source"}) {
    EXPECT_THROW(LinePattern{pattern}, std::invalid_argument) << pattern;
  }
}

TEST(PatternTableTest, HasOnlyPatternsThatTellBothEnds) {
  for (const RouterPattern& entry : PatternTable()) {
    EXPECT_FALSE(entry.routers.empty());
    EXPECT_NO_THROW(LinePattern{entry.pattern}) << entry.pattern;
    for (const char* name : {"{source}", "{destination}"}) {
      EXPECT_NE(entry.pattern.find(name), std::string_view::npos) << entry.pattern;
    }
  }
}

}  // namespace
}  // namespace upnp::log
