#include "rules/WebAddress.h"

#include <gtest/gtest.h>

namespace upnp {
namespace {

TEST(WebAddressTest, TakesAddressesApart) {
  EXPECT_EQ(HostOf("http://192.168.1.1:5000/x"), "192.168.1.1");
  EXPECT_EQ(PortOf("http://192.168.1.1:5000/x"), 5000);
  EXPECT_EQ(PortOf("HTTP://192.168.1.1/x"), 80);
  EXPECT_EQ(PortOf("http://192.168.1.1:99999/x"), 0);
  EXPECT_EQ(HostOf("https://192.168.1.1/"), "");
  EXPECT_EQ(PortOf("nothing"), 0);
  EXPECT_EQ(HostOf("http://[fe80::1]/x"), "[fe80::1]");
  EXPECT_EQ(PortOf("http://[fe80::1]/x"), 80);
  EXPECT_EQ(PathOf("http://192.168.1.1"), "/");
  EXPECT_EQ(PathOf("http://192.168.1.1?a"), "/?a");
  EXPECT_EQ(PathOf("http://192.168.1.1:80/a/b?c"), "/a/b?c");
}

TEST(WebAddressTest, AnotherHostIsPutInAndTheRestStays) {
  EXPECT_EQ(WithHost("http://router.lan/a", "10.0.0.1"), "http://10.0.0.1:80/a");
  EXPECT_EQ(WithHost("http://me@evil:99/a", "10.0.0.1"), "http://10.0.0.1:99/a");
  EXPECT_EQ(WithHost("http://router.lan:0/a", "10.0.0.1"), "");
  EXPECT_EQ(WithHost("https://router.lan/a", "10.0.0.1"), "");
  EXPECT_EQ(WithHost("http:///a", "10.0.0.1"), "");
}

TEST(WebAddressTest, ThePageOfTheRouterItselfIsOpenedAsItIs) {
  for (const char* page : {"http://192.168.1.1", "http://192.168.1.1/", "HTTPS://192.168.1.1:8443/a?b=c#d",
                           "http://192.168.1.1:80/index.html"}) {
    EXPECT_EQ(RouterPage(page, "192.168.1.1"), page);
  }
}

TEST(WebAddressTest, AnyOtherPageIsReplacedByTheRoutersFrontPage) {
  for (const char* page :
       {"", "http://router.lan/", "http://192.168.1.10/", "http://192.168.1.1.evil.example/",
        "http://192.168.1.1@evil.example/", "http://192.168.1.1:80@evil.example/", "http://192.168.1.1:/",
        "http://192.168.1.1\\@evil.example/", "file:///c:/windows/system32/calc.exe",
        "http://192.168.1.1/\" --run \"calc.exe", "http://192.168.1.1/a b", "http://192.168.1.1/'",
        "http://192.168.1.1/\r\nx", "javascript:alert(1)", "\\\\192.168.1.1\\share",
        "http://192.168.1.1?x"}) {
    EXPECT_EQ(RouterPage(page, "192.168.1.1"), "http://192.168.1.1/") << page;
  }
  EXPECT_EQ(RouterPage("http://x/", "x"), "");
}

}  // namespace
}  // namespace upnp
