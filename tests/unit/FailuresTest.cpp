#include "base/Failures.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "base/Error.h"

namespace {

base::Error ErrorOf(const base::Failures& failures) {
  try {
    failures.Rethrow();
  } catch (const base::Error& error) {
    return error;
  }
  return {0, "nothing failed"};
}

TEST(FailuresTest, NothingIsThrownWhenNothingFailed) {
  base::Failures failures;
  EXPECT_TRUE(failures.Run([] {}));
  EXPECT_FALSE(failures.Any());
  EXPECT_NO_THROW(failures.Rethrow());
}

TEST(FailuresTest, EveryPartRunsAndTheOneFailureIsThrownAsItWas) {
  base::Failures failures;
  std::vector<int> ran;
  EXPECT_FALSE(failures.Run([&] {
    ran.push_back(1);
    throw std::runtime_error("No way");
  }));
  EXPECT_TRUE(failures.Run([&] { ran.push_back(2); }));
  EXPECT_EQ(ran, (std::vector<int>{1, 2}));
  EXPECT_TRUE(failures.Any());
  EXPECT_THROW(failures.Rethrow(), std::runtime_error);
}

TEST(FailuresTest, TheSameFailureOfSeveralPartsIsOne) {
  base::Failures failures;
  for (int i = 0; i < 3; ++i) failures.Run([] { throw base::Error(9, "no answer"); });
  EXPECT_EQ(ErrorOf(failures).Text(), "no answer");
  EXPECT_EQ(ErrorOf(failures).Number(), 9);
}

TEST(FailuresTest, DifferentFailuresAreALineEachAndEachHasItsNumber) {
  base::Failures failures;
  failures.Run([] { throw base::Error(9, "no answer"); });
  failures.Run([] { throw base::Error(75, "disk full"); });
  EXPECT_EQ(base::Describe(ErrorOf(failures)), "no answer (9)\r\ndisk full (75)");
}

TEST(FailuresTest, OfManyFailuresTheFirstFourAreKept) {
  base::Failures failures;
  for (int i = 1; i <= 1000; ++i) failures.Run([i] { throw base::Error(i, "value " + std::to_string(i)); });
  EXPECT_EQ(base::Describe(ErrorOf(failures)), "value 1 (1)\r\nvalue 2 (2)\r\nvalue 3 (3)\r\nvalue 4 (4)");
}

}  // namespace
