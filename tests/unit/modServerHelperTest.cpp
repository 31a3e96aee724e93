#include "plugins/modServerHelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/Error.h"
#include "plugins/PortMappingData.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class modServerHelperTest : public testing::Test {
 protected:
  template <typename Action>
  static base::Error FailureOf(Action action) {
    try {
      action();
    } catch (const base::Error& error) {
      return error;
    }
    return base::Error(0, "");
  }

  support::World world;
  std::shared_ptr<support::Script> script = world.objects.AddPlugIn("Test.Router", "Test Router");
  platform::LateBoundRef router = world.objects.Create("Test.Router");
  platform::LateBoundRef none;
  std::vector<std::string>& calls = script->calls;
};

TEST_F(modServerHelperTest, AnswersForItselfWhenNoRouterIsSelected) {
  EXPECT_EQ(modServerHelper::ServerTitle(none), "N/A");
  EXPECT_EQ(modServerHelper::ClassName(none), "N/A");
  EXPECT_EQ(modServerHelper::Version(none), "N/A");
  EXPECT_EQ(modServerHelper::WANIP(none), "N/A");
  EXPECT_EQ(modServerHelper::GetPortForwardingDescription(none, 80), "");
  EXPECT_FALSE(modServerHelper::Functional(none));
  EXPECT_FALSE(modServerHelper::GetEnableLog(none));
  EXPECT_FALSE(modServerHelper::Configure(none));
  EXPECT_FALSE(modServerHelper::CheckForWarning(none, "192.168.1.7"));
  EXPECT_FALSE(modServerHelper::SetLogging(none, "192.168.1.7"));
  std::vector<std::string> sNames{"before"};
  std::vector<std::int16_t> iIdentifiers{1};
  EXPECT_FALSE(modServerHelper::GetFeatures(none, sNames, iIdentifiers));
  EXPECT_THAT(sNames, ElementsAre("before"));
  EXPECT_TRUE(modServerHelper::ActivateFeaure(none, "192.168.1.7", 1));
  EXPECT_EQ(modServerHelper::EventHandler(none), nullptr);
}

TEST_F(modServerHelperTest, ReportsSuccessOfPortForwardingWhenNoRouterIsSelected) {
  EXPECT_FALSE(
      modServerHelper::SetPortForwarding(none, base::MakeArray(base::ElementType::kObject, 0, {}), 7));
}

TEST_F(modServerHelperTest, WritesAndTellsNothingWhenNoRouterIsSelected) {
  modServerHelper::SetDMZ(none, 7);
  modServerHelper::SetEnableLog(none, true);
  modServerHelper::ApplicationExiting(none, "192.168.1.7");
  modServerHelper::SaveSettings(none);
  EXPECT_THAT(world.journal, IsEmpty());
}

TEST_F(modServerHelperTest, ReadsTextsByName) {
  EXPECT_EQ(modServerHelper::ServerTitle(router), "Test Router");
  EXPECT_EQ(modServerHelper::ClassName(router), "Test.Router");
  EXPECT_EQ(modServerHelper::Version(router), "1.0");
  EXPECT_EQ(modServerHelper::WANIP(router), "203.0.113.9");
  EXPECT_THAT(calls, ElementsAre("get IServer_ServerTitle", "get IServer_ClassName", "get IServer_Version",
                                 "get IServer_WANIP"));
}

TEST_F(modServerHelperTest, ReadsBooleansByName) {
  script->Answer("IServer_EnableLog", true);
  EXPECT_TRUE(modServerHelper::Functional(router));
  EXPECT_TRUE(modServerHelper::GetEnableLog(router));
  EXPECT_THAT(calls, ElementsAre("get IServer_Functional", "get IServer_EnableLog"));
}

TEST_F(modServerHelperTest, WritesTheTwoWritablePropertiesByValueInTheirTypes) {
  modServerHelper::SetDMZ(router, 7);
  modServerHelper::SetEnableLog(router, true);
  EXPECT_THAT(calls, ElementsAre("put IServer_DMZ = 7:32", "put IServer_EnableLog = True"));
}

