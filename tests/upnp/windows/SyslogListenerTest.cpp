#include "SyslogListener.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace upnp {
namespace {

constexpr std::uint16_t kPort = 51400;
constexpr char kOwn[] = "127.0.0.1";
constexpr char kRouter[] = "127.0.0.1";

std::string LineTo(int port) {
  return "<4>kernel: IN=wan OUT=lan SRC=203.0.113.9 DST=192.168.1.2 PROTO=TCP SPT=4000 DPT=" +
         std::to_string(port);
}

bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds = 10000) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  while (!condition()) {
    if (GetTickCount64() >= end) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  return true;
}

/// The address from which this computer would send to others; empty when it is alone. Nothing is sent.
std::string OutwardAddress() {
  const UdpSocket probe;
  const sockaddr_in other = SocketAddress("198.51.100.1", 9);
  sockaddr_in own = {};
  int size = sizeof own;
  if (connect(probe.Handle(), reinterpret_cast<const sockaddr*>(&other), sizeof other) != 0 ||
      getsockname(probe.Handle(), reinterpret_cast<sockaddr*>(&own), &size) != 0) {
    return {};
  }
  return DottedAddress(own);
}

class SyslogListenerTest : public testing::Test {
 protected:
  SyslogListenerTest()
      : listener(
            {[this](std::int32_t port) { return Name(port); },
             [this](const log::Row& row) {
               rows.push_back(row);
               if (onRow) onRow();
             },
             [this](const std::string& message, short number) { errors.emplace_back(message, number); }}) {}

  log::PortName Name(std::int32_t port) {
    threads.insert(GetCurrentThreadId());
    return {"named", filtered.count(port) > 0};
  }
  bool Listen() { return listener.Listen({kOwn, kRouter, "198.51.100.7", kPort}); }
  void Send(const std::string& text, const std::string& to = kOwn) {
    const sockaddr_in target = SocketAddress(to, kPort);
    sendto(sender.Handle(), text.data(), static_cast<int>(text.size()), 0,
           reinterpret_cast<const sockaddr*>(&target), sizeof target);
  }
  std::size_t Datagrams() { return listener.State().arrivals.datagrams; }

  SocketLibrary library;
  UdpSocket sender;
  std::vector<log::Row> rows;
  std::vector<std::pair<std::string, short>> errors;
  std::set<DWORD> threads;
  std::set<std::int32_t> filtered;
  std::function<void()> onRow;
  SyslogListener listener;
};

TEST_F(SyslogListenerTest, MakesARowOfARoutersLineOnTheThreadThatMadeIt) {
  ASSERT_TRUE(Listen());
  EXPECT_TRUE(listener.State().listening);
  Send(LineTo(8080));
  ASSERT_TRUE(PumpUntil([this] { return !rows.empty(); }));
  EXPECT_EQ(rows[0].type, "in");
  EXPECT_EQ(rows[0].source, "203.0.113.9");
  EXPECT_EQ(rows[0].destinationPort, 8080);
  EXPECT_EQ(rows[0].miscellaneous, "named");
  EXPECT_EQ(threads, std::set<DWORD>{GetCurrentThreadId()});
  EXPECT_EQ(Datagrams(), 1u);
  EXPECT_LT(SyslogListener::Now() - listener.State().arrivals.last, log::Time(10000));
}

TEST_F(SyslogListenerTest, TakesLinesFromTheRouterOnly) {
  ASSERT_TRUE(listener.Listen({kOwn, "192.0.2.1", "", kPort}));
  Send(LineTo(6666));
  EXPECT_FALSE(PumpUntil([this] { return !rows.empty() || Datagrams() > 0; }, 500));
  ASSERT_TRUE(Listen());
  Send(LineTo(8080));
  ASSERT_TRUE(PumpUntil([this] { return !rows.empty(); }));
  EXPECT_EQ(rows[0].destinationPort, 8080);
}

TEST_F(SyslogListenerTest, HearsNothingAtOtherAddressesOfTheComputer) {
  const std::string other = OutwardAddress();
  if (other.empty()) GTEST_SKIP() << "this computer has one address only";
  ASSERT_TRUE(Listen());
  Send(LineTo(6666), other);
  Send(LineTo(8080));
  ASSERT_TRUE(PumpUntil([this] { return !rows.empty(); }));
  EXPECT_EQ(rows[0].destinationPort, 8080);
  EXPECT_EQ(Datagrams(), 1u);
}

TEST_F(SyslogListenerTest, TellsOnceThatThePortIsTaken) {
  UdpSocket other;
  const sockaddr_in own = SocketAddress(kOwn, kPort);
  ASSERT_EQ(bind(other.Handle(), reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
  EXPECT_FALSE(Listen());
  EXPECT_FALSE(Listen());
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].first,
            "The router's log can't be received at 127.0.0.1, UDP port 51400: another program uses the port. "
            "Choose "
            "another port here and in the router.");
  EXPECT_EQ(errors[0].second, WSAEADDRINUSE);
  EXPECT_EQ(listener.State().problem, errors[0].first);
  EXPECT_FALSE(listener.State().listening);
}

