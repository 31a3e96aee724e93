#pragma once

#include <gtest/gtest.h>

#include "FakeRouter.h"
#include "rules/Engine.h"

namespace upnp {

class FakeNetwork : public Network {
 public:
  SearchResult Search(const SearchAim& theAim) override {
    ++searches;
    aim = theAim;
    if (calledOff) return {{}, true};
    return {found, false};
  }
  std::vector<std::string> DefaultGateways() override { return routes; }
  std::unique_ptr<Gateway> Connect(const FoundGateway& gateway) override {
    return std::make_unique<BorrowedRouter>(*routers.at(gateway.device));
  }
  std::string LocalAddressTowards(const FoundGateway&) override { return localAddress; }

  std::vector<FoundGateway> found;
  std::map<std::string, FakeRouter*> routers;
  std::string localAddress = "192.168.1.5";
  std::vector<std::string> routes;
  SearchAim aim;  ///< of the last search
  bool calledOff = false;
  int searches = 0;
};

inline FoundGateway Found(const std::string& device, const std::string& host = "192.168.1.1") {
  FoundGateway gateway;
  gateway.device = device;
  gateway.deviceType = "urn:schemas-upnp-org:device:InternetGatewayDevice:1";
  gateway.serviceType = "urn:schemas-upnp-org:service:WANIPConnection:1";
  gateway.controlUrl = "http://" + host + ":5000/ctl";
  gateway.location = "http://" + host + ":5000/root.xml";
  gateway.localAddress = "192.168.1.5";
  gateway.connected = true;
  gateway.wanAddress = "1.2.3.4";
  return gateway;
}

inline SsdpMessage Alive(const std::string& device, std::optional<std::uint32_t> bootId) {
  return {SsdpMessage::Kind::kAlive,
          "urn:schemas-upnp-org:device:InternetGatewayDevice:1",
          device,
          "http://192.168.1.1:5000/root.xml",
          bootId,
          "192.168.1.1"};
}

class EngineTest : public testing::Test {
 protected:
  EngineTest() {
    network.found = {Found("uuid:a")};
    network.routers = {{"uuid:a", &router}, {"uuid:b", &second}};
  }
  void Want(std::vector<WishedMapping> mappings) { engine.Want({std::move(mappings), 5}); }
  void WantPort80() { Want({Wished(80, 80, true, false, 5)}); }
  bool Tells(Trouble trouble) { return HasTrouble(engine.State().problems, trouble); }

  HandClock clock;
  FakeRouter router{clock};
  FakeRouter second{clock};
  MemoryStore store;
  OwnMappings own{store};
  CountingProgress progress;
  FakeNetwork network;
  MemoryRouters routerStore;
  KnownRouters known{routerStore};
  NoTrace trace;
  Engine engine{network, own, known, clock, progress, trace, ""};
};

}  // namespace upnp
