#include <gmock/gmock.h>

#include <array>
#include <limits>

#include "support/ComTest.h"
#include "support/TestRecord.h"

namespace {

using platform::Argument;
using support::BoolVariant;
using support::BstrVariant;
using support::LongVariant;
using support::MemberCall;
using support::ReferenceTo;
using support::ShortVariant;
using support::TestRecord;
using support::TextOf;

/// The answer of one call of IDispatch::Invoke, and what it left.
struct Answer {
  HRESULT code = E_UNEXPECTED;
  VARIANT result{};
  EXCEPINFO exception{};
};

/// A record as it arrives at a plug-in: the object's member keeps what it was given.
class RecordTest : public support::ComTest {
 protected:
  RecordTest() {
    Served().Add(L"Take", [this](const MemberCall& call) {
      EXPECT_EQ(call.Argument(0).vt, VT_DISPATCH);
      taken_ = call.Argument(0).pdispVal;
      taken_->AddRef();
      return S_OK;
    });
  }
  void SetUp() override {
    std::array arguments = {Argument{record_}};
    Object().Call("Take", arguments);
    ASSERT_NE(taken_, nullptr);
  }
  void TearDown() override {
    if (taken_) taken_->Release();
    ComTest::TearDown();
  }

  DISPID IdOf(const wchar_t* name, HRESULT expected = S_OK) {
    std::wstring copy = name;
    LPOLESTR names[] = {copy.data()};
    DISPID id = 4711;
    EXPECT_EQ(taken_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), expected);
    return id;
  }

  Answer Get(DISPID id, WORD flags = DISPATCH_PROPERTYGET, UINT arguments = 0) {
    Answer answer;
    VARIANT argument = LongVariant(0);
    DISPPARAMS parameters = {&argument, nullptr, arguments, 0};
    answer.code = taken_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, &answer.result,
                                 &answer.exception, nullptr);
    return answer;
  }

  Answer Put(DISPID id, VARIANT value, WORD flags = DISPATCH_PROPERTYPUT) {
    Answer answer;
    DISPID name = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {&value, &name, 1, 1};
    answer.code = taken_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, nullptr,
                                 &answer.exception, nullptr);
    return answer;
  }

  std::shared_ptr<TestRecord> record_ = std::make_shared<TestRecord>();
  IDispatch* taken_ = nullptr;
};

TEST_F(RecordTest, TheIdentifiersCountFromOneInTheOrderOfTheNames) {
  EXPECT_EQ(IdOf(L"sProfileName"), 1);
  EXPECT_EQ(IdOf(L"lBeginPort"), 2);
  EXPECT_EQ(IdOf(L"iForwardIPAddress"), 3);
  EXPECT_EQ(IdOf(L"bUDP"), 4);
}

TEST_F(RecordTest, NamesAreFoundWithoutRegardToCase) {
  EXPECT_EQ(IdOf(L"BUDP"), 4);
  EXPECT_EQ(IdOf(L"sprofilename"), 1);
}

TEST_F(RecordTest, AnUnknownNameIsToldAsSuch) {
  EXPECT_EQ(IdOf(L"bTCP", DISP_E_UNKNOWNNAME), DISPID_UNKNOWN);
  EXPECT_EQ(IdOf(L"bUDPx", DISP_E_UNKNOWNNAME), DISPID_UNKNOWN);
  EXPECT_EQ(IdOf(L"bUD", DISP_E_UNKNOWNNAME), DISPID_UNKNOWN);
  EXPECT_EQ(IdOf(L"", DISP_E_UNKNOWNNAME), DISPID_UNKNOWN);
}

TEST_F(RecordTest, APropertyHasNoNamedArguments) {
  std::wstring first = L"bUDP";
  std::wstring second = L"index";
  LPOLESTR names[] = {first.data(), second.data()};
  DISPID ids[] = {4711, 4711};
  EXPECT_EQ(taken_->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], 4);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

