#include "platform/SettingsStore.h"

#include <gmock/gmock.h>

#include "platform/win32/Win32SettingsStore.h"
#include "support/Failure.h"
#include "support/RegistryAccess.h"
#include "support/Role.h"

namespace {

using support::FailureOf;
using support::KeyExists;
using support::ReadValue;
using support::TextValue;
using support::UnterminatedValue;
using support::Wide;
using support::WriteValue;
using testing::AllOf;
using testing::HasSubstr;

class SettingsStoreTest : public testing::Test {
 protected:
  ~SettingsStoreTest() override { support::DeleteTree(Wide("Software\\" + application_)); }

  std::string Get(const std::string& key, const std::string& defaultValue = "default") {
    return store_.GetSetting(application_, "RouterSection", key, defaultValue);
  }
  void Save(const std::string& key, const std::string& value) {
    store_.SaveSetting(application_, "RouterSection", key, value);
  }
  std::wstring Key() const { return Wide("Software\\" + application_ + "\\RouterSection"); }

  const std::string application_ = support::UniqueName("HarbourlineTest");
  platform::win32::Win32SettingsStore store_;
};

TEST_F(SettingsStoreTest, AMissingSectionGivesTheDefaultAndMakesNothing) {
  EXPECT_EQ(Get("RouterCount", "0"), "0");
  EXPECT_FALSE(KeyExists(Wide("Software\\" + application_)));
}

TEST_F(SettingsStoreTest, AMissingValueGivesTheDefault) {
  Save("Version", "1.0.0");
  EXPECT_EQ(Get("RouterCount", "17"), "17");
}

TEST_F(SettingsStoreTest, RegToolFindsASavedTextUnderTheUsersSoftware) {
  Save("RouterClass", "Harbourline.PracticeRouter");
  const std::string output =
      support::OutputOf("reg.exe query HKCU\\Software\\" + application_ + "\\RouterSection /v RouterClass");
  EXPECT_THAT(output, testing::ContainsRegex("RouterClass +REG_SZ +Harbourline.PracticeRouter"));
}

TEST_F(SettingsStoreTest, ATextIsStoredWithOneTerminator) {
  Save("Version", "1.0.0");
  EXPECT_EQ(ReadValue(Key(), L"Version"), TextValue(L"1.0.0"));
}

TEST_F(SettingsStoreTest, TheEmptyTextIsAValue) {
  Save("LastMenuLocation", "");
  EXPECT_EQ(ReadValue(Key(), L"LastMenuLocation"), TextValue(L""));
  EXPECT_EQ(Get("LastMenuLocation"), "");
}

TEST_F(SettingsStoreTest, ANewTextReplacesALongerOne) {
  Save("Version", "a longer text");
  Save("Version", "1");
  EXPECT_EQ(ReadValue(Key(), L"Version"), TextValue(L"1"));
  EXPECT_EQ(Get("Version"), "1");
}

TEST_F(SettingsStoreTest, EightBitCharactersAreStoredAsWhatTheyMeanAndComeBack) {
  Save("MP_1_Name", "Caf\xE9 \x80");
  EXPECT_EQ(ReadValue(Key(), L"MP_1_Name"), TextValue(L"Caf\x00E9 \x20AC"));
  WriteValue(Key(), L"MP_2_Name",
             TextValue(L"\x00DC"
                       L"ber"));
  EXPECT_EQ(Get("MP_2_Name"),
            "\xDC"
            "ber");
}

TEST_F(SettingsStoreTest, EveryCharacterButNulComesBack) {
  std::string all;
  for (int code = 1; code < 256; ++code) all += static_cast<char>(code);
  Save("All", all);
  EXPECT_EQ(Get("All"), all);
}

TEST_F(SettingsStoreTest, NamesMayHaveBlanksAndEightBitCharacters) {
  store_.SaveSetting(application_,
                     "Se\xE7"
                     "tion 2",
                     "key \xE9", "value");
  const std::wstring key = Wide("Software\\" + application_) +
                           L"\\Se\x00E7"
                           L"tion 2";
  EXPECT_EQ(ReadValue(key, L"key \x00E9"), TextValue(L"value"));
  EXPECT_EQ(store_.GetSetting(application_,
                              "Se\xE7"
                              "tion 2",
                              "key \xE9", ""),
            "value");
}

TEST_F(SettingsStoreTest, AValueOfAnyLengthComesBackWhole) {
  for (const std::size_t length : {1u, 254u, 255u, 256u, 257u, 511u, 512u, 65'535u, 65'536u, 3'000'000u}) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('a' + i % 26);
    Save("Long", text);
    EXPECT_TRUE(Get("Long") == text) << length;
    EXPECT_TRUE(ReadValue(Key(), L"Long") == TextValue(Wide(text))) << length;
  }
}

