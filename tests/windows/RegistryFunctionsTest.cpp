#include "platform/RegistryFunctions.h"

#include <gtest/gtest.h>

#include "platform/win32/Win32RegistryFunctions.h"
#include "support/RegistryAccess.h"
#include "support/Role.h"

namespace {

using support::ReadValue;
using support::TextValue;
using support::Wide;

/// The number of the predefined key as the platform lists it.
constexpr platform::RegistryKey kCurrentUser = 0x80000001;
constexpr std::uint32_t kAllAccess = 63;

class RegistryFunctionsTest : public testing::Test {
 protected:
  ~RegistryFunctionsTest() override { support::DeleteTree(Wide(path_)); }

  platform::RegistryKey Make() {
    platform::RegistryKey key = 0;
    EXPECT_EQ(registry_.CreateKeyEx(kCurrentUser, path_, kAllAccess, key), 0);
    return key;
  }

  const std::string path_ = "Software\\" + support::UniqueName("HarbourlineTest");
  platform::win32::Win32RegistryFunctions registry_;
};

TEST_F(RegistryFunctionsTest, MakesAKeyUnderThePlainNumberOfTheHive) {
  registry_.CloseKey(Make());
  EXPECT_TRUE(support::KeyExists(Wide(path_)));
}

TEST_F(RegistryFunctionsTest, TakesTheHandleOfTheHiveToo) {
  platform::RegistryKey key = 0;
  const auto hive = reinterpret_cast<platform::RegistryKey>(HKEY_CURRENT_USER);
  EXPECT_EQ(registry_.CreateKeyEx(hive, path_, kAllAccess, key), 0);
  EXPECT_EQ(registry_.CloseKey(key), 0);
}

TEST_F(RegistryFunctionsTest, OpeningAMissingKeyGivesThePlatformsCodeAndLeavesTheKey) {
  platform::RegistryKey key = 4711;
  EXPECT_EQ(registry_.OpenKeyEx(kCurrentUser, path_, kAllAccess, key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key, 4711u);
}

TEST_F(RegistryFunctionsTest, WritesTextAndReadsItBack) {
  const platform::RegistryKey key = Make();
  EXPECT_EQ(registry_.SetValueEx(key, "Nam\xE9", REG_SZ, "Caf\xE9", 5), 0);
  EXPECT_EQ(ReadValue(Wide(path_), L"Nam\x00E9"), TextValue(L"Caf\x00E9"));

  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(registry_.QueryValueEx(key, "Nam\xE9", type, nullptr, size), 0);
  EXPECT_EQ(type, REG_SZ);
  EXPECT_EQ(size, 5u);
  char buffer[5] = {};
  EXPECT_EQ(registry_.QueryValueEx(key, "Nam\xE9", type, buffer, size), 0);
  EXPECT_STREQ(buffer, "Caf\xE9");
  registry_.CloseKey(key);
}

TEST_F(RegistryFunctionsTest, WritesANumber) {
  const platform::RegistryKey key = Make();
  const std::int32_t number = -2;
  EXPECT_EQ(registry_.SetValueEx(key, "Number", REG_DWORD, &number, 4), 0);
  EXPECT_EQ(ReadValue(Wide(path_), L"Number"), (support::RegistryValue{REG_DWORD, {0xFE, 0xFF, 0xFF, 0xFF}}));
  registry_.CloseKey(key);
}

TEST_F(RegistryFunctionsTest, AMissingValueGivesThePlatformsCode) {
  const platform::RegistryKey key = Make();
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(registry_.QueryValueEx(key, "Missing", type, nullptr, size), ERROR_FILE_NOT_FOUND);
  registry_.CloseKey(key);
}

TEST_F(RegistryFunctionsTest, TooLittleRoomGivesThePlatformsCodeAndTheSizeThatIsNeeded) {
  const platform::RegistryKey key = Make();
  registry_.SetValueEx(key, "Text", REG_SZ, "0123456789", 10);
  std::uint32_t type = 0;
  char buffer[4] = {};
  std::uint32_t size = sizeof buffer;
  EXPECT_EQ(registry_.QueryValueEx(key, "Text", type, buffer, size), ERROR_MORE_DATA);
  EXPECT_GE(size, 10u);
  registry_.CloseKey(key);
}

TEST_F(RegistryFunctionsTest, AnInvalidKeyGivesThePlatformsCode) {
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(registry_.QueryValueEx(0, "Text", type, nullptr, size), ERROR_INVALID_HANDLE);
  EXPECT_EQ(registry_.CloseKey(0), ERROR_INVALID_HANDLE);
}

}  // namespace