TEST_F(RecordTest, EveryKindOfPropertyCanBeRead) {
  record_->sProfileName = "Caf\xE9";
  record_->lBeginPort = 70'000;
  record_->iForwardIPAddress = -1;
  record_->bUDP = true;
  const Answer text = Get(1);
  EXPECT_EQ(text.code, S_OK);
  EXPECT_EQ(text.result.vt, VT_BSTR);
  EXPECT_EQ(TextOf(text.result.bstrVal), L"Caf\x00E9");
  EXPECT_EQ(Get(2).result.vt, VT_I4);
  EXPECT_EQ(Get(2).result.lVal, 70'000);
  EXPECT_EQ(Get(3).result.vt, VT_I2);
  EXPECT_EQ(Get(3).result.iVal, -1);
  EXPECT_EQ(Get(4).result.vt, VT_BOOL);
  EXPECT_EQ(Get(4).result.boolVal, VARIANT_TRUE);
}

TEST_F(RecordTest, AReadMayLookLikeACallWithResult) {
  record_->lBeginPort = 80;
  EXPECT_EQ(Get(2, DISPATCH_METHOD | DISPATCH_PROPERTYGET).result.lVal, 80);
}

TEST_F(RecordTest, APropertyIsNoMethod) {
  EXPECT_EQ(Get(2, DISPATCH_METHOD).code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(RecordTest, AReadTakesNoArgument) {
  EXPECT_EQ(Get(2, DISPATCH_PROPERTYGET, 1).code, DISP_E_BADPARAMCOUNT);
}

TEST_F(RecordTest, AnUnknownIdentifierIsNoMember) {
  for (const DISPID id :
       {0L, -1L, 5L, std::numeric_limits<DISPID>::max(), std::numeric_limits<DISPID>::min()}) {
    EXPECT_EQ(Get(id).code, DISP_E_MEMBERNOTFOUND) << id;
    EXPECT_EQ(Put(id, LongVariant(1)).code, DISP_E_MEMBERNOTFOUND) << id;
  }
}

TEST_F(RecordTest, EveryKindOfPropertyCanBeWritten) {
  EXPECT_EQ(Put(1, BstrVariant(L"\x00E9t\x00E9")).code, S_OK);
  EXPECT_EQ(Put(2, LongVariant(65'535)).code, S_OK);
  EXPECT_EQ(Put(3, ShortVariant(20)).code, S_OK);
  EXPECT_EQ(Put(4, BoolVariant(true)).code, S_OK);
  EXPECT_EQ(record_->sProfileName, "\xE9t\xE9");
  EXPECT_EQ(record_->lBeginPort, 65'535);
  EXPECT_EQ(record_->iForwardIPAddress, 20);
  EXPECT_TRUE(record_->bUDP);
}

TEST_F(RecordTest, AWrittenValueIsConverted) {
  EXPECT_EQ(Put(1, LongVariant(12)).code, S_OK);
  EXPECT_EQ(Put(2, BstrVariant(L" 8080 ")).code, S_OK);
  EXPECT_EQ(Put(3, LongVariant(20)).code, S_OK);
  EXPECT_EQ(Put(4, ShortVariant(3)).code, S_OK);
  EXPECT_EQ(record_->sProfileName, "12");
  EXPECT_EQ(record_->lBeginPort, 8080);
  EXPECT_EQ(record_->iForwardIPAddress, 20);
  EXPECT_TRUE(record_->bUDP);
}

TEST_F(RecordTest, AValueByReferenceIsTaken) {
  LONG port = 21;
  VARIANT wrapped = ReferenceTo(VT_I4, &port);
  EXPECT_EQ(Put(2, ReferenceTo(VT_VARIANT, &wrapped)).code, S_OK);
  EXPECT_EQ(record_->lBeginPort, 21);
}

TEST_F(RecordTest, AValueThatCanNotBeConvertedRaisesAnExceptionAndChangesNothing) {
  record_->lBeginPort = 80;
  const Answer answer = Put(2, BstrVariant(L"eighty"));
  EXPECT_EQ(answer.code, DISP_E_EXCEPTION);
  EXPECT_EQ(answer.exception.wCode, 0);
  EXPECT_EQ(answer.exception.scode, static_cast<SCODE>(0x800A000D))
      << "type mismatch among the numbers of automation";
  EXPECT_EQ(TextOf(answer.exception.bstrSource), L"Harbourline");
  EXPECT_THAT(TextOf(answer.exception.bstrDescription), testing::HasSubstr(L"eighty"));
  EXPECT_EQ(record_->lBeginPort, 80);
  EXPECT_EQ(Put(3, LongVariant(70'000)).exception.scode, static_cast<SCODE>(0x800A0006)) << "overflow";
}

TEST_F(RecordTest, AFailureNeedsNobodyWhoWantsToKnow) {
  DISPID name = DISPID_PROPERTYPUT;
  VARIANT value = BstrVariant(L"eighty");
  DISPPARAMS parameters = {&value, &name, 1, 1};
  EXPECT_EQ(taken_->Invoke(2, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters, nullptr,
                           nullptr, nullptr),
            DISP_E_EXCEPTION);
}

TEST_F(RecordTest, AnswersTheInterfacesOfAutomationOnly) {
  void* object = &object;
  EXPECT_EQ(taken_->QueryInterface(IID_IPersist, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  for (const IID& id : {IID_IUnknown, IID_IDispatch}) {
    ASSERT_EQ(taken_->QueryInterface(id, &object), S_OK);
    EXPECT_EQ(object, taken_);
    taken_->Release();
  }
  UINT types = 7;
  EXPECT_EQ(taken_->GetTypeInfoCount(&types), S_OK);
  EXPECT_EQ(types, 0u);
}

TEST_F(RecordTest, ARecordLivesAsLongAsThePlugInHoldsIt) {
  const int alive = TestRecord::alive;
  record_.reset();
  EXPECT_EQ(TestRecord::alive, alive);
  EXPECT_EQ(Put(2, LongVariant(443)).code, S_OK);
  EXPECT_EQ(Get(2).result.lVal, 443);
  EXPECT_EQ(taken_->Release(), 0u);
  taken_ = nullptr;
  EXPECT_EQ(TestRecord::alive, alive - 1);
}

TEST_F(RecordTest, ARecordThatComesBackIsTheSameRecord) {
  Served().Add(L"Give", [this](const MemberCall& call) {
    taken_->AddRef();
    call.Return(support::DispatchVariant(taken_));
    return S_OK;
  });
  EXPECT_EQ(base::ToObject(Object().Get("Give")), record_);
}

}  // namespace
