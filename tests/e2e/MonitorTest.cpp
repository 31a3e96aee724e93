#include <functional>
#include <set>

#include "support/OwnNetwork.h"
#include "support/Scene.h"
#include "support/TrayPicture.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::IsSubsetOf;

constexpr int kIdle = 1;
constexpr int kSending = 2;
constexpr int kReceiving = 3;
constexpr int kBoth = 4;
constexpr int kWithWarning = 4;
constexpr int kNotConnected = 9;
constexpr int kEmptyBar = 10;
constexpr int kNotConnectedFlash = 20;

// Some ticks of the monitor, of which there are three a second.
constexpr ULONGLONG kSomeTicks = 1'200;

/// What the icon shows of this computer's traffic, read off the screen, in a network where nobody else sends.
class MonitorTest : public Scene {
 protected:
  void SetUp() override {
    if (!network::IsOwn()) GTEST_SKIP() << "wants to be run by scripts/own-network";
    ASSERT_TRUE(network::Connect(true));
    SelectRecording();
  }
  void TearDown() override {
    if (network::IsOwn()) network::Connect(true);
  }
  void StartWith(const char* trayLights) {
    settings::Write("TrayLights", trayLights);
    ASSERT_TRUE(program.StartAndWait());
  }
  static void Warn(bool warning) {
    Recording::Script("Result_IServer_CheckForWarning", warning ? "bool:True" : "bool:False");
  }

  static int Shown() {
    const auto picture = TrayPicture::Read();
    return picture ? picture->Position() : 0;
  }
  static bool Shows(int position) {
    return WaitFor([=] { return Shown() == position; });
  }
  /// The pictures of some ticks, with something done all the while.
  static std::set<int> Watch(const std::function<void()>& meanwhile = [] {}) {
    std::set<int> positions;
    const ULONGLONG end = GetTickCount64() + kSomeTicks;
    while (GetTickCount64() < end) {
      meanwhile();
      positions.insert(Shown());
      Sleep(10);
    }
    return positions;
  }
};

TEST_F(MonitorTest, TheLampsTellWhatLeavesAndWhatArrives) {
  StartWith("1");
  ASSERT_TRUE(Shows(kIdle));
  const auto send = [] { ASSERT_TRUE(network::Send(1)); };
  const auto receive = [] { ASSERT_TRUE(network::Receive(1)); };
  EXPECT_THAT(Watch(), testing::ElementsAre(kIdle));
  EXPECT_THAT(Watch(send), AllOf(Contains(kSending), IsSubsetOf({kIdle, kSending})));
  ASSERT_TRUE(Shows(kIdle));
  EXPECT_THAT(Watch(receive), AllOf(Contains(kReceiving), IsSubsetOf({kIdle, kReceiving})));
  ASSERT_TRUE(Shows(kIdle));
  EXPECT_THAT(Watch([&] {
                send();
                receive();
              }),
              Contains(kBoth));
  EXPECT_TRUE(Shows(kIdle));
}

TEST_F(MonitorTest, AWarningFlashesRedBehindTheLamps) {
  Warn(true);
  StartWith("1");
  ASSERT_TRUE(Shows(kIdle + kWithWarning));
  EXPECT_THAT(Watch(), testing::ElementsAre(kIdle, kIdle + kWithWarning));
  EXPECT_THAT(Watch([] { network::Send(1); }), AllOf(Contains(kSending), Contains(kSending + kWithWarning)));
  EXPECT_THAT(Watch([] { network::Receive(1); }),
              AllOf(Contains(kReceiving), Contains(kReceiving + kWithWarning)));
  EXPECT_THAT(Watch([] {
                network::Send(1);
                network::Receive(1);
              }),
              AllOf(Contains(kBoth), Contains(kBoth + kWithWarning)));
  Warn(false);
  ASSERT_TRUE(Shows(kIdle));
  ASSERT_TRUE(WaitFor([] { return Watch() == std::set{kIdle}; }));
}

TEST_F(MonitorTest, WithoutAConnectionOnlyTheWarningCounts) {
  StartWith("2");
  ASSERT_TRUE(Shows(kEmptyBar));
  ASSERT_TRUE(network::Connect(false));
  ASSERT_TRUE(Shows(kNotConnected));
  EXPECT_THAT(Watch([] { network::Receive(1); }), testing::ElementsAre(kNotConnected));
  Warn(true);
  ASSERT_TRUE(Shows(kNotConnectedFlash));
  EXPECT_THAT(Watch(), testing::ElementsAre(kNotConnected, kNotConnectedFlash));
  Warn(false);
  ASSERT_TRUE(network::Connect(true));
  EXPECT_TRUE(Shows(kEmptyBar));
}

/// The bar against the most segments of a tick so far, which are a thousand.
class SpeedBarTest : public MonitorTest {
 protected:
  static constexpr int kMost = 1'000;

  /// What the bar shows of that many segments within one tick. They may be spread over two, so it is tried
  /// again and again until it shows what is wanted; the last try.
  static bool Bursts(int segments, int wanted) {
    constexpr int kAttempts = 16;
    constexpr ULONGLONG kTickAndMore = 450;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      network::Receive(segments);
      for (const int position : WatchPositions(kTickAndMore)) {
        if (position == wanted) return true;
      }
    }
    return false;
  }
};

TEST_F(SpeedBarTest, TheBarRisesWithTheSegmentsOfATick) {
  StartWith("2");
  ASSERT_TRUE(Shows(kEmptyBar));
  ASSERT_TRUE(Bursts(kMost, 14));
  ASSERT_TRUE(Bursts(kMost, 14));
  EXPECT_TRUE(Bursts(kMost / 10, 11));
  EXPECT_TRUE(Bursts(kMost / 10 * 4, 12));
  EXPECT_TRUE(Bursts(kMost / 10 * 6, 13));
  EXPECT_TRUE(Bursts(kMost / 10 * 8, 14));
  EXPECT_TRUE(Shows(kEmptyBar));
}

TEST_F(SpeedBarTest, TheBarOnRedIsOneBoxHigherAndFullItIsThePictureOfNoConnection) {
  Warn(true);
  StartWith("2");
  EXPECT_TRUE(Shows(15)) << "before the first segment there is nothing to compare with";
  ASSERT_TRUE(Bursts(kMost, kNotConnectedFlash));
  EXPECT_TRUE(Shows(16));
  EXPECT_TRUE(Bursts(kMost / 10 * 4, 17));
  EXPECT_TRUE(Bursts(kMost / 10 * 6, 18));
  EXPECT_TRUE(Bursts(kMost / 10 * 8, 19));
}

TEST_F(MonitorTest, WithoutLightsTheProgramsOwnIconStandsThereUntilTheConnectionGoes) {
  Warn(true);
  StartWith("3");
  const TrayPicture own = TrayPicture::FromResource(program.Executable(), "HARBOURLINE");
  ASSERT_TRUE(WaitFor([&] { return TrayPicture::Read() == own; }));
  EXPECT_TRUE(StaysSo(kSomeTicks, [&] {
    network::Receive(1);
    return TrayPicture::Read() == own;
  }));
  ASSERT_TRUE(network::Connect(false));
  EXPECT_TRUE(Shows(kNotConnectedFlash));
}

TEST_F(MonitorTest, AnUnknownKindOfLightsLeavesThePlaceEmpty) {
  StartWith("0");
  EXPECT_TRUE(WaitFor([] { return TrayPicture::Read() == TrayPicture::Blank(); }));
}

}  // namespace
