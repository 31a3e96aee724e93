#include "base/TextFile.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <iterator>
#include <string>

#include "support/Failure.h"
#include "support/Role.h"

namespace {

using support::FailureOf;

class TextFileTest : public testing::Test {
 protected:
  void Write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
  std::string Read() const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void ExpectUnopened(const base::Error& error) const {
    EXPECT_EQ(error.Number(), base::ErrorNumber::kPathAccess);
    EXPECT_EQ(error.Text(), "Unable to open file " + path);
  }

  support::TemporaryFolder folder;
  const std::string path = folder.Path() + "\\file.txt";
};

/// A file as another program holds it that lets others do just this with it meanwhile.
class HeldFile {
 public:
  HeldFile(const std::string& path, DWORD othersMay)
      : handle_(CreateFileA(path.c_str(), GENERIC_READ, othersMay, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
  }
  ~HeldFile() { CloseHandle(handle_); }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

 private:
  HANDLE handle_;
};

TEST_F(TextFileTest, OpensNoFileThatAnotherProgramKeepsForItself) {
  Write("kept");
  {
    const HeldFile held(path, 0);
    ExpectUnopened(FailureOf([this] { base::TextFileReader file(path); }));
    ExpectUnopened(FailureOf([this] { base::TextFileWriter file(path); }));
  }
  EXPECT_EQ(Read(), "kept");
}

TEST_F(TextFileTest, ReadsAFileThatAnotherProgramReadsAndDoesNotWriteIt) {
  Write("kept");
  {
    const HeldFile held(path, FILE_SHARE_READ);
    EXPECT_EQ(base::TextFileReader(path).ReadLine(), "kept");
    ExpectUnopened(FailureOf([this] { base::TextFileWriter file(path); }));
  }
  EXPECT_EQ(Read(), "kept");
}

TEST_F(TextFileTest, OpensNoFolder) {
  ASSERT_TRUE(CreateDirectoryA(path.c_str(), nullptr));
  ExpectUnopened(FailureOf([this] { base::TextFileReader file(path); }));
  ExpectUnopened(FailureOf([this] { base::TextFileWriter file(path); }));
}

TEST_F(TextFileTest, FindsNoFileWhereThereIsNoFolder) {
  const std::string nowhere = folder.Path() + "\\no\\such\\file.txt";
  EXPECT_EQ(FailureOf([&] { base::TextFileReader file(nowhere); }).Number(),
            base::ErrorNumber::kFileNotFound);
  EXPECT_EQ(FailureOf([&] { base::TextFileWriter file(nowhere); }).Number(),
            base::ErrorNumber::kFileNotFound);
}

TEST_F(TextFileTest, TakesNoByteForAnEndOfTheFile) {
  // 26 ends a text file for some programs.
  Write("a\x1A\r\nb\r\n");
  base::TextFileReader file(path);
  EXPECT_EQ(file.ReadLine(), "a\x1A");
  EXPECT_EQ(file.ReadLine(), "b");
}

}  // namespace
