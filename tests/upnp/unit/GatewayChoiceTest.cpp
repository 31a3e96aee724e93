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
