#include "model/CXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/Error.h"
#include "support/ScriptedObjects.h"
#include "support/TemporaryFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CXMLTest : public testing::Test {
 protected:
  CXMLTest() {
    xml.sTag("Mapping");
    xml.GetValue.Connect([this](std::string_view name, base::Variant& value) {
      if (const auto found = values.find(name); found != values.end()) value = found->second;
    });
    xml.SetValue.Connect([this](std::string_view name, const base::Variant& value) {
      if (name == refused) throw base::Error(13, "refused");
      taken.push_back(std::string(name) + "=" + support::Describe(value));
    });
    xml.ErrorOccured.Connect([this](const std::string& message) { errors.push_back(message); });
  }

  /// What the header's attributes were handed over as; a line that is no header fails the test.
  std::vector<std::string> Read(const std::string& line) {
    taken.clear();
    errors.clear();
    EXPECT_TRUE(xml.ReadHeader(line)) << line.substr(0, 100);
    return taken;
  }
  bool Failed() const { return !errors.empty(); }

  std::string Written() {
    {
      base::TextFileWriter file(folder.PathOf("out"));
      xml.WriteHeader(file);
      xml.WriteTrailer(file);
      file.Close();
    }
    return folder.Read("out");
  }

  support::TemporaryFolder folder;
  CXML xml;
  std::map<std::string, base::Variant, std::less<>> values;
  std::optional<std::string> refused;
  std::vector<std::string> taken;
  std::vector<std::string> errors;
};

TEST_F(CXMLTest, HoldsOneEmptyAttributeNameWhenItIsNew) {
  EXPECT_THAT(CXML().AttributeNames(), ElementsAre(""));
  EXPECT_EQ(CXML().sTag(), "");
}

TEST_F(CXMLTest, HoldsAllNamesOfAnArrayOrOneAlone) {
  xml.AttributeNames(std::vector<std::string>{"A", "B"});
  EXPECT_THAT(xml.AttributeNames(), ElementsAre("A", "B"));
  xml.AttributeNames(std::string("C"));
  EXPECT_THAT(xml.AttributeNames(), ElementsAre("C"));
  EXPECT_EQ(xml.sTag(), "Mapping");
}

TEST_F(CXMLTest, AsksItsOwnerForAValue) {
  values["A"] = 5;
  EXPECT_EQ(support::Describe(xml.Value("A")), "5:32");
  EXPECT_TRUE(xml.Value("B").IsEmpty());
}

TEST_F(CXMLTest, HandsItsOwnerAValue) {
  xml.Value("A", true);
  EXPECT_THAT(taken, ElementsAre("A=True"));
}

TEST_F(CXMLTest, WritesTextInQuotesAndEverythingElseWithout) {
  xml.AttributeNames(std::vector<std::string>{"Text", "Long", "Short", "Flag", "None"});
  values["Text"] = "a b";
  values["Long"] = -70000;
  values["Short"] = std::int16_t{-1};
  values["Flag"] = true;
  EXPECT_EQ(Written(), "<Mapping Text=\"a b\" Long=-70000 Short=-1 Flag=True None=>\r\n</Mapping>\r\n");
}

TEST_F(CXMLTest, ReplacesDoubleQuotesBySingleOnes) {
  xml.AttributeNames(std::string("Text"));
  values["Text"] = "\"say \"\"it\"\"";
  EXPECT_EQ(Written(), "<Mapping Text=\"'say ''it''\">\r\n</Mapping>\r\n");
}

TEST_F(CXMLTest, WritesEverythingElseOfATextAsItStands) {
  xml.AttributeNames(std::string("Text"));
  values["Text"] = "a=b > <c> & \xE4 '";
  EXPECT_EQ(Written(), "<Mapping Text=\"a=b > <c> & \xE4 '\">\r\n</Mapping>\r\n");
  EXPECT_THAT(Read("<Mapping Text=\"a=b > <c> & \xE4 '\">"), ElementsAre("Text=\"a=b > <c> & \xE4 '\""));
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, ReadsQuotedTextAsTextAndOtherTokensAsNumberOrBoolean) {
  EXPECT_THAT(Read("<Mapping A=\"1\" B=1 C=True D=false E=-12 F=\"\">"),
              ElementsAre("A=\"1\"", "B=1:32", "C=True", "D=False", "E=-12:32", "F=\"\""));
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, ReadsTheLastTokenUpToTheClosingCharacter) {
  EXPECT_THAT(Read("<Mapping A=80>"), ElementsAre("A=80:32"));
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, ReadsAttributesInAnyOrderAndNumber) {
  EXPECT_THAT(Read("<Mapping Z=1 A=2 Z=3>"), ElementsAre("Z=1:32", "A=2:32", "Z=3:32"));
}