TEST_F(SyslogListenerTest, GetsThePortOnceItIsFree) {
  {
    UdpSocket other;
    const sockaddr_in own = SocketAddress(kOwn, kPort);
    ASSERT_EQ(bind(other.Handle(), reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
    EXPECT_FALSE(Listen());
  }
  EXPECT_TRUE(Listen());
  EXPECT_TRUE(listener.State().problem.empty());
  Send(LineTo(8080));
  EXPECT_TRUE(PumpUntil([this] { return !rows.empty(); }));
}

TEST_F(SyslogListenerTest, NeverListensAtAllAddresses) {
  EXPECT_FALSE(listener.Listen({"", kRouter, "", kPort}));
  EXPECT_FALSE(listener.State().listening);
  EXPECT_EQ(errors.size(), 1u);
}

TEST_F(SyslogListenerTest, GivesThePortBackWhenItStops) {
  ASSERT_TRUE(Listen());
  listener.Stop();
  EXPECT_FALSE(listener.State().listening);
  UdpSocket other;
  const sockaddr_in own = SocketAddress(kOwn, kPort);
  EXPECT_EQ(bind(other.Handle(), reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
}

TEST_F(SyslogListenerTest, GoesOnWhenItIsToldTheSameAgain) {
  ASSERT_TRUE(Listen());
  Send(LineTo(8080));
  ASSERT_TRUE(PumpUntil([this] { return Datagrams() == 1; }));
  ASSERT_TRUE(Listen());
  EXPECT_EQ(Datagrams(), 1u);
  EXPECT_TRUE(errors.empty());
}

TEST_F(SyslogListenerTest, TakesTheGreatestDatagramAndJunk) {
  ASSERT_TRUE(Listen());
  Send(std::string(65000, '='));
  Send(std::string(2000, '\0'));
  Send("");
  Send(std::string(60000, '\xFF') + " " + LineTo(8080));
  ASSERT_TRUE(PumpUntil([this] { return !rows.empty(); }));
  EXPECT_EQ(rows[0].destinationPort, 8080);
  EXPECT_EQ(Datagrams(), 4u);
}

TEST_F(SyslogListenerTest, DropsWhatTheUserDoesntWantToSee) {
  filtered = {8080};
  ASSERT_TRUE(Listen());
  Send(LineTo(8080));
  Send(LineTo(8081));
  ASSERT_TRUE(PumpUntil([this] { return !rows.empty(); }));
  EXPECT_EQ(rows[0].destinationPort, 8081);
}

TEST_F(SyslogListenerTest, ShowsFiftyRowsASecondOfABurstAndTellsHowManyThereWere) {
  constexpr int kBurst = 50'000;
  ASSERT_TRUE(Listen());
  const ULONGLONG start = GetTickCount64();
  for (int i = 0; i < kBurst; ++i) {
    Send(LineTo(1 + i % 60000) + " ID=" + std::to_string(i));
    if (i % 1000 == 0) PumpUntil([] { return true; });
  }
  const auto isNote = [](const log::Row& row) { return row.type == "note"; };
  ASSERT_TRUE(PumpUntil([&] { return !rows.empty() && isNote(rows.back()); }));
  const auto seconds = static_cast<std::size_t>((GetTickCount64() - start) / 1000 + 1);
  EXPECT_LE(rows.size(), 50 * seconds);
  EXPECT_GE(rows.size(), 49u);
  std::size_t told = 0;
  for (const log::Row& row : rows) told += isNote(row) ? std::stoul(row.miscellaneous) : 1;
  EXPECT_LE(told, listener.State().arrivals.packets);
  EXPECT_GT(told, 1000u);
}

TEST_F(SyslogListenerTest, SurvivesItsEndInsideARow) {
  auto doomed =
      std::make_unique<SyslogListener>(SyslogListener::Handlers{[](std::int32_t) { return log::PortName{}; },
                                                                [this](const log::Row& row) {
                                                                  rows.push_back(row);
                                                                  onRow();
                                                                },
                                                                [](const std::string&, short) {}});
  onRow = [&doomed] { doomed.reset(); };
  ASSERT_TRUE(doomed->Listen({kOwn, kRouter, "", kPort}));
  Send(LineTo(8080));
  ASSERT_TRUE(PumpUntil([this] { return !rows.empty(); }));
  PumpUntil([] { return false; }, 300);
  EXPECT_EQ(rows.size(), 1u);
}

TEST(SidesTest, KnowsTheNetworkOfTheAdapter) {
  const SocketLibrary library;
  const log::Sides sides = SidesOf("127.0.0.1", "198.51.100.7");
  const auto contains = [&sides](const char* address) {
    return std::any_of(sides.lan.begin(), sides.lan.end(), [address](const log::Network& network) {
      return network.Contains(*log::ReadAddress(address));
    });
  };
  EXPECT_TRUE(contains("127.0.0.1"));
  EXPECT_FALSE(contains("203.0.113.1"));
  EXPECT_EQ(sides.wanAddress, log::ReadAddress("198.51.100.7"));
}

TEST(SidesTest, KnowsNothingOfAnAddressThatNoAdapterHas) {
  const SocketLibrary library;
  EXPECT_TRUE(SidesOf("203.0.113.50", "").lan.empty());
  EXPECT_TRUE(SidesOf("", "").lan.empty());
  EXPECT_FALSE(SidesOf("", "").wanAddress);
}

}  // namespace
}  // namespace upnp
