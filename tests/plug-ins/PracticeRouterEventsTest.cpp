#include <ocidl.h>
#include <olectl.h>

#include <set>

#include "support/PracticeRouterTest.h"

namespace {

using testing::AnyOf;
using testing::StartsWith;

constexpr DWORD kMoreThanATick = 800;

struct LogLine {
  std::wstring type, source, destination, miscellaneous;
  long sourcePort = 0, destinationPort = 0;
};

class PracticeRouterEventsTest : public PracticeRouterTest {
 protected:
  void SetUp() override {
    PracticeRouterTest::SetUp();
    source = late::Call(router.get(), L"IServer_EventHandler").value.pdispVal;
    ASSERT_NE(source, nullptr);
    source->AddRef();
    container = late::Query<IConnectionPointContainer>(source, IID_IConnectionPointContainer);
    ASSERT_TRUE(container);
    IConnectionPoint* found = nullptr;
    ASSERT_EQ(container->FindConnectionPoint(late::kEvents, &found), S_OK);
    point.reset(found);
    sink.acceptedInterface = late::kEvents;
  }
  void TearDown() override {
    point.reset();
    container.reset();
    if (source) source->Release();
    router.reset();
    EXPECT_EQ(sink.references, 1u) << "a sink is kept for ever";
  }
  void Advise() { ASSERT_EQ(point->Advise(&sink, &cookie), S_OK); }
  void SwitchLogOn() {
    late::Put(router.get(), L"IServer_EnableLog", late::Value(true));
    CallWithAddress(L"IServer_SetLogging");
  }
  bool WaitForLines(std::size_t count) {
    return host::PumpUntil([this, count] { return lines.size() >= count; }, 20000);
  }

  HRESULT OnEvent(DISPID event, std::vector<VARIANT>& arguments, EXCEPINFO* exception) {
    if (onEvent) return onEvent(event, arguments, exception);
    switch (event) {
      case 1:
        EXPECT_EQ(arguments.size(), 2u);
        EXPECT_EQ(arguments[0].vt, VT_BSTR);
        EXPECT_EQ(arguments[1].vt, VT_I2);
        errors.push_back(arguments[0].bstrVal);
        return S_OK;
      case 2:
        EXPECT_EQ(arguments.size(), 3u);
        EXPECT_EQ(arguments[0].vt, VT_I4);
        EXPECT_EQ(arguments[1].vt, VT_BYREF | VT_BSTR);
        EXPECT_EQ(arguments[2].vt, VT_BYREF | VT_BOOL);
        EXPECT_STREQ(*arguments[1].pbstrVal, L"");
        asked.push_back(arguments[0].lVal);
        SysReAllocString(arguments[1].pbstrVal, (L"port " + std::to_wstring(arguments[0].lVal)).c_str());
        *arguments[2].pboolVal = filter ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
      case 3:
        TakeLine(arguments);
        return S_OK;
      default:
        ADD_FAILURE() << "event " << event;
        return S_OK;
    }
  }
  void TakeLine(const std::vector<VARIANT>& arguments) {
    ASSERT_EQ(arguments.size(), 6u);
    const VARTYPE kinds[] = {VT_BSTR, VT_BSTR, VT_I4, VT_BSTR, VT_I4, VT_BSTR};
    for (std::size_t i = 0; i < 6; ++i) ASSERT_EQ(arguments[i].vt, kinds[i]) << i;
    LogLine line;
    line.type = arguments[0].bstrVal;
    line.source = arguments[1].bstrVal;
    line.sourcePort = arguments[2].lVal;
    line.destination = arguments[3].bstrVal;
    line.destinationPort = arguments[4].lVal;
    line.miscellaneous = arguments[5].bstrVal;
    lines.push_back(line);
  }

