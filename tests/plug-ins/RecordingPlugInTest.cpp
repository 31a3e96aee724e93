// The witness itself: a test that trusts it must know that it tells the truth.
#include <gmock/gmock.h>
#include <ocidl.h>

#include <fstream>

#include "support/Host.h"

namespace {

using testing::ElementsAre;

class RecordingPlugInTest : public testing::Test {
 protected:
  static constexpr wchar_t kScript[] = L"Software\\Harbourline Recording\\Harbourline.Recording";
  static constexpr char kFile[] = "plugin-record.txt";

  RecordingPlugInTest() {
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Harbourline Recording");
    DeleteFileA(kFile);
    SetEnvironmentVariableA("HARBOURLINE_RECORDING", kFile);
  }
  ~RecordingPlugInTest() override {
    plugIn.reset();
    SetEnvironmentVariableA("HARBOURLINE_RECORDING", nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Harbourline Recording");
    DeleteFileA(kFile);
  }
  void SetUp() override {
    plugIn = host::Make(L"Harbourline.Recording");
    ASSERT_TRUE(plugIn);
    Lines();
  }

  static void Script(const wchar_t* name, const wchar_t* value) {
    host::SetRegistryText(HKEY_CURRENT_USER, kScript, name, value);
  }
  /// The lines since the last look.
  std::vector<std::string> Lines() {
    std::ifstream file(kFile);
    std::vector<std::string> all;
    for (std::string line; std::getline(file, line);) all.push_back(line);
    std::vector<std::string> fresh(all.begin() + static_cast<std::ptrdiff_t>(seen_), all.end());
    seen_ = all.size();
    return fresh;
  }
  late::Answer Call(const wchar_t* member, std::vector<VARIANT> arguments = {}) {
    return late::Call(plugIn.get(), member, std::move(arguments));
  }
  late::Ref<IConnectionPoint> Point(const IID& iid) {
    const late::Answer source = Call(L"IServer_EventHandler");
    const auto container =
        late::Query<IConnectionPointContainer>(source.value.pdispVal, IID_IConnectionPointContainer);
    IConnectionPoint* found = nullptr;
    if (container) container->FindConnectionPoint(iid, &found);
    return late::Ref<IConnectionPoint>(found);
  }
  static bool Raise(const std::string& request) {
    const HWND window = FindWindowA("HarbourlineRecordingEvents", "Harbourline.Recording");
    COPYDATASTRUCT data = {};
    data.cbData = static_cast<DWORD>(request.size());
    data.lpData = const_cast<char*>(request.data());
    return SendMessageA(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data)) == TRUE;
  }

  late::Ref<IDispatch> plugIn;

