#include "base/Conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "base/Error.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Number of the failure of `convert`, 0 when it succeeds.
template <typename Convert>
std::int32_t FailureOf(Convert convert) {
  try {
    convert();
    return 0;
  } catch (const base::Error& error) {
    return error.Number();
  }
}

std::int32_t FailureOfInt16(std::string_view text) {
  return FailureOf([&] { base::ToInt16(text); });
}
std::int32_t FailureOfInt32(std::string_view text) {
  return FailureOf([&] { base::ToInt32(text); });
}

TEST(Conversions, RoundAHalfToTheEvenNeighbour) {
  EXPECT_EQ(base::RoundHalfEven(0.5), 0);
  EXPECT_EQ(base::RoundHalfEven(1.5), 2);
  EXPECT_EQ(base::RoundHalfEven(2.5), 2);
  EXPECT_EQ(base::RoundHalfEven(3.5), 4);
  EXPECT_EQ(base::RoundHalfEven(-0.5), 0);
  EXPECT_EQ(base::RoundHalfEven(-1.5), -2);
  EXPECT_EQ(base::RoundHalfEven(-2.5), -2);
}

TEST(Conversions, RoundAnythingElseToTheNearest) {
  EXPECT_EQ(base::RoundHalfEven(2.4999), 2);
  EXPECT_EQ(base::RoundHalfEven(2.5001), 3);
  EXPECT_EQ(base::RoundHalfEven(-2.5001), -3);
  EXPECT_EQ(base::RoundHalfEven(-7), -7);
  EXPECT_EQ(base::RoundHalfEven(4503599627370497.0), 4503599627370497.0);
}

