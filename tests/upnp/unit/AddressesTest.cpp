#include "rules/Addresses.h"

#include <gtest/gtest.h>

namespace upnp {
namespace {

TEST(AddressesTest, WhatTheInternetReachesIsPublic) {
  for (const char* text : {"1.2.3.4", "8.8.8.8", "100.63.255.255", "100.128.0.0", "172.15.0.1", "172.32.0.1",
                           "223.255.255.255"}) {
    EXPECT_TRUE(IsPublicAddress(text)) << text;
  }
}

TEST(AddressesTest, WhatIsSetApartIsNot) {
  for (const char* text : {"0.0.0.0",     "10.1.2.3",    "100.64.0.1",      "100.127.255.255",
                           "127.0.0.1",   "169.254.1.1", "172.16.0.1",      "172.31.255.255",
                           "192.168.1.1", "192.0.2.1",   "198.18.0.1",      "198.51.100.7",
                           "203.0.113.9", "224.0.0.1",   "255.255.255.255", "",
                           "1.2.3",       "1.2.3.4.5",   "1.2.3.256",       "a.b.c.d",
                           "1.2.3.4 "}) {
    EXPECT_FALSE(IsPublicAddress(text)) << text;
  }
}

TEST(AddressesTest, ANeighbourHasAnotherLastNumber) {
  EXPECT_EQ(NeighbourAddress("192.168.1.5", 17), "192.168.1.17");
  EXPECT_EQ(NeighbourAddress("192.168.1.5", 255), "");
  EXPECT_EQ(NeighbourAddress("192.168.1.5", -1), "");
  EXPECT_EQ(NeighbourAddress("nowhere", 5), "");
}

}  // namespace
}  // namespace upnp