 private:
  std::size_t seen_ = 0;
};

TEST_F(RecordingPlugInTest, WritesDownKindsBoundsAndValues) {
  short octet = 5;
  long port = 80;
  late::Text address(L"192.168.1.5");
  Call(L"IServer_WANIP");
  late::Put(plugIn.get(), L"IServer_DMZ", late::Value(34L));
  Call(L"IServer_SetLogging", {address.Reference()});
  Call(L"IServer_ApplicationExiting", {address.Value()});
  Call(L"IServer_GetPortForwardingDescription", {late::Reference(port)});
  late::MappingArray array({{L"Web \"1\"", L"a\\b\n", 80, 81, true, false, 5, true}});
  Call(L"IServer_SetPortForwarding", {array.Reference(), late::Reference(octet)});
  late::MappingArray empty = late::MappingArray::Empty();
  Call(L"IServer_SetPortForwarding", {empty.Reference(), late::Reference(octet)});
  EXPECT_THAT(
      Lines(),
      ElementsAre(
          "Harbourline.Recording IServer_WANIP METHOD+GET ()",
          "Harbourline.Recording IServer_DMZ PUT (I4 34)",
          "Harbourline.Recording IServer_SetLogging METHOD+GET (BYREF+BSTR \"192.168.1.5\")",
          "Harbourline.Recording IServer_ApplicationExiting METHOD+GET (BSTR \"192.168.1.5\")",
          "Harbourline.Recording IServer_GetPortForwardingDescription METHOD+GET (BYREF+I4 80)",
          "Harbourline.Recording IServer_SetPortForwarding METHOD+GET (BYREF+ARRAY+DISPATCH [0..0] "
          "{sProfileName=BSTR \"Web \\\"1\\\"\"; sDescription=BSTR \"a\\\\b\\x0A\"; lBeginPort=I4 80; "
          "lEndPort=I4 81; bUDP=BOOL True; bTCP=BOOL False; iForwardIPAddress=I2 5; bClearEntry=BOOL True}, "
          "BYREF+I2 5)",
          "Harbourline.Recording IServer_SetPortForwarding METHOD+GET (BYREF+ARRAY+DISPATCH [10..10] null, "
          "BYREF+I2 5)"));
}

TEST_F(RecordingPlugInTest, TellsCallsThatAreMadeInAnotherWay) {
  const DISPID dmz = late::Find(plugIn.get(), L"IServer_DMZ");
  const DISPID wan = late::Find(plugIn.get(), L"IServer_WANIP");
  VARIANT one = late::Value(1L);
  DISPPARAMS unnamed = {&one, nullptr, 1, 0};
  plugIn->Invoke(dmz, IID_NULL, 0, DISPATCH_PROPERTYPUT, &unnamed, nullptr, nullptr, nullptr);
  late::Invoke(plugIn.get(), wan, DISPATCH_PROPERTYGET, {});
  late::Invoke(plugIn.get(), wan, DISPATCH_METHOD, {late::Nothing(), late::Value(1.5)});
  EXPECT_THAT(Lines(), ElementsAre("Harbourline.Recording IServer_DMZ PUT-UNNAMED (I4 1)",
                                   "Harbourline.Recording IServer_WANIP GET ()",
                                   "Harbourline.Recording IServer_WANIP METHOD (EMPTY, R8 1.500000)"));
}

TEST_F(RecordingPlugInTest, AnswersAndFailsAsScripted) {
  EXPECT_TRUE(Call(L"IServer_ServerTitle").IsText(L"Router Harbourline.Recording"));
  Script(L"Result_IServer_ServerTitle", L"text:100%");
  EXPECT_TRUE(Call(L"IServer_ServerTitle").IsText(L"100%"));
  Script(L"Result_IServer_Functional", L"int32:2");
  EXPECT_EQ(Call(L"IServer_Functional").value.lVal, 2);
  Script(L"Fail_IServer_WANIP", L"no carrier");
  const late::Answer failed = Call(L"IServer_WANIP");
  EXPECT_EQ(failed.code, DISP_E_EXCEPTION);
  EXPECT_EQ(failed.exceptionText, L"no carrier");
  EXPECT_EQ(static_cast<unsigned long>(failed.exceptionCode), 0x80040201ul);
  Script(L"FailCode_IServer_WANIP", L"0x8007000E");
  EXPECT_EQ(Call(L"IServer_WANIP").exceptionCode, E_OUTOFMEMORY);
  Script(L"Break_IServer_WANIP", L"0x80070005");
  EXPECT_EQ(Call(L"IServer_WANIP").code, E_ACCESSDENIED);
  Script(L"Missing_IServer_Version", L"");
  EXPECT_EQ(late::Find(plugIn.get(), L"IServer_Version"), DISPID_UNKNOWN);
}

TEST_F(RecordingPlugInTest, IsFaultyFromTheScriptedCallOn) {
  Script(L"From_IServer_ServerTitle", L"2");
  Script(L"Fail_IServer_ServerTitle", L"no title");
  Script(L"From_IServer_Version", L"3");
  Script(L"Missing_IServer_Version", L"");
  EXPECT_TRUE(Call(L"IServer_ServerTitle").IsText(L"Router Harbourline.Recording"));
  EXPECT_EQ(Call(L"IServer_ServerTitle").exceptionText, L"no title");
  EXPECT_EQ(Call(L"IServer_ServerTitle").exceptionText, L"no title");
  EXPECT_TRUE(Call(L"IServer_Version").IsText(L"1.2"));
  EXPECT_TRUE(Call(L"IServer_Version").IsText(L"1.2"));
  EXPECT_EQ(late::Find(plugIn.get(), L"IServer_Version"), DISPID_UNKNOWN);
}

TEST_F(RecordingPlugInTest, FailsAtWritesAloneWhenTheScriptSaysSo) {
  Script(L"Fail_IServer_EnableLog_PUT", L"can't be switched");
  EXPECT_EQ(late::Put(plugIn.get(), L"IServer_EnableLog", late::Value(true)).exceptionText,
            L"can't be switched");
  EXPECT_TRUE(Call(L"IServer_EnableLog").IsBool(false));
}

TEST_F(RecordingPlugInTest, TakesItsTimeAndHandlesMessagesMeanwhileAsScripted) {
  constexpr ULONGLONG kAWhile = 200;
  static int handled;
  handled = 0;
  const UINT_PTR timer = SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR, DWORD) { ++handled; });
  Script(L"Slow_IServer_Version", L"200");
  ULONGLONG begin = GetTickCount64();
  Call(L"IServer_Version");
  EXPECT_GE(GetTickCount64() - begin, kAWhile);
  EXPECT_EQ(handled, 0);
  Script(L"Loop_IServer_WANIP", L"200");
  begin = GetTickCount64();
  EXPECT_TRUE(Call(L"IServer_WANIP").IsText(L"198.51.100.7"));
  EXPECT_GE(GetTickCount64() - begin, kAWhile);
  EXPECT_GT(handled, 0);
  KillTimer(nullptr, timer);
}