TEST_F(modServerHelperTest, CallsConfigureWithoutArguments) {
  script->Answer("IServer_Configure", true);
  EXPECT_TRUE(modServerHelper::Configure(router));
  EXPECT_THAT(calls, ElementsAre("call IServer_Configure()"));
}

TEST_F(modServerHelperTest, HandsTheLocalAddressByReference) {
  script->Answer("IServer_CheckForWarning", true);
  EXPECT_TRUE(modServerHelper::CheckForWarning(router, "192.168.1.7"));
  EXPECT_FALSE(modServerHelper::SetLogging(router, "192.168.1.7"));
  EXPECT_THAT(calls, ElementsAre("call IServer_CheckForWarning(&\"192.168.1.7\")",
                                 "call IServer_SetLogging(&\"192.168.1.7\")"));
}

TEST_F(modServerHelperTest, HandsTheLocalAddressOfTheExitByValue) {
  modServerHelper::ApplicationExiting(router, "192.168.1.7");
  EXPECT_THAT(calls, ElementsAre("call IServer_ApplicationExiting(\"192.168.1.7\")"));
}

TEST_F(modServerHelperTest, HandsTheMappingsAndTheOctetByReference) {
  script->Answer("IServer_SetPortForwarding", true);
  const auto array = base::MakeArray(base::ElementType::kObject, 10, {base::ObjectRef()});
  EXPECT_TRUE(modServerHelper::SetPortForwarding(router, array, 7));
  EXPECT_THAT(calls, ElementsAre("call IServer_SetPortForwarding(&[10..10]{null}, &7:16)"));
}

TEST_F(modServerHelperTest, HandsAFeatureByReferenceUnderTheContractsSpelling) {
  EXPECT_FALSE(modServerHelper::ActivateFeaure(router, "192.168.1.7", 3));
  EXPECT_THAT(calls, ElementsAre("call IServer_ActivateFeaure(&\"192.168.1.7\", &3:16)"));
}

TEST_F(modServerHelperTest, HandsAPortByReferenceIn32Bits) {
  script->Answer("IServer_GetPortForwardingDescription", "web");
  EXPECT_EQ(modServerHelper::GetPortForwardingDescription(router, 70000), "web");
  EXPECT_THAT(calls, ElementsAre("call IServer_GetPortForwardingDescription(&70000:32)"));
}

TEST_F(modServerHelperTest, CallsSaveSettingsAndDropsItsResult) {
  script->Answer("IServer_SaveSettings", base::ObjectRef());
  modServerHelper::SaveSettings(router);
  EXPECT_THAT(calls, ElementsAre("call IServer_SaveSettings()"));
}

TEST_F(modServerHelperTest, AsksForFeaturesWithTwoEmptyArrays) {
  std::vector<std::string> sNames;
  std::vector<std::int16_t> iIdentifiers;
  EXPECT_FALSE(modServerHelper::GetFeatures(router, sNames, iIdentifiers));
  EXPECT_THAT(calls, ElementsAre("call IServer_GetFeatures(&[0..-1]{}, &[0..-1]{})"));
}

TEST_F(modServerHelperTest, GivesEachArrayOfFeaturesItsElementType) {
  std::vector<base::ElementType> types;
  script->Do("IServer_GetFeatures", [&](std::span<platform::Argument> arguments) -> base::Variant {
    for (const platform::Argument& argument : arguments) {
      types.push_back(std::get<base::ArrayRef>(argument.value.Get())->type);
    }
    return false;
  });
  std::vector<std::string> sNames;
  std::vector<std::int16_t> iIdentifiers;
  modServerHelper::GetFeatures(router, sNames, iIdentifiers);
  EXPECT_THAT(types, ElementsAre(base::ElementType::kText, base::ElementType::kInt16));
}

TEST_F(modServerHelperTest, ReadsTheFeaturesThatThePlugInPutIntoTheArrays) {
  script->Do("IServer_GetFeatures", [](std::span<platform::Argument> arguments) -> base::Variant {
    std::get<base::ArrayRef>(arguments[0].value.Get())->elements = {"Reboot", "Renew"};
    std::get<base::ArrayRef>(arguments[1].value.Get())->elements = {std::int16_t{4}, std::int16_t{9}};
    return true;
  });
  std::vector<std::string> sNames;
  std::vector<std::int16_t> iIdentifiers;
  EXPECT_TRUE(modServerHelper::GetFeatures(router, sNames, iIdentifiers));
  EXPECT_THAT(sNames, ElementsAre("Reboot", "Renew"));
  EXPECT_THAT(iIdentifiers, ElementsAre(4, 9));
}

