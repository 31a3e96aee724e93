#include "support/PracticeRouterTest.h"

#include <fstream>
#include <sstream>
#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(PracticeRouterTest, TellsItsTitleItsClassAndItsVersion) {
  const std::string version = HARBOURLINE_VERSION;
  EXPECT_TRUE(Call(L"IServer_ServerTitle").IsText(L"Practice Router"));
  EXPECT_TRUE(Call(L"IServer_ClassName").IsText(kProgId));
  EXPECT_TRUE(Call(L"IServer_Version").IsText(std::wstring(version.begin(), version.end())));
}

TEST_F(PracticeRouterTest, WorksWithoutAWarningAndWithoutALogWhenNothingIsStored) {
  EXPECT_TRUE(Call(L"IServer_Functional").IsBool(true));
  EXPECT_TRUE(Call(L"IServer_WANIP").IsText(L"203.0.113.7"));
  EXPECT_TRUE(Call(L"IServer_EnableLog").IsBool(false));
  EXPECT_TRUE(CallWithAddress(L"IServer_CheckForWarning").IsBool(false));
}

TEST_F(PracticeRouterTest, TitleAndClassNameAreToldWithoutAWindow) {
  Call(L"IServer_ServerTitle");
  Call(L"IServer_ClassName");
  Call(L"IServer_SaveSettings");
  Call(L"IServer_ApplicationExiting", {address.Value()});
  EXPECT_EQ(Window(), nullptr);
}

TEST_F(PracticeRouterTest, TheFirstUseAsARouterBringsUpTheWindowWithoutTakingTheFocus) {
  const HWND before = GetForegroundWindow();
  Call(L"IServer_WANIP");
  ASSERT_NE(Window(), nullptr);
  EXPECT_TRUE(IsWindowVisible(Window()));
  EXPECT_EQ(GetForegroundWindow(), before);
}

TEST_F(PracticeRouterTest, TheWindowGoesWithTheObject) {
  Call(L"IServer_WANIP");
  ASSERT_NE(Window(), nullptr);
  router.reset();
  EXPECT_EQ(Window(), nullptr);
}

TEST_F(PracticeRouterTest, ShowsEachMappingOfARequest) {
  EXPECT_TRUE(Forward({{L"Web", L"Pages", 80, 80, false, true, 5, false},
                       {L"Game", L"Quake", 27910, 27920, true, true, 5, false},
                       {L"Voice", L"Phone", 5060, 5061, true, false, 17, false}},
                      5)
                  .IsBool(false));
  EXPECT_THAT(Table(),
              ElementsAre(L"Web | Pages | 80 | TCP | *.5", L"Game | Quake | 27910 - 27920 | TCP+UDP | *.5",
                          L"Voice | Phone | 5060 - 5061 | UDP | *.17"));
  CallWithAddress(L"IServer_CheckForWarning");
  EXPECT_THAT(Table()[2], testing::EndsWith(L"192.168.1.17"));
}

TEST_F(PracticeRouterTest, ARequestIsTheWholeWishOfThisComputer) {
  Forward({{L"Web", L"", 80, 80, false, true, 5, false}, {L"Game", L"", 27910, 27910, true, false, 5, false}},
          5);
  Forward({{L"Game", L"", 27910, 27910, true, false, 5, false}}, 5);
  EXPECT_THAT(Table(), ElementsAre(L"Game |  | 27910 | UDP | *.5"));
}

TEST_F(PracticeRouterTest, TheEmptyRequestTakesThisComputersMappingsAndLeavesTheOthers) {
  Forward({{L"Web", L"", 80, 80, false, true, 5, false}, {L"Voice", L"", 5060, 5060, true, false, 17, false}},
          5);
  late::MappingArray empty = late::MappingArray::Empty();
  EXPECT_TRUE(Forward(empty, 5).IsBool(false));
  EXPECT_THAT(Table(), ElementsAre(L"Voice |  | 5060 | UDP | *.17"));
}

