#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "support/Host.h"

namespace {

std::string Content(const char* name) {
  std::ifstream file(std::string(HARBOURLINE_PLUG_IN_KIT) + "/" + name);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(ExampleRouterTest, ThePageShowsTheExampleThatIsBuilt) {
  const std::string example = Content("example/ExampleRouter.cpp");
  ASSERT_FALSE(example.empty());
  EXPECT_NE(Content("README.md").find(example), std::string::npos);
}

TEST(ExampleRouterTest, TheExampleAnswersTheWholeContract) {
  const late::Ref<IDispatch> router = host::Make(L"Harbourline.Example");
  ASSERT_TRUE(router);
  EXPECT_TRUE(late::Call(router.get(), L"IServer_ServerTitle").IsText(L"Example Router"));
  EXPECT_TRUE(late::Call(router.get(), L"IServer_ClassName").IsText(L"Harbourline.Example"));
  EXPECT_TRUE(late::Call(router.get(), L"IServer_Functional").IsBool(true));
  EXPECT_TRUE(late::Call(router.get(), L"IServer_Configure").IsBool(false));
  EXPECT_TRUE(late::Call(router.get(), L"IServer_EnableLog").IsBool(false));
  EXPECT_EQ(late::Put(router.get(), L"IServer_EnableLog", late::Value(true)).code, S_OK);
  EXPECT_EQ(late::Put(router.get(), L"IServer_DMZ", late::Value(5L)).code, S_OK);
  EXPECT_EQ(late::Call(router.get(), L"IServer_SaveSettings").code, S_OK);
  late::Text address(L"192.168.1.5");
  EXPECT_TRUE(late::Call(router.get(), L"IServer_CheckForWarning", {address.Reference()}).IsBool(false));
  EXPECT_TRUE(late::Call(router.get(), L"IServer_SetLogging", {address.Reference()}).IsBool(false));
  EXPECT_EQ(late::Call(router.get(), L"IServer_ApplicationExiting", {address.Value()}).code, S_OK);
  const late::Answer source = late::Call(router.get(), L"IServer_EventHandler");
  EXPECT_EQ(source.value.vt, VT_DISPATCH);
  EXPECT_EQ(source.value.pdispVal, nullptr) << "it has no log";
}

TEST(ExampleRouterTest, TheExampleRemembersMappingsAndRefusesABackwardRange) {
  const late::Ref<IDispatch> router = host::Make(L"Harbourline.Example");
  ASSERT_TRUE(router);
  short octet = 5;
  long port = 81;
  late::MappingArray good({{L"Web", L"Pages", 80, 82, false, true, 5, false}});
  late::MappingArray bad({{L"Web", L"Pages", 82, 80, false, true, 5, false}});
  const auto forward = [&](late::MappingArray& array) {
    return late::Call(router.get(), L"IServer_SetPortForwarding",
                      {array.Reference(), late::Reference(octet)});
  };
  EXPECT_TRUE(forward(good).IsBool(false));
  EXPECT_TRUE(forward(bad).IsBool(true));
  EXPECT_TRUE(late::Call(router.get(), L"IServer_GetPortForwardingDescription", {late::Reference(port)})
                  .IsText(L"Pages"));
}

}  // namespace