  IDispatch* source = nullptr;
  late::Ref<IConnectionPointContainer> container;
  late::Ref<IConnectionPoint> point;
  DWORD cookie = 0;
  bool filter = false;
  std::vector<std::wstring> errors;
  std::vector<long> asked;
  std::vector<LogLine> lines;
  late::Sink::Handler onEvent;
  late::Sink sink{[this](DISPID event, std::vector<VARIANT>& arguments, EXCEPINFO* exception) {
    return OnEvent(event, arguments, exception);
  }};
};

TEST_F(PracticeRouterEventsTest, TheSourceIsOneObjectForTheWholeLife) {
  const late::Answer again = Call(L"IServer_EventHandler");
  EXPECT_EQ(again.value.pdispVal, source);
}

TEST_F(PracticeRouterEventsTest, TheTypeInformationNamesTheThreeEvents) {
  const auto provider = late::Query<IProvideClassInfo2>(source, IID_IProvideClassInfo2);
  ASSERT_TRUE(provider);
  GUID id = {};
  EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &id), S_OK);
  EXPECT_TRUE(IsEqualGUID(id, late::kEvents));
  ITypeInfo* info = nullptr;
  ASSERT_EQ(provider->GetClassInfo(&info), S_OK);
  const late::Ref<ITypeInfo> coclass(info);
  ITypeLib* library = nullptr;
  UINT index = 0;
  ASSERT_EQ(coclass->GetContainingTypeLib(&library, &index), S_OK);
  const late::Ref<ITypeLib> owner(library);
  ASSERT_EQ(library->GetTypeInfoOfGuid(late::kEvents, &info), S_OK);
  const late::Ref<ITypeInfo> events(info);
  for (const auto& [name, number] : {std::pair{L"Error", 1}, {L"IdentifyPort", 2}, {L"Log", 3}}) {
    auto text = const_cast<LPOLESTR>(name);
    MEMBERID member = 0;
    EXPECT_EQ(events->GetIDsOfNames(&text, 1, &member), S_OK);
    EXPECT_EQ(member, number);
  }
}

TEST_F(PracticeRouterEventsTest, TheConnectionPointCanBeWalkedTo) {
  IEnumConnectionPoints* walk = nullptr;
  ASSERT_EQ(container->EnumConnectionPoints(&walk), S_OK);
  const late::Ref<IEnumConnectionPoints> points(walk);
  IConnectionPoint* found[2] = {};
  ULONG count = 0;
  EXPECT_EQ(points->Next(2, found, &count), S_FALSE);
  ASSERT_EQ(count, 1u);
  const late::Ref<IConnectionPoint> first(found[0]);
  IID id = {};
  EXPECT_EQ(first->GetConnectionInterface(&id), S_OK);
  EXPECT_TRUE(IsEqualIID(id, late::kEvents));
  EXPECT_EQ(points->Next(1, found, &count), S_FALSE);
  EXPECT_EQ(points->Reset(), S_OK);
  EXPECT_EQ(points->Skip(1), S_OK);
  EXPECT_EQ(points->Skip(1), S_FALSE);
  IEnumConnectionPoints* clone = nullptr;
  ASSERT_EQ(points->Clone(&clone), S_OK);
  clone->Release();
  IConnectionPointContainer* owner = nullptr;
  ASSERT_EQ(first->GetConnectionPointContainer(&owner), S_OK);
  EXPECT_EQ(owner, container.get());
  owner->Release();
}

TEST_F(PracticeRouterEventsTest, ConnectionsAreListedAndEndOnce) {
  Advise();
  IEnumConnections* walk = nullptr;
  ASSERT_EQ(point->EnumConnections(&walk), S_OK);
  CONNECTDATA data = {};
  ULONG count = 0;
  EXPECT_EQ(walk->Next(1, &data, &count), S_OK);
  EXPECT_EQ(data.dwCookie, cookie);
  data.pUnk->Release();
  walk->Release();
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
  EXPECT_EQ(point->Unadvise(cookie), CONNECT_E_NOCONNECTION);
}

