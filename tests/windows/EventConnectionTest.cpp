#include <gmock/gmock.h>
#include <olectl.h>

#include <functional>
#include <new>
#include <thread>

#include "support/ComTest.h"
#include "support/EventSource.h"
#include "support/RegistryAccess.h"

namespace {

using base::Variant;
using platform::EventInterface;
using support::BoolVariant;
using support::BstrVariant;
using support::ConnectionPoint;
using support::EventSource;
using support::FailureOf;
using support::LongVariant;
using support::ReferenceTo;
using support::ShortVariant;
using support::TextOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr IID kEventsId = {0xE0A74CD3, 0x5372, 0x419F, {0xA5, 0xBE, 0x5D, 0x09, 0xBD, 0xCF, 0xB7, 0x40}};
const EventInterface kEvents = {"{E0A74CD3-5372-419F-A5BE-5D09BDCFB740}", {"Error", "IdentifyPort", "Log"}};

/// Keeps what it is told, and does what the test wants.
class Listener : public platform::EventSink {
 public:
  void OnEvent(std::int32_t event, std::span<Variant> arguments) override {
    events.push_back(event);
    received.assign(arguments.begin(), arguments.end());
    if (action) action(arguments);
  }

  std::vector<std::int32_t> events;
  std::vector<Variant> received;
  std::function<void(std::span<Variant>)> action;
};

class EventConnectionTest : public support::ComTest {
 protected:
  EventConnectionTest() {
    Served().Add(L"IServer_EventHandler", [this](const support::MemberCall& call) {
      source_->AddRef();
      call.Return(support::DispatchVariant(source_));
      return S_OK;
    });
  }
  void TearDown() override {
    connection_.reset();
    source_->Release();
    ComTest::TearDown();
  }

  /// Connects the listener to the source, which arrives as a plug-in's would.
  void Connect() {
    const auto object = base::ToObject(Object().Get("IServer_EventHandler"));
    connection_ = platform::TheMachine().objects->Connect(dynamic_cast<platform::LateBoundObject&>(*object),
                                                          kEvents, listener_);
  }

  EventSource* source_ = new EventSource;
  Listener listener_;
  std::unique_ptr<platform::EventConnection> connection_;
};

TEST_F(EventConnectionTest, EventsComeByTheNumbersOfTheInterface) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  EXPECT_EQ(point.SinkCount(), 1u);
  for (const DISPID event : {1, 2, 3}) EXPECT_EQ(point.Raise(event, {}), S_OK);
  EXPECT_THAT(listener_.events, ElementsAre(1, 2, 3));
}

TEST_F(EventConnectionTest, ASourceMayLookTheNumbersUp) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  for (const wchar_t* event : {L"Log", L"error", L"IDENTIFYPORT"})
    EXPECT_EQ(point.RaiseByName(event, {}), S_OK);
  EXPECT_THAT(listener_.events, ElementsAre(3, 1, 2));
  EXPECT_EQ(point.RaiseByName(L"Warning", {}), DISP_E_UNKNOWNNAME);
}

TEST_F(EventConnectionTest, AnEventThatTheInterfaceLacksIsRefused) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  for (const DISPID event : {0, 4, -1}) EXPECT_EQ(point.Raise(event, {}), DISP_E_MEMBERNOTFOUND) << event;
  EXPECT_THAT(listener_.events, ElementsAre());
}

TEST_F(EventConnectionTest, ArgumentsComeInTheOrderOfTheirDeclaration) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  VARIANT message = BstrVariant(L"caf\x00E9");
  VARIANT number = ShortVariant(-5);
  EXPECT_EQ(point.Raise(1, {&message, &number}), S_OK);
  ASSERT_EQ(listener_.received.size(), 2u);
  EXPECT_EQ(listener_.received[0].Get(), Variant("caf\xE9").Get());
  EXPECT_EQ(listener_.received[1].Get(), Variant(std::int16_t{-5}).Get());
  VariantClear(&message);
}

