#include "platform/CodePage.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/Win32CodePage.h"

namespace {

/// The code page in which the bytes below are text.
constexpr UINT kWestern = 1252;

class CodePageTest : public testing::Test {
 protected:
  void SetUp() override {
    if (GetACP() != kWestern) GTEST_SKIP() << "the code page is " << GetACP();
  }

  platform::win32::Win32CodePage codePage_;
};

TEST_F(CodePageTest, FoldsTheCaseOfAccentedLettersToo) {
  EXPECT_EQ(codePage_.FoldCase("Z\xDCRICH \xC9"
                               "A@["),
            "z\xFCrich \xE9"
            "a@[");
  EXPECT_EQ(codePage_.FoldCase("z\xFCrich"), "z\xFCrich");
  EXPECT_EQ(codePage_.FoldCase(""), "");
  EXPECT_EQ(codePage_.FoldCase(std::string_view("A\0B", 3)), std::string("a\0b", 3));
}

TEST_F(CodePageTest, FoldsNoTwoCharactersIntoOneThatAreMoreThanCasesOfALetter) {
  std::string all;
  for (int code = 1; code < 256; ++code) all += static_cast<char>(code);
  const std::string folded = codePage_.FoldCase(all);
  ASSERT_EQ(folded.size(), all.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (folded[i] == all[i]) continue;
    char letter = all[i];
    EXPECT_TRUE(IsCharUpperA(letter)) << i + 1;
  }
}

TEST_F(CodePageTest, HasNoCharactersOfTwoBytes) {
  for (int code = 0; code < 256; ++code) EXPECT_FALSE(codePage_.IsLeadByte(static_cast<char>(code))) << code;
}

TEST_F(CodePageTest, TurnsUtf16IntoItsCharacters) {
  EXPECT_EQ(codePage_.FromUtf16(u"Help\u2026"), "Help\x85");
  EXPECT_EQ(codePage_.FromUtf16(u"\u20AC"), "\x80");
}

}  // namespace
