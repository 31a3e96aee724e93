#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Error.h"
#include "plugins/PortMappingData.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kNothing = "call IServer_SetPortForwarding(&[10..10]{null}, &7:16)";

class ActivationTest : public testing::Test {
 protected:
  ActivationTest() {
    registry.AddRouter("A.Router");
    registry.RouterTitle("A");
    script->calls.clear();
  }

  /// A profile whose mappings go to these hosts.
  std::shared_ptr<CMapProfile> Add(const std::string& sName, const std::vector<std::int16_t>& hosts) {
    auto profile = std::make_shared<CMapProfile>();
    profile->sName = sName;
    std::int32_t lPort = 100;
    for (const std::int16_t host : hosts) {
      auto mapping = std::make_shared<CMapping>();
      mapping->sDescription("to " + std::to_string(host));
      mapping->lBeginPort(lPort);
      mapping->lEndPort(lPort + 5);
      mapping->Protocal(0);
      mapping->iForwardIPAddress(host);
      profile->AddMapping(mapping);
      lPort += 100;
    }
    registry.AddMapProfile(profile, nullptr);
    return profile;
  }
  /// What one run hands to the plug-in: each mapping as "profile host", with "!" behind one that is to be
  /// removed.
  std::vector<std::string> Sent(bool bReset = false) {
    std::vector<std::string> sent;
    script->Do("IServer_SetPortForwarding", [&](std::span<platform::Argument> arguments) -> base::Variant {
      const auto& array = *std::get<base::ArrayRef>(arguments[0].value.Get());
      for (const base::Variant& element : array.elements) {
        const auto data = std::dynamic_pointer_cast<PortMappingData>(base::ToObject(element));
        if (!data) continue;
        sent.push_back(data->sProfileName + " " + std::to_string(data->iForwardIPAddress) +
                       (data->bClearEntry ? "!" : ""));
      }
      return false;
    });
    Run(bReset);
    return sent;
  }
  bool Run(bool bReset = false) {
    bool bSuccess = true;
    registry.ActivatePortForwarding(7, bReset, bSuccess);
    return bSuccess;
  }

  support::World world;
  std::shared_ptr<support::Script> script = world.objects.AddPlugIn("A.Router", "A");
  CRegistry registry;
};

TEST_F(ActivationTest, WithNoProfileActiveAndNothingMarkedThePlugInIsCalledWithBounds10To10) {
  Add("Idle", {-1, 12});
  Run();
  EXPECT_THAT(script->calls, ElementsAre(kNothing));
}

TEST_F(ActivationTest, WithNoProfileAtAllThePlugInIsCalledWithBounds10To10) {
  Run(true);
  EXPECT_THAT(script->calls, ElementsAre(kNothing));
}

TEST_F(ActivationTest, ClearingTheOnlyActiveProfileWithLocalMappingsSendsBounds10To10) {
  const auto profile = Add("Game", {-1, 7});
  profile->bEnabled = true;
  profile->bClear = true;
  Run();
  EXPECT_THAT(script->calls, ElementsAre(kNothing));
  EXPECT_FALSE(profile->bEnabled);
  EXPECT_FALSE(profile->bClear);
}

TEST_F(ActivationTest, ClearingAProfileWithAForeignMappingSendsItToBeRemovedWithItsAddressUnchanged) {
  const auto profile = Add("Game", {-1, 12});
  profile->bEnabled = true;
  profile->bClear = true;
  EXPECT_THAT(Sent(), ElementsAre("Game 12!"));
}

