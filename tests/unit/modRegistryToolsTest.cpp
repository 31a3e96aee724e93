#include "settings/modRegistryTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/Error.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr platform::RegistryKey kHive = 0x80000001u;
constexpr std::uint32_t kTypeOfManyTexts = 7;

class modRegistryToolsTest : public testing::Test {
 protected:
  modRegistryToolsTest() { world.registry.keys[{kHive, "Software\\Test"}]; }

  support::MemoryRegistry::Values& Values() { return world.registry.keys[{kHive, "Software\\Test"}]; }
  std::string Query(const std::string& name) {
    return modRegistryTools::QueryValue(kHive, "Software\\Test", name);
  }
  std::int32_t Set(const std::string& name, const base::Variant& value, std::int32_t type) {
    return modRegistryTools::SetKeyValue(kHive, "Software\\Test", name, value, type);
  }

  support::World world;
};

TEST_F(modRegistryToolsTest, CreatesAKeyWithAllAccessAndClosesIt) {
  EXPECT_EQ(modRegistryTools::CreateKey(kHive, "Software\\New"), 0);
  EXPECT_TRUE(world.registry.keys.contains({kHive, "Software\\New"}));
  EXPECT_THAT(world.registry.calls,
              ElementsAre("RegCreateKeyEx Software\\New access 63", "RegCloseKey open"));
  EXPECT_EQ(world.registry.OpenKeys(), 0u);
}

TEST_F(modRegistryToolsTest, GivesTheCodeOfAKeyThatCannotBeCreatedAndClosesNothing) {
  world.registry.failures["RegCreateKeyEx"] = {5};
  EXPECT_EQ(modRegistryTools::CreateKey(kHive, "Software\\New"), 5);
  EXPECT_THAT(world.registry.calls, ElementsAre("RegCreateKeyEx Software\\New access 63"));
}

TEST_F(modRegistryToolsTest, StoresATextWithoutATerminator) {
  EXPECT_EQ(Set("Name", "abc", modRegistryTools::kRegSz), 0);
  EXPECT_EQ(Values()["Name"].bytes, "abc");
  EXPECT_EQ(Values()["Name"].type, 1u);
  EXPECT_THAT(world.registry.calls, ElementsAre("RegOpenKeyEx Software\\Test access 63",
                                                "RegSetValueEx Name type 1 size 3", "RegCloseKey open"));
  EXPECT_EQ(world.registry.OpenKeys(), 0u);
}

TEST_F(modRegistryToolsTest, StoresAnIntegerInFourBytes) {
  EXPECT_EQ(Set("Number", "-2", modRegistryTools::kRegDword), 0);
  EXPECT_EQ(Values()["Number"].bytes, "\xFE\xFF\xFF\xFF");
  EXPECT_EQ(Values()["Number"].type, 4u);
}

TEST_F(modRegistryToolsTest, StoresANumberAsTextWhenThatIsTheType) {
  EXPECT_EQ(Set("Name", 80, modRegistryTools::kRegSz), 0);
  EXPECT_EQ(Values()["Name"].bytes, "80");
}

TEST_F(modRegistryToolsTest, SetValueExWithType7WritesNothingAndReturns0) {
  EXPECT_EQ(Set("Name", "abc", 7), 0);
  EXPECT_THAT(Values(), IsEmpty());
  EXPECT_THAT(world.registry.calls, ElementsAre("RegOpenKeyEx Software\\Test access 63", "RegCloseKey open"));
}

TEST_F(modRegistryToolsTest, GivesTheCodeOfAWriteThatFails) {
  world.registry.failures["RegSetValueEx"] = {5};
  EXPECT_EQ(Set("Name", "abc", 1), 5);
  EXPECT_EQ(world.registry.OpenKeys(), 0u);
}

TEST_F(modRegistryToolsTest, SetKeyValueDoesNothingElseWhenTheKeyCannotBeOpened) {
  EXPECT_EQ(modRegistryTools::SetKeyValue(kHive, "Software\\Missing", "Name", "abc", 1), 2);
  EXPECT_THAT(world.registry.calls, ElementsAre("RegOpenKeyEx Software\\Missing access 63"));
}

TEST_F(modRegistryToolsTest, ClosesTheKeyOfAValueThatDoesNotConvert) {
  EXPECT_THROW(Set("Number", "abc", modRegistryTools::kRegDword), base::Error);
  EXPECT_EQ(world.registry.OpenKeys(), 0u);
}

TEST_F(modRegistryToolsTest, QueryValueCutsTheTerminatorOff) {
  Values()["Name"] = {1, std::string("abc\0", 4)};
  EXPECT_EQ(Query("Name"), "abc");
  EXPECT_THAT(world.registry.calls,
              ElementsAre("RegOpenKeyEx Software\\Test access 63", "RegQueryValueEx Name",
                          "RegQueryValueEx Name room 4", "RegCloseKey open"));
}