TEST_F(EventConnectionTest, ArgumentsMayBeReferencesAndWrapped) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  LONG port = 443;
  VARIANT byReference = ReferenceTo(VT_I4, &port);
  VARIANT plain = LongVariant(80);
  VARIANT wrapped = ReferenceTo(VT_VARIANT, &plain);
  VARIANT wrappedReference = ReferenceTo(VT_VARIANT, &byReference);
  EXPECT_EQ(point.Raise(2, {&byReference, &wrapped, &wrappedReference}), S_OK);
  ASSERT_EQ(listener_.received.size(), 3u);
  EXPECT_EQ(base::ToInt32(listener_.received[0]), 443);
  EXPECT_EQ(base::ToInt32(listener_.received[1]), 80);
  EXPECT_EQ(base::ToInt32(listener_.received[2]), 443);
}

TEST_F(EventConnectionTest, WhatTheHandlerWritesReachesTheSourceWhereItPassedAReference) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  listener_.action = [](std::span<Variant> arguments) {
    arguments[0] = std::int32_t{1};
    arguments[1] = "caf\xE9";
    arguments[2] = true;
  };
  VARIANT port = LongVariant(80);
  BSTR description = SysAllocString(L"before");
  VARIANT descriptionReference = ReferenceTo(VT_BSTR, &description);
  VARIANT_BOOL filter = VARIANT_FALSE;
  VARIANT filterReference = ReferenceTo(VT_BOOL, &filter);
  EXPECT_EQ(point.Raise(2, {&port, &descriptionReference, &filterReference}), S_OK);
  EXPECT_EQ(port.lVal, 80);
  EXPECT_EQ(TextOf(description), L"caf\x00E9");
  EXPECT_EQ(filter, VARIANT_TRUE);
  SysFreeString(description);
}

TEST_F(EventConnectionTest, WhatTheHandlerWritesIsConvertedToTheKindOfTheReference) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  listener_.action = [](std::span<Variant> arguments) {
    arguments[0] = "HTTP";
    arguments[1] = true;
    arguments[2] = "FTP";
  };
  VARIANT inner = LongVariant(0);
  VARIANT wrapped = ReferenceTo(VT_VARIANT, &inner);
  SHORT number = 0;
  VARIANT numberReference = ReferenceTo(VT_I2, &number);
  BSTR text = nullptr;
  VARIANT innerReference = ReferenceTo(VT_BSTR, &text);
  VARIANT wrappedReference = ReferenceTo(VT_VARIANT, &innerReference);
  EXPECT_EQ(point.Raise(2, {&wrapped, &numberReference, &wrappedReference}), S_OK);
  EXPECT_EQ(inner.vt, VT_BSTR);
  EXPECT_EQ(TextOf(inner.bstrVal), L"HTTP");
  EXPECT_EQ(number, -1);
  EXPECT_EQ(TextOf(text), L"FTP");
  VariantClear(&inner);
  SysFreeString(text);
}

TEST_F(EventConnectionTest, AReferenceThatTheHandlerLeavesAloneIsNotTouched) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  BSTR text = SysAllocString(L"\x4E2D");
  const BSTR same = text;
  VARIANT textReference = ReferenceTo(VT_BSTR, &text);
  VARIANT inner;
  VariantInit(&inner);
  inner.vt = VT_UI4;
  inner.ulVal = 4'000'000'000;
  VARIANT wrapped = ReferenceTo(VT_VARIANT, &inner);
  EXPECT_EQ(point.Raise(2, {&textReference, &wrapped}), S_OK);
  EXPECT_EQ(text, same);
  EXPECT_EQ(TextOf(text), L"\x4E2D");
  EXPECT_EQ(inner.vt, VT_UI4);
  SysFreeString(text);
}

TEST_F(EventConnectionTest, AnAnswerThatDoesNotFitTheReferenceIsAnErrorOfTheCall) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  listener_.action = [](std::span<Variant> arguments) { arguments[0] = "HTTP"; };
  LONG number = 7;
  VARIANT reference = ReferenceTo(VT_I4, &number);
  EXCEPINFO exception{};
  EXPECT_EQ(point.Raise(2, {&reference}, &exception), DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(number, 7);
}

