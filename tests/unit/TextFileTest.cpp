#include "base/TextFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "base/Error.h"
#include "support/TemporaryFolder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class TextFileTest : public testing::Test {
 protected:
  std::vector<std::string> LinesOf(std::string_view bytes) {
    folder.Write("in", bytes);
    base::TextFileReader file(folder.PathOf("in"));
    std::vector<std::string> lines;
    while (!file.AtEnd()) lines.emplace_back(file.ReadLine());
    return lines;
  }
  template <typename Action>
  static base::Error FailureOf(Action action) {
    try {
      action();
    } catch (const base::Error& error) {
      return error;
    }
    return base::Error(0, "");
  }

  support::TemporaryFolder folder;
};

TEST_F(TextFileTest, ReadsLinesWithoutTheirEnds) {
  EXPECT_THAT(LinesOf("a\r\nb\r\n"), ElementsAre("a", "b"));
  EXPECT_THAT(LinesOf("a\nb\n"), ElementsAre("a", "b"));
}

TEST_F(TextFileTest, ReadsALastLineWithoutAnEnd) {
  EXPECT_THAT(LinesOf("a\r\nb"), ElementsAre("a", "b"));
  EXPECT_THAT(LinesOf("a\r\nb\r"), ElementsAre("a", "b\r"));
}

TEST_F(TextFileTest, ReadsEmptyLinesAndAnEmptyFile) {
  EXPECT_THAT(LinesOf("\r\n\n\r\n"), ElementsAre("", "", ""));
  EXPECT_THAT(LinesOf(""), IsEmpty());
}

TEST_F(TextFileTest, TakesOnlyOneCarriageReturnOffTheEnd) {
  EXPECT_THAT(LinesOf("a\r\r\nb\rc\r\n"), ElementsAre("a\r", "b\rc"));
}

TEST_F(TextFileTest, ReadsNulBytesAndCharactersBeyondAscii) {
  EXPECT_THAT(LinesOf(std::string("a\0b\r\n\xE4\xFF\r\n", 9)), ElementsAre(std::string("a\0b", 3), "\xE4\xFF"));
}

TEST_F(TextFileTest, ReadsLinesThatStraddleItsBlocks) {
  std::string bytes;
  std::vector<std::string> expected;
  for (int i = 0; i < 30000; ++i) {
    expected.push_back("line " + std::to_string(i));
    bytes += expected.back() + (i % 3 == 0 ? "\n" : "\r\n");
  }
  EXPECT_EQ(LinesOf(bytes), expected);
}

TEST_F(TextFileTest, ReadsAnEndThatStraddlesItsBlocks) {
  const std::string first(64 * 1024 - 1, 'x');
  EXPECT_THAT(LinesOf(first + "\r\nb"), ElementsAre(first, "b"));
  const std::string whole(64 * 1024, 'x');
  EXPECT_THAT(LinesOf(whole + "\r\nb"), ElementsAre(whole, "b"));
}

TEST_F(TextFileTest, ReadsALineOfMegabytes) {
  const std::string line(5 * 1024 * 1024 + 17, 'y');
  EXPECT_THAT(LinesOf("a\r\n" + line + "\r\nb\r\n"), ElementsAre("a", line, "b"));
}

TEST_F(TextFileTest, ReadsManyLinesAtOnceAcrossItsBlocks) {
  const std::string wide(50 * 1024, 'w');
  folder.Write("in", "a\n" + wide + "\r\n" + wide + "\nlast");
  base::TextFileReader file(folder.PathOf("in"));
  std::array<std::string_view, 2> two;
  file.ReadLines(two);
  EXPECT_THAT(two, ElementsAre("a", wide));
  file.ReadLines(two);
  EXPECT_THAT(two, ElementsAre(wide, "last"));
  EXPECT_TRUE(file.AtEnd());
  EXPECT_EQ(FailureOf([&] { file.ReadLines(two); }).Number(), base::ErrorNumber::kPastEndOfFile);
}

TEST_F(TextFileTest, FailsToReadBeyondTheEnd) {
  folder.Write("in", "a");
  base::TextFileReader file(folder.PathOf("in"));
  file.ReadLine();
  const base::Error error = FailureOf([&] { file.ReadLine(); });
  EXPECT_EQ(error.Number(), base::ErrorNumber::kPastEndOfFile);
  EXPECT_THAT(error.Text(), HasSubstr(folder.PathOf("in")));
}

TEST_F(TextFileTest, NamesAFileThatIsNotThere) {
  const base::Error error = FailureOf([&] { base::TextFileReader file(folder.PathOf("missing")); });
  EXPECT_EQ(error.Number(), base::ErrorNumber::kFileNotFound);
  EXPECT_EQ(error.Text(), "Unable to open file " + folder.PathOf("missing"));
}

TEST_F(TextFileTest, OpensNoFolderForReadingOrWriting) {
  folder.MakeFolder("folder");
  EXPECT_EQ(FailureOf([&] { base::TextFileReader file(folder.PathOf("folder")); }).Number(),
            base::ErrorNumber::kPathAccess);
  EXPECT_EQ(FailureOf([&] { base::TextFileWriter file(folder.PathOf("folder")); }).Number(),
            base::ErrorNumber::kPathAccess);
}

TEST_F(TextFileTest, WritesLinesWithBothEndCharacters) {
  base::TextFileWriter file(folder.PathOf("out"));
  file.Write("a");
  file.Write("b");
  file.WriteLine("c");
  file.WriteLine();
  file.Close();
  EXPECT_EQ(folder.Read("out"), "abc\r\n\r\n");
}

TEST_F(TextFileTest, ReplacesWhatWasThere) {
  folder.Write("out", "something longer than what comes");
  base::TextFileWriter file(folder.PathOf("out"));
  file.WriteLine("x");
  file.Close();
  EXPECT_EQ(folder.Read("out"), "x\r\n");
}

TEST_F(TextFileTest, WritesTextsOfEverySizeInOrder) {
  std::string expected;
  base::TextFileWriter file(folder.PathOf("out"));
  for (const std::size_t size : {0u, 1u, 65535u, 65536u, 65537u, 200000u, 3u, 131072u}) {
    const std::string text(size, static_cast<char>('a' + size % 26));
    file.Write(text);
    expected += text;
  }
  file.Close();
  EXPECT_EQ(folder.Read("out"), expected);
}

TEST_F(TextFileTest, WritesWhatIsLeftWhenItIsNotClosed) {
  { base::TextFileWriter(folder.PathOf("out")).WriteLine("kept"); }
  EXPECT_EQ(folder.Read("out"), "kept\r\n");
}

TEST_F(TextFileTest, WritesNothingAfterTheClose) {
  base::TextFileWriter file(folder.PathOf("out"));
  file.Close();
  EXPECT_EQ(FailureOf([&] { file.Close(); }).Number(), base::ErrorNumber::kFile);
}

#ifdef __linux__
TEST_F(TextFileTest, TellsOfAFullDisk) {
  base::TextFileWriter file("/dev/full");
  file.WriteLine("x");
  const base::Error error = FailureOf([&] { file.Close(); });
  EXPECT_EQ(error.Number(), base::ErrorNumber::kFile);
  EXPECT_EQ(error.Text(), "Unable to write file /dev/full");
}

TEST_F(TextFileTest, TellsOfADiskThatFillsWhileItIsWritten) {
  base::TextFileWriter file("/dev/full");
  EXPECT_EQ(FailureOf([&] { file.Write(std::string(300000, 'x')); }).Number(), base::ErrorNumber::kFile);
}
#endif

}  // namespace