TEST_F(modServerHelperTest, ReadsFeatureArraysThatThePlugInPutInPlaceFromTheirOwnLowerBound) {
  script->Do("IServer_GetFeatures", [](std::span<platform::Argument> arguments) -> base::Variant {
    arguments[0].value = base::MakeArray(base::ElementType::kText, 1, {"Reboot"});
    arguments[1].value = base::MakeArray(base::ElementType::kInt16, 1, {std::int16_t{4}});
    return true;
  });
  std::vector<std::string> sNames;
  std::vector<std::int16_t> iIdentifiers;
  EXPECT_TRUE(modServerHelper::GetFeatures(router, sNames, iIdentifiers));
  EXPECT_THAT(sNames, ElementsAre("Reboot"));
  EXPECT_THAT(iIdentifiers, ElementsAre(4));
}

TEST_F(modServerHelperTest, ReadsErasedFeatureArraysAsEmpty) {
  script->Do("IServer_GetFeatures", [](std::span<platform::Argument> arguments) -> base::Variant {
    arguments[0].value = base::ArrayRef();
    arguments[1].value = base::ArrayRef();
    return false;
  });
  std::vector<std::string> sNames{"x"};
  std::vector<std::int16_t> iIdentifiers{1};
  EXPECT_FALSE(modServerHelper::GetFeatures(router, sNames, iIdentifiers));
  EXPECT_THAT(sNames, IsEmpty());
  EXPECT_THAT(iIdentifiers, IsEmpty());
}

TEST_F(modServerHelperTest, APlugInThatChangesTheLocalAddressChangesNothingThatTheCallerSees) {
  int changed = 0;
  for (const char* member : {"IServer_CheckForWarning", "IServer_SetLogging", "IServer_ActivateFeaure"}) {
    script->Do(member, [&](std::span<platform::Argument> arguments) -> base::Variant {
      EXPECT_TRUE(arguments[0].byReference);
      arguments[0].value = "changed";
      ++changed;
      return false;
    });
  }
  std::string sLocalIP = "192.168.1.7";
  modServerHelper::CheckForWarning(router, sLocalIP);
  modServerHelper::SetLogging(router, sLocalIP);
  modServerHelper::ActivateFeaure(router, sLocalIP, 1);
  EXPECT_EQ(changed, 3);
  EXPECT_EQ(sLocalIP, "192.168.1.7");
  sLocalIP = "10.0.0.8";
  calls.clear();
  modServerHelper::SetLogging(router, sLocalIP);
  EXPECT_THAT(calls, ElementsAre("call IServer_SetLogging(&\"10.0.0.8\")"))
      << "an address that has changed meanwhile is told as it is now";
}

TEST_F(modServerHelperTest, APlugInThatReplacesTheMappingsOrTheOctetChangesNothingThatTheCallerSees) {
  script->Do("IServer_SetPortForwarding", [](std::span<platform::Argument> arguments) -> base::Variant {
    arguments[0].value = base::ArrayRef();
    arguments[1].value = "not even a number";
    return false;
  });
  const auto array = base::MakeArray(base::ElementType::kObject, 10, {base::ObjectRef()});
  EXPECT_FALSE(modServerHelper::SetPortForwarding(router, array, 7));
  EXPECT_EQ(array->lowerBound, 10);
}

TEST_F(modServerHelperTest, ThePlugInsWritesToTheMappingsAreSeenByTheCaller) {
  script->Do("IServer_SetPortForwarding", [](std::span<platform::Argument> arguments) -> base::Variant {
    std::get<base::ArrayRef>(arguments[0].value.Get())->elements.clear();
    return false;
  });
  const auto array = base::MakeArray(base::ElementType::kObject, 10, {base::ObjectRef()});
  modServerHelper::SetPortForwarding(router, array, 7);
  EXPECT_TRUE(array->elements.empty());
}