TEST_F(RecordingPlugInTest, OverwritesArgumentsByReference) {
  Script(L"ChangeArguments", L"");
  short number = 5;
  late::Text text(L"192.168.1.5");
  Call(L"IServer_ActivateFeaure", {text.Reference(), late::Reference(number)});
  EXPECT_EQ(text.Get(), L"changed");
  EXPECT_EQ(number, 99);
  late::MappingArray array({{L"Web", L"", 80, 81, true, false, 5, true}});
  Call(L"IServer_SetPortForwarding", {array.Reference(), late::Reference(number)});
  EXPECT_EQ(array.Get()->rgsabound[0].lLbound, 5);
}

TEST_F(RecordingPlugInTest, LeavesFeaturesInEitherStyle) {
  Script(L"Features", L"First=7;Second=9");
  Script(L"FeatureBase", L"3");
  for (const wchar_t* style : {L"replace", L"redim"}) {
    Script(L"FeatureStyle", style);
    SAFEARRAY* captions = SafeArrayCreateVector(VT_BSTR, 0, 0);
    SAFEARRAY* identifiers = SafeArrayCreateVector(VT_I2, 0, 0);
    EXPECT_TRUE(Call(L"IServer_GetFeatures",
                     {late::Reference(captions, VT_BSTR), late::Reference(identifiers, VT_I2)})
                    .IsBool(true));
    ASSERT_EQ(identifiers->rgsabound[0].cElements, 2u);
    EXPECT_EQ(static_cast<short*>(identifiers->pvData)[1], 9);
    EXPECT_STREQ(static_cast<BSTR*>(captions->pvData)[0], L"First");
    if (std::wstring(style) == L"replace") {
      EXPECT_EQ(captions->rgsabound[0].lLbound, 3);
    }
    SafeArrayDestroy(captions);
    SafeArrayDestroy(identifiers);
  }
}

TEST_F(RecordingPlugInTest, RaisesEventsOnRequestInEveryStyle) {
  std::vector<std::vector<VARTYPE>> kinds;
  late::Sink sink([&](DISPID event, std::vector<VARIANT>& arguments, EXCEPINFO*) {
    kinds.emplace_back();
    for (const VARIANT& argument : arguments) kinds.back().push_back(argument.vt);
    if (event != 2) return S_OK;
    VARIANT& name = arguments[1].vt == (VT_BYREF | VT_VARIANT) ? *arguments[1].pvarVal : arguments[1];
    SysReAllocString(name.vt & VT_BYREF ? name.pbstrVal : &name.bstrVal, L"http");
    return S_OK;
  });
  sink.acceptedInterface = late::kEvents;
  const auto point = Point(late::kEvents);
  ASSERT_TRUE(point);
  DWORD cookie = 0;
  point->Advise(&sink, &cookie);
  EXPECT_TRUE(Raise("IdentifyPort|80"));
  Script(L"EventStyle", L"byref");
  EXPECT_TRUE(Raise("Error|bad|7"));
  Script(L"EventStyle", L"variant");
  EXPECT_TRUE(Raise("IdentifyPort|80"));
  EXPECT_TRUE(Raise("Raw|77|double:0.5"));
  EXPECT_FALSE(Raise("Nonsense"));
  point->Unadvise(cookie);
  EXPECT_TRUE(Raise("Error|unheard|1"));
  constexpr VARTYPE kWrapped = VT_BYREF | VT_VARIANT;
  EXPECT_THAT(kinds, ElementsAre(ElementsAre(VT_I4, VT_BYREF | VT_BSTR, VT_BYREF | VT_BOOL),
                                 ElementsAre(VT_BYREF | VT_BSTR, VT_BYREF | VT_I2),
                                 ElementsAre(kWrapped, kWrapped, kWrapped), ElementsAre(kWrapped)));
  EXPECT_THAT(
      Lines(),
      ElementsAre(
          "Harbourline.Recording IServer_EventHandler METHOD+GET ()", "Harbourline.Recording advised",
          "Harbourline.Recording raised IdentifyPort|80 -> 00000000 BYREF+BSTR \"http\", BYREF+BOOL False",
          "Harbourline.Recording raised Error|bad|7 -> 00000000",
          "Harbourline.Recording raised IdentifyPort|80 -> 00000000 BYREF+VARIANT BSTR \"http\", "
          "BYREF+VARIANT BOOL "
          "False",
          "Harbourline.Recording raised Raw|77|double:0.5 -> 00000000", "Harbourline.Recording unadvised",
          "Harbourline.Recording raised Error|unheard|1 -> nobody"));
}

