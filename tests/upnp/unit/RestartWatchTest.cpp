#include "rules/RestartWatch.h"

#include <gtest/gtest.h>

namespace upnp {
namespace {

TEST(RestartWatchTest, TheFirstSignsTellNothing) {
  RestartWatch watch;
  EXPECT_FALSE(watch.Notice({1, 1000, "1.2.3.4"}));
  EXPECT_FALSE(watch.Notice({1, 1030, "1.2.3.4"}));
}

TEST(RestartWatchTest, AnotherBootIdentifierIsARestart) {
  RestartWatch watch;
  watch.Notice({5, std::nullopt, std::nullopt});
  EXPECT_TRUE(watch.Notice({6, std::nullopt, std::nullopt}));
  EXPECT_FALSE(watch.Notice({6, std::nullopt, std::nullopt}));
}

TEST(RestartWatchTest, AnUpTimeThatGoesBackIsARestart) {
  RestartWatch watch;
  watch.Notice({std::nullopt, 1000, std::nullopt});
  EXPECT_TRUE(watch.Notice({std::nullopt, 20, std::nullopt}));
  EXPECT_FALSE(watch.Notice({std::nullopt, 20, std::nullopt}));
}

TEST(RestartWatchTest, AnotherWanAddressCountsAsARestart) {
  RestartWatch watch;
  watch.Notice({std::nullopt, std::nullopt, "1.2.3.4"});
  EXPECT_TRUE(watch.Notice({std::nullopt, std::nullopt, "1.2.3.5"}));
}

TEST(RestartWatchTest, ASignThatIsMissingOnceIsRemembered) {
  RestartWatch watch;
  watch.Notice({5, 1000, std::nullopt});
  EXPECT_FALSE(watch.Notice({std::nullopt, 1010, std::nullopt}));
  EXPECT_TRUE(watch.Notice({6, std::nullopt, std::nullopt}));
}

TEST(RestartWatchTest, AnotherRouterStartsAnew) {
  RestartWatch watch;
  watch.Notice({5, 1000, "1.2.3.4"});
  watch.Reset();
  EXPECT_FALSE(watch.Notice({9, 1, "4.3.2.1"}));
}

}  // namespace
}  // namespace upnp