/// Raises the event 3. The values stand in COM's order; the first of them go to the named places.
HRESULT RaiseNamed(IDispatch& sink, std::vector<LONG> values, std::vector<DISPID> places) {
  std::vector<VARIANT> passed;
  for (const LONG value : values) passed.push_back(LongVariant(value));
  DISPPARAMS parameters = {passed.data(), places.data(), static_cast<UINT>(passed.size()),
                           static_cast<UINT>(places.size())};
  return sink.Invoke(3, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
}

TEST_F(EventConnectionTest, NamedArgumentsGoToTheirPlaces) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  IDispatch* sink = point.TakeSink();
  EXPECT_EQ(RaiseNamed(*sink, {30, 20, 10}, {2}), S_OK);
  EXPECT_EQ(RaiseNamed(*sink, {20, 10, 30}, {1, 0, 2}), S_OK);
  ASSERT_EQ(listener_.received.size(), 3u);
  for (std::int32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(base::ToInt32(listener_.received[static_cast<std::size_t>(i)]), (i + 1) * 10);
  }
  EXPECT_EQ(listener_.events.size(), 2u);
  sink->Release();
}

TEST_F(EventConnectionTest, NamedArgumentsWithoutAPlaceOfTheirOwnAreRefused) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  IDispatch* sink = point.TakeSink();
  EXPECT_EQ(RaiseNamed(*sink, {30, 20, 10}, {0}), DISP_E_PARAMNOTFOUND)
      << "two arguments for the first place";
  EXPECT_EQ(RaiseNamed(*sink, {10}, {7}), DISP_E_PARAMNOTFOUND) << "no such place";
  EXPECT_EQ(RaiseNamed(*sink, {10}, {-3}), DISP_E_PARAMNOTFOUND) << "no place at all";
  EXPECT_THAT(listener_.events, ElementsAre());
  sink->Release();
}

TEST_F(EventConnectionTest, AFailureOfTheHandlerIsAnExceptionForTheSource) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  BSTR text = SysAllocString(L"before");
  VARIANT reference = ReferenceTo(VT_BSTR, &text);
  const auto raise = [&](std::function<void()> failure) {
    listener_.action = [=](std::span<Variant> arguments) {
      arguments[0] = "after";
      failure();
    };
    EXCEPINFO exception{};
    EXPECT_EQ(point.Raise(3, {&reference}, &exception), DISP_E_EXCEPTION);
    return exception;
  };
  EXCEPINFO own = raise([] { throw base::Error(13, "Type mismatch: \"caf\xE9\""); });
  EXPECT_EQ(own.scode, static_cast<SCODE>(0x800A000D));
  EXPECT_EQ(TextOf(own.bstrDescription), L"Type mismatch: \"caf\x00E9\"");
  EXPECT_EQ(TextOf(own.bstrSource), L"Harbourline");
  EXCEPINFO foreign = raise([] { throw base::Error(E_ACCESSDENIED, "of a plug-in"); });
  EXPECT_EQ(foreign.scode, E_ACCESSDENIED);
  EXCEPINFO standard = raise([] { throw std::runtime_error("standard"); });
  EXPECT_EQ(standard.scode, E_FAIL);
  EXPECT_EQ(TextOf(standard.bstrDescription), L"standard");
  EXPECT_EQ(TextOf(text), L"before") << "a failed event gives nothing back";
  SysFreeString(text);
}

TEST_F(EventConnectionTest, NoFailureOfAnyKindPassesThroughTheSource) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  listener_.action = [](std::span<Variant>) { throw std::bad_alloc(); };
  EXPECT_EQ(point.Raise(3, {}), E_OUTOFMEMORY);
  listener_.action = [](std::span<Variant>) { throw 7; };
  EXPECT_EQ(point.Raise(3, {}), E_UNEXPECTED);
}

TEST_F(EventConnectionTest, TheSinkAnswersItsInterfacesOnly) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  IDispatch* sink = point.TakeSink();
  void* object = nullptr;
  for (const IID& id : {IID_IUnknown, IID_IDispatch, kEventsId}) {
    EXPECT_EQ(sink->QueryInterface(id, &object), S_OK);
    EXPECT_EQ(object, sink);
    sink->Release();
  }
  EXPECT_EQ(sink->QueryInterface(IID_IPersist, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  sink->Release();
}

TEST_F(EventConnectionTest, TheEndOfTheConnectionUnadvises) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  connection_.reset();
  EXPECT_EQ(point.SinkCount(), 0u);
}

