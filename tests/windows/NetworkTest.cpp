#include "platform/win32/Win32Network.h"

#include <gmock/gmock.h>

#include <array>
#include <vector>

namespace {

using platform::win32::ChooseLocalAddress;

DWORD Address(int a, int b, int c, int d) {
  return static_cast<DWORD>(a) | static_cast<DWORD>(b) << 8 | static_cast<DWORD>(c) << 16 |
         static_cast<DWORD>(d) << 24;
}

MIB_IPADDRROW On(DWORD adapter, DWORD address, unsigned short type = 0) {
  MIB_IPADDRROW row{};
  row.dwIndex = adapter;
  row.dwAddr = address;
  row.wType = type;
  return row;
}

MIB_IPFORWARDROW Route(DWORD adapter, DWORD destination, DWORD mask, DWORD metric = 0) {
  MIB_IPFORWARDROW row{};
  row.dwForwardIfIndex = adapter;
  row.dwForwardDest = destination;
  row.dwForwardMask = mask;
  row.dwForwardMetric1 = metric;
  return row;
}

const DWORD kLoopback = Address(127, 0, 0, 1);

TEST(NetworkTest, TheAddressIsThatOfTheAdapterWithTheDefaultRoute) {
  const std::vector addresses = {On(1, kLoopback), On(2, Address(10, 0, 0, 5)),
                                 On(3, Address(192, 168, 1, 20))};
  const std::vector routes = {Route(2, Address(10, 0, 0, 0), 0xFF), Route(3, 0, 0)};
  EXPECT_EQ(ChooseLocalAddress(routes, addresses), "192.168.1.20");
}

TEST(NetworkTest, OfTwoDefaultRoutesTheCheaperOneCounts) {
  const std::vector addresses = {On(2, Address(10, 0, 0, 5)), On(3, Address(192, 168, 1, 20))};
  EXPECT_EQ(ChooseLocalAddress(std::vector{Route(2, 0, 0, 50), Route(3, 0, 0, 25)}, addresses),
            "192.168.1.20");
  EXPECT_EQ(ChooseLocalAddress(std::vector{Route(2, 0, 0, 25), Route(3, 0, 0, 50)}, addresses), "10.0.0.5");
}

TEST(NetworkTest, ARouteToHalfOfTheWorldIsNoDefaultRoute) {
  const std::vector addresses = {On(2, Address(10, 0, 0, 5)), On(3, Address(192, 168, 1, 20))};
  EXPECT_EQ(ChooseLocalAddress(std::vector{Route(2, 0, 0x80), Route(3, 0, 0, 5)}, addresses), "192.168.1.20");
}

TEST(NetworkTest, WithoutADefaultRouteTheFirstAddressThatIsNotLoopbackCounts) {
  const std::vector addresses = {On(1, kLoopback), On(1, Address(127, 5, 5, 5)), On(4, 0),
                                 On(2, Address(10, 0, 0, 255)), On(3, Address(192, 168, 1, 20))};
  EXPECT_EQ(ChooseLocalAddress({}, addresses), "10.0.0.255");
}

TEST(NetworkTest, WhenTheAdapterOfTheDefaultRouteHasNoAddressTheFirstOtherCounts) {
  const std::vector addresses = {On(2, Address(10, 0, 0, 5)), On(3, 0),
                                 On(3, Address(192, 168, 1, 20), MIB_IPADDR_DISCONNECTED)};
  EXPECT_EQ(ChooseLocalAddress(std::vector{Route(3, 0, 0)}, addresses), "10.0.0.5");
}

TEST(NetworkTest, WithNoAddressAtAllItIsLoopback) {
  EXPECT_EQ(ChooseLocalAddress({}, {}), "127.0.0.1");
  EXPECT_EQ(ChooseLocalAddress(std::vector{Route(1, 0, 0)}, std::vector{On(1, kLoopback)}), "127.0.0.1");
}

class RealNetworkTest : public testing::Test {
 protected:
  RealNetworkTest() {
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 2), &data);
  }
  ~RealNetworkTest() override { WSACleanup(); }

  platform::win32::Win32Network network_;
};

