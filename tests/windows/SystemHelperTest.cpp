#include "platform/SystemHelper.h"

#include <gmock/gmock.h>

#include "base/Error.h"
#include "platform/win32/Win32SystemHelper.h"
#include "support/RegistryAccess.h"
#include "support/Role.h"

namespace {

using support::ReadValue;
using support::TextValue;
using support::Wide;

constexpr wchar_t kRun[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

class SystemHelperTest : public testing::Test {
 protected:
  ~SystemHelperTest() override { RegDeleteKeyValueW(HKEY_CURRENT_USER, kRun, Wide(name_).c_str()); }

  const std::string name_ = support::UniqueName("HarbourlineTest");
  platform::win32::Win32SystemHelper helper_;
};

TEST_F(SystemHelperTest, RegToolFindsTheEntryAmongTheProgramsThatStartAtLogon) {
  helper_.SetAutoStart(true, name_, "C:\\Harbourline\\Harbourline.exe");
  const std::string output =
      support::OutputOf("reg.exe query HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run /v " + name_);
  EXPECT_THAT(output, testing::HasSubstr("C:\\Harbourline\\Harbourline.exe"));
}

TEST_F(SystemHelperTest, ACommandWithoutBlankStandsWithoutQuotes) {
  helper_.SetAutoStart(true, name_, "C:\\Harbourline\\Harbourline.exe");
  EXPECT_EQ(ReadValue(kRun, Wide(name_)), TextValue(L"C:\\Harbourline\\Harbourline.exe"));
}

TEST_F(SystemHelperTest, ACommandWithABlankStandsInQuotes) {
  helper_.SetAutoStart(true, name_, "C:\\Program Files\\Caf\xE9\\Harbourline.exe");
  EXPECT_EQ(ReadValue(kRun, Wide(name_)), TextValue(L"\"C:\\Program Files\\Caf\x00E9\\Harbourline.exe\""));
}

TEST_F(SystemHelperTest, ANewCommandReplacesTheOldOne) {
  helper_.SetAutoStart(true, name_, "C:\\Old\\Harbourline.exe");
  helper_.SetAutoStart(true, name_, "C:\\New\\Harbourline.exe");
  EXPECT_EQ(ReadValue(kRun, Wide(name_)), TextValue(L"C:\\New\\Harbourline.exe"));
}

TEST_F(SystemHelperTest, RemovesTheEntryAndNoOther) {
  const std::string other = name_ + "-other";
  helper_.SetAutoStart(true, name_, "C:\\a.exe");
  helper_.SetAutoStart(true, other, "C:\\b.exe");
  helper_.SetAutoStart(false, name_, "C:\\a.exe");
  EXPECT_EQ(ReadValue(kRun, Wide(name_)), std::nullopt);
  EXPECT_EQ(ReadValue(kRun, Wide(other)), TextValue(L"C:\\b.exe"));
  helper_.SetAutoStart(false, other, "");
  EXPECT_EQ(ReadValue(kRun, Wide(other)), std::nullopt);
}

TEST_F(SystemHelperTest, RemovingAMissingEntryIsNoFailure) {
  EXPECT_NO_THROW(helper_.SetAutoStart(false, name_, "C:\\a.exe"));
}

TEST_F(SystemHelperTest, ARefusedEntryFailsAndIsNamed) {
  const std::string tooLong(20'000, 'n');
  try {
    helper_.SetAutoStart(true, tooLong, "C:\\a.exe");
    ADD_FAILURE() << "the name is longer than the registry takes";
  } catch (const base::Error& error) {
    EXPECT_LT(error.Number(), 0);
    EXPECT_THAT(error.Text(), testing::HasSubstr(tooLong));
  }
}

}  // namespace
