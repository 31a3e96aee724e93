#include "platform/Machine.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include "platform/win32/Win32Machine.h"

namespace {

std::optional<APTTYPE> ApartmentOfThisThread() {
  APTTYPE type = APTTYPE_CURRENT;
  APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
  if (FAILED(CoGetApartmentType(&type, &qualifier))) return std::nullopt;
  return type;
}

TEST(MachineTest, WhileItLivesEveryServiceIsThere) {
  {
    const platform::win32::Win32Machine machine;
    const platform::Machine& services = platform::TheMachine();
    EXPECT_NE(services.settings, nullptr);
    EXPECT_NE(services.registry, nullptr);
    EXPECT_NE(services.objects, nullptr);
    EXPECT_NE(services.systemHelper, nullptr);
    EXPECT_NE(services.process, nullptr);
    EXPECT_NE(services.network, nullptr);
    EXPECT_NE(services.notificationArea, nullptr);
    EXPECT_NE(services.windows, nullptr);
    EXPECT_NE(services.shell, nullptr);
    EXPECT_NE(services.clock, nullptr);
    EXPECT_NE(services.debug, nullptr);
  }
  EXPECT_EQ(platform::TheMachine().settings, nullptr);
  EXPECT_EQ(platform::TheMachine().objects, nullptr);
}

TEST(MachineTest, WhileItLivesTheThreadIsAnApartmentOfItsOwn) {
  ASSERT_EQ(ApartmentOfThisThread(), std::nullopt);
  {
    const platform::win32::Win32Machine machine;
    const auto apartment = ApartmentOfThisThread();
    EXPECT_TRUE(apartment == APTTYPE_STA || apartment == APTTYPE_MAINSTA);
  }
  EXPECT_EQ(ApartmentOfThisThread(), std::nullopt);
}

}  // namespace