TEST_F(CXMLTest, ReadsAHeaderWithoutAttributes) {
  EXPECT_THAT(Read("<Mapping>"), IsEmpty());
  EXPECT_THAT(Read("<Mapping >"), IsEmpty());
  EXPECT_THAT(Read("<Mapping    >"), IsEmpty());
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, DropsBlanksBetweenAttributes) {
  EXPECT_THAT(Read("<Mapping   A=\"x\"   B=1   C=2>"), ElementsAre("A=\"x\"", "B=1:32", "C=2:32"));
}

TEST_F(CXMLTest, IgnoresWhatFollowsTheClosingCharacter) {
  EXPECT_THAT(Read("<Mapping A=\"x\"> B=broken"), ElementsAre("A=\"x\""));
  EXPECT_FALSE(Failed());
  EXPECT_THAT(Read("<Mapping A=\"x\"></Mapping>"), ElementsAre("A=\"x\""));
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, AcceptsLeadingBlanksBeforeAHeaderButNoTab) {
  EXPECT_THAT(Read("    <Mapping A=1>"), ElementsAre("A=1:32"));
  EXPECT_FALSE(xml.ReadHeader("\t<Mapping A=1>"));
}

TEST_F(CXMLTest, RefusesALineThatIsNoHeaderOfItsTag) {
  for (const char* line :
       {"", " ", "<", "<Mapping", "Mapping>", "<Mappings A=1>", "<mapping A=1>", "<MAPPING>", "</Mapping>",
        "x<Mapping>", "<Mapping\tA=1>", "< Mapping>", "<Mapping/>", "<MapProfile>"}) {
    EXPECT_FALSE(xml.ReadHeader(line)) << line;
  }
  EXPECT_THAT(errors, IsEmpty());
  EXPECT_THAT(taken, IsEmpty());
}

TEST_F(CXMLTest, FailsForAnUnquotedLastAttributeWithATrailingBlank) {
  EXPECT_THAT(Read("<Mapping Protocal=2> "), IsEmpty());
  EXPECT_THAT(errors, ElementsAre("Unable to parse file"));
}

TEST_F(CXMLTest, DoesNotMindATrailingBlankAfterAQuotedLastAttribute) {
  EXPECT_THAT(Read("<Mapping A=\"2\"> "), ElementsAre("A=\"2\""));
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, KeepsTheAttributesBeforeAFault) {
  EXPECT_THAT(Read("<Mapping A=1 B=x C=3>"), ElementsAre("A=1:32"));
  EXPECT_THAT(errors, ElementsAre("Unable to parse file"));
}

TEST_F(CXMLTest, FailsForEveryFaultOfALine) {
  for (const char* line : {"<Mapping A>", "<Mapping A", "<Mapping A=1 ", "<Mapping A=", "<Mapping A=>",
                           "<Mapping A=\"x>", "<Mapping A=\"x\"", "<Mapping A=\"", "<Mapping A=x>",
                           "<Mapping A=99999999999>", "<Mapping A=1>2>", "<Mapping A=1", "<Mapping "}) {
    Read(line);
    EXPECT_THAT(errors, ElementsAre("Unable to parse file")) << line;
  }
}

TEST_F(CXMLTest, FailsWhenTheLineEndsBehindATokenWithoutTheClosingCharacter) {
  // The last character counts as the closing one, whatever it is; what is left then has no "=".
  EXPECT_THAT(Read("<Mapping A=12"), ElementsAre("A=1:32"));
  EXPECT_TRUE(Failed());
}

TEST_F(CXMLTest, FailsWhenTheOwnerCannotTakeAValue) {
  refused = "B";
  EXPECT_THAT(Read("<Mapping A=1 B=2 C=3>"), ElementsAre("A=1:32"));
  EXPECT_THAT(errors, ElementsAre("Unable to parse file"));
}

