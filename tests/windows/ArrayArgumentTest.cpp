#include <gmock/gmock.h>

#include <array>

#include "support/ComTest.h"
#include "support/TestRecord.h"

namespace {

using base::ArrayRef;
using base::ElementType;
using base::MakeArray;
using base::Variant;
using platform::Argument;
using support::MemberCall;
using support::TestRecord;
using support::TextOf;

/// The array that stands in a value after a call.
ArrayRef ArrayOf(const Variant& value) {
  const auto* array = std::get_if<ArrayRef>(&value.Get());
  EXPECT_NE(array, nullptr) << "no array";
  return array ? *array : MakeArray(ElementType::kText, 0, {});
}

/// The bounds of an array, as one text for a short comparison.
std::string Bounds(SAFEARRAY* array) {
  LONG lower = 0;
  LONG upper = 0;
  EXPECT_EQ(SafeArrayGetDim(array), 1u);
  EXPECT_EQ(SafeArrayGetLBound(array, 1, &lower), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(array, 1, &upper), S_OK);
  return std::to_string(lower) + " to " + std::to_string(upper);
}

SAFEARRAY* NewArray(VARTYPE kind, LONG lower, ULONG count) {
  SAFEARRAYBOUND bound = {count, lower};
  return SafeArrayCreate(kind, 1, &bound);
}

void PutText(SAFEARRAY* array, LONG index, const wchar_t* text) {
  BSTR bstr = SysAllocString(text);
  EXPECT_EQ(SafeArrayPutElement(array, &index, bstr), S_OK);
  SysFreeString(bstr);
}

void PutShort(SAFEARRAY* array, LONG index, SHORT number) {
  EXPECT_EQ(SafeArrayPutElement(array, &index, &number), S_OK);
}

class ArrayArgumentTest : public support::ComTest {
 protected:
  /// Passes the array by reference to a member that does `body` with it, and gives what stands there
  /// afterwards.
  template <typename Body>
  Variant After(ArrayRef array, VARTYPE expectedKind, Body body) {
    Served().Add(L"Member", [=](const MemberCall& call) {
      EXPECT_EQ(call.Argument(0).vt, VT_BYREF | VT_ARRAY | expectedKind);
      body(*call.Argument(0).pparray);
      return S_OK;
    });
    std::array arguments = {Argument{std::move(array), true}};
    Object().Call("Member", arguments);
    return arguments[0].value;
  }
};

TEST_F(ArrayArgumentTest, EmptyArraysHaveOneDimensionAndNoElement) {
  int calls = 0;
  Served().Add(L"IServer_GetFeatures", [&](const MemberCall& call) {
    ++calls;
    EXPECT_EQ(call.Argument(0).vt, VT_BYREF | VT_ARRAY | VT_BSTR);
    EXPECT_EQ(call.Argument(1).vt, VT_BYREF | VT_ARRAY | VT_I2);
    EXPECT_EQ(Bounds(*call.Argument(0).pparray), "0 to -1");
    EXPECT_EQ(Bounds(*call.Argument(1).pparray), "0 to -1");
    return S_OK;
  });
  std::array arguments = {Argument{MakeArray(ElementType::kText, 0, {}), true},
                          Argument{MakeArray(ElementType::kInt16, 0, {}), true}};
  Object().Call("IServer_GetFeatures", arguments);
  EXPECT_EQ(calls, 1);
  for (const Argument& argument : arguments) {
    EXPECT_EQ(ArrayOf(argument.value)->lowerBound, 0);
    EXPECT_EQ(ArrayOf(argument.value)->UpperBound(), -1);
  }
}

TEST_F(ArrayArgumentTest, AnArrayThatTheServerRedimensionedIsReadWhole) {
  const ArrayRef after = ArrayOf(After(MakeArray(ElementType::kText, 0, {}), VT_BSTR, [](SAFEARRAY*& array) {
    SAFEARRAYBOUND bound = {3, 0};
    ASSERT_EQ(SafeArrayRedim(array, &bound), S_OK);
    PutText(array, 0, L"Reboot");
    PutText(array, 2, L"Caf\x00E9");
  }));
  EXPECT_EQ(after->type, ElementType::kText);
  EXPECT_EQ(after->lowerBound, 0);
  ASSERT_EQ(after->UpperBound(), 2);
  EXPECT_EQ(base::ToText(after->At(0)), "Reboot");
  EXPECT_EQ(base::ToText(after->At(1)), "");
  EXPECT_EQ(base::ToText(after->At(2)), "Caf\xE9");
}

TEST_F(ArrayArgumentTest, AnArrayThatTheServerReplacedKeepsItsOwnLowerBound) {
  const ArrayRef after = ArrayOf(After(MakeArray(ElementType::kInt16, 0, {}), VT_I2, [](SAFEARRAY*& array) {
    SafeArrayDestroy(array);
    array = NewArray(VT_I2, 5, 2);
    PutShort(array, 5, 100);
    PutShort(array, 6, -100);
  }));
  EXPECT_EQ(after->type, ElementType::kInt16);
  EXPECT_EQ(after->lowerBound, 5);
  ASSERT_EQ(after->UpperBound(), 6);
  EXPECT_EQ(base::ToInt16(after->At(5)), 100);
  EXPECT_EQ(base::ToInt16(after->At(6)), -100);
}

TEST_F(ArrayArgumentTest, ALowerBoundMayBeNegative) {
  const ArrayRef after = ArrayOf(After(MakeArray(ElementType::kInt16, 0, {}), VT_I2, [](SAFEARRAY*& array) {
    SafeArrayDestroy(array);
    array = NewArray(VT_I2, -3, 2);
    PutShort(array, -3, 1);
    PutShort(array, -2, 2);
  }));
  EXPECT_EQ(after->lowerBound, -3);
  ASSERT_EQ(after->elements.size(), 2u);
  EXPECT_EQ(base::ToInt16(after->At(-2)), 2);
}

TEST_F(ArrayArgumentTest, AnArrayThatTheServerTookAwayIsEmpty) {
  const ArrayRef after =
      ArrayOf(After(MakeArray(ElementType::kText, 3, {"a"}), VT_BSTR, [](SAFEARRAY*& array) {
        SafeArrayDestroy(array);
        array = nullptr;
      }));
  EXPECT_EQ(after->type, ElementType::kText);
  EXPECT_EQ(after->lowerBound, 0);
  EXPECT_EQ(after->UpperBound(), -1);
}

TEST_F(ArrayArgumentTest, AnArrayOfAnotherElementKindIsReadAsWhatItIs) {
  const ArrayRef after = ArrayOf(After(MakeArray(ElementType::kInt16, 0, {}), VT_I2, [](SAFEARRAY*& array) {
    SafeArrayDestroy(array);
    array = NewArray(VT_VARIANT, 1, 3);
    LONG index = 1;
    VARIANT value = support::LongVariant(70'000);
    SafeArrayPutElement(array, &index, &value);
    index = 2;
    value = support::BstrVariant(L"12");
    SafeArrayPutElement(array, &index, &value);
    VariantClear(&value);
  }));
  ASSERT_EQ(after->elements.size(), 3u);
  EXPECT_EQ(base::ToInt32(after->At(1)), 70'000);
  EXPECT_EQ(base::ToInt16(after->At(2)), 12);
  EXPECT_TRUE(after->At(3).IsEmpty());
}

TEST_F(ArrayArgumentTest, AnArrayWithMoreDimensionsConvertsToNothing) {
  const Variant after = After(MakeArray(ElementType::kInt16, 0, {}), VT_I2, [](SAFEARRAY*& array) {
    SafeArrayDestroy(array);
    SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
    array = SafeArrayCreate(VT_I2, 2, bounds);
  });
  EXPECT_FALSE(after.IsArray());
  EXPECT_EQ(support::FailureOf([&] { base::ToText(after); }).Number(), base::ErrorNumber::kTypeMismatch);
}

TEST_F(ArrayArgumentTest, EveryElementKindArrives) {
  Served().Add(L"Member", [](const MemberCall& call) {
    const auto texts = call.Argument(0).parray;
    const auto shorts = call.Argument(1).parray;
    const auto longs = call.Argument(2).parray;
    const auto booleans = call.Argument(3).parray;
    EXPECT_EQ(call.Argument(0).vt, VT_ARRAY | VT_BSTR);
    EXPECT_EQ(call.Argument(1).vt, VT_ARRAY | VT_I2);
    EXPECT_EQ(call.Argument(2).vt, VT_ARRAY | VT_I4);
    EXPECT_EQ(call.Argument(3).vt, VT_ARRAY | VT_BOOL);
    EXPECT_EQ(Bounds(texts), "1 to 2");
    EXPECT_EQ(TextOf(static_cast<BSTR*>(texts->pvData)[1]), L"\x00E9");
    EXPECT_EQ(static_cast<SHORT*>(shorts->pvData)[0], -5);
    EXPECT_EQ(static_cast<LONG*>(longs->pvData)[0], 70'000);
    EXPECT_EQ(static_cast<VARIANT_BOOL*>(booleans->pvData)[0], VARIANT_TRUE);
    EXPECT_EQ(static_cast<VARIANT_BOOL*>(booleans->pvData)[1], VARIANT_FALSE);
    call.Return(support::LongVariant(1));
    return S_OK;
  });
  std::array arguments = {Argument{MakeArray(ElementType::kText, 1, {"a", "\xE9"})},
                          Argument{MakeArray(ElementType::kInt16, 0, {std::int16_t{-5}})},
                          Argument{MakeArray(ElementType::kInt32, 0, {std::int32_t{70'000}})},
                          Argument{MakeArray(ElementType::kBoolean, 0, {true, false})}};
  EXPECT_EQ(base::ToInt32(Object().Call("Member", arguments)), 1);
}

TEST_F(ArrayArgumentTest, TheEmptyRequestHasTheBoundsTenToTenAndANullObject) {
  const ArrayRef after = ArrayOf(
      After(MakeArray(ElementType::kObject, 10, {base::ObjectRef()}), VT_DISPATCH, [](SAFEARRAY*& array) {
        EXPECT_EQ(Bounds(array), "10 to 10");
        EXPECT_EQ(static_cast<IDispatch**>(array->pvData)[0], nullptr);
      }));
  EXPECT_EQ(after->lowerBound, 10);
  ASSERT_EQ(after->UpperBound(), 10);
  EXPECT_TRUE(after->At(10).IsObject());
  EXPECT_EQ(base::ToObject(after->At(10)), nullptr);
}

/// One property of an object, by name, as a plug-in reads it.
VARIANT Read(IDispatch* object, const wchar_t* name) {
  std::wstring copy = name;
  LPOLESTR names[] = {copy.data()};
  DISPID id = DISPID_UNKNOWN;
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  VARIANT value;
  VariantInit(&value);
  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  EXPECT_EQ(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr,
                           nullptr),
            S_OK);
  return value;
}

TEST_F(ArrayArgumentTest, TenThousandRecordsArriveAndComeBackAsThemselves) {
  constexpr std::int32_t kCount = 10'000;
  std::vector<Variant> records;
  for (std::int32_t i = 0; i < kCount; ++i) {
    auto record = std::make_shared<TestRecord>();
    record->lBeginPort = i;
    records.emplace_back(record);
  }
  const int alive = TestRecord::alive;
  const ArrayRef sent = MakeArray(ElementType::kObject, 0, std::move(records));
  const ArrayRef after = ArrayOf(After(sent, VT_DISPATCH, [](SAFEARRAY*& array) {
    EXPECT_EQ(Bounds(array), "0 to 9999");
    LONG sum = 0;
    for (LONG i = 0; i < kCount; ++i)
      sum += Read(static_cast<IDispatch**>(array->pvData)[i], L"lBeginPort").lVal;
    EXPECT_EQ(sum, kCount * (kCount - 1) / 2);
  }));
  ASSERT_EQ(after->elements.size(), sent->elements.size());
  for (std::int32_t i = 0; i < kCount; ++i) {
    ASSERT_EQ(base::ToObject(after->At(i)), base::ToObject(sent->At(i))) << i;
  }
  EXPECT_EQ(TestRecord::alive, alive);
}

TEST_F(ArrayArgumentTest, WhatThePlugInKeepsOfTheRecordsIsAllThatLives) {
  IDispatch* kept = nullptr;
  {
    std::vector<Variant> records;
    for (std::int32_t i = 0; i < 10; ++i) records.emplace_back(std::make_shared<TestRecord>());
    After(MakeArray(ElementType::kObject, 0, std::move(records)), VT_DISPATCH, [&kept](SAFEARRAY*& array) {
      kept = static_cast<IDispatch**>(array->pvData)[3];
      kept->AddRef();
    });
  }
  EXPECT_EQ(TestRecord::alive, 1);
  EXPECT_EQ(kept->Release(), 0u);
  EXPECT_EQ(TestRecord::alive, 0);
}

TEST_F(ArrayArgumentTest, AReturnedArrayIsRead) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_ARRAY | VT_BSTR;
  value.parray = NewArray(VT_BSTR, 1, 1);
  PutText(value.parray, 1, L"only");
  Served().AddResult(L"Member", value);
  const ArrayRef array = ArrayOf(Object().Get("Member"));
  ASSERT_EQ(array->UpperBound(), 1);
  EXPECT_EQ(base::ToText(array->At(1)), "only");
  VariantClear(&value);
}

TEST_F(ArrayArgumentTest, AnElementThatCanNotBeConvertedFailsBeforeTheCall) {
  Served().Add(L"Member", [](const MemberCall&) {
    ADD_FAILURE() << "called";
    return S_OK;
  });
  std::array arguments = {Argument{MakeArray(ElementType::kInt16, 0, {std::int16_t{1}, "two"}), true}};
  EXPECT_EQ(support::FailureOf([&] { Object().Call("Member", arguments); }).Number(),
            base::ErrorNumber::kTypeMismatch);
}

}  // namespace
