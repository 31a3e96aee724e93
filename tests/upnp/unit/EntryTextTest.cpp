#include "rules/EntryText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace upnp {
namespace {

EntryText Text() {
  return {"8080", "TCP", "192.168.1.5", "80", "Harbourline: Web", "1", "", "3600"};
}

TEST(EntryTextTest, AnEntryOfTheStandardIsReadAsItIs) {
  const auto mapping = ReadEntry(Text());
  ASSERT_TRUE(mapping);
  EXPECT_EQ(mapping->Key(), PortKey(8080, Protocol::kTcp));
  EXPECT_EQ(mapping->lastExternalPort, 0);
  EXPECT_EQ(mapping->client, "192.168.1.5");
  EXPECT_EQ(mapping->internalPort, 80);
  EXPECT_EQ(mapping->description, "Harbourline: Web");
  EXPECT_TRUE(mapping->enabled);
  EXPECT_EQ(mapping->remoteHost, "");
  EXPECT_EQ(mapping->lease, 3600u);
}

TEST(EntryTextTest, AnybodyHasManyNames) {
  for (const char* anybody : {"", "0.0.0.0", "*", " ", " * ", "0.0.0.0\n"}) {
    EntryText text = Text();
    text.remoteHost = anybody;
    EXPECT_EQ(ReadEntry(text)->remoteHost, "") << anybody;
  }
  EntryText text = Text();
  text.remoteHost = "8.8.8.8";
  EXPECT_EQ(ReadEntry(text)->remoteHost, "8.8.8.8");
}

TEST(EntryTextTest, ProtocolsAreKnownInAnyCase) {
  for (const char* udp : {"UDP", "udp", "Udp", " udp "}) {
    EntryText text = Text();
    text.protocol = udp;
    EXPECT_EQ(ReadEntry(text)->protocol, Protocol::kUdp) << udp;
  }
  EntryText text = Text();
  text.protocol = "tcp";
  EXPECT_EQ(ReadEntry(text)->protocol, Protocol::kTcp);
}

TEST(EntryTextTest, WhatIsOnHasManyNames) {
  for (const char* on : {"", "1", "true", "True", "TRUE", "yes", "YES", "on", " 1 ", "Enabled"}) {
    EntryText text = Text();
    text.enabled = on;
    EXPECT_TRUE(ReadEntry(text)->enabled) << on;
  }
  for (const char* off : {"0", "false", "FALSE", "no", "NO", "off"}) {
    EntryText text = Text();
    text.enabled = off;
    EXPECT_FALSE(ReadEntry(text)->enabled) << off;
  }
}

TEST(EntryTextTest, BlanksAroundTheWordsDoNotMatter) {
  const EntryText text = {" 8080 ", "TCP ", "\t192.168.1.5 ", " 80", " Web\n", "1 ", " ", " 3600 "};
  const auto mapping = ReadEntry(text);
  ASSERT_TRUE(mapping);
  EXPECT_EQ(mapping->externalPort, 8080);
  EXPECT_EQ(mapping->client, "192.168.1.5");
  EXPECT_EQ(mapping->internalPort, 80);
  EXPECT_EQ(mapping->description, "Web");
  EXPECT_EQ(mapping->lease, 3600u);
}

TEST(EntryTextTest, ARangeOfPortsIsOneEntryForAllOfThem) {
  EntryText text = Text();
  text.externalPort = "8000-8100";
  text.internalPort = "9000-9100";
  const auto mapping = ReadEntry(text);
  ASSERT_TRUE(mapping);
  EXPECT_EQ(mapping->externalPort, 8000);
  EXPECT_EQ(mapping->lastExternalPort, 8100);
  EXPECT_EQ(mapping->internalPort, 9000);
  text.externalPort = "8000:8000";
  EXPECT_EQ(ReadEntry(text)->lastExternalPort, 0);
}

TEST(EntryTextTest, AnEntryThatLeadsNowhereHasNoClient) {
  for (const char* nobody : {"", " ", "0.0.0.0"}) {
    EntryText text = Text();
    text.client = nobody;
    EXPECT_EQ(ReadEntry(text)->client, "");
  }
}

TEST(EntryTextTest, WithoutAPortThereIsNoEntry) {
  for (const char* port : {"", "0", "x", "70000", "90-80", "80-", "-80"}) {
    EntryText text = Text();
    text.externalPort = port;
    EXPECT_FALSE(ReadEntry(text)) << port;
  }
}

}  // namespace
}  // namespace upnp
