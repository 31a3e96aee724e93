#include "rules/KnownRouters.h"

#include <gtest/gtest.h>

#include "FakeRouter.h"

namespace upnp {
namespace {

FoundGateway Router(const std::string& device, const std::string& address = "192.168.1.1",
                    const std::string& model = "Model 7") {
  FoundGateway gateway;
  gateway.device = device;
  gateway.maker = "Maker";
  gateway.model = model;
  gateway.controlUrl = "http://" + address + ":5000/ctl";
  return gateway;
}

class KnownRoutersTest : public testing::Test {
 protected:
  FoundGateway Recognised(const FoundGateway& gateway) {
    std::vector<FoundGateway> found = {gateway};
    known.Recognise(found);
    return found[0];
  }
  MemoryRouters store;
  KnownRouters known{store};
};

TEST_F(KnownRoutersTest, AnAcceptedRouterIsKnownByItsIdentifierAtAnyAddress) {
  known.Accept(Router("uuid:a"));
  EXPECT_TRUE(Recognised(Router("uuid:a", "10.0.0.1", "Another")).own);
  EXPECT_FALSE(Recognised(Router("uuid:b", "10.0.0.2", "Another")).own);
}

TEST_F(KnownRoutersTest, ANewIdentifierAtTheSameAddressWithTheSameModelIsTheSameRouter) {
  known.Accept(Router("uuid:a"));
  const FoundGateway again = Recognised(Router("uuid:b"));
  EXPECT_TRUE(again.own);
  EXPECT_EQ(again.device, "uuid:a");
  EXPECT_EQ(again.announced, "uuid:b");
}

TEST_F(KnownRoutersTest, ItIsTheSameRouterAfterEveryRestartAndTheListDoesNotGrow) {
  known.Accept(Router("uuid:0"));
  const std::size_t length = store.text.size();
  for (int i = 1; i < 9; ++i) EXPECT_EQ(Recognised(Router("uuid:" + std::to_string(i))).device, "uuid:0");
  EXPECT_EQ(store.text.size(), length);
  KnownRouters later(store);
  std::vector<FoundGateway> found = {Router("uuid:9")};
  later.Recognise(found);
  EXPECT_EQ(found[0].device, "uuid:0");
}

TEST_F(KnownRoutersTest, AnotherModelOrAnotherAddressIsAnotherRouter) {
  known.Accept(Router("uuid:a"));
  EXPECT_FALSE(Recognised(Router("uuid:b", "192.168.1.1", "Model 8")).own);
  EXPECT_FALSE(Recognised(Router("uuid:b", "192.168.1.2")).own);
}

TEST_F(KnownRoutersTest, ATwinIsNotTakenForARouterThatIsThereItself) {
  known.Accept(Router("uuid:a"));
  std::vector<FoundGateway> found = {Router("uuid:b"), Router("uuid:a", "192.168.1.2")};
  known.Recognise(found);
  EXPECT_FALSE(found[0].own);
  EXPECT_TRUE(found[1].own);
}

TEST_F(KnownRoutersTest, ARouterThatSaysNothingOfItsModelIsKnownByItsNameThere) {
  FoundGateway plain = Router("uuid:a", "192.168.1.1", "");
  plain.maker.clear();
  known.Accept(plain);
  plain.device = "uuid:b";
  EXPECT_FALSE(Recognised(plain).own);
  plain.name = "Box";
  plain.device = "uuid:c";
  known.Accept(plain);
  plain.device = "uuid:d";
  EXPECT_TRUE(Recognised(plain).own);
}

TEST_F(KnownRoutersTest, TheListIsBoundedAndBrokenLinesAreLeftOut) {
  for (int i = 0; i < 100; ++i)
    known.Accept(Router("uuid:" + std::to_string(i), "10.0.0." + std::to_string(i)));
  EXPECT_FALSE(known.Has("uuid:0"));
  EXPECT_TRUE(known.Has("uuid:99"));
  store.text = "\n\t\nuuid:a\nuuid:b\tuuid:c\t1.2.3.4\tM\n";
  const KnownRouters later(store);
  EXPECT_FALSE(later.Has("uuid:a"));
  EXPECT_TRUE(later.Has("uuid:b"));
}

}  // namespace
}  // namespace upnp