TEST_F(PracticeRouterEventsTest, OtherInterfacesAndEmptySinksAreTurnedAway) {
  IConnectionPoint* other = nullptr;
  EXPECT_EQ(container->FindConnectionPoint(IID_IPropertyNotifySink, &other), CONNECT_E_NOCONNECTION);
  EXPECT_EQ(point->Advise(nullptr, &cookie), E_POINTER);
  EXPECT_EQ(point->Advise(&sink, nullptr), E_POINTER);
}

TEST_F(PracticeRouterEventsTest, ASinkThatOnlyKnowsIDispatchIsTaken) {
  sink.acceptedInterface = IID_IDispatch;
  Advise();
  SendMessageW(Button(Window(), L"Raise an error"), BM_CLICK, 0, 0);
  EXPECT_EQ(errors.size(), 1u);
  point->Unadvise(cookie);
}

TEST_F(PracticeRouterEventsTest, WithTheLogOnLinesComeInAndOut) {
  Advise();
  SwitchLogOn();
  std::set<std::wstring> types;
  ASSERT_TRUE(host::PumpUntil(
      [&] {
        for (const LogLine& line : lines) types.insert(line.type);
        return types.size() >= 2 && lines.size() >= 4;
      },
      30000));
  EXPECT_EQ(types, (std::set<std::wstring>{L"in", L"out"}));
  EXPECT_EQ(asked.size(), lines.size());
  for (const LogLine& line : lines) {
    const bool incoming = line.type == L"in";
    EXPECT_EQ(incoming ? line.destination : line.source, L"192.168.1.5");
    EXPECT_THAT(incoming ? line.source : line.destination,
                AnyOf(StartsWith(L"192.0.2."), StartsWith(L"198.51.100."), StartsWith(L"203.0.113."),
                      testing::HasSubstr(L".example.")));
    EXPECT_GE(line.sourcePort, 1024);
    EXPECT_LE(line.sourcePort, 65535);
    EXPECT_EQ(line.miscellaneous, L"port " + std::to_wstring(line.destinationPort));
  }
}

TEST_F(PracticeRouterEventsTest, AboutTwoLinesASecondComeAlong) {
  Advise();
  SwitchLogOn();
  host::Pump(3000);
  EXPECT_GE(lines.size(), 3u);
  EXPECT_LE(lines.size(), 7u);
}

TEST_F(PracticeRouterEventsTest, IncomingTrafficAlsoKnocksAtForwardedPorts) {
  Forward({{L"Game", L"", 27910, 27912, true, true, 5, false}}, 5);
  Advise();
  SwitchLogOn();
  EXPECT_TRUE(host::PumpUntil(
      [&] {
        for (const LogLine& line : lines) {
          if (line.type == L"in" && line.destinationPort >= 27910 && line.destinationPort <= 27912)
            return true;
        }
        return false;
      },
      30000));
}

TEST_F(PracticeRouterEventsTest, AFilteredPortBringsNoLine) {
  filter = true;
  Advise();
  SwitchLogOn();
  ASSERT_TRUE(host::PumpUntil([&] { return asked.size() >= 4; }, 20000));
  EXPECT_TRUE(lines.empty());
}

TEST_F(PracticeRouterEventsTest, EachLineIsAskedForFirstAndOnlyThoseThatAreFilteredOutAreMissing) {
  std::vector<long> wanted;
  onEvent = [&](DISPID event, std::vector<VARIANT>& arguments, EXCEPINFO*) {
    if (event == 2) {
      filter = !filter;
      *arguments[2].pboolVal = filter ? VARIANT_TRUE : VARIANT_FALSE;
      asked.push_back(arguments[0].lVal);
      if (!filter) wanted.push_back(arguments[0].lVal);
    } else {
      EXPECT_EQ(event, 3);
      TakeLine(arguments);
      EXPECT_EQ(lines.back().destinationPort, asked.back());
    }
    return S_OK;
  };
  Advise();
  SwitchLogOn();
  ASSERT_TRUE(host::PumpUntil([&] { return asked.size() >= 6; }, 20000));
  std::vector<long> told;
  for (const LogLine& line : lines) told.push_back(line.destinationPort);
  EXPECT_EQ(told, wanted);
  EXPECT_EQ(wanted.size(), asked.size() / 2);
}

