#include "rules/GatewayChoice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace upnp {
namespace {

FoundGateway Make(const std::string& device, int version, const std::string& service, bool connected,
                  const std::string& wan) {
  FoundGateway gateway;
  gateway.device = device;
  gateway.deviceType = "urn:schemas-upnp-org:device:InternetGatewayDevice:" + std::to_string(version);
  gateway.serviceType = "urn:schemas-upnp-org:service:" + service;
  gateway.connected = connected;
  gateway.wanAddress = wan;
  return gateway;
}

std::vector<std::string> Order(std::vector<FoundGateway> gateways) {
  SortByRank(gateways);
  std::vector<std::string> devices;
  for (const FoundGateway& gateway : gateways) devices.push_back(gateway.device);
  return devices;
}

TEST(GatewayChoiceTest, TheSecondVersionComesBeforeTheFirst) {
  EXPECT_THAT(Order({Make("one", 1, "WANIPConnection:1", true, "1.2.3.4"),
                     Make("two", 2, "WANIPConnection:2", true, "1.2.3.4")}),
              testing::ElementsAre("two", "one"));
}

TEST(GatewayChoiceTest, AnIpConnectionComesBeforeAPppConnection) {
  EXPECT_THAT(Order({Make("ppp", 1, "WANPPPConnection:1", true, "1.2.3.4"),
                     Make("ip", 1, "WANIPConnection:1", true, "1.2.3.4")}),
              testing::ElementsAre("ip", "ppp"));
}

TEST(GatewayChoiceTest, ConnectedAndPublicComeBeforeEverythingElse) {
  EXPECT_THAT(Order({Make("down", 2, "WANIPConnection:2", false, "1.2.3.4"),
                     Make("private", 2, "WANIPConnection:2", true, "192.168.0.7"),
                     Make("good", 1, "WANPPPConnection:1", true, "1.2.3.4")}),
              testing::ElementsAre("good", "private", "down"));
}

TEST(GatewayChoiceTest, TheGatewayOfTheDefaultRouteComesFirstAmongThoseThatWork) {
  FoundGateway route = Make("route", 1, "WANPPPConnection:1", true, "1.2.3.4");
  route.onDefaultRoute = true;
  FoundGateway down = Make("down", 1, "WANIPConnection:1", false, "");
  down.onDefaultRoute = true;
  const FoundGateway other = Make("other", 2, "WANIPConnection:2", true, "1.2.3.4");
  EXPECT_THAT(Order({other, down, route}), testing::ElementsAre("route", "other", "down"));
  EXPECT_TRUE(IsWorthTheMove(route, other));
  EXPECT_FALSE(IsWorthTheMove(other, route));
}

TEST(GatewayChoiceTest, TheUsersOwnRouterComesBeforeAnother) {
  FoundGateway own = Make("own", 1, "WANIPConnection:1", true, "10.0.0.1");
  own.own = true;
  FoundGateway other = Make("other", 2, "WANIPConnection:2", true, "1.2.3.4");
  other.onDefaultRoute = true;
  EXPECT_THAT(Order({other, own}), testing::ElementsAre("own", "other"));
}

TEST(GatewayChoiceTest, ARouterThatTellsNoAddressMayHaveAPublicOne) {
  FoundGateway mute = Make("mute", 1, "WANIPConnection:1", true, "");
  EXPECT_THAT(Order({Make("private", 2, "WANIPConnection:2", true, "10.0.0.1"), mute,
                     Make("public", 1, "WANIPConnection:1", true, "1.2.3.4")}),
              testing::ElementsAre("public", "mute", "private"));
  EXPECT_FALSE(IsWorthTheMove(Make("public", 1, "WANIPConnection:1", true, "1.2.3.4"), mute));
}

TEST(GatewayChoiceTest, AnotherVersionIsNotWorthAMove) {
  EXPECT_FALSE(IsWorthTheMove(Make("two", 2, "WANIPConnection:2", true, "1.2.3.4"),
                              Make("one", 1, "WANPPPConnection:1", true, "1.2.3.4")));
}

TEST(GatewayChoiceTest, OfADeviceWithTwoConnectionsTheOneThatIsUpCounts) {
  const std::vector<FoundGateway> best = BestOfEachDevice(
      {Make("a", 1, "WANIPConnection:1", false, ""), Make("a", 1, "WANPPPConnection:1", true, "1.2.3.4")});
  ASSERT_EQ(best.size(), 1u);
  EXPECT_THAT(best[0].serviceType, testing::HasSubstr("PPP"));
}

TEST(GatewayChoiceTest, TheUsersChoiceIsKnownByItsIdentifier) {
  const std::vector<FoundGateway> gateways = {Make("a", 2, "WANIPConnection:2", true, "1.2.3.4"),
                                              Make("b", 1, "WANIPConnection:1", true, "1.2.3.4")};
  EXPECT_EQ(ChooseGateway(gateways, "b"), 1u);
  EXPECT_EQ(ChooseGateway(gateways, ""), 0u);
  EXPECT_EQ(ChooseGateway(gateways, "c"), std::nullopt);
  EXPECT_EQ(ChooseGateway({}, ""), std::nullopt);
}

}  // namespace
}  // namespace upnp