TEST_F(PracticeRouterTest, AnArrayThatBeginsAtTenIsEmptyWhateverStandsInIt) {
  late::MappingArray array(
      std::vector<IDispatch*>{late::MakeMapping({L"Web", L"", 80, 80, false, true, 5, false})}, 10);
  EXPECT_TRUE(Forward(array, 5).IsBool(false));
  EXPECT_THAT(Table(), IsEmpty());
}

TEST_F(PracticeRouterTest, AMappingOfAnotherComputerStaysUntilItIsCleared) {
  Forward({{L"Voice", L"", 5060, 5061, true, false, 17, false}}, 5);
  Forward({{L"Web", L"", 80, 80, false, true, 5, false}}, 5);
  EXPECT_THAT(Table(), ElementsAre(L"Voice |  | 5060 - 5061 | UDP | *.17", L"Web |  | 80 | TCP | *.5"));
  Forward({{L"Voice", L"", 5060, 5061, true, false, 17, true}}, 5);
  EXPECT_THAT(Table(), IsEmpty());
}

TEST_F(PracticeRouterTest, SendingTheMappingOfAnotherComputerAgainDoesNotDoubleIt) {
  Forward({{L"Voice", L"old", 5060, 5060, true, false, 17, false}}, 5);
  Forward({{L"Voice", L"new", 5060, 5060, true, false, 17, false}}, 5);
  EXPECT_THAT(Table(), ElementsAre(L"Voice | new | 5060 | UDP | *.17"));
}

TEST_F(PracticeRouterTest, ClearingOneProtocolLeavesTheOther) {
  Forward({{L"Voice", L"", 5060, 5060, true, true, 17, false}}, 5);
  Forward({{L"Voice", L"", 5060, 5060, true, false, 17, true}}, 5);
  EXPECT_THAT(Table(), ElementsAre(L"Voice |  | 5060 | TCP | *.17"));
}

TEST_F(PracticeRouterTest, ClearingAnotherRangeOrHostChangesNothing) {
  Forward({{L"Voice", L"", 5060, 5061, true, false, 17, false}}, 5);
  Forward({{L"Voice", L"", 5060, 5060, true, false, 17, true},
           {L"Voice", L"", 5060, 5061, true, false, 18, true}},
          5);
  EXPECT_THAT(Table(), ElementsAre(L"Voice |  | 5060 - 5061 | UDP | *.17"));
}

TEST_F(PracticeRouterTest, WhatOneProfileClearsAndAnotherWantsIsOnTheRouter) {
  Forward(
      {{L"New", L"", 5060, 5060, true, false, 17, false}, {L"Old", L"", 5060, 5060, true, false, 17, true}},
      5);
  EXPECT_THAT(Table(), ElementsAre(L"New |  | 5060 | UDP | *.17"));
}

TEST_F(PracticeRouterTest, PortsAndHostsAreTakenAsTheyAreSent) {
  Forward({{L"Odd", L"", 70000, -3, false, false, 999, false}}, 5);
  EXPECT_THAT(Table(), ElementsAre(L"Odd |  | 70000 - -3 |  | *.999"));
}

TEST_F(PracticeRouterTest, TenThousandMappingsArriveInOneRequest) {
  std::vector<late::MappingFields> many(10000, {L"Many", L"", 1, 1, true, true, 5, false});
  EXPECT_TRUE(Forward(many, 5).IsBool(false));
  EXPECT_EQ(Table().size(), 10000u);
}

TEST_F(PracticeRouterTest, TheDmzHostIsWrittenAndShown) {
  CallWithAddress(L"IServer_CheckForWarning");
  EXPECT_EQ(late::Put(router.get(), L"IServer_DMZ", late::Value(5L)).code, S_OK);
  EXPECT_EQ(Fact(L"DMZ host"), L"192.168.1.5");
  late::Put(router.get(), L"IServer_DMZ", late::Value(0L));
  EXPECT_EQ(Fact(L"DMZ host"), L"None");
}