TEST_F(PracticeRouterEventsTest, WithTheSwitchOffNothingComes) {
  Advise();
  CallWithAddress(L"IServer_SetLogging");
  host::Pump(kMoreThanATick);
  EXPECT_TRUE(asked.empty());
}

TEST_F(PracticeRouterEventsTest, BeforeSetLoggingNothingComes) {
  Advise();
  late::Put(router.get(), L"IServer_EnableLog", late::Value(true));
  host::Pump(kMoreThanATick);
  EXPECT_TRUE(asked.empty());
}

TEST_F(PracticeRouterEventsTest, SwitchedOffTheTrafficEnds) {
  Advise();
  SwitchLogOn();
  ASSERT_TRUE(WaitForLines(1));
  late::Put(router.get(), L"IServer_EnableLog", late::Value(false));
  const std::size_t before = asked.size();
  host::Pump(kMoreThanATick);
  EXPECT_EQ(asked.size(), before);
}

TEST_F(PracticeRouterEventsTest, AfterUnadviseNothingComes) {
  Advise();
  SwitchLogOn();
  ASSERT_TRUE(WaitForLines(1));
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
  const std::size_t before = asked.size();
  host::Pump(kMoreThanATick);
  EXPECT_EQ(asked.size(), before);
}

TEST_F(PracticeRouterEventsTest, TheExitOfTheProgramEndsTheTraffic) {
  Advise();
  SwitchLogOn();
  ASSERT_TRUE(WaitForLines(1));
  Call(L"IServer_ApplicationExiting", {address.Value()});
  const std::size_t before = asked.size();
  host::Pump(kMoreThanATick);
  EXPECT_EQ(asked.size(), before);
}

TEST_F(PracticeRouterEventsTest, TheButtonRaisesAnError) {
  Advise();
  Call(L"IServer_WANIP");
  SendMessageW(Button(Window(), L"Raise an error"), BM_CLICK, 0, 0);
  EXPECT_THAT(errors, testing::ElementsAre(L"The practice router was asked for an error."));
}

TEST_F(PracticeRouterEventsTest, AListenerThatFailsIsToldInTheWindowAndTheTrafficGoesOn) {
  int failures = 0;
  onEvent = [&](DISPID, std::vector<VARIANT>&, EXCEPINFO* exception) {
    ++failures;
    exception->scode = E_FAIL;
    exception->bstrDescription = SysAllocString(L"no disk left");
    return DISP_E_EXCEPTION;
  };
  Advise();
  SwitchLogOn();
  ASSERT_TRUE(host::PumpUntil([&] { return failures >= 2; }, 20000));
  EXPECT_THAT(Calls()[0], testing::HasSubstr(L"no disk left"));
}

TEST_F(PracticeRouterEventsTest, AListenerMayUnadviseAndReleaseTheRouterFromInsideAnEvent) {
  bool left = false;
  onEvent = [&](DISPID, std::vector<VARIANT>&, EXCEPINFO*) {
    if (left) return S_OK;
    left = true;
    point->Unadvise(cookie);
    point.reset();
    container.reset();
    source->Release();
    source = nullptr;
    router.reset();
    return S_OK;
  };
  Advise();
  SwitchLogOn();
  ASSERT_TRUE(host::PumpUntil([&] { return left; }, 20000));
  host::Pump(kMoreThanATick);
  EXPECT_EQ(Window(), nullptr);
}

TEST_F(PracticeRouterEventsTest, TheSourceMayOutliveItsRouter) {
  Advise();
  router.reset();
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

}  // namespace