TEST(Conversions, TurnADoubleIntoAnIntegerWithinTheTypesRange) {
  EXPECT_EQ(base::ToInt16(32767.5 - 0.1), 32767);
  EXPECT_EQ(base::ToInt16(-32768.5), -32768);
  EXPECT_EQ(FailureOf([] { base::ToInt16(32767.5); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOf([] { base::ToInt16(-32769.0); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(base::ToInt32(2147483647.0), 2147483647);
  EXPECT_EQ(FailureOf([] { base::ToInt32(2147483648.0); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOf([] { base::ToInt32(kInfinity); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOf([] { base::ToInt32(std::nan("")); }), base::ErrorNumber::kOverflow);
}

TEST(Conversions, ReadAWholeTextAsANumber) {
  EXPECT_EQ(base::ToInt32("0"), 0);
  EXPECT_EQ(base::ToInt32("007"), 7);
  EXPECT_EQ(base::ToInt32("123456789"), 123456789);
  EXPECT_EQ(base::ToInt32("1234567890"), 1234567890);
  EXPECT_EQ(base::ToInt32("-1"), -1);
  EXPECT_EQ(base::ToInt32("+8"), 8);
  EXPECT_EQ(base::ToInt32("  27015 "), 27015);
  EXPECT_EQ(base::ToInt32("2.5"), 2);
  EXPECT_EQ(base::ToInt32("3.5"), 4);
  EXPECT_EQ(base::ToInt32(".5e1"), 5);
  EXPECT_EQ(base::ToInt32("1E3"), 1000);
  EXPECT_EQ(base::ToInt32("12000e-3"), 12);
  EXPECT_EQ(base::ToInt32("5."), 5);
}

TEST(Conversions, RefuseATextThatIsMoreThanANumber) {
  for (const char* text : {"",      " ",  "abc", "12x",  "x12", "1 2", "--1", "+-1", "+",   "-",    ".",
                           "1.2.3", "1e", "e1",  "0x10", "inf", "nan", "2>",  "\t1", "1\n", "1,000"}) {
    EXPECT_EQ(FailureOfInt32(text), base::ErrorNumber::kTypeMismatch) << text;
    EXPECT_FALSE(base::IsNumeric(text)) << text;
  }
}

TEST(Conversions, RefuseANulAndCharactersBeyondAscii) {
  EXPECT_FALSE(base::IsNumeric(std::string_view("1\0", 2)));
  EXPECT_FALSE(
      base::IsNumeric("\xA0"
                      "1"));
  EXPECT_FALSE(base::IsNumeric("\xB2"));
}

TEST(Conversions, FailBeyond16Bits) {
  EXPECT_EQ(base::ToInt16("32767"), 32767);
  EXPECT_EQ(base::ToInt16("-32768"), -32768);
  EXPECT_EQ(FailureOfInt16("32768"), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOfInt16("-32769"), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOfInt16("99999999999999999999"), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOfInt16("1e999"), base::ErrorNumber::kOverflow);
}

TEST(Conversions, FailBeyond32Bits) {
  EXPECT_EQ(base::ToInt32("2147483647"), 2147483647);
  EXPECT_EQ(base::ToInt32("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(FailureOfInt32("2147483648"), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOfInt32("-2147483649"), base::ErrorNumber::kOverflow);
}

TEST(Conversions, NameTheTextThatDoesNotConvert) {
  try {
    base::ToInt16("abc");
    FAIL();
  } catch (const base::Error& error) {
    EXPECT_EQ(error.Text(), "Type mismatch: \"abc\"");
  }
  try {
    base::ToInt16("40000");
    FAIL();
  } catch (const base::Error& error) {
    EXPECT_EQ(error.Text(), "Overflow: \"40000\"");
  }
}

TEST(Conversions, ReadNumbersBeyondADoubleByTheirSize) {
  const std::string zeros(400, '0');
  EXPECT_EQ(base::ReadNumber("1e-999"), 0);
  EXPECT_EQ(base::ReadNumber("0." + zeros + "1"), 0);
  EXPECT_EQ(base::ReadNumber("1" + zeros + "e-800"), 0);
  EXPECT_EQ(base::ReadNumber("1e999"), kInfinity);
  EXPECT_EQ(base::ReadNumber("1" + zeros), kInfinity);
  EXPECT_EQ(base::ReadNumber("1" + zeros + zeros + "e-10"), kInfinity);
  EXPECT_EQ(base::ReadNumber("0." + zeros + "1e+9999"), kInfinity);
  EXPECT_EQ(base::ReadNumber("-1e999"), -kInfinity);
  EXPECT_EQ(base::ReadNumber("1e99999999999999999999"), kInfinity);
  EXPECT_EQ(base::ReadNumber("1e-99999999999999999999"), 0);
  EXPECT_EQ(base::ReadNumber("0e99999999999999999999"), 0);
}

TEST(Conversions, RefuseADoubleBeyondItsRange) {
  EXPECT_EQ(base::ToDouble("1.5"), 1.5);
  EXPECT_EQ(FailureOf([] { base::ToDouble("1e999"); }), base::ErrorNumber::kOverflow);
  EXPECT_EQ(FailureOf([] { base::ToDouble("x"); }), base::ErrorNumber::kTypeMismatch);
}

TEST(Conversions, ReadTheWordsTrueAndFalseInAnyCase) {
  EXPECT_TRUE(base::ToBoolean("True"));
  EXPECT_TRUE(base::ToBoolean("tRUE"));
  EXPECT_TRUE(base::ToBoolean(" true "));
  EXPECT_FALSE(base::ToBoolean("False"));
  EXPECT_FALSE(base::ToBoolean("FALSE"));
}

TEST(Conversions, ReadANumberAsTrueUnlessItIsZero) {
  EXPECT_TRUE(base::ToBoolean("-1"));
  EXPECT_TRUE(base::ToBoolean("0.1"));
  EXPECT_TRUE(base::ToBoolean("1e999"));
  EXPECT_FALSE(base::ToBoolean("0"));
  EXPECT_FALSE(base::ToBoolean("-0.0"));
}

TEST(Conversions, RefuseAnyOtherTextAsABoolean) {
  for (const char* text : {"", "yes", "Tru", "True1", "2>"}) {
    EXPECT_EQ(FailureOf([&] { base::ToBoolean(text); }), base::ErrorNumber::kTypeMismatch) << text;
  }
}

TEST(Conversions, ReadTheNumberAtTheLeftEndOfAText) {
  EXPECT_EQ(base::LeadingNumber("10)"), 10);
  EXPECT_EQ(base::LeadingNumber(")"), 0);
  EXPECT_EQ(base::LeadingNumber(""), 0);
  EXPECT_EQ(base::LeadingNumber("-3x"), -3);
  EXPECT_EQ(base::LeadingNumber("  42 7"), 42);
  EXPECT_EQ(base::LeadingNumber("1.5.2"), 1.5);
  EXPECT_EQ(base::LeadingNumber("2e"), 2);
  EXPECT_EQ(base::LeadingNumber("2e+"), 2);
  EXPECT_EQ(base::LeadingNumber("2e1x"), 20);
  EXPECT_EQ(base::LeadingNumber("-"), 0);
  EXPECT_EQ(base::LeadingNumber("x5"), 0);
}

TEST(Conversions, WriteNumbersInPlainDecimal) {
  EXPECT_EQ(base::ToText(std::int16_t{-32768}), "-32768");
  EXPECT_EQ(base::ToText(std::numeric_limits<std::int32_t>::min()), "-2147483648");
  EXPECT_EQ(base::ToText(0), "0");
  EXPECT_EQ(base::ToText(2.5), "2.5");
  EXPECT_EQ(base::ToText(-0.0), "0");
  EXPECT_EQ(base::ToText(0.1), "0.1");
  EXPECT_EQ(base::ToText(kInfinity), "infinity");
}

TEST(Conversions, WriteBooleansAsWords) {
  EXPECT_EQ(base::ToText(true), "True");
  EXPECT_EQ(base::ToText(false), "False");
}

TEST(Conversions, LeaveABlankForTheSignOfANumberThatIsNotNegative) {
  EXPECT_EQ(base::ToTextWithSignPlace(0), " 0");
  EXPECT_EQ(base::ToTextWithSignPlace(12), " 12");
  EXPECT_EQ(base::ToTextWithSignPlace(-12), "-12");
}

TEST(Conversions, TrimBlanksOnly) {
  EXPECT_EQ(base::TrimLeft("  a "), "a ");
  EXPECT_EQ(base::TrimLeft("\t a"), "\t a");
  EXPECT_EQ(base::TrimLeft("   "), "");
  EXPECT_EQ(base::Trim("  a b  "), "a b");
  EXPECT_EQ(base::Trim(" \t "), "\t");
  EXPECT_EQ(base::Trim(""), "");
}

TEST(Conversions, FoldTheLettersOfTheAlphabetOnly) {
  EXPECT_EQ(base::FoldCase("AZ@[\xC4"), "az@[\xC4");
  EXPECT_TRUE(base::EqualsIgnoringCase("Router One", "ROUTER oNE"));
  EXPECT_FALSE(base::EqualsIgnoringCase("Router", "Router "));
  EXPECT_FALSE(base::EqualsIgnoringCase("@", "`"));
}

}  // namespace
