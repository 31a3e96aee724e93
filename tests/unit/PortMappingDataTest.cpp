#include "plugins/PortMappingData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Error.h"
#include "support/ScriptedObjects.h"

namespace {

using testing::ElementsAre;

TEST(PortMappingData, NamesItsFieldsInTheirOrder) {
  EXPECT_THAT(PortMappingData().PropertyNames(),
              ElementsAre("sProfileName", "sDescription", "lBeginPort", "lEndPort", "bUDP", "bTCP",
                          "iForwardIPAddress", "bClearEntry"));
}

TEST(PortMappingData, GivesEachFieldInItsOwnType) {
  auto data = std::make_shared<PortMappingData>();
  data->sProfileName = "Game";
  data->sDescription = "Voice";
  data->lBeginPort = 80;
  data->lEndPort = 70000;
  data->bUDP = true;
  data->iForwardIPAddress = 7;
  data->bClearEntry = true;
  EXPECT_EQ(support::Describe(base::Variant(data)),
            "{\"Game\", \"Voice\", 80:32, 70000:32, True, False, 7:16, True}");
}

TEST(PortMappingData, TakesEachFieldByTheOrdinaryConversions) {
  auto data = std::make_shared<PortMappingData>();
  const base::Variant values[] = {5, "Voice", "80", 2.5, 1, "True", std::int16_t{9}, -1};
  for (std::size_t i = 0; i < std::size(values); ++i) data->SetProperty(i, values[i]);
  EXPECT_EQ(support::Describe(base::Variant(data)),
            "{\"5\", \"Voice\", 80:32, 2:32, True, True, 9:16, True}");
}

TEST(PortMappingData, StaysAsItWasWhenAValueDoesNotConvert) {
  PortMappingData data;
  data.lBeginPort = 80;
  EXPECT_THROW(data.SetProperty(2, "abc"), base::Error);
  EXPECT_EQ(data.lBeginPort, 80);
  EXPECT_THROW(data.SetProperty(6, 40000), base::Error);
  EXPECT_EQ(data.iForwardIPAddress, 0);
}

TEST(PortMappingData, HasNoNinthField) {
  PortMappingData data;
  EXPECT_THROW(data.Property(8), base::Error);
  EXPECT_THROW(data.SetProperty(8, 1), base::Error);
}

}  // namespace