TEST_F(modServerHelperTest, ANumberWhereABooleanIsExpectedIsTrueWhenItIsNotZero) {
  script->Answer("IServer_Functional", 2);
  EXPECT_TRUE(modServerHelper::Functional(router));
  script->Answer("IServer_Functional", std::int16_t{0});
  EXPECT_FALSE(modServerHelper::Functional(router));
  script->Answer("IServer_SetLogging", -1.5);
  EXPECT_TRUE(modServerHelper::SetLogging(router, ""));
}

TEST_F(modServerHelperTest, NothingWhereABooleanIsExpectedIsFalse) {
  script->Answer("IServer_SetLogging", {});
  EXPECT_FALSE(modServerHelper::SetLogging(router, ""));
}

TEST_F(modServerHelperTest, ANumberWhereATextIsExpectedIsItsText) {
  script->Answer("IServer_Version", 1.5);
  EXPECT_EQ(modServerHelper::Version(router), "1.5");
}

TEST_F(modServerHelperTest, AResultThatDoesNotConvertIsAFailure) {
  script->Answer("IServer_Functional", "perhaps");
  EXPECT_EQ(FailureOf([&] { modServerHelper::Functional(router); }).Number(),
            base::ErrorNumber::kTypeMismatch);
  script->Answer("IServer_Version", base::ObjectRef());
  EXPECT_EQ(FailureOf([&] { modServerHelper::Version(router); }).Number(), base::ErrorNumber::kTypeMismatch);
}

TEST_F(modServerHelperTest, AMissingMemberFailsAtTheCallAndNotBefore) {
  script->Lack("IServer_Version");
  EXPECT_EQ(modServerHelper::ServerTitle(router), "Test Router");
  EXPECT_EQ(FailureOf([&] { modServerHelper::Version(router); }).Number(),
            base::ErrorNumber::kMemberNotFound);
}

TEST_F(modServerHelperTest, AFailureOfThePlugInPassesThroughWithItsNumberAndText) {
  script->Fail("IServer_SetLogging", -2147220991, "Router is asleep");
  const base::Error error = FailureOf([&] { modServerHelper::SetLogging(router, "192.168.1.7"); });
  EXPECT_EQ(error.Number(), -2147220991);
  EXPECT_EQ(error.Text(), "Router is asleep");
}

TEST_F(modServerHelperTest, HandsOutTheEventSourceThatThePlugInHas) {
  const auto source = std::make_shared<support::ScriptedObject>(std::make_shared<support::Script>());
  script->Answer("IServer_EventHandler", source);
  const auto handler = modServerHelper::EventHandler(router);
  EXPECT_NE(handler, nullptr);
  EXPECT_EQ(world.objects.Connections(), 1u);
  EXPECT_THAT(calls, ElementsAre("get IServer_EventHandler"));
}

TEST_F(modServerHelperTest, HandsOutNoEventSourceWhenThePlugInHasNone) {
  EXPECT_EQ(modServerHelper::EventHandler(router), nullptr);
  script->Answer("IServer_EventHandler", {});
  EXPECT_EQ(modServerHelper::EventHandler(router), nullptr);
}

TEST_F(modServerHelperTest, FailsForAnEventSourceThatIsNone) {
  script->Answer("IServer_EventHandler", "text");
  EXPECT_EQ(FailureOf([&] { modServerHelper::EventHandler(router); }).Number(),
            base::ErrorNumber::kObjectRequired);
  script->Answer("IServer_EventHandler", std::make_shared<PortMappingData>());
  EXPECT_EQ(FailureOf([&] { modServerHelper::EventHandler(router); }).Number(),
            base::ErrorNumber::kTypeMismatch);
}

TEST_F(modServerHelperTest, FailsForAnEventSourceWithoutTheEvents) {
  const auto sourceScript = std::make_shared<support::Script>();
  sourceScript->lacksEvents = true;
  script->Answer("IServer_EventHandler", std::make_shared<support::ScriptedObject>(sourceScript));
  EXPECT_THROW(modServerHelper::EventHandler(router), base::Error);
  EXPECT_EQ(world.objects.Connections(), 0u);
}

}  // namespace