/// All IPv4 addresses as another function tells them.
std::vector<std::string> AddressesByAdapter() {
  std::vector<std::max_align_t> buffer(64 * 1024 / sizeof(std::max_align_t));
  auto size = static_cast<ULONG>(buffer.size() * sizeof(std::max_align_t));
  auto* adapter = reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer.data());
  std::vector<std::string> found;
  if (GetAdaptersAddresses(AF_INET, 0, nullptr, adapter, &size) != NO_ERROR) return found;
  for (; adapter; adapter = adapter->Next) {
    for (auto* unicast = adapter->FirstUnicastAddress; unicast; unicast = unicast->Next) {
      const auto* address = reinterpret_cast<const sockaddr_in*>(unicast->Address.lpSockaddr);
      found.emplace_back(inet_ntoa(address->sin_addr));
    }
  }
  return found;
}

TEST_F(RealNetworkTest, TheLocalAddressIsOneOfThisComputer) {
  const std::string address = network_.LocalIP();
  const auto all = AddressesByAdapter();
  const bool hasOther =
      std::any_of(all.begin(), all.end(), [](const auto& one) { return !one.starts_with("127."); });
  if (hasOther) {
    EXPECT_THAT(all, testing::Contains(address));
    EXPECT_FALSE(address.starts_with("127."));
  } else {
    EXPECT_EQ(address, "127.0.0.1");
  }
}

TEST_F(RealNetworkTest, TheLocalAddressIsTheOneThatASocketToTheWorldWouldHave) {
  // Connecting a datagram socket sends nothing; it only chooses the route.
  const SOCKET probe = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in world{};
  world.sin_family = AF_INET;
  world.sin_port = htons(9);
  world.sin_addr.s_addr = Address(198, 41, 0, 4);
  if (connect(probe, reinterpret_cast<const sockaddr*>(&world), sizeof world) != 0) {
    closesocket(probe);
    GTEST_SKIP() << "this computer has no route to the world";
  }
  sockaddr_in own{};
  int size = sizeof own;
  getsockname(probe, reinterpret_cast<sockaddr*>(&own), &size);
  closesocket(probe);
  EXPECT_EQ(network_.LocalIP(), inet_ntoa(own.sin_addr));
}

TEST_F(RealNetworkTest, TheConnectedStateIsThatOfTheMachineWithItsKind) {
  std::int32_t flags = -1;
  const bool connected = network_.ConnectedState(flags);
  EXPECT_NE(flags, -1);
  MIB_IPFORWARDROW route{};
  const bool hasRoute = GetBestRoute(Address(198, 41, 0, 4), 0, &route) == NO_ERROR;
  EXPECT_EQ(connected, hasRoute);
}

/// A connection within this computer.
class LoopbackConnection {
 public:
  LoopbackConnection() {
    const SOCKET listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = kLoopback;
    bind(listener, reinterpret_cast<const sockaddr*>(&place), sizeof place);
    listen(listener, 1);
    int size = sizeof place;
    getsockname(listener, reinterpret_cast<sockaddr*>(&place), &size);
    near_ = socket(AF_INET, SOCK_STREAM, 0);
    EXPECT_EQ(connect(near_, reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
    far_ = accept(listener, nullptr, nullptr);
    closesocket(listener);
  }
  LoopbackConnection(const LoopbackConnection&) = delete;
  LoopbackConnection& operator=(const LoopbackConnection&) = delete;
  ~LoopbackConnection() {
    closesocket(near_);
    closesocket(far_);
  }

  /// One character there and back.
  void Exchange() {
    char c = 'x';
    send(near_, &c, 1, 0);
    recv(far_, &c, 1, 0);
    send(far_, &c, 1, 0);
    recv(near_, &c, 1, 0);
  }

 private:
  SOCKET near_;
  SOCKET far_;
};

TEST_F(RealNetworkTest, TheTcpCountersRiseWithTraffic) {
  platform::TcpStatistics before;
  network_.GetTcpStatistics(before);
  ASSERT_GT(before.inSegments + before.outSegments, 0u);
  LoopbackConnection connection;
  for (int i = 0; i < 50; ++i) connection.Exchange();
  platform::TcpStatistics after;
  network_.GetTcpStatistics(after);
  EXPECT_GE(after.inSegments - before.inSegments, 100u);
  EXPECT_GE(after.outSegments - before.outSegments, 100u);
}

}  // namespace