TEST_F(SettingsStoreTest, EmbeddedAndTrailingNulsComeBack) {
  const std::string text("a\0b\0", 4);
  Save("Nul", text);
  EXPECT_EQ(Get("Nul"), text);
}

TEST_F(SettingsStoreTest, ATextWithoutTerminatorIsReadWhole) {
  WriteValue(Key(), L"RouterPlugIn_1", UnterminatedValue(L"Some.Class"));
  ASSERT_EQ(ReadValue(Key(), L"RouterPlugIn_1"), UnterminatedValue(L"Some.Class"));
  EXPECT_EQ(Get("RouterPlugIn_1"), "Some.Class");
  WriteValue(Key(), L"None", UnterminatedValue(L""));
  EXPECT_EQ(Get("None"), "");
}

TEST_F(SettingsStoreTest, ADoubleWordIsReadAsItsDecimalText) {
  WriteValue(Key(), L"TrayLights", {REG_DWORD, {2, 0, 0, 0}});
  EXPECT_EQ(Get("TrayLights"), "2");
  WriteValue(Key(), L"Octet", {REG_DWORD, {0xFF, 0xFF, 0xFF, 0xFF}});
  EXPECT_EQ(Get("Octet"), "-1");
}

TEST_F(SettingsStoreTest, OtherTypesCountAsMissing) {
  WriteValue(Key(), L"Binary", {REG_BINARY, {'1', 0, 0, 0}});
  WriteValue(Key(), L"Multi", {REG_MULTI_SZ, {'1', 0, 0, 0, 0, 0}});
  WriteValue(Key(), L"Expand", {REG_EXPAND_SZ, {'1', 0, 0, 0}});
  WriteValue(Key(), L"Short", {REG_DWORD, {1, 0}});
  WriteValue(Key(), L"Quad", {REG_QWORD, {1, 0, 0, 0, 0, 0, 0, 0}});
  for (const char* name : {"Binary", "Multi", "Expand", "Short", "Quad"})
    EXPECT_EQ(Get(name), "default") << name;
}

TEST_F(SettingsStoreTest, SavingReplacesAValueOfAnotherType) {
  WriteValue(Key(), L"TrayLights", {REG_DWORD, {2, 0, 0, 0}});
  Save("TrayLights", "3");
  EXPECT_EQ(ReadValue(Key(), L"TrayLights"), TextValue(L"3"));
}

TEST_F(SettingsStoreTest, ASectionThatWasOnlyReadCanBeWrittenAndDeletedFrom) {
  WriteValue(Key(), L"RouterPlugIn_1", TextValue(L"A"));
  EXPECT_EQ(Get("RouterPlugIn_1"), "A");
  Save("Version", "1");
  EXPECT_EQ(ReadValue(Key(), L"Version"), TextValue(L"1"));
  platform::win32::Win32SettingsStore another;
  EXPECT_EQ(another.GetSetting(application_, "RouterSection", "RouterPlugIn_1", ""), "A");
  another.DeleteSetting(application_, "RouterSection", "RouterPlugIn_1");
  EXPECT_EQ(ReadValue(Key(), L"RouterPlugIn_1"), std::nullopt);
}

TEST_F(SettingsStoreTest, DeletesOneValue) {
  Save("RouterPlugIn_1", "A");
  Save("RouterPlugIn_2", "B");
  store_.DeleteSetting(application_, "RouterSection", "RouterPlugIn_1");
  EXPECT_EQ(ReadValue(Key(), L"RouterPlugIn_1"), std::nullopt);
  EXPECT_EQ(ReadValue(Key(), L"RouterPlugIn_2"), TextValue(L"B"));
}

