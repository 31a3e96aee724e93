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
  EXPECT_THAT(LinesOf(std::string("a\0b\r\n\xE4\xFF\r\n", 9)),
              ElementsAre(std::string("a\0b", 3), "\xE4\xFF"));
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

TEST_F(TextFileTest, ReadsSeveralLinesAtATime) {
  folder.Write("in", "1\r\n2\n\r\n4\r\nlast");
  base::TextFileReader file(folder.PathOf("in"));
  std::array<std::string_view, 2> lines;
  file.ReadLines(lines);
  EXPECT_THAT(lines, ElementsAre("1", "2"));
  file.ReadLines(lines);
  EXPECT_THAT(lines, ElementsAre("", "4"));
  EXPECT_EQ(file.ReadLine(), "last");
  EXPECT_TRUE(file.AtEnd());
}

TEST_F(TextFileTest, ReadsALastLineWithoutItsEndAmongSeveral) {
  folder.Write("in", "1\r\nlast\r");
  base::TextFileReader file(folder.PathOf("in"));
  std::array<std::string_view, 2> lines;
  file.ReadLines(lines);
  EXPECT_THAT(lines, ElementsAre("1", "last\r"));
}

TEST_F(TextFileTest, FailsWhenThereAreFewerLinesThanAskedFor) {
  for (const char* bytes : {"", "1", "1\r\n"}) {
    folder.Write("in", bytes);
    base::TextFileReader file(folder.PathOf("in"));
    std::array<std::string_view, 2> lines;
    EXPECT_EQ(FailureOf([&] { file.ReadLines(lines); }).Number(), base::ErrorNumber::kPastEndOfFile) << bytes;
  }
}

TEST_F(TextFileTest, KeepsSeveralLinesValidWhereverABlockEnds) {
  std::string bytes;
  std::vector<std::string> expected;
  for (std::size_t line = 0; line < 9'000; ++line) {
    // Some are longer than a block.
    const std::size_t length = line % 1'500 == 7 ? 70'000 + line : line % 41;
    expected.emplace_back(length, static_cast<char>('a' + line % 26));
    bytes += expected.back() + (line % 3 == 0 ? "\n" : "\r\n");
  }
  folder.Write("in", bytes);
  base::TextFileReader file(folder.PathOf("in"));
  std::array<std::string_view, 9> lines;
  for (std::size_t line = 0; line < expected.size(); line += lines.size()) {
    file.ReadLines(lines);
    for (std::size_t i = 0; i < lines.size(); ++i) ASSERT_EQ(lines[i], expected[line + i]) << line + i;
  }
  EXPECT_TRUE(file.AtEnd());
}

TEST_F(TextFileTest, WritesSeveralLinesThatStandSideBySide) {
  base::TextFileWriter file(folder.PathOf("out"));
  file.WriteLines("onethree", std::array<std::uint32_t, 3>{3, 3, 8});
  file.WriteLines("", {});
  file.WriteLines("", std::array<std::uint32_t, 1>{0});
  file.Close();
  EXPECT_EQ(folder.Read("out"), "one\r\n\r\nthree\r\n\r\n");
}

TEST_F(TextFileTest, WritesSeveralLinesOfEveryLengthWhereverTheBufferEnds) {
  std::string expected;
  base::TextFileWriter file(folder.PathOf("out"));
  for (std::size_t length = 0; length < 700; ++length) {
    const std::string text(length, static_cast<char>('a' + length % 26));
    const auto end = static_cast<std::uint32_t>(length);
    const std::array<std::uint32_t, 4> ends{end / 7, end / 2, end / 2, end};
    file.WriteLines(text, ends);
    std::uint32_t begin = 0;
    for (const std::uint32_t each : ends) {
      expected += text.substr(begin, each - begin) + "\r\n";
      begin = each;
    }
  }
  file.Close();
  EXPECT_EQ(folder.Read("out"), expected);
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

TEST_F(TextFileTest, WritesShortTextsAndNumbersWhereverTheBufferEnds) {
  std::string expected;
  base::TextFileWriter file(folder.PathOf("out"));
  for (std::size_t i = 0; i < 20'000; ++i) {
    std::string text;
    for (std::size_t at = 0; at < i % 40; ++at) text += static_cast<char>('a' + (i + at) % 26);
    const std::int32_t number = i % 3 == 0 ? -2147483647 - 1 : static_cast<std::int32_t>(i * i);
    file.Write(text);
    file.WriteNumber(number);
    expected += text + std::to_string(number);
  }
  for (const std::int32_t number : {0, -1, 2147483647}) file.WriteNumber(number);
  file.Close();
  EXPECT_EQ(folder.Read("out"), expected + "0-12147483647");
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
