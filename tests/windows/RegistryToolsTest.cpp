#include <gtest/gtest.h>

#include <string>

#include "platform/Machine.h"
#include "platform/win32/Win32RegistryFunctions.h"
#include "settings/modRegistryTools.h"
#include "support/RegistryAccess.h"
#include "support/Role.h"

namespace {

using support::ReadValue;
using support::Wide;

constexpr platform::RegistryKey kCurrentUser = 0x80000001;

/// modRegistryTools against the real registry.
class RegistryToolsTest : public testing::Test {
 protected:
  RegistryToolsTest() : before_(platform::TheMachine()) {
    platform::TheMachine().registry = &registry_;
    EXPECT_EQ(modRegistryTools::CreateKey(kCurrentUser, path_), 0);
  }
  ~RegistryToolsTest() override {
    support::DeleteTree(Wide(path_));
    platform::TheMachine() = before_;
  }

  std::int32_t Set(const std::string& name, const base::Variant& value, std::int32_t type) {
    return modRegistryTools::SetKeyValue(kCurrentUser, path_, name, value, type);
  }
  std::string Query(const std::string& name) {
    return modRegistryTools::QueryValue(kCurrentUser, path_, name);
  }

  const std::string path_ = "Software\\" + support::UniqueName("HarbourlineTest");
  platform::win32::Win32RegistryFunctions registry_;
  const platform::Machine before_;
};

TEST_F(RegistryToolsTest, ATextIsStoredWithoutATerminatorAndComesBackACharacterShort) {
  EXPECT_EQ(Set("Name", "Caf\xE9s", modRegistryTools::kRegSz), 0);
  EXPECT_EQ(ReadValue(Wide(path_), L"Name"), support::UnterminatedValue(L"Caf\x00E9s"));
  EXPECT_EQ(Query("Name"), "Caf\xE9");
}

TEST_F(RegistryToolsTest, ATextThatAnotherProgramStoredWithItsTerminatorComesBackWhole) {
  support::WriteValue(Wide(path_), L"Name", support::TextValue(L"Caf\x00E9s"));
  EXPECT_EQ(Query("Name"), "Caf\xE9s");
}

TEST_F(RegistryToolsTest, AnEmptyTextIsStoredAsNothingAndComesBackEmpty) {
  EXPECT_EQ(Set("Name", "", modRegistryTools::kRegSz), 0);
  EXPECT_EQ(ReadValue(Wide(path_), L"Name"), (support::RegistryValue{REG_SZ, {}}));
  EXPECT_EQ(Query("Name"), "");
}

TEST_F(RegistryToolsTest, ANumberIsStoredInFourBytesAndComesBackADigitShort) {
  EXPECT_EQ(Set("Number", std::int32_t{1234}, modRegistryTools::kRegDword), 0);
  EXPECT_EQ(ReadValue(Wide(path_), L"Number"), (support::RegistryValue{REG_DWORD, {0xD2, 0x04, 0, 0}}));
  EXPECT_EQ(Query("Number"), "123");
}

TEST_F(RegistryToolsTest, AnUnknownTypeIsNeitherWrittenNorRead) {
  EXPECT_EQ(Set("Name", "abc", 7), 0);
  EXPECT_EQ(ReadValue(Wide(path_), L"Name"), std::nullopt);
  support::WriteValue(Wide(path_), L"Bytes", {REG_BINARY, {1, 2, 3}});
  EXPECT_EQ(Query("Bytes"), "");
}

TEST_F(RegistryToolsTest, WhatIsMissingGivesTheSystemsCodeOrAnEmptyText) {
  EXPECT_EQ(Query("Missing"), "");
  EXPECT_EQ(modRegistryTools::QueryValue(kCurrentUser, path_ + "\\Missing", "Name"), "");
  EXPECT_EQ(modRegistryTools::SetKeyValue(kCurrentUser, path_ + "\\Missing", "Name", "abc", 1),
            ERROR_FILE_NOT_FOUND);
  platform::RegistryKey key = 0;
  ASSERT_EQ(registry_.OpenKeyEx(kCurrentUser, path_, modRegistryTools::kKeyAllAccess, key), 0);
  base::Variant value("before");
  EXPECT_EQ(modRegistryTools::QueryValueEx(key, "Missing", value), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(base::ToText(value), "before");
  registry_.CloseKey(key);
}

}  // namespace