TEST_F(PracticeRouterTest, TheDmzHostIsOnlyEverWritten) {
  EXPECT_EQ(Call(L"IServer_DMZ").code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(PracticeRouterTest, TheLogSwitchIsReadAsItWasWritten) {
  EXPECT_EQ(late::Put(router.get(), L"IServer_EnableLog", late::Value(true)).code, S_OK);
  EXPECT_TRUE(Call(L"IServer_EnableLog").IsBool(true));
  EXPECT_TRUE(CallWithAddress(L"IServer_SetLogging").IsBool(false));
  late::Put(router.get(), L"IServer_EnableLog", late::Value(false));
  EXPECT_TRUE(Call(L"IServer_EnableLog").IsBool(false));
}

TEST_F(PracticeRouterTest, LogSwitchDmzHostAndWarningSurviveASave) {
  late::Put(router.get(), L"IServer_EnableLog", late::Value(true));
  late::Put(router.get(), L"IServer_DMZ", late::Value(77L));
  short toggle = 2;
  Call(L"IServer_ActivateFeaure", {address.Reference(), late::Reference(toggle)});
  EXPECT_EQ(Call(L"IServer_SaveSettings").code, S_OK);
  MakeAgain();
  EXPECT_TRUE(Call(L"IServer_EnableLog").IsBool(true));
  EXPECT_EQ(Fact(L"DMZ host"), L"*.77");
  EXPECT_TRUE(CallWithAddress(L"IServer_CheckForWarning").IsBool(true));
}

TEST_F(PracticeRouterTest, WithoutASaveNothingSurvives) {
  late::Put(router.get(), L"IServer_EnableLog", late::Value(true));
  MakeAgain();
  EXPECT_TRUE(Call(L"IServer_EnableLog").IsBool(false));
}

TEST_F(PracticeRouterTest, StoredValuesOfAnotherKindCountAsMissing) {
  host::SetRegistryText(HKEY_CURRENT_USER, kSettings, L"Functional", L"no");
  StoreFlag(L"WanAddress", 7);
  MakeAgain();
  EXPECT_TRUE(Call(L"IServer_Functional").IsBool(true));
  EXPECT_TRUE(Call(L"IServer_WANIP").IsText(L"203.0.113.7"));
}

TEST_F(PracticeRouterTest, NamesThePortsOfItsOwnAndNoOthers) {
  long chat = 4711;
  long web = 80;
  EXPECT_TRUE(
      Call(L"IServer_GetPortForwardingDescription", {late::Reference(chat)}).IsText(L"Practice Chat"));
  EXPECT_TRUE(Call(L"IServer_GetPortForwardingDescription", {late::Reference(web)}).IsText(L""));
}

TEST_F(PracticeRouterTest, OffersItsFeaturesInTwoArraysInStep) {
  SAFEARRAY* captions = SafeArrayCreateVector(VT_BSTR, 0, 0);
  SAFEARRAY* identifiers = SafeArrayCreateVector(VT_I2, 0, 0);
  EXPECT_TRUE(
      Call(L"IServer_GetFeatures", {late::Reference(captions, VT_BSTR), late::Reference(identifiers, VT_I2)})
          .IsBool(true));
  LONG upper = -1;
  SafeArrayGetUBound(identifiers, 1, &upper);
  ASSERT_EQ(upper, 1);
  SafeArrayGetUBound(captions, 1, &upper);
  ASSERT_EQ(upper, 1);
  EXPECT_STREQ(static_cast<BSTR*>(captions->pvData)[0], L"Show the router's window");
  EXPECT_STREQ(static_cast<BSTR*>(captions->pvData)[1], L"Toggle the warning");
  EXPECT_EQ(static_cast<short*>(identifiers->pvData)[0], 1);
  EXPECT_EQ(static_cast<short*>(identifiers->pvData)[1], 2);
  SafeArrayDestroy(captions);
  SafeArrayDestroy(identifiers);
}

TEST_F(PracticeRouterTest, AFeatureTogglesTheWarning) {
  short toggle = 2;
  EXPECT_EQ(Call(L"IServer_ActivateFeaure", {address.Reference(), late::Reference(toggle)}).code, S_OK);
  EXPECT_TRUE(CallWithAddress(L"IServer_CheckForWarning").IsBool(true));
  EXPECT_EQ(Fact(L"Warning"), L"Shown");
  Call(L"IServer_ActivateFeaure", {address.Reference(), late::Reference(toggle)});
  EXPECT_TRUE(CallWithAddress(L"IServer_CheckForWarning").IsBool(false));
}

TEST_F(PracticeRouterTest, AClosedWindowStaysClosedUntilTheFeatureShowsIt) {
  Call(L"IServer_WANIP");
  SendMessageW(Window(), WM_CLOSE, 0, 0);
  Call(L"IServer_WANIP");
  EXPECT_FALSE(IsWindowVisible(Window()));
  short show = 1;
  Call(L"IServer_ActivateFeaure", {address.Reference(), late::Reference(show)});
  EXPECT_TRUE(IsWindowVisible(Window()));
}

TEST_F(PracticeRouterTest, AnUnknownFeatureDoesNothing) {
  short unknown = 77;
  EXPECT_EQ(Call(L"IServer_ActivateFeaure", {address.Reference(), late::Reference(unknown)}).code, S_OK);
}

TEST_F(PracticeRouterTest, TheLastCallsStandInTheWindowWithTheNewestOnTop) {
  late::Put(router.get(), L"IServer_DMZ", late::Value(5L));
  for (int i = 0; i < 3; ++i) CallWithAddress(L"IServer_CheckForWarning");
  const std::vector<std::wstring> calls = Calls();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_THAT(calls[0], testing::HasSubstr(L"IServer_CheckForWarning(\"192.168.1.5\")  \u00D7 3 | False"));
  EXPECT_THAT(calls[1], testing::EndsWith(L"| IServer_DMZ = 5 | "));
}

TEST_F(PracticeRouterTest, ARequestIsToldByItsNumberOfMappings) {
  late::MappingArray empty = late::MappingArray::Empty();
  Forward({{L"Web", L"", 80, 80, false, true, 5, false}}, 5);
  Forward({{L"Web", L"", 80, 80, false, true, 5, false}, {L"Game", L"", 1, 1, false, true, 5, false}}, 5);
  Forward(empty, 5);
  const std::vector<std::wstring> calls = Calls();
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_THAT(calls[0], testing::EndsWith(L"| IServer_SetPortForwarding(nothing, 5) | False"));
  EXPECT_THAT(calls[1], testing::EndsWith(L"| IServer_SetPortForwarding(2 mappings, 5) | False"));
  EXPECT_THAT(calls[2], testing::EndsWith(L"| IServer_SetPortForwarding(1 mapping, 5) | False"));
}

TEST_F(PracticeRouterTest, TheWindowNeverShowsMoreThanTwoHundredCalls) {
  for (long i = 0; i < 300; ++i) late::Put(router.get(), L"IServer_DMZ", late::Value(i));
  EXPECT_EQ(Calls().size(), 200u);
}

TEST_F(PracticeRouterTest, TheTableIsWrittenToTheFileThatTheEnvironmentNames) {
  const char* const file = "practice-table.txt";
  std::remove(file);
  SetEnvironmentVariableA("HARBOURLINE_PRACTICE_TABLE", file);
  const auto content = [&] {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return std::string("no file");
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
  };
  Call(L"IServer_WANIP");
  EXPECT_EQ(content(), "");
  Forward({{L"Web|site", L"Caf\u00E9", 80, 81, false, true, 5, false},
           {L"G", L"two\nlines", 7, 7, true, true, 5, false}},
          5);
  EXPECT_EQ(content(), "Web site|Caf\xC3\xA9|80-81|TCP|5\r\nG|two lines|7-7|TCP+UDP|5\r\n");
  SetEnvironmentVariableA("HARBOURLINE_PRACTICE_TABLE", nullptr);
  std::remove(file);
}

TEST_F(PracticeRouterTest, TwoRoutersKeepTwoTables) {
  const late::Ref<IDispatch> other = host::Make(kProgId);
  Forward({{L"Web", L"", 80, 80, false, true, 5, false}}, 5);
  EXPECT_EQ(Table().size(), 1u);
  router.reset();
  late::Call(other.get(), L"IServer_WANIP");
  EXPECT_THAT(Table(), IsEmpty());
}

}  // namespace