TEST_F(EventConnectionTest, ALateEventReachesNobodyAndHarmsNobody) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  IDispatch* sink = point.TakeSink();
  connection_.reset();
  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  EXPECT_EQ(sink->Invoke(3, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            RPC_E_DISCONNECTED);
  EXPECT_THAT(listener_.events, ElementsAre());
  EXPECT_EQ(sink->Release(), 0u);
}

TEST_F(EventConnectionTest, TheConnectionMayEndWithinAnEvent) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  listener_.action = [&](std::span<Variant> arguments) {
    connection_.reset();
    arguments[0] = "answered all the same";
  };
  BSTR text = nullptr;
  VARIANT reference = ReferenceTo(VT_BSTR, &text);
  EXPECT_EQ(point.Raise(2, {&reference}), S_OK);
  EXPECT_EQ(TextOf(text), L"answered all the same");
  EXPECT_EQ(point.SinkCount(), 0u);
  SysFreeString(text);
}

TEST_F(EventConnectionTest, AnEventMayBeRaisedWithinAnEvent) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  listener_.action = [&](std::span<Variant>) {
    if (listener_.events.size() < 3) {
      EXPECT_EQ(point.Raise(1, {}), S_OK);
    }
  };
  EXPECT_EQ(point.Raise(3, {}), S_OK);
  EXPECT_THAT(listener_.events, ElementsAre(3, 1, 1));
}

TEST_F(EventConnectionTest, AnEventOfAnotherThreadIsRefused) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  HRESULT answer = S_OK;
  std::thread([&] { answer = point.Raise(3, {}); }).join();
  EXPECT_EQ(answer, RPC_E_WRONG_THREAD);
  EXPECT_THAT(listener_.events, ElementsAre());
}

TEST_F(EventConnectionTest, ASourceCanBeConnectedAgain) {
  ConnectionPoint& point = source_->AddPoint(kEventsId);
  Connect();
  Connect();
  EXPECT_EQ(point.SinkCount(), 1u);
  EXPECT_EQ(point.Raise(3, {}), S_OK);
  EXPECT_THAT(listener_.events, ElementsAre(3));
}

TEST_F(EventConnectionTest, TheSourceLivesAsLongAsTheConnection) {
  source_->AddPoint(kEventsId);
  Connect();
  ConnectionPoint* point = nullptr;
  source_->FindConnectionPoint(kEventsId, reinterpret_cast<IConnectionPoint**>(&point));
  EXPECT_GT(point->Release(), 1u);
}

TEST_F(EventConnectionTest, ASinkThatTheSourceRefusesIsAFailure) {
  source_->AddPoint(kEventsId).RefuseSinks(CONNECT_E_ADVISELIMIT);
  EXPECT_EQ(FailureOf([&] { Connect(); }).Number(), CONNECT_E_ADVISELIMIT);
}

TEST_F(EventConnectionTest, AnObjectWithoutTheEventsIsAFailure) {
  source_->AddPoint(support::NewId());
  const base::Error error = FailureOf([&] { Connect(); });
  EXPECT_EQ(error.Number(), CONNECT_E_NOCONNECTION);
  EXPECT_THAT(error.Text(), HasSubstr(kEvents.id));
}

TEST_F(EventConnectionTest, AnObjectThatRaisesNoEventsAtAllIsAFailure) {
  EXPECT_EQ(
      FailureOf([&] { platform::TheMachine().objects->Connect(Object(), kEvents, listener_); }).Number(),
      CONNECT_E_NOCONNECTION);
}

/// Sources that number the events in their own way and tell it in a type library.
class NamedEventsTest : public EventConnectionTest {
 protected:
  const IID id_ = support::NewId();
  const std::vector<std::pair<std::wstring, MEMBERID>> methods_ = {
      {L"Log", 101}, {L"Other", 102}, {L"identifyport", 103}, {L"Error", 104}};
  support::TypeLibrary library_;
};

