#include "platform/LateBoundObject.h"

#include <gmock/gmock.h>

#include <array>

#include "support/ComTest.h"

namespace {

using base::Variant;
using platform::Argument;
using support::BoolVariant;
using support::BstrVariant;
using support::DispatchVariant;
using support::FailureOf;
using support::LongVariant;
using support::MemberCall;
using support::ShortVariant;
using support::TextOf;
using testing::HasSubstr;

class LateBoundObjectTest : public support::ComTest {
 protected:
  /// What a member gives that answers with the VARIANT.
  Variant ResultOf(const VARIANT& value) {
    Served().AddResult(L"Member", value);
    return Object().Get("Member");
  }
};

TEST_F(LateBoundObjectTest, EveryCallLooksTheNameUpInTheUsersLocale) {
  Served().AddResult(L"IServer_Version", ShortVariant(1));
  EXPECT_EQ(base::ToInt16(Object().Get("IServer_Version")), 1);
  Served().ShiftIds();
  EXPECT_EQ(base::ToInt16(Object().Get("IServer_Version")), 1);
  EXPECT_EQ(base::ToInt16(Object().Call("IServer_Version", {})), 1);
  EXPECT_EQ(Served().Lookups(), 3);
  EXPECT_EQ(Served().LookupLocale(), static_cast<LCID>(LOCALE_USER_DEFAULT));
}

TEST_F(LateBoundObjectTest, AReadAndACallAreTheSameOperation) {
  std::vector<WORD> flags;
  Served().Add(L"Member", [&](const MemberCall& call) {
    flags.push_back(call.flags);
    EXPECT_EQ(call.Count(), 0u);
    EXPECT_EQ(call.locale, static_cast<LCID>(LOCALE_USER_DEFAULT));
    return S_OK;
  });
  Object().Get("Member");
  Object().Call("Member", {});
  EXPECT_EQ(flags, std::vector<WORD>(2, DISPATCH_METHOD | DISPATCH_PROPERTYGET));
}

TEST_F(LateBoundObjectTest, APropertyWriteNamesItsArgument) {
  int calls = 0;
  Served().Add(L"IServer_DMZ", [&](const MemberCall& call) {
    ++calls;
    EXPECT_EQ(call.flags, DISPATCH_PROPERTYPUT);
    EXPECT_EQ(call.Count(), 1u);
    EXPECT_EQ(call.parameters->cNamedArgs, 1u);
    EXPECT_EQ(call.parameters->rgdispidNamedArgs[0], DISPID_PROPERTYPUT);
    EXPECT_EQ(call.Argument(0).vt, VT_I4);
    EXPECT_EQ(call.Argument(0).lVal, 20);
    return S_OK;
  });
  Object().Put("IServer_DMZ", std::int32_t{20});
  EXPECT_EQ(calls, 1);
}

TEST_F(LateBoundObjectTest, ArgumentsByValueHaveTheirKindsAndTheReverseOrder) {
  Served().Add(L"Member", [](const MemberCall& call) {
    const VARIANT* raw = call.parameters->rgvarg;
    EXPECT_EQ(call.Count(), 4u);
    EXPECT_EQ(call.parameters->cNamedArgs, 0u);
    EXPECT_EQ(raw[3].vt, VT_BSTR);
    EXPECT_EQ(TextOf(raw[3].bstrVal), L"192.168.1.20");
    EXPECT_EQ(raw[2].vt, VT_I2);
    EXPECT_EQ(raw[2].iVal, -7);
    EXPECT_EQ(raw[1].vt, VT_I4);
    EXPECT_EQ(raw[1].lVal, 70'000);
    EXPECT_EQ(raw[0].vt, VT_BOOL);
    EXPECT_EQ(raw[0].boolVal, VARIANT_TRUE);
    return S_OK;
  });
  std::array arguments = {Argument{"192.168.1.20"}, Argument{std::int16_t{-7}},
                          Argument{std::int32_t{70'000}}, Argument{true}};
  Object().Call("Member", arguments);
  EXPECT_EQ(Served().Lookups(), 1);
}

TEST_F(LateBoundObjectTest, ArgumentsByReferenceHaveTheirKindsAndComeBackChanged) {
  Served().Add(L"Member", [](const MemberCall& call) {
    EXPECT_EQ(call.Argument(0).vt, VT_BYREF | VT_BSTR);
    EXPECT_EQ(TextOf(*call.Argument(0).pbstrVal), L"before");
    SysReAllocString(call.Argument(0).pbstrVal, L"after caf\x00E9");
    EXPECT_EQ(call.Argument(1).vt, VT_BYREF | VT_I2);
    EXPECT_EQ(*call.Argument(1).piVal, 1);
    *call.Argument(1).piVal = -32768;
    EXPECT_EQ(call.Argument(2).vt, VT_BYREF | VT_I4);
    EXPECT_EQ(*call.Argument(2).plVal, 2);
    *call.Argument(2).plVal = -2147483647;
    EXPECT_EQ(call.Argument(3).vt, VT_BYREF | VT_BOOL);
    EXPECT_EQ(*call.Argument(3).pboolVal, VARIANT_FALSE);
    *call.Argument(3).pboolVal = VARIANT_TRUE;
    return S_OK;
  });
  std::array arguments = {Argument{"before", true}, Argument{std::int16_t{1}, true},
                          Argument{std::int32_t{2}, true}, Argument{false, true}};
  Object().Call("Member", arguments);
  EXPECT_EQ(arguments[0].value.Get(), Variant("after caf\xE9").Get());
  EXPECT_EQ(arguments[1].value.Get(), Variant(std::int16_t{-32768}).Get());
  EXPECT_EQ(arguments[2].value.Get(), Variant(std::int32_t{-2147483647}).Get());
  EXPECT_EQ(arguments[3].value.Get(), Variant(true).Get());
}

TEST_F(LateBoundObjectTest, AnArgumentByReferenceThatIsLeftAloneComesBackAsItWas) {
  Served().Add(L"Member", [](const MemberCall&) { return S_OK; });
  std::array arguments = {Argument{"caf\xE9", true}, Argument{std::int16_t{7}, true}};
  Object().Call("Member", arguments);
  EXPECT_EQ(arguments[0].value.Get(), Variant("caf\xE9").Get());
  EXPECT_EQ(arguments[1].value.Get(), Variant(std::int16_t{7}).Get());
}

TEST_F(LateBoundObjectTest, ATextByReferenceThatBecomesNullIsTheEmptyText) {
  Served().Add(L"Member", [](const MemberCall& call) {
    SysFreeString(*call.Argument(0).pbstrVal);
    *call.Argument(0).pbstrVal = nullptr;
    return S_OK;
  });
  std::array arguments = {Argument{"text", true}};
  Object().Call("Member", arguments);
  EXPECT_EQ(arguments[0].value.Get(), Variant("").Get());
}

TEST_F(LateBoundObjectTest, ACallMayChangeTheKindOfAnEmptyArgumentByReference) {
  Served().Add(L"Member", [](const MemberCall& call) {
    EXPECT_EQ(call.Argument(0).vt, VT_BYREF | VT_VARIANT);
    *call.Argument(0).pvarVal = BstrVariant(L"filled");
    return S_OK;
  });
  std::array arguments = {Argument{{}, true}};
  Object().Call("Member", arguments);
  EXPECT_EQ(arguments[0].value.Get(), Variant("filled").Get());
}

TEST_F(LateBoundObjectTest, TextIsTheMachinesCodePageOnOneSideAndUtf16OnTheOther) {
  Served().Add(L"Echo", [](const MemberCall& call) {
    EXPECT_EQ(TextOf(call.Argument(0).bstrVal), L"\x00E9\x20AC\x00FF");
    call.Return(BstrVariant(L"\x00FC\x2122\x4E2D"));
    return S_OK;
  });
  std::array arguments = {Argument{"\xE9\x80\xFF"}};
  EXPECT_EQ(base::ToText(Object().Call("Echo", arguments)), "\xFC\x99?")
      << "the last one has no 8-bit character";
}

TEST_F(LateBoundObjectTest, TextKeepsEmbeddedNulsAndAnyLength) {
  Served().Add(L"Echo", [](const MemberCall& call) {
    call.Return(BstrVariant(TextOf(call.Argument(0).bstrVal)));
    return S_OK;
  });
  std::string huge;
  for (int i = 0; i < 3'000'000; ++i) huge += static_cast<char>(i % 251 == 0 ? 0 : 'a' + i % 26);
  for (const std::string& text : {std::string(), std::string("a\0b\0", 4), huge}) {
    std::array arguments = {Argument{text}};
    EXPECT_TRUE(base::ToText(Object().Call("Echo", arguments)) == text) << text.size();
  }
}

TEST_F(LateBoundObjectTest, ANullTextIsTheEmptyText) {
  VARIANT value = BstrVariant(L"");
  SysFreeString(value.bstrVal);
  value.bstrVal = nullptr;
  EXPECT_EQ(ResultOf(value).Get(), Variant("").Get());
}

TEST_F(LateBoundObjectTest, ANumberWhereABooleanIsWantedIsTrueWhenItIsNotZero) {
  Served().AddResult(L"One", LongVariant(1));
  Served().AddResult(L"Zero", ShortVariant(0));
  Served().AddResult(L"True", BoolVariant(true));
  EXPECT_TRUE(base::ToBoolean(Object().Get("One")));
  EXPECT_FALSE(base::ToBoolean(Object().Get("Zero")));
  EXPECT_EQ(Object().Get("True").Get(), Variant(true).Get());
}

TEST_F(LateBoundObjectTest, AMemberThatReturnsNothingGivesAnEmptyValue) {
  Served().Add(L"Member", [](const MemberCall&) { return S_OK; });
  EXPECT_TRUE(Object().Get("Member").IsEmpty());
}

TEST_F(LateBoundObjectTest, AReturnedObjectCanBeUsed) {
  auto* inner = new support::AutomationObject;
  inner->AddResult(L"Name", LongVariant(42));
  Served().Add(L"Inner", [&](const MemberCall& call) {
    inner->AddRef();
    call.Return(DispatchVariant(inner));
    return S_OK;
  });
  const auto object =
      std::dynamic_pointer_cast<platform::LateBoundObject>(base::ToObject(Object().Get("Inner")));
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(base::ToInt32(object->Get("Name")), 42);
  inner->Release();
  EXPECT_EQ(base::ToInt32(object->Get("Name")), 42) << "the caller holds it";
}

TEST_F(LateBoundObjectTest, AReturnedObjectOfAnUnknownKindIsAskedForItsMembers) {
  Served().AddResult(L"Name", LongVariant(42));
  Served().Add(L"Inner", [&](const MemberCall& call) {
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_UNKNOWN;
    value.punkVal = &Served();
    Served().AddRef();
    call.Return(value);
    return S_OK;
  });
  const auto object =
      std::dynamic_pointer_cast<platform::LateBoundObject>(base::ToObject(Object().Get("Inner")));
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(base::ToInt32(object->Get("Name")), 42);
}

TEST_F(LateBoundObjectTest, AReturnedNullObjectIsNoObject) {
  Served().AddResult(L"Dispatch", DispatchVariant(nullptr));
  VARIANT unknown;
  VariantInit(&unknown);
  unknown.vt = VT_UNKNOWN;
  unknown.punkVal = nullptr;
  Served().AddResult(L"Unknown", unknown);
  for (const char* member : {"Dispatch", "Unknown"}) {
    const Variant value = Object().Get(member);
    EXPECT_TRUE(value.IsObject()) << member;
    EXPECT_EQ(base::ToObject(value), nullptr) << member;
  }
}

TEST_F(LateBoundObjectTest, AnObjectCanBePassedBackToItsOwner) {
  Served().Add(L"Self", [&](const MemberCall& call) {
    Served().AddRef();
    call.Return(DispatchVariant(&Served()));
    return S_OK;
  });
  Served().Add(L"Take", [&](const MemberCall& call) {
    EXPECT_EQ(call.Argument(0).vt, VT_DISPATCH);
    EXPECT_EQ(call.Argument(0).pdispVal, &Served());
    EXPECT_EQ(call.Argument(1).vt, VT_DISPATCH);
    EXPECT_EQ(call.Argument(1).pdispVal, nullptr);
    return S_OK;
  });
  std::array arguments = {Argument{Object().Get("Self")}, Argument{base::ObjectRef()}};
  Object().Call("Take", arguments);
  EXPECT_EQ(Served().Lookups(), 2);
}

TEST_F(LateBoundObjectTest, AnObjectThatIsNeitherARecordNorLateBoundCanNotBePassed) {
  Served().Add(L"Take", [](const MemberCall&) { return S_OK; });
  std::array arguments = {Argument{std::make_shared<base::Object>()}};
  EXPECT_EQ(FailureOf([&] { Object().Call("Take", arguments); }).Number(), base::ErrorNumber::kTypeMismatch);
}

TEST_F(LateBoundObjectTest, AMemberThatTheObjectLacksIsNamed) {
  const base::Error error = FailureOf([&] { Object().Get("IServer_Version"); });
  EXPECT_EQ(error.Number(), DISP_E_UNKNOWNNAME);
  EXPECT_THAT(error.Text(), HasSubstr("IServer_Version"));
  EXPECT_EQ(FailureOf([&] { Object().Put("IServer_DMZ", std::int32_t{0}); }).Number(), DISP_E_UNKNOWNNAME);
}

TEST_F(LateBoundObjectTest, ALookupThatFailsForAnotherReasonKeepsItsNumber) {
  Served().RefuseLookups(RPC_E_DISCONNECTED);
  const base::Error error = FailureOf([&] { Object().Get("IServer_Version"); });
  EXPECT_EQ(error.Number(), RPC_E_DISCONNECTED);
  EXPECT_THAT(error.Text(), HasSubstr("IServer_Version"));
}

TEST_F(LateBoundObjectTest, AnExceptionArrivesWithItsCodeAndDescription) {
  Served().Add(L"Member", [](const MemberCall& call) {
    call.exception->scode = E_ACCESSDENIED;
    call.exception->bstrSource = SysAllocString(L"Test");
    call.exception->bstrDescription = SysAllocString(L"The caf\x00E9 router is busy");
    call.exception->bstrHelpFile = SysAllocString(L"help.hlp");
    return DISP_E_EXCEPTION;
  });
  const base::Error error = FailureOf([&] { Object().Get("Member"); });
  EXPECT_EQ(error.Number(), E_ACCESSDENIED);
  EXPECT_EQ(error.Text(), "The caf\xE9 router is busy");
}

TEST_F(LateBoundObjectTest, AnExceptionWithANumberOfItsOwnKeepsIt) {
  Served().Add(L"Member", [](const MemberCall& call) {
    call.exception->wCode = 1234;
    call.exception->bstrDescription = SysAllocString(L"own");
    return DISP_E_EXCEPTION;
  });
  Served().Add(L"Silent", [](const MemberCall& call) {
    call.exception->wCode = 1234;
    return DISP_E_EXCEPTION;
  });
  EXPECT_EQ(FailureOf([&] { Object().Get("Member"); }).Number(), 1234);
  const base::Error silent = FailureOf([&] { Object().Get("Silent"); });
  EXPECT_EQ(silent.Number(), 1234);
  EXPECT_EQ(silent.Text(), "Error 1234");
}

TEST_F(LateBoundObjectTest, AnExceptionWithoutDescriptionHasTheSystemsText) {
  Served().Add(L"Member", [](const MemberCall& call) {
    call.exception->scode = E_OUTOFMEMORY;
    return DISP_E_EXCEPTION;
  });
  const base::Error error = FailureOf([&] { Object().Get("Member"); });
  EXPECT_EQ(error.Number(), E_OUTOFMEMORY);
  EXPECT_THAT(error.Text(), HasSubstr("emory"));
}

TEST_F(LateBoundObjectTest, AnExceptionOfWhichTheSystemKnowsNothingHasItsCodeAsText) {
  Served().Add(L"Member", [](const MemberCall& call) {
    call.exception->scode = static_cast<SCODE>(0x800A000D);
    return DISP_E_EXCEPTION;
  });
  const base::Error error = FailureOf([&] { Object().Get("Member"); });
  EXPECT_EQ(error.Number(), static_cast<std::int32_t>(0x800A000D));
  EXPECT_EQ(error.Text(), "Error 0x800A000D");
}

HRESULT STDAPICALLTYPE FillInLater(EXCEPINFO* info) {
  info->scode = E_ABORT;
  info->bstrDescription = SysAllocString(L"filled in later");
  return S_OK;
}

TEST_F(LateBoundObjectTest, AnExceptionIsFilledInLaterWhenItAsksForThat) {
  Served().Add(L"Member", [](const MemberCall& call) {
    call.exception->pfnDeferredFillIn = &FillInLater;
    return DISP_E_EXCEPTION;
  });
  const base::Error error = FailureOf([&] { Object().Get("Member"); });
  EXPECT_EQ(error.Number(), E_ABORT);
  EXPECT_EQ(error.Text(), "filled in later");
}

TEST_F(LateBoundObjectTest, AnEmptyExceptionIsStillAFailure) {
  Served().Add(L"Member", [](const MemberCall&) { return DISP_E_EXCEPTION; });
  const base::Error error = FailureOf([&] { Object().Get("Member"); });
  EXPECT_EQ(error.Number(), DISP_E_EXCEPTION);
  EXPECT_NE(error.Text(), "");
}

TEST_F(LateBoundObjectTest, AnyOtherFailureHasItsNumberAndNamesTheMember) {
  Served().Add(L"Member", [](const MemberCall&) { return DISP_E_BADPARAMCOUNT; });
  const base::Error error = FailureOf([&] { Object().Put("Member", "x"); });
  EXPECT_EQ(error.Number(), DISP_E_BADPARAMCOUNT);
  EXPECT_THAT(error.Text(), HasSubstr("\"Member\""));
}

TEST_F(LateBoundObjectTest, AFailedCallLeavesTheArgumentsByReferenceAlone) {
  Served().Add(L"Member", [](const MemberCall& call) {
    SysReAllocString(call.Argument(0).pbstrVal, L"after");
    return E_FAIL;
  });
  std::array arguments = {Argument{"before", true}};
  FailureOf([&] { Object().Call("Member", arguments); });
  EXPECT_EQ(arguments[0].value.Get(), Variant("before").Get());
}

TEST_F(LateBoundObjectTest, AnObjectThatIsReleasedDuringItsCallLivesToTheEndOfIt) {
  base::ObjectRef held;
  auto* inner = new support::AutomationObject;
  inner->Add(L"Member", [&](const MemberCall& call) {
    const int alive = support::CountedObject::Alive();
    held.reset();
    EXPECT_EQ(support::CountedObject::Alive(), alive);
    call.Return(LongVariant(5));
    return S_OK;
  });
  Served().Add(L"Inner", [&](const MemberCall& call) {
    call.Return(DispatchVariant(inner));
    return S_OK;
  });
  held = base::ToObject(Object().Get("Inner"));
  EXPECT_EQ(base::ToInt32(dynamic_cast<platform::LateBoundObject&>(*held).Get("Member")), 5);
}

}  // namespace
