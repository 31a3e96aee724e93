#include "rules/DeviceDescription.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace upnp {
namespace {

constexpr char kLocation[] = "http://192.168.1.1:5000/desc/root.xml";

constexpr char kRouter[] = R"(<?xml version="1.0"?>
<root xmlns="urn:schemas-upnp-org:device-1-0"><specVersion><major>1</major></specVersion>
<device><deviceType>urn:schemas-upnp-org:device:InternetGatewayDevice:1</deviceType>
<friendlyName>Home &amp; Garden</friendlyName><manufacturer>Maker</manufacturer><modelName>Model 7</modelName>
<UDN>uuid:root</UDN>
<serviceList><service><serviceType>urn:schemas-upnp-org:service:Layer3Forwarding:1</serviceType>
<controlURL>/l3f</controlURL></service></serviceList>
<deviceList><device><UDN>uuid:wan</UDN><serviceList>
<service><serviceType>urn:schemas-upnp-org:service:WANPPPConnection:1</serviceType>
<controlURL>ctl/ppp</controlURL></service>
<service><serviceType>urn:schemas-upnp-org:service:WANIPConnection:1</serviceType>
<controlURL> /ctl/ip </controlURL></service>
</serviceList></device></deviceList><presentationURL>/index.html</presentationURL></device></root>)";

TEST(DeviceDescriptionTest, ReadsTheRouterAndItsConnections) {
  const DeviceDescription router = ReadDescription(kRouter, kLocation);
  EXPECT_EQ(router.device, "uuid:root");
  EXPECT_EQ(router.name, "Home & Garden");
  EXPECT_EQ(router.maker, "Maker");
  EXPECT_EQ(router.model, "Model 7");
  EXPECT_THAT(router.type, testing::EndsWith("InternetGatewayDevice:1"));
  EXPECT_EQ(router.page, "http://192.168.1.1:5000/index.html");
  ASSERT_EQ(router.connections.size(), 2u);
  EXPECT_EQ(router.connections[0].controlUrl, "http://192.168.1.1:5000/desc/ctl/ppp");
  EXPECT_EQ(router.connections[1].controlUrl, "http://192.168.1.1:5000/ctl/ip");
}

std::string WithControl(const std::string& control) {
  return "<root><device><UDN>uuid:x</UDN><service><serviceType>urn:x:service:WANIPConnection:1</serviceType>"
         "<controlURL>" +
         control + "</controlURL></service></device></root>";
}

std::string ControlOf(const std::string& text) {
  const DeviceDescription router = ReadDescription(text, kLocation);
  return router.connections.empty() ? "none" : router.connections[0].controlUrl;
}

TEST(DeviceDescriptionTest, ControlsOnAnotherHostAreAskedAtTheRouterItself) {
  EXPECT_EQ(ControlOf(WithControl("http://10.9.9.9/ctl")), "http://192.168.1.1:80/ctl");
  EXPECT_EQ(ControlOf(WithControl("http://router.lan:4900/ctl?a=b")), "http://192.168.1.1:4900/ctl?a=b");
  EXPECT_EQ(ControlOf(WithControl("http://[fe80::1]:4900/ctl")), "http://192.168.1.1:4900/ctl");
}

TEST(DeviceDescriptionTest, ControlsThatAreNoWebAddressAreLeftOut) {
  EXPECT_EQ(ControlOf(WithControl("file:///c:/windows")), "none");
  EXPECT_EQ(ControlOf(WithControl("ftp://192.168.1.1/ctl")), "none");
  EXPECT_EQ(ControlOf(WithControl("")), "none");
}

TEST(DeviceDescriptionTest, ABaseOfAnotherHostKeepsItsPortAndPath) {
  EXPECT_EQ(ControlOf("<root><URLBase>http://router.lan:4900/igd/</URLBase>" + WithControl("ctl")),
            "http://192.168.1.1:4900/igd/ctl");
}

TEST(DeviceDescriptionTest, ADescriptionBeyondTheBoundIsNone) {
  const std::string text = WithControl("/ctl");
  EXPECT_EQ(ControlOf(text + std::string(kLongestDescription - text.size(), ' ')),
            "http://192.168.1.1:5000/ctl");
  EXPECT_EQ(ControlOf(text + std::string(kLongestDescription - text.size() + 1, ' ')), "none");
}

TEST(DeviceDescriptionTest, WhatTheRootDeviceSaysCountsMoreThanADeviceWithinIt) {
  const DeviceDescription router = ReadDescription(
      "<root><device><deviceList><device><UDN>uuid:inner</UDN><modelName>Inner</modelName></device></"
      "deviceList>"
      "<UDN>uuid:outer</UDN></device></root>",
      kLocation);
  EXPECT_EQ(router.device, "uuid:outer");
  EXPECT_EQ(router.model, "Inner");
}

TEST(DeviceDescriptionTest, WhatStandsInACommentIsNotRead) {
  EXPECT_EQ(ControlOf("<!-- " + WithControl("/old") + " -->" + WithControl("/new")),
            "http://192.168.1.1:5000/new");
}

TEST(DeviceDescriptionTest, ABaseOfTheSameHostIsTaken) {
  const std::string text =
      "<root><URLBase>http://192.168.1.1:80/</URLBase><service><serviceType>urn:x:service:WANIPConnection:1"
      "</serviceType><controlURL>ctl</controlURL></service></root>";
  const DeviceDescription router = ReadDescription(text, kLocation);
  ASSERT_EQ(router.connections.size(), 1u);
  EXPECT_EQ(router.connections[0].controlUrl, "http://192.168.1.1:80/ctl");
}

TEST(DeviceDescriptionTest, BrokenTextsGiveNoConnection) {
  const std::string whole = kRouter;
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    EXPECT_LE(ReadDescription(whole.substr(0, length), kLocation).connections.size(), 2u);
  }
  for (const char* text :
       {"", "<", "<service>", "<service><service><service>", "<html>404</html>", "<></>", "<:>"}) {
    EXPECT_TRUE(ReadDescription(text, kLocation).connections.empty()) << text;
  }
}

TEST(DeviceDescriptionTest, AMillionServicesEndSoon) {
  std::string text = "<root>";
  for (int i = 0; i < 20000; ++i)
    text += "<service><serviceType>a:WANIPConnection:1</serviceType><controlURL>/c</controlURL></service>";
  EXPECT_LE(ReadDescription(text, kLocation).connections.size(), 8u);
}

}  // namespace
}  // namespace upnp