TEST_F(modRegistryToolsTest, QueryValueCutsACharacterOffATextWithoutTerminator) {
  Set("Name", "abc", modRegistryTools::kRegSz);
  EXPECT_EQ(Query("Name"), "ab");
}

TEST_F(modRegistryToolsTest, QueryValueCutsADigitOffANumber) {
  Set("Number", 123, modRegistryTools::kRegDword);
  EXPECT_EQ(Query("Number"), "12");
}

TEST_F(modRegistryToolsTest, QueryValueOfAnEmptyValueIsEmpty) {
  Values()["Name"] = {1, ""};
  EXPECT_EQ(Query("Name"), "");
}

TEST_F(modRegistryToolsTest, QueryValueOfAMissingValueIsEmpty) {
  EXPECT_EQ(Query("Missing"), "");
  EXPECT_EQ(world.registry.OpenKeys(), 0u);
}

TEST_F(modRegistryToolsTest, QueryValueGoesOnWithAKeyThatCannotBeOpened) {
  EXPECT_EQ(modRegistryTools::QueryValue(kHive, "Software\\Missing", "Name"), "");
  EXPECT_THAT(world.registry.calls, ElementsAre("RegOpenKeyEx Software\\Missing access 63",
                                                "RegQueryValueEx Name", "RegCloseKey 0"));
}

TEST_F(modRegistryToolsTest, QueryValueExWithAMissingValueReturnsTheCodeAndLeavesTheOutValue) {
  base::Variant value = "before";
  const auto key = world.registry.Open(kHive, "Software\\Test");
  EXPECT_EQ(modRegistryTools::QueryValueEx(key, "Missing", value), support::MemoryRegistry::kFileNotFound);
  EXPECT_EQ(base::ToText(value), "before");
}

TEST_F(modRegistryToolsTest, QueryValueExGivesBackTextAndNumber) {
  Values()["Name"] = {1, std::string("abc\0", 4)};
  Values()["Number"] = {4, std::string("\x10\x27\0\0", 4)};
  const auto key = world.registry.Open(kHive, "Software\\Test");
  base::Variant value;
  EXPECT_EQ(modRegistryTools::QueryValueEx(key, "Name", value), 0);
  EXPECT_EQ(base::ToText(value), std::string("abc\0", 4));
  EXPECT_EQ(modRegistryTools::QueryValueEx(key, "Number", value), 0);
  EXPECT_EQ(support::Describe(value), "10000:32");
}

TEST_F(modRegistryToolsTest, QueryValueExOfAnUnknownTypeIsMinusOne) {
  Values()["List"] = {kTypeOfManyTexts, std::string("a\0b\0\0", 5)};
  const auto key = world.registry.Open(kHive, "Software\\Test");
  base::Variant value = "before";
  EXPECT_EQ(modRegistryTools::QueryValueEx(key, "List", value), -1);
  EXPECT_EQ(base::ToText(value), "before");
}

TEST_F(modRegistryToolsTest, QueryValueExEmptiesTheOutValueWhenTheSecondQueryOfATextFails) {
  Values()["Name"] = {1, "abc"};
  world.registry.failures["RegQueryValueEx"] = {0, 234};
  const auto key = world.registry.Open(kHive, "Software\\Test");
  base::Variant value = "before";
  EXPECT_EQ(modRegistryTools::QueryValueEx(key, "Name", value), 234);
  EXPECT_TRUE(value.IsEmpty());
}

TEST_F(modRegistryToolsTest, QueryValueExLeavesTheOutValueWhenTheSecondQueryOfANumberFails) {
  Values()["Number"] = {4, std::string(4, '\0')};
  world.registry.failures["RegQueryValueEx"] = {0, 5};
  const auto key = world.registry.Open(kHive, "Software\\Test");
  base::Variant value = "before";
  EXPECT_EQ(modRegistryTools::QueryValueEx(key, "Number", value), 5);
  EXPECT_EQ(base::ToText(value), "before");
}

TEST_F(modRegistryToolsTest, QueriesEightBitTextAsItStands) {
  Values()["Name"] = {1, std::string("\xE4\x80\0", 3)};
  EXPECT_EQ(Query("Name"), "\xE4\x80");
}

TEST(TrimLastChar, OfTheEmptyTextGivesTheEmptyText) {
  EXPECT_EQ(modRegistryTools::TrimLastChar(""), "");
  EXPECT_EQ(modRegistryTools::TrimLastChar("a"), "");
  EXPECT_EQ(modRegistryTools::TrimLastChar("ab"), "a");
}

}  // namespace
