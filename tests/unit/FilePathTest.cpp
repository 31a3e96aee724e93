#include "platform/FilePath.h"

#include <gtest/gtest.h>

#include "support/World.h"

namespace {

class FilePathTest : public testing::Test {
 protected:
  support::World world;
};

TEST_F(FilePathTest, TheFolderEndsBeforeTheLastSeparator) {
  EXPECT_EQ(platform::FolderOf("C:\\Programs\\Harbourline.exe"), "C:\\Programs");
  EXPECT_EQ(platform::FolderOf("C:\\Programs/Harbourline.exe"), "C:\\Programs");
  EXPECT_EQ(platform::FolderOf("C:\\Programs\\"), "C:\\Programs");
  EXPECT_EQ(platform::FolderOf("Harbourline.exe"), "");
  EXPECT_EQ(platform::FolderOf(""), "");
}

TEST_F(FilePathTest, ASeparatorThatIsTheSecondByteOfACharacterEndsNoFolder) {
  world.codePage.leadBytes = "\x83";
  EXPECT_EQ(platform::FolderOf("C:\\\x83\\Programs\\a\x83\\.exe"), "C:\\\x83\\Programs");
  EXPECT_EQ(platform::FolderOf("\x83\\.exe"), "");
  EXPECT_EQ(platform::FolderOf("C:\\Programs\\\x83"), "C:\\Programs");
}

TEST_F(FilePathTest, WithoutSuchCharactersEveryByteCounts) {
  EXPECT_EQ(platform::FolderOf("C:\\\x83\\Programs"), "C:\\\x83");
}

}  // namespace