TEST_F(CXMLTest, TakesEverythingUpToTheEqualsSignAsTheName) {
  EXPECT_THAT(Read("<Mapping a b=1>"), ElementsAre("a b=1:32"));
  EXPECT_THAT(Read("<Mapping =1>"), ElementsAre("=1:32"));
}

TEST_F(CXMLTest, ReadsNumbersByTheRulesOfText) {
  EXPECT_THAT(Read("<Mapping A=2.5 B=3.5 C=1e2 D=+7>"),
              ElementsAre("A=2:32", "B=4:32", "C=100:32", "D=7:32"));
}

TEST_F(CXMLTest, TakesABlankBehindTheEqualsSignAsPartOfTheToken) {
  EXPECT_THAT(Read("<Mapping A= 1 B= 2>"), ElementsAre("A=1:32", "B=2:32"));
  Read("<Mapping A= \"x\">");
  EXPECT_TRUE(Failed());
}

TEST_F(CXMLTest, ReadsUpToPosition32767OfALine) {
  const std::string head = "<Mapping A=\"";
  const std::string fits = head + std::string(32767 - head.size() - 2, 'x') + "\">";
  ASSERT_EQ(fits.size(), 32767u);
  EXPECT_EQ(Read(fits).size(), 1u);
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, FailsForAPositionBeyond32767) {
  const std::string head = "<Mapping A=\"";
  // The closing quote stands at 32767 and the closing character behind it.
  const std::string quoteFits = head + std::string(32767 - head.size() - 1, 'x') + "\">";
  EXPECT_EQ(Read(quoteFits).size(), 1u);
  EXPECT_TRUE(Failed());
  const std::string quoteIsBeyond = head + std::string(32767 - head.size(), 'x') + "\">";
  EXPECT_THAT(Read(quoteIsBeyond), IsEmpty());
  EXPECT_TRUE(Failed());
}

TEST_F(CXMLTest, FailsForATokenWhoseEndLiesBeyond32767) {
  const std::string zeros(32760, '0');
  EXPECT_THAT(Read("<Mapping A=" + zeros + "1>"), IsEmpty());
  EXPECT_TRUE(Failed());
}

TEST_F(CXMLTest, KeepsTheAttributesThatEndBeforePosition32767) {
  EXPECT_THAT(Read("<Mapping A=1 B=\"" + std::string(40000, 'x') + "\">"), ElementsAre("A=1:32"));
  EXPECT_TRUE(Failed());
}

TEST_F(CXMLTest, DoesNotMindALongLineBehindTheClosingCharacter) {
  EXPECT_THAT(Read("<Mapping A=\"1\">" + std::string(40000, ' ')), ElementsAre("A=\"1\""));
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, CountsPositionsFromTheTag) {
  EXPECT_THAT(Read(std::string(40000, ' ') + "<Mapping A=1>"), ElementsAre("A=1:32"));
  EXPECT_FALSE(Failed());
}

TEST_F(CXMLTest, FailsForAHeaderWhoseTagAloneIsTooLong) {
  xml.sTag(std::string(40000, 't'));
  EXPECT_TRUE(xml.ReadHeader("<" + std::string(40000, 't') + " A=1>"));
  EXPECT_THAT(errors, ElementsAre("Unable to parse file"));
}

TEST_F(CXMLTest, ReadsNulBytesInAValue) {
  EXPECT_THAT(Read(std::string("<Mapping A=\"a\0b\">", 17)), ElementsAre(std::string("A=\"a\0b\"", 7)));
}

TEST_F(CXMLTest, AcceptsItsTrailerWithBlanksAround) {
  EXPECT_TRUE(xml.ReadTrailer("</Mapping>"));
  EXPECT_TRUE(xml.ReadTrailer("  </Mapping>   "));
}

TEST_F(CXMLTest, RefusesALineThatIsNotItsTrailer) {
  for (const char* line :
       {"", "</mapping>", "</Mapping> x", "</Mapping", "</MapProfile>", "\t</Mapping>", "<Mapping>"}) {
    EXPECT_FALSE(xml.ReadTrailer(line)) << line;
  }
}

}  // namespace