TEST_F(SettingsStoreTest, DeletingAMissingValueFailsAndNamesIt) {
  Save("Version", "1");
  const base::Error error =
      FailureOf([&] { store_.DeleteSetting(application_, "RouterSection", "RouterPlugIn_57"); });
  EXPECT_EQ(error.Number(), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  EXPECT_THAT(error.Text(), AllOf(HasSubstr("RouterPlugIn_57"), HasSubstr(application_ + "\\RouterSection"),
                                  HasSubstr("File not found")));
}

TEST_F(SettingsStoreTest, DeletingAValueOfAMissingSectionFailsAndMakesNothing) {
  FailureOf([&] { store_.DeleteSetting(application_, "RouterSection", "Version"); });
  EXPECT_FALSE(KeyExists(Wide("Software\\" + application_)));
}

TEST_F(SettingsStoreTest, DeletesASectionWithEverythingInItAndNoOther) {
  Save("Version", "1");
  WriteValue(Key() + L"\\Below", L"Value", TextValue(L"x"));
  store_.SaveSetting(application_, "OtherSection", "Version", "2");
  store_.DeleteSetting(application_, "RouterSection");
  EXPECT_FALSE(KeyExists(Key()));
  EXPECT_EQ(store_.GetSetting(application_, "OtherSection", "Version", ""), "2");
  EXPECT_EQ(Get("Version"), "default");
}

TEST_F(SettingsStoreTest, DeletingAMissingSectionFailsAndNamesIt) {
  const base::Error error = FailureOf([&] { store_.DeleteSetting(application_, "RouterSection"); });
  EXPECT_EQ(error.Number(), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  EXPECT_THAT(error.Text(), HasSubstr("HKEY_CURRENT_USER\\Software\\" + application_ + "\\RouterSection"));
}

TEST_F(SettingsStoreTest, ASectionCanBeSavedAgainAfterItWasDeleted) {
  Save("Version", "1");
  store_.DeleteSetting(application_, "RouterSection");
  Save("Version", "2");
  EXPECT_EQ(ReadValue(Key(), L"Version"), TextValue(L"2"));
}

TEST_F(SettingsStoreTest, ASectionThatSomebodyElseDeletedIsMissingAndCanBeSavedAgain) {
  Save("Version", "1");
  support::DeleteTree(Key());
  EXPECT_EQ(Get("Version"), "default");
  Save("Version", "2");
  support::DeleteTree(Key());
  Save("Version", "3");
  EXPECT_EQ(ReadValue(Key(), L"Version"), TextValue(L"3"));
}

TEST_F(SettingsStoreTest, ARefusedTextFailsAndSaysWhere) {
  // Below a key that doesn't outlive the session, the system makes no lasting key.
  HKEY passing = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, Wide("Software\\" + application_).c_str(), 0, nullptr,
                            REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &passing, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(passing);
  const base::Error error = FailureOf([&] { Save("RouterCount", "1"); });
  EXPECT_EQ(error.Number(), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
  EXPECT_THAT(error.Text(), AllOf(HasSubstr("\"RouterCount\""), HasSubstr("HKEY_CURRENT_USER\\Software\\" +
                                                                          application_ + "\\RouterSection")));
  EXPECT_GT(error.Text().size(), error.Text().rfind(": ") + 3) << "ends with the system's text";
}

TEST_F(SettingsStoreTest, AnEmptyNameOfASectionIsRefusedAndDeletesNothing) {
  Save("Version", "1");
  FailureOf([&] { store_.DeleteSetting(application_, ""); });
  FailureOf([&] { store_.DeleteSetting("", application_); });
  FailureOf([&] { store_.SaveSetting(application_, "", "Version", "2"); });
  EXPECT_EQ(Get("Version"), "1");
  EXPECT_EQ(store_.GetSetting("", "", "Version", "default"), "default");
}

TEST_F(SettingsStoreTest, TellsWhereASectionLies) {
  EXPECT_EQ(store_.PathOf("Harbourline", "RouterSection"),
            "HKEY_CURRENT_USER\\Software\\Harbourline\\RouterSection");
}

}  // namespace
