#include "base/Variant.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "base/Error.h"

namespace {

using base::Variant;

template <typename Convert>
std::int32_t FailureOf(Convert convert) {
  try {
    convert();
    return 0;
  } catch (const base::Error& error) {
    return error.Number();
  }
}

TEST(Variant, KeepsTheKindOfWhatItHolds) {
  EXPECT_TRUE(Variant().IsEmpty());
  EXPECT_TRUE(Variant("a").IsText());
  EXPECT_TRUE(Variant(std::string("a")).IsText());
  EXPECT_TRUE(Variant(std::string_view("a")).IsText());
  EXPECT_TRUE(Variant(true).IsBoolean());
  EXPECT_TRUE(std::holds_alternative<std::int16_t>(Variant(std::int16_t{1}).Get()));
  EXPECT_TRUE(std::holds_alternative<std::int32_t>(Variant(1).Get()));
  EXPECT_TRUE(std::holds_alternative<double>(Variant(1.0).Get()));
  EXPECT_TRUE(Variant(base::MakeArray(base::ElementType::kText, 0, {})).IsArray());
}

/// Puts the value into an empty Variant and in place of each other kind.
template <typename Value>
void ExpectTaken(const Value& assigned, const std::string& text) {
  using Taken = std::remove_cvref_t<Value>;
  for (Variant value :
       {Variant(), Variant("old"), Variant(std::int16_t{7}), Variant(7), Variant(7.5), Variant(true),
        Variant(base::ObjectRef()), Variant(base::MakeArray(base::ElementType::kText, 0, {"x"}))}) {
    value = assigned;
    EXPECT_TRUE(std::holds_alternative<Taken>(value.Get())) << text;
    EXPECT_EQ(base::ToText(value), text);
  }
}

TEST(Variant, TakesTheKindOfWhatItIsGiven) {
  ExpectTaken(std::string("a text that is too long for the place in the string itself"),
              "a text that is too long for the place in the string itself");
  ExpectTaken(std::int16_t{-5}, "-5");
  ExpectTaken(std::int32_t{70'000}, "70000");
  ExpectTaken(2.5, "2.5");
  ExpectTaken(true, "True");
  Variant value = 1;
  value = "literal";
  EXPECT_TRUE(value.IsText());
  value = std::string_view("view");
  EXPECT_EQ(base::ToText(value), "view");
}

TEST(Variant, TakesATextThatIsItsOwnOrLiesInItsArray) {
  Variant value = "own";
  value = std::get<std::string>(value.Get());
  EXPECT_EQ(base::ToText(value), "own");
  Variant array =
      base::MakeArray(base::ElementType::kText, 0, {"a text that lies in the array and goes with it"});
  array = std::get<std::string>(std::get<base::ArrayRef>(array.Get())->elements[0].Get());
  EXPECT_EQ(base::ToText(array), "a text that lies in the array and goes with it");
}

TEST(Variant, KeepsANullReferenceAsAnObject) {
  const Variant null{base::ObjectRef()};
  EXPECT_TRUE(null.IsObject());
  EXPECT_FALSE(null.IsEmpty());
  EXPECT_EQ(base::ToObject(null), nullptr);
}

TEST(Variant, ReadsEmptyAsNothingOfEveryKind) {
  const Variant empty;
  EXPECT_EQ(base::ToText(empty), "");
  EXPECT_EQ(base::ToInt16(empty), 0);
  EXPECT_EQ(base::ToInt32(empty), 0);
  EXPECT_FALSE(base::ToBoolean(empty));
  EXPECT_EQ(base::ToObject(empty), nullptr);
}

TEST(Variant, ReadsABooleanAsMinusOneOrZero) {
  EXPECT_EQ(base::ToInt16(Variant(true)), -1);
  EXPECT_EQ(base::ToInt32(Variant(false)), 0);
  EXPECT_EQ(base::ToText(Variant(true)), "True");
}

TEST(Variant, ReadsABooleanWordAsTheSameNumber) {
  EXPECT_EQ(base::ToInt32(Variant(" true ")), -1);
  EXPECT_EQ(base::ToInt32(Variant("FALSE")), 0);
}

TEST(Variant, ReadsANumberAsTrueUnlessItIsZero) {
  EXPECT_TRUE(base::ToBoolean(Variant(std::int16_t{2})));
  EXPECT_TRUE(base::ToBoolean(Variant(-1)));
  EXPECT_TRUE(base::ToBoolean(Variant(0.25)));
  EXPECT_FALSE(base::ToBoolean(Variant(0)));
}

TEST(Variant, ReadsTextByTheRulesOfText) {
  EXPECT_EQ(base::ToInt16(Variant("80")), 80);
  EXPECT_TRUE(base::ToBoolean(Variant("-1")));
  EXPECT_EQ(FailureOf([] { base::ToInt16(Variant("eighty")); }), base::ErrorNumber::kTypeMismatch);
  EXPECT_EQ(FailureOf([] { base::ToBoolean(Variant("")); }), base::ErrorNumber::kTypeMismatch);
}

TEST(Variant, RoundsADoubleToTheEvenNeighbour) {
  EXPECT_EQ(base::ToInt32(Variant(2.5)), 2);
  EXPECT_EQ(base::ToText(Variant(2.5)), "2.5");
}

TEST(Variant, FailsBeyondTheWidthOfTheTarget) {
  EXPECT_EQ(FailureOf([] { base::ToInt16(Variant(40000)); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOf([] { base::ToInt32(Variant(3e9)); }), base::ErrorNumber::kOverflow);
}

TEST(Variant, ConvertsNeitherObjectsNorArrays) {
  const Variant object{base::ObjectRef()};
  const Variant array{base::MakeArray(base::ElementType::kText, 0, {})};
  for (const Variant& value : {object, array}) {
    EXPECT_EQ(FailureOf([&] { base::ToText(value); }), base::ErrorNumber::kTypeMismatch);
    EXPECT_EQ(FailureOf([&] { base::ToInt16(value); }), base::ErrorNumber::kTypeMismatch);
    EXPECT_EQ(FailureOf([&] { base::ToBoolean(value); }), base::ErrorNumber::kTypeMismatch);
  }
  EXPECT_EQ(FailureOf([&] { base::ToObject(array); }), base::ErrorNumber::kObjectRequired);
  EXPECT_EQ(FailureOf([&] { base::ToObject(Variant("x")); }), base::ErrorNumber::kObjectRequired);
}

TEST(Variant, SharesAnArrayWithItsCopies) {
  const Variant first{base::MakeArray(base::ElementType::kInt16, 0, {})};
  const Variant second = first;
  std::get<base::ArrayRef>(second.Get())->elements.emplace_back(std::int16_t{7});
  EXPECT_EQ(std::get<base::ArrayRef>(first.Get())->elements.size(), 1u);
}

TEST(Array, HasBoundsOfItsOwn) {
  const auto array = base::MakeArray(base::ElementType::kInt32, 10, {Variant(1), Variant(2)});
  EXPECT_EQ(array->UpperBound(), 11);
  EXPECT_EQ(base::ToInt32(array->At(10)), 1);
  EXPECT_EQ(base::ToInt32(array->At(11)), 2);
  EXPECT_EQ(FailureOf([&] { array->At(9); }), base::ErrorNumber::kSubscript);
  EXPECT_EQ(FailureOf([&] { array->At(12); }), base::ErrorNumber::kSubscript);
}

TEST(Array, EndsBeforeItBeginsWhenItIsEmpty) {
  const auto array = base::MakeArray(base::ElementType::kText, 0, {});
  EXPECT_EQ(array->UpperBound(), -1);
  EXPECT_EQ(FailureOf([&] { array->At(0); }), base::ErrorNumber::kSubscript);
}

}  // namespace