TEST_F(ActivationTest, ClearingAProfileThatIsNotActiveSendsNothingOfIt) {
  const auto profile = Add("Game", {-1, 12});
  profile->bClear = true;
  EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(ActivationTest, AMappingToThisComputerArrivesWithTheLastOctetOfItsAddress) {
  Add("Game", {-1})->bSet = true;
  bool bSuccess = false;
  world.network.localIP = "192.168.1.42";
  registry.ActivatePortForwarding(modCommon::GetLastOctet(world.network.localIP), false, bSuccess);
  EXPECT_THAT(
      script->calls,
      ElementsAre("call IServer_SetPortForwarding(&[0..0]{{\"Game\", \"to -1\", 100:32, 105:32, False, True, "
                  "42:16, False}}, &42:16)"));
}

TEST_F(ActivationTest, WithoutALocalAddressThisComputerIsHost0) {
  Add("Game", {-1})->bSet = true;
  bool bSuccess = false;
  registry.ActivatePortForwarding(modCommon::GetLastOctet(""), false, bSuccess);
  EXPECT_THAT(
      script->calls,
      ElementsAre("call IServer_SetPortForwarding(&[0..0]{{\"Game\", \"to -1\", 100:32, 105:32, False, True, "
                  "0:16, False}}, &0:16)"));
}

TEST_F(ActivationTest, AResetSendsForeignMappingsOfActiveProfilesWhichALaterRunDoesNot) {
  Add("Game", {-1, 12, 7})->bEnabled = true;
  Add("Idle", {-1, 12});
  EXPECT_THAT(Sent(true), ElementsAre("Game 7", "Game 12", "Game 7"));
  EXPECT_THAT(Sent(false), ElementsAre("Game 7", "Game 7"));
}

TEST_F(ActivationTest, AResetLeavesTheMarksOfActivityAsTheyAre) {
  const auto active = Add("Game", {-1});
  active->bEnabled = true;
  const auto idle = Add("Idle", {-1});
  Run(true);
  EXPECT_TRUE(active->bEnabled);
  EXPECT_FALSE(idle->bEnabled);
}

TEST_F(ActivationTest, AResetLooksAtNothingButActivityWhenItJudges) {
  const auto cleared = Add("Cleared", {-1, 12});
  cleared->bEnabled = true;
  cleared->bClear = true;
  Add("Set", {-1})->bSet = true;
  EXPECT_THAT(Sent(true), ElementsAre("Cleared 7", "Cleared 12"));
}

TEST_F(ActivationTest, SettingAProfileSendsAllItsMappings) {
  const auto profile = Add("Game", {-1, 12});
  profile->bSet = true;
  EXPECT_THAT(Sent(), ElementsAre("Game 7", "Game 12"));
  EXPECT_TRUE(profile->bEnabled);
  EXPECT_FALSE(profile->bSet);
}

TEST_F(ActivationTest, AProfileWithBothMarksEndsActiveThoughItWasJudgedByTheClearing) {
  const auto profile = Add("Game", {-1, 12});
  profile->bEnabled = true;
  profile->bClear = true;
  profile->bSet = true;
  EXPECT_THAT(Sent(), ElementsAre("Game 12!"));
  EXPECT_TRUE(profile->bEnabled);
  EXPECT_FALSE(profile->bClear);
  EXPECT_FALSE(profile->bSet);
}

TEST_F(ActivationTest, EveryRunSendsTheLocalMappingsOfAllActiveProfilesInOrder) {
  Add("Web", {7, 3})->bEnabled = true;
  Add("Game", {-1, 12})->bEnabled = true;
  Add("Mail", {-1})->bSet = true;
  EXPECT_THAT(Sent(), ElementsAre("Game 7", "Mail 7", "Web 7"));
}

TEST_F(ActivationTest, FillsTheProtocolsFromTheMappingsType) {
  const auto profile = Add("Game", {-1, -1, -1});
  std::int32_t lProtocal = 0;
  for (const auto& mapping : profile->ccMappings()) mapping->Protocal(lProtocal++);
  profile->bSet = true;
  std::vector<std::string> protocols;
  script->Do("IServer_SetPortForwarding", [&](std::span<platform::Argument> arguments) -> base::Variant {
    for (const base::Variant& element : std::get<base::ArrayRef>(arguments[0].value.Get())->elements) {
      const auto data = std::dynamic_pointer_cast<PortMappingData>(base::ToObject(element));
      protocols.push_back(std::string(data->bTCP ? "TCP" : "") + (data->bUDP ? "UDP" : ""));
    }
    return false;
  });
  Run();
  EXPECT_THAT(protocols, ElementsAre("TCP", "UDP", "TCPUDP"));
}

TEST_F(ActivationTest, AMappingWithNeitherProtocolIsSentWithNeither) {
  auto profile = std::make_shared<CMapProfile>();
  profile->AddMapping(std::make_shared<CMapping>());
  profile->bSet = true;
  registry.AddMapProfile(profile, nullptr);
  Run();
  EXPECT_THAT(script->calls,
              ElementsAre("call IServer_SetPortForwarding(&[0..0]{{\"\", \"\", 0:32, 0:32, False, False, "
                          "0:16, False}}, &7:16)"));
}

TEST_F(ActivationTest, TheMarksAreUpToDateBeforeThePlugInIsCalled) {
  const auto profile = Add("Game", {-1});
  profile->bSet = true;
  bool enabledAtCall = false;
  script->Do("IServer_SetPortForwarding", [&](std::span<platform::Argument>) -> base::Variant {
    enabledAtCall = profile->bEnabled && !profile->bSet;
    return false;
  });
  Run();
  EXPECT_TRUE(enabledAtCall);
}

TEST_F(ActivationTest, GivesBackWhatThePlugInAnswers) {
  EXPECT_FALSE(Run());
  script->Answer("IServer_SetPortForwarding", true);
  EXPECT_TRUE(Run());
}

TEST_F(ActivationTest, AFailedRunLeavesTheProfileInItsWantedState) {
  const auto profile = Add("Game", {-1});
  profile->bSet = true;
  script->Answer("IServer_SetPortForwarding", true);
  EXPECT_TRUE(Run());
  EXPECT_TRUE(profile->bEnabled);
  EXPECT_FALSE(profile->bSet);
}

TEST_F(ActivationTest, AFailureRaisedByThePlugInGoesToTheCallerWithTheMarksUpToDate) {
  const auto profile = Add("Game", {-1});
  profile->bSet = true;
  script->Fail("IServer_SetPortForwarding", 99, "no");
  EXPECT_THROW(Run(), base::Error);
  EXPECT_TRUE(profile->bEnabled);
}

TEST_F(ActivationTest, WithoutARouterTheMarksAreUpdatedAllTheSameAndTheResultIsNoFailure) {
  const auto profile = Add("Game", {-1});
  profile->bSet = true;
  registry.Router.reset();
  EXPECT_FALSE(Run());
  EXPECT_TRUE(profile->bEnabled);
  EXPECT_THAT(script->calls, IsEmpty());
}

TEST_F(ActivationTest, EachRunHandsOutRecordsOfItsOwn) {
  Add("Game", {-1})->bEnabled = true;
  std::vector<base::ObjectRef> records;
  script->Do("IServer_SetPortForwarding", [&](std::span<platform::Argument> arguments) -> base::Variant {
    records.push_back(base::ToObject(std::get<base::ArrayRef>(arguments[0].value.Get())->At(0)));
    dynamic_cast<PortMappingData&>(*records.back()).lBeginPort = 9;
    return false;
  });
  Run();
  Run();
  EXPECT_NE(records[0], records[1]);
  EXPECT_EQ((*(*registry.ccMapProfiles().begin())->ccMappings().begin())->lBeginPort(), 100);
}

}  // namespace
