#include "model/PortRanges.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "model/CMapProfile.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PortRangesTest : public testing::Test {
 protected:
  std::shared_ptr<CMapProfile> Add(const std::string& name,
                                   const std::vector<std::pair<std::int32_t, std::int32_t>>& mappings) {
    auto profile = std::make_shared<CMapProfile>();
    profile->sName = name;
    for (const auto& [begin, end] : mappings) {
      auto mapping = std::make_shared<CMapping>();
      mapping->lBeginPort(begin);
      mapping->lEndPort(end);
      profile->AddMapping(mapping);
    }
    profiles.Add(profile, profile->sKey());
    PortRanges::Changed();
    return profile;
  }
  std::vector<std::string> Covering(std::int32_t lPort) {
    std::vector<std::string> names;
    ranges.ForEachCovering(profiles, lPort,
                           [&names](const CMapProfile& profile) { names.push_back(profile.sName); });
    return names;
  }

  PortRanges::MapProfiles profiles;
  PortRanges ranges;
};

TEST_F(PortRangesTest, VisitsEachCoveringProfileOnceInOrder) {
  Add("b", {{1, 5}, {2, 9}, {100, 200}});
  Add("none", {});
  Add("a", {{6, 6}, {2, 3}});
  EXPECT_THAT(Covering(2), ElementsAre("b", "a"));
  EXPECT_THAT(Covering(6), ElementsAre("b", "a"));
  EXPECT_THAT(Covering(200), ElementsAre("b"));
  EXPECT_THAT(Covering(10), IsEmpty());
}

TEST_F(PortRangesTest, HasNothingToVisitWithoutProfiles) {
  EXPECT_THAT(Covering(0), IsEmpty());
}

TEST_F(PortRangesTest, NoticesEveryChange) {
  const auto profile = Add("a", {{1, 1}});
  EXPECT_THAT(Covering(1), ElementsAre("a"));
  const auto mapping = std::make_shared<CMapping>();
  profile->AddMapping(mapping);
  EXPECT_THAT(Covering(0), ElementsAre("a"));
  mapping->lEndPort(7);
  EXPECT_THAT(Covering(7), ElementsAre("a"));
  mapping->lBeginPort(7);
  EXPECT_THAT(Covering(0), IsEmpty());
  profile->RemoveMapping(mapping->sKey());
  EXPECT_THAT(Covering(7), IsEmpty());
  profile->ClearMappings();
  EXPECT_THAT(Covering(1), IsEmpty());
}

TEST_F(PortRangesTest, NoticesAMappingThatIsReadFromAFileOrASetting) {
  const auto profile = Add("a", {{1, 1}});
  EXPECT_THAT(Covering(1), ElementsAre("a"));
  for (const auto& mapping : profile->ccMappings()) {
    mapping->m_XML_SetValue("BeginPort", "20");
    mapping->m_XML_SetValue("EndPort", "30");
  }
  EXPECT_THAT(Covering(1), IsEmpty());
  EXPECT_THAT(Covering(25), ElementsAre("a"));
}

TEST_F(PortRangesTest, SeesWhatAWalkOverTheMappingsSees) {
  std::mt19937 random(3);
  for (int profile = 0; profile < 40; ++profile) {
    std::vector<std::pair<std::int32_t, std::int32_t>> mappings(random() % 6);
    for (auto& [begin, end] : mappings) {
      begin = static_cast<std::int32_t>(random() % 60);
      end = static_cast<std::int32_t>(random() % 60);
    }
    Add(std::to_string(profile), mappings);
  }
  for (std::int32_t port = -1; port <= 60; ++port) {
    std::vector<std::string> expected;
    for (const auto& profile : profiles) {
      bool covers = false;
      for (const auto& mapping : profile->ccMappings()) {
        covers = covers || (mapping->lBeginPort() <= port && port <= mapping->lEndPort());
      }
      if (covers) expected.push_back(profile->sName);
    }
    EXPECT_EQ(Covering(port), expected) << port;
  }
}

}  // namespace
