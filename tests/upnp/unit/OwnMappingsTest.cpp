#include "rules/OwnMappings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeRouter.h"

namespace upnp {
namespace {

PortMapping Mapping(std::uint16_t port, const std::string& client) {
  PortMapping mapping;
  mapping.externalPort = mapping.internalPort = port;
  mapping.client = client;
  return mapping;
}

TEST(OwnMappingsTest, WhatIsRememberedIsThereInTheNextRun) {
  MemoryStore store;
  OwnMappings own(store);
  own.Remember("uuid:a b", Mapping(80, "192.168.1.5"));
  own.Remember("uuid:c", Mapping(81, "192.168.1.6"));
  own.Save();
  const OwnMappings next(store);
  EXPECT_TRUE(next.Has("uuid:a b", Mapping(80, "192.168.1.5")));
  EXPECT_FALSE(next.Has("uuid:a b", Mapping(80, "192.168.1.6")));
  EXPECT_FALSE(next.Has("uuid:c", Mapping(80, "192.168.1.5")));
  EXPECT_THAT(next.On("uuid:c"), testing::SizeIs(1));
}

TEST(OwnMappingsTest, WhatIsForgottenIsGone) {
  MemoryStore store;
  OwnMappings own(store);
  own.Remember("uuid:a", Mapping(80, "192.168.1.5"));
  own.Forget("uuid:a", {80, Protocol::kTcp});
  own.Save();
  EXPECT_EQ(store.text, "");
}

TEST(OwnMappingsTest, TheDescriptionThatTheRouterShowsIsThereInTheNextRun) {
  MemoryStore store;
  OwnMappings own(store);
  PortMapping mapping = Mapping(80, "192.168.1.5");
  mapping.description = "Rule\t7\nof 9";
  own.Remember("uuid:a b", mapping);
  own.Save();
  const OwnMappings next(store);
  EXPECT_TRUE(next.IsShownAs("uuid:a b", mapping));
  mapping.description = "Rule";
  EXPECT_TRUE(next.IsShownAs("uuid:a b", mapping));
  for (const char* other : {"", "Another", "Rule 7 of 9 and more"}) {
    mapping.description = other;
    EXPECT_FALSE(next.IsShownAs("uuid:a b", mapping)) << other;
  }
}

TEST(OwnMappingsTest, WhatIsOwedIsOwedInTheNextRunUntilItIsWantedAgain) {
  MemoryStore store;
  OwnMappings own(store);
  own.Remember("uuid:a", Mapping(80, "192.168.1.5"));
  own.Remember("uuid:a", Mapping(81, "192.168.1.5"));
  own.Remember("uuid:b", Mapping(82, "192.168.1.5"));
  own.OweAll("uuid:a");
  own.Remember("uuid:a", Mapping(81, "192.168.1.5"));
  own.Save();
  const OwnMappings next(store);
  EXPECT_THAT(next.Owed("uuid:a"), testing::SizeIs(1));
  EXPECT_THAT(next.Owed("uuid:b"), testing::IsEmpty());
  EXPECT_THAT(next.On("uuid:a"), testing::SizeIs(2));
}

TEST(OwnMappingsTest, NothingNewIsNotWritten) {
  MemoryStore store;
  OwnMappings own(store);
  own.Remember("uuid:a", Mapping(80, "192.168.1.5"));
  own.Save();
  int writes = 0;
  store.onSave = [&] { ++writes; };
  own.Remember("uuid:a", Mapping(80, "192.168.1.5"));
  own.Forget("uuid:a", {81, Protocol::kTcp});
  own.Save();
  EXPECT_EQ(writes, 0);
}

TEST(OwnMappingsTest, LinesThatMakeNoSenseAreLeftOut) {
  MemoryStore store;
  store.text =
      "TCP 80 192.168.1.5 uuid:a\nTCP 99999 192.168.1.5 uuid:a\nICMP 1 1.1.1.1 uuid:a\n\nTCP 1\nUDP 7 x "
      "uuid:a\n";
  EXPECT_THAT(OwnMappings(store).On("uuid:a"), testing::SizeIs(1));
}

}  // namespace
}  // namespace upnp
