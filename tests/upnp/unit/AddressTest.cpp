#include "log/Address.h"

#include <gtest/gtest.h>

#include <string>

namespace upnp::log {
namespace {

TEST(AddressTest, ReadsFourNumbers) {
  const auto address = ReadAddress("192.168.1.20");
  ASSERT_TRUE(address);
  EXPECT_TRUE(address->IsIPv4());
  EXPECT_EQ(address->bytes[12], 192);
  EXPECT_EQ(address->bytes[15], 20);
}

TEST(AddressTest, RefusesWhatIsNoAddress) {
  for (const char* text :
       {"",         "1",        "1.2.3",   "1.2.3.4.5",  "1.2.3.256",         "1.2.3.-4",
        "1.2.3.4 ", " 1.2.3.4", "1.2..4",  "1.2.3.0004", "a.b.c.d",           ":",
        ":::",      "1:2",      "1::2::3", "12345::",    "1:2:3:4:5:6:7:8:9", "1:2:3:4:5:6:7::8",
        "::g",      "1:",       ":1"}) {
    EXPECT_FALSE(ReadAddress(text)) << text;
  }
  EXPECT_FALSE(ReadAddress(std::string("1.2.3.4\0", 8)));
  EXPECT_FALSE(ReadAddress(std::string(65536, ':')));
}

TEST(AddressTest, ReadsGroupsInFullAndWithARunLeftOut) {
  const auto full = ReadAddress("2001:0db8:0000:0000:0000:0000:0000:0001");
  ASSERT_TRUE(full);
  EXPECT_FALSE(full->IsIPv4());
  EXPECT_EQ(full, ReadAddress("2001:DB8::1"));
  EXPECT_TRUE(ReadAddress("::"));
  EXPECT_TRUE(ReadAddress("fe80::"));
}

TEST(AddressTest, KnowsTheRangesThatStayInside) {
  for (const char* text : {"10.1.2.3", "172.16.0.1", "172.31.255.255", "192.168.0.1", "100.64.0.1",
                           "169.254.1.1", "127.0.0.1", "fe80::1", "fd00::1", "::1"}) {
    EXPECT_TRUE(ReadAddress(text)->IsPrivate()) << text;
  }
  for (const char* text : {"9.255.255.255", "11.0.0.0", "172.15.0.1", "172.32.0.1", "192.167.0.1",
                           "100.128.0.1", "203.0.113.9", "2001:db8::1", "::2", "ff00::1"}) {
    EXPECT_FALSE(ReadAddress(text)->IsPrivate()) << text;
  }
}

TEST(NetworkTest, ContainsWhatSharesItsLeadingBits) {
  const Network network{*ReadAddress("192.168.1.5"), 23};
  EXPECT_TRUE(network.Contains(*ReadAddress("192.168.0.1")));
  EXPECT_TRUE(network.Contains(*ReadAddress("192.168.1.255")));
  EXPECT_FALSE(network.Contains(*ReadAddress("192.168.2.1")));
  EXPECT_FALSE(network.Contains(*ReadAddress("2001:db8::1")));
}

TEST(NetworkTest, ContainsAllOfItsFamilyWithoutABit) {
  EXPECT_TRUE((Network{*ReadAddress("0.0.0.0"), 0}).Contains(*ReadAddress("203.0.113.9")));
  EXPECT_FALSE((Network{*ReadAddress("0.0.0.0"), 0}).Contains(*ReadAddress("2001:db8::1")));
  EXPECT_TRUE((Network{*ReadAddress("::"), 0}).Contains(*ReadAddress("2001:db8::1")));
  EXPECT_FALSE((Network{*ReadAddress("::"), 0}).Contains(*ReadAddress("203.0.113.9")));
}

}  // namespace
}  // namespace upnp::log