TEST_F(RecordingPlugInTest, RaisesEventsFromInsideACallAndManyTimes) {
  int events = 0;
  late::Sink sink([&](DISPID, std::vector<VARIANT>&, EXCEPINFO*) {
    ++events;
    return S_OK;
  });
  sink.acceptedInterface = late::kEvents;
  auto point = Point(late::kEvents);
  DWORD cookie = 0;
  point->Advise(&sink, &cookie);
  Script(L"Raise_IServer_WANIP", L"Error|one|1;Log|in|192.0.2.1|1234|192.168.1.5|80|http");
  Script(L"RaiseCount", L"1000");
  Call(L"IServer_WANIP");
  EXPECT_EQ(events, 2000);
  Script(L"KeepSinks", L"");
  point->Unadvise(cookie);
  Script(L"RaiseCount", L"1");
  Raise("Error|late|1");
  EXPECT_EQ(events, 2001);
  point.reset();
  plugIn.reset();
  EXPECT_EQ(sink.references, 1u) << "with the source goes what it kept";
}

TEST_F(RecordingPlugInTest, ASourceWithAnotherInterfaceIsFoundByItsTypeInformation) {
  Script(L"EventSource", L"other");
  EXPECT_FALSE(Point(late::kEvents));
  const late::Answer source = Call(L"IServer_EventHandler");
  const auto provider = late::Query<IProvideClassInfo>(source.value.pdispVal, IID_IProvideClassInfo);
  ASSERT_TRUE(provider);
  ITypeInfo* found = nullptr;
  ASSERT_EQ(provider->GetClassInfo(&found), S_OK);
  const late::Ref<ITypeInfo> coclass(found);
  HREFTYPE reference = 0;
  ASSERT_EQ(coclass->GetRefTypeOfImplType(1, &reference), S_OK);
  ASSERT_EQ(coclass->GetRefTypeInfo(reference, &found), S_OK);
  const late::Ref<ITypeInfo> events(found);
  wchar_t log[] = L"Log";
  LPOLESTR name = log;
  MEMBERID id = 0;
  EXPECT_EQ(events->GetIDsOfNames(&name, 1, &id), S_OK);
  EXPECT_EQ(id, 11);
}

TEST_F(RecordingPlugInTest, ASourceWithoutEventsHasNoConnectionPoints) {
  Script(L"EventSource", L"none");
  const late::Answer source = Call(L"IServer_EventHandler");
  EXPECT_FALSE(late::Query<IConnectionPointContainer>(source.value.pdispVal, IID_IConnectionPointContainer));
}

TEST_F(RecordingPlugInTest, TellsLookUpsAndItsOwnLife) {
  Script(L"RecordLookups", L"");
  late::Find(plugIn.get(), L"IServer_WANIP");
  late::Find(plugIn.get(), L"IServer_ActivateFeature");
  plugIn.reset();
  EXPECT_THAT(Lines(), ElementsAre("Harbourline.Recording lookup IServer_WANIP 00000400 -> found",
                                   "Harbourline.Recording lookup IServer_ActivateFeature 00000400 -> missing",
                                   "Harbourline.Recording released"));
  for (const wchar_t* progId : {L"Harbourline.RecordingB", L"Harbourline.RecordingC"})
    EXPECT_TRUE(host::Make(progId));
  EXPECT_THAT(Lines(), ElementsAre("Harbourline.RecordingB created", "Harbourline.RecordingB released",
                                   "Harbourline.RecordingC created", "Harbourline.RecordingC released"));
}

}  // namespace
