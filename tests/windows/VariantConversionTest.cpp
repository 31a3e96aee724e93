#include "platform/win32/VariantConversion.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/Automation.h"
#include "support/Failure.h"

namespace {

using base::Variant;
using platform::win32::AssignByReference;
using platform::win32::FromVariant;
using support::FailureOf;
using support::ReferenceTo;

VARIANT OfKind(VARTYPE kind) {
  VARIANT value;
  VariantInit(&value);
  value.vt = kind;
  return value;
}

/// A number as automation converts it to the kind.
VARIANT Number(VARTYPE kind, const wchar_t* text) {
  VARIANT value = support::BstrVariant(text);
  EXPECT_EQ(VariantChangeTypeEx(&value, &value, MAKELCID(LANG_INVARIANT, SORT_DEFAULT), 0, kind), S_OK)
      << kind;
  return value;
}

Variant FromNumber(VARTYPE kind, const wchar_t* text) {
  return FromVariant(Number(kind, text));
}

const Variant kShort(std::int16_t{12});
const Variant kLong(std::int32_t{12});
const Variant kDouble(12.0);

TEST(VariantConversionTest, EveryKindOfNumberIsReadAsTheSmallestThatHoldsIt) {
  EXPECT_EQ(FromNumber(VT_I1, L"12").Get(), kShort.Get());
  EXPECT_EQ(FromNumber(VT_UI1, L"12").Get(), kShort.Get());
  EXPECT_EQ(FromNumber(VT_I2, L"12").Get(), kShort.Get());
  EXPECT_EQ(FromNumber(VT_UI2, L"12").Get(), kLong.Get());
  EXPECT_EQ(FromNumber(VT_I4, L"12").Get(), kLong.Get());
  EXPECT_EQ(FromNumber(VT_INT, L"12").Get(), kLong.Get());
  EXPECT_EQ(FromNumber(VT_UI4, L"12").Get(), kLong.Get());
  EXPECT_EQ(FromNumber(VT_UINT, L"12").Get(), kLong.Get());
  EXPECT_EQ(FromNumber(VT_I8, L"12").Get(), kLong.Get());
  EXPECT_EQ(FromNumber(VT_UI8, L"12").Get(), kLong.Get());
  EXPECT_EQ(FromNumber(VT_R4, L"12").Get(), kDouble.Get());
  EXPECT_EQ(FromNumber(VT_R8, L"12").Get(), kDouble.Get());
  EXPECT_EQ(FromNumber(VT_CY, L"12").Get(), kDouble.Get());
  EXPECT_EQ(FromNumber(VT_DECIMAL, L"12").Get(), kDouble.Get());
}

TEST(VariantConversionTest, NumbersAtTheEdgesKeepTheirValue) {
  EXPECT_EQ(FromNumber(VT_I1, L"-128").Get(), Variant(std::int16_t{-128}).Get());
  EXPECT_EQ(FromNumber(VT_UI1, L"255").Get(), Variant(std::int16_t{255}).Get());
  EXPECT_EQ(FromNumber(VT_UI2, L"65535").Get(), Variant(std::int32_t{65535}).Get());
  EXPECT_EQ(FromNumber(VT_UI4, L"4294967295").Get(), Variant(4294967295.0).Get());
  EXPECT_EQ(FromNumber(VT_I8, L"-2147483648").Get(), Variant(std::numeric_limits<std::int32_t>::min()).Get());
  EXPECT_EQ(FromNumber(VT_I8, L"-2147483649").Get(), Variant(-2147483649.0).Get());
  EXPECT_EQ(FromNumber(VT_UI8, L"18446744073709551615").Get(), Variant(18446744073709551615.0).Get());
  EXPECT_EQ(FromNumber(VT_CY, L"-0.5").Get(), Variant(-0.5).Get());
  EXPECT_EQ(FromNumber(VT_DECIMAL, L"1234567890.25").Get(), Variant(1234567890.25).Get());
}

TEST(VariantConversionTest, AFloatIsReadAsTheNumberThatItShows) {
  VARIANT value = OfKind(VT_R4);
  value.fltVal = 0.1f;
  EXPECT_EQ(base::ToText(FromVariant(value)), "0.1");
  value.fltVal = -1.5e30f;
  EXPECT_EQ(base::ToText(FromVariant(value)), "-1.5e+30");
  value.fltVal = std::numeric_limits<float>::infinity();
  EXPECT_EQ(FromVariant(value).Get(), Variant(std::numeric_limits<double>::infinity()).Get());
}

TEST(VariantConversionTest, ADateIsItsText) {
  const Variant value = FromNumber(VT_DATE, L"2024-05-17");
  ASSERT_TRUE(value.IsText());
  EXPECT_THAT(base::ToText(value), testing::HasSubstr("2024"));
}

TEST(VariantConversionTest, AnArgumentThatWasLeftOutIsEmpty) {
  VARIANT value = OfKind(VT_ERROR);
  value.scode = DISP_E_PARAMNOTFOUND;
  EXPECT_TRUE(FromVariant(value).IsEmpty());
  EXPECT_TRUE(FromVariant(OfKind(VT_EMPTY)).IsEmpty());
}

TEST(VariantConversionTest, WhatHasNoMatchConvertsToNothing) {
  VARIANT error = OfKind(VT_ERROR);
  error.scode = E_FAIL;
  for (const VARIANT& value :
       {OfKind(VT_NULL), error, OfKind(VT_RECORD), OfKind(VT_BYREF | VT_I4), OfKind(VT_BYREF | VT_VARIANT),
        OfKind(VT_BYREF | VT_RECORD), OfKind(VT_FILETIME)}) {
    const Variant result = FromVariant(value);
    EXPECT_EQ(FailureOf([&] { base::ToText(result); }).Number(), base::ErrorNumber::kTypeMismatch)
        << value.vt;
    EXPECT_EQ(FailureOf([&] { base::ToBoolean(result); }).Number(), base::ErrorNumber::kTypeMismatch)
        << value.vt;
  }
}

TEST(VariantConversionTest, ReferencesAreFollowed) {
  VARIANT_BOOL flag = VARIANT_TRUE;
  EXPECT_EQ(FromVariant(ReferenceTo(VT_BOOL, &flag)).Get(), Variant(true).Get());
  BYTE small = 255;
  EXPECT_EQ(FromVariant(ReferenceTo(VT_UI1, &small)).Get(), Variant(std::int16_t{255}).Get());
  VARIANT text = support::BstrVariant(L"caf\x00E9");
  EXPECT_EQ(FromVariant(ReferenceTo(VT_VARIANT, &text)).Get(), Variant("caf\xE9").Get());
  VARIANT inner = ReferenceTo(VT_BSTR, &text.bstrVal);
  EXPECT_EQ(FromVariant(ReferenceTo(VT_VARIANT, &inner)).Get(), Variant("caf\xE9").Get());
  DECIMAL decimal = Number(VT_DECIMAL, L"2.5").decVal;
  EXPECT_EQ(FromVariant(ReferenceTo(VT_DECIMAL, &decimal)).Get(), Variant(2.5).Get());
  IDispatch* none = nullptr;
  EXPECT_EQ(base::ToObject(FromVariant(ReferenceTo(VT_DISPATCH, &none))), nullptr);
  VariantClear(&text);
}

TEST(VariantConversionTest, AReferenceToItselfEnds) {
  VARIANT ring = ReferenceTo(VT_VARIANT, nullptr);
  ring.pvarVal = &ring;
  EXPECT_TRUE(FromVariant(ring).IsObject());
}

TEST(VariantConversionTest, WhatAReferencePointsAtTakesTheValueInItsOwnKind) {
  SHORT number = 1;
  VARIANT target = ReferenceTo(VT_I2, &number);
  AssignByReference(target, "42");
  EXPECT_EQ(number, 42);
  double real = 0;
  target = ReferenceTo(VT_R8, &real);
  AssignByReference(target, std::int32_t{7});
  EXPECT_EQ(real, 7.0);
  VARIANT_BOOL flag = VARIANT_FALSE;
  target = ReferenceTo(VT_BOOL, &flag);
  AssignByReference(target, std::int16_t{2});
  EXPECT_EQ(flag, VARIANT_TRUE);
  BSTR text = SysAllocString(L"old");
  target = ReferenceTo(VT_BSTR, &text);
  AssignByReference(target, true);
  // If the text were freed by mistake, others would take its place.
  std::vector<BSTR> others;
  for (int i = 0; i < 1000; ++i) others.push_back(SysAllocString(L"Else"));
  EXPECT_EQ(support::TextOf(text), L"True");
  for (const BSTR other : others) SysFreeString(other);
  AssignByReference(target, std::string("a\0\xE9", 3));
  EXPECT_EQ(support::TextOf(text), std::wstring(L"a\0\x00E9", 3));
  SysFreeString(text);
}

TEST(VariantConversionTest, AVariantThatIsReferredToTakesAnyKind) {
  VARIANT inner = support::BstrVariant(L"old");
  VARIANT target = ReferenceTo(VT_VARIANT, &inner);
  AssignByReference(target, std::int32_t{7});
  EXPECT_EQ(inner.vt, VT_I4);
  EXPECT_EQ(inner.lVal, 7);
  BSTR text = SysAllocString(L"old");
  inner = ReferenceTo(VT_BSTR, &text);
  AssignByReference(target, "new");
  EXPECT_EQ(inner.vt, VT_BYREF | VT_BSTR) << "the reference itself stays";
  EXPECT_EQ(support::TextOf(text), L"new");
  SysFreeString(text);
}

TEST(VariantConversionTest, AValueThatDoesNotFitTheReferenceFailsAndChangesNothing) {
  SHORT number = 1;
  VARIANT target = ReferenceTo(VT_I2, &number);
  EXPECT_EQ(FailureOf([&] { AssignByReference(target, "many"); }).Number(), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(FailureOf([&] { AssignByReference(target, std::int32_t{70'000}); }).Number(), DISP_E_OVERFLOW);
  EXPECT_EQ(number, 1);
  DECIMAL decimal{};
  target = ReferenceTo(VT_DECIMAL, &decimal);
  EXPECT_EQ(FailureOf([&] { AssignByReference(target, std::int32_t{1}); }).Number(), DISP_E_TYPEMISMATCH);
}

TEST(VariantConversionTest, AReferenceToNothingIsLeftAlone) {
  VARIANT target = ReferenceTo(VT_I2, nullptr);
  EXPECT_NO_THROW(AssignByReference(target, std::int16_t{1}));
}

}  // namespace