TEST_F(NamedEventsTest, ASourceWithAClassIsBoundByTheNamesOfItsEvents) {
  source_->AddPoint(support::NewId());
  ConnectionPoint& point = source_->AddPoint(id_);
  source_->SetClassInfo(library_.AddClass(library_.AddDispinterface(id_, methods_)));
  Connect();
  ASSERT_EQ(point.SinkCount(), 1u);
  EXPECT_EQ(point.Raise(104, {}), S_OK);
  EXPECT_EQ(point.Raise(103, {}), S_OK);
  EXPECT_EQ(point.Raise(101, {}), S_OK);
  EXPECT_THAT(listener_.events, ElementsAre(1, 2, 3));
  EXPECT_EQ(point.Raise(102, {}), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(point.Raise(1, {}), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(point.RaiseByName(L"Log", {}), S_OK);
  EXPECT_EQ(listener_.events.back(), 3);
  connection_.reset();
  EXPECT_EQ(point.SinkCount(), 0u);
}

TEST_F(NamedEventsTest, AnEventInterfaceOfTheClassesLibraryIsFoundThoughTheClassDoesNotListIt) {
  ConnectionPoint& point = source_->AddPoint(id_);
  library_.AddDispinterface(id_, methods_);
  source_->SetClassInfo(library_.AddClass(nullptr));
  Connect();
  EXPECT_EQ(point.Raise(104, {}), S_OK);
  EXPECT_THAT(listener_.events, ElementsAre(1));
}

TEST_F(NamedEventsTest, AnEventInterfaceThatTheClassTakesFromAnotherLibraryIsFound) {
  const support::TemporaryFolder folder;
  support::TypeLibrary another(support::Wide(folder.Path() + "\\events.tlb"));
  ITypeInfo* events = another.AddDispinterface(id_, methods_);
  another.Register();
  ConnectionPoint& point = source_->AddPoint(id_);
  source_->SetClassInfo(library_.AddClass(events));
  Connect();
  EXPECT_EQ(point.Raise(104, {}), S_OK);
  EXPECT_THAT(listener_.events, ElementsAre(1));
}

TEST_F(NamedEventsTest, AnEventInterfaceOfTheObjectsOwnLibraryIsFound) {
  ConnectionPoint& point = source_->AddPoint(id_);
  library_.AddDispinterface(id_, methods_);
  source_->SetTypeInfo(library_.AddDispinterface(support::NewId(), {}));
  Connect();
  EXPECT_EQ(point.Raise(101, {}), S_OK);
  EXPECT_THAT(listener_.events, ElementsAre(3));
}

TEST_F(NamedEventsTest, ASourceThatLacksOneOfTheNamesIsNotBound) {
  ConnectionPoint& point = source_->AddPoint(id_);
  source_->SetClassInfo(library_.AddClass(library_.AddDispinterface(id_, {{L"Log", 1}, {L"Error", 2}})));
  EXPECT_EQ(FailureOf([&] { Connect(); }).Number(), CONNECT_E_NOCONNECTION);
  EXPECT_EQ(point.SinkCount(), 0u);
}

TEST_F(NamedEventsTest, ASourceThatMightCallAroundAutomationIsNotBound) {
  source_->AddPoint(id_);
  source_->SetClassInfo(library_.AddClass(library_.AddDispinterface(id_, methods_, TYPEFLAG_FDUAL)));
  EXPECT_EQ(FailureOf([&] { Connect(); }).Number(), CONNECT_E_NOCONNECTION);
}

TEST_F(NamedEventsTest, TheInterfacesOwnIdGoesBeforeTheNames) {
  ConnectionPoint& named = source_->AddPoint(id_);
  ConnectionPoint& own = source_->AddPoint(kEventsId);
  source_->SetClassInfo(library_.AddClass(library_.AddDispinterface(id_, methods_)));
  Connect();
  EXPECT_EQ(named.SinkCount(), 0u);
  EXPECT_EQ(own.SinkCount(), 1u);
}

}  // namespace
