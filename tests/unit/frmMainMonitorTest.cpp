#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/frmMain.h"
#include "support/Shell.h"

namespace {

using testing::IsEmpty;

class frmMainMonitorTest : public testing::Test, protected support::Shell {
 protected:
  void StartInMode(const std::string& mode) {
    SelectRouter();
    Store("TrayLights", mode);
    Start();
    Tick();  // takes the first counters
  }
  void Tick() { world.toolkit.Advance(333); }
  void Traffic(std::uint32_t in, std::uint32_t out) {
    world.network.statistics.inSegments += in;
    world.network.statistics.outSegments += out;
  }
  std::uintptr_t Shown() const { return world.notificationArea.calls.back().data.hIcon; }
  /// The picture of that resource name.
  std::string Picture() const {
    const ui::PictureRef& icon = Tray().Icon();
    return icon ? icon->resource : "none";
  }
};

TEST_F(frmMainMonitorTest, TheFirstConnectedTickLeavesTheIconAsItWas) {
  StartInMode("1");
  EXPECT_EQ(Picture(), "HARBOURLINE");
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT01");
}

TEST_F(frmMainMonitorTest, ActivityLightsFollowTheCounters) {
  StartInMode("1");
  Traffic(0, 1);
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT02");
  Traffic(1, 0);
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT03");
  Traffic(5, 5);
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT04");
}

TEST_F(frmMainMonitorTest, AWarningFlashesOnEveryOtherTick) {
  StartInMode("1");
  router->Answer("IServer_CheckForWarning", true);
  std::vector<std::string> pictures;
  for (int i = 0; i < 4; ++i) {
    Tick();
    pictures.push_back(Picture());
  }
  EXPECT_THAT(pictures, testing::ElementsAre("NETLIGHT01", "NETLIGHT05", "NETLIGHT01", "NETLIGHT05"));
}

TEST_F(frmMainMonitorTest, TheSpeedBarFillsAndFalls) {
  StartInMode("2");
  Traffic(50, 50);
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT14");
  Traffic(10, 10);
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT11");
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT10");
}

TEST_F(frmMainMonitorTest, AFullBarOnAFlashTickShowsTheFlashingNotConnectedPicture) {
  StartInMode("2");
  Tick();
  router->Answer("IServer_CheckForWarning", true);
  Traffic(100, 0);
  Tick();
  const bool flash = Picture() == "NETLIGHT20";
  Traffic(100, 0);
  Tick();
  // One of two ticks in a row is a flash tick.
  EXPECT_TRUE(flash || Picture() == "NETLIGHT20");
  EXPECT_FALSE(flash && Picture() == "NETLIGHT20");
}

TEST_F(frmMainMonitorTest, TheLogoNeitherBlinksNorAsksForWarnings) {
  StartInMode("3");
  router->calls.clear();
  Traffic(9, 9);
  Tick();
  EXPECT_EQ(Picture(), "HARBOURLINE");
  EXPECT_THAT(Calls("CheckForWarning"), IsEmpty());
}

TEST_F(frmMainMonitorTest, TheLogoStillGivesWayToNotConnected) {
  StartInMode("3");
  world.network.connected = false;
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT09");
}

TEST_F(frmMainMonitorTest, AModeOfZeroGivesAnEmptyPictureWhileConnected) {
  StartInMode("0");
  Tick();
  EXPECT_EQ(Shown(), 0u);
  world.network.connected = false;
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT09");
}

TEST_F(frmMainMonitorTest, WithoutAConnectionAWarningFlashesAndTheCountersAreNotRead) {
  StartInMode("1");
  world.network.connected = false;
  router->Answer("IServer_CheckForWarning", true);
  Tick();
  const std::string first = Picture();
  Tick();
  EXPECT_THAT((std::vector{first, Picture()}), testing::UnorderedElementsAre("NETLIGHT09", "NETLIGHT20"));
  // What went by in the break shows in the first tick after it.
  Traffic(3, 0);
  router->Answer("IServer_CheckForWarning", false);
  world.network.connected = true;
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT03");
}

TEST_F(frmMainMonitorTest, WithoutARouterItWorksTheSameWithNoWarning) {
  Start();
  Tick();
  Tick();
  EXPECT_EQ(Picture(), "NETLIGHT01");
}

TEST_F(frmMainMonitorTest, AnEmptyLocalAddressIsPassedOnAsItIs) {
  world.network.localIP = "";
  StartInMode("1");
  router->calls.clear();
  Tick();
  EXPECT_THAT(Calls("CheckForWarning"), testing::ElementsAre("call IServer_CheckForWarning(&\"\")"));
}

TEST_F(frmMainMonitorTest, TheTipKeepsItsTextWhenTheConnectionGoes) {
  StartInMode("1");
  const std::string before = world.notificationArea.calls.back().data.szTip.data();
  world.network.connected = false;
  Tick();
  EXPECT_EQ(std::string(world.notificationArea.calls.back().data.szTip.data()), before);
}

TEST_F(frmMainMonitorTest, APlugInThatFailsThreeTimesASecondShowsOneBox) {
  StartInMode("1");
  router->Fail("IServer_CheckForWarning", 9, "no answer");
  world.toolkit.Advance(10'000);
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, "no answer (9)");
}

TEST_F(frmMainMonitorTest, AWarningThatCanNotBeAskedForCountsAsNoneAndTheLightsGoOn) {
  StartInMode("1");
  Tick();
  router->Fail("IServer_CheckForWarning", 9, "no answer");
  for (int tick = 0; tick < 2; ++tick) {
    Traffic(0, 1);
    Tick();
    EXPECT_EQ(Picture(), "NETLIGHT02");
    Tick();
    EXPECT_EQ(Picture(), "NETLIGHT01");
  }
  world.network.connected = false;
  for (int tick = 0; tick < 2; ++tick) {
    Tick();
    EXPECT_EQ(Picture(), "NETLIGHT09");
  }
  EXPECT_EQ(world.toolkit.messages.size(), 1u);
}

TEST_F(frmMainMonitorTest, WithoutARouterATickAsksForNoLocalAddress) {
  Start();
  world.network.asked = 0;
  Tick();
  Tick();
  world.network.connected = false;
  Tick();
  EXPECT_EQ(world.network.asked, 0);
}

}  // namespace
