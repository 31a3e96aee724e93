#include "platform/SettingsSection.h"

#include <gtest/gtest.h>

#include "base/Error.h"
#include "support/World.h"

namespace {

class SettingsSectionTest : public testing::Test {
 protected:
  template <typename Read>
  static base::Error FailureOf(Read read) {
    try {
      read();
    } catch (const base::Error& error) {
      return error;
    }
    return base::Error(0, "");
  }

  support::World world;
  const platform::SettingsSection section{"Harbourline", "RouterSection", "P_"};
};

TEST_F(SettingsSectionTest, ReadsTheDefaultOfAMissingValueInItsOwnType) {
  EXPECT_EQ(section.ReadText("Text", "def"), "def");
  EXPECT_EQ(section.ReadInt16("Number", -1), -1);
  EXPECT_EQ(section.ReadInt32("Number", 70000), 70000);
  EXPECT_TRUE(section.ReadBoolean("Flag", true));
  EXPECT_FALSE(section.ReadBoolean("Flag", false));
}

TEST_F(SettingsSectionTest, ReadsBelowItsPrefix) {
  world.settings.Values() = {{"P_Number", "12"}, {"Number", "99"}, {"P_Flag", "True"}};
  EXPECT_EQ(section.ReadInt16("Number", 0), 12);
  EXPECT_TRUE(section.ReadBoolean("Flag", false));
}

TEST_F(SettingsSectionTest, ReadsAnEmptyTextAsEmptyAndNotAsTheDefault) {
  world.settings.Values() = {{"P_Text", ""}};
  EXPECT_EQ(section.ReadText("Text", "def"), "");
}

TEST_F(SettingsSectionTest, TellsAboutAValueThatIsNoNumber) {
  world.settings.Values() = {{"P_Number", "abc"}};
  const base::Error error = FailureOf([&] { section.ReadInt16("Number", 0); });
  EXPECT_EQ(error.Number(), base::ErrorNumber::kTypeMismatch);
  EXPECT_EQ(error.Text(),
            "The stored value \"P_Number\" holds \"abc\", which is not a whole number "
            "(HKEY_CURRENT_USER\\Software\\Harbourline\\RouterSection).");
}

TEST_F(SettingsSectionTest, TellsAboutANumberThatIsTooLarge) {
  world.settings.Values() = {{"P_Small", "32768"}, {"P_Large", "2147483648"}};
  const base::Error small = FailureOf([&] { section.ReadInt16("Small", 0); });
  EXPECT_EQ(small.Number(), base::ErrorNumber::kOverflow);
  EXPECT_EQ(small.Text(),
            "The stored value \"P_Small\" holds \"32768\", which is not between -32768 and 32767 "
            "(HKEY_CURRENT_USER\\Software\\Harbourline\\RouterSection).");
  const base::Error large = FailureOf([&] { section.ReadInt32("Large", 0); });
  EXPECT_EQ(
      large.Text(),
      "The stored value \"P_Large\" holds \"2147483648\", which is not between -2147483648 and 2147483647 "
      "(HKEY_CURRENT_USER\\Software\\Harbourline\\RouterSection).");
}

TEST_F(SettingsSectionTest, TellsAboutAValueThatIsNoBoolean) {
  world.settings.Values() = {{"P_Flag", "perhaps"}};
  EXPECT_EQ(FailureOf([&] { section.ReadBoolean("Flag", false); }).Text(),
            "The stored value \"P_Flag\" holds \"perhaps\", which is neither True nor False "
            "(HKEY_CURRENT_USER\\Software\\Harbourline\\RouterSection).");
}

TEST_F(SettingsSectionTest, WritesEveryTypeAsText) {
  section.Write("Text", "a \xE4");
  section.Write("Small", std::int16_t{-1});
  section.Write("Large", 70000);
  section.Write("Yes", true);
  section.Write("No", false);
  EXPECT_EQ(world.settings.Value("P_Text"), "a \xE4");
  EXPECT_EQ(world.settings.Value("P_Small"), "-1");
  EXPECT_EQ(world.settings.Value("P_Large"), "70000");
  EXPECT_EQ(world.settings.Value("P_Yes"), "True");
  EXPECT_EQ(world.settings.Value("P_No"), "False");
}

}  // namespace
