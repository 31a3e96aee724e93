#include <gmock/gmock.h>

#include "support/Role.h"

int main(int count, char** arguments) {
  if (const auto result = support::PlayRole({arguments, static_cast<std::size_t>(count)})) return *result;
  testing::InitGoogleMock(&count, arguments);
  return RUN_ALL_TESTS();
}
