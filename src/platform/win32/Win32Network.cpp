#include "platform/win32/Win32Network.h"

#include <wininet.h>

#include <cstddef>
#include <cstring>
#include <vector>

namespace platform::win32 {
namespace {

/// A table of the IP helper library: a count and that many rows. Empty when the machine has none.
template <typename Table, typename Row>
std::vector<Row> RowsOf(DWORD(WINAPI* fill)(Table*, PULONG, BOOL), Row (Table::*rows)[ANY_SIZE]) {
  std::vector<std::max_align_t> buffer;
  ULONG size = 0;
  DWORD result = ERROR_INSUFFICIENT_BUFFER;
  // The table can grow between asking for its size and reading it.
  while (result == ERROR_INSUFFICIENT_BUFFER) {
    buffer.resize(size / sizeof(std::max_align_t) + 1);
    size = static_cast<ULONG>(buffer.size() * sizeof(std::max_align_t));
    result = fill(reinterpret_cast<Table*>(buffer.data()), &size, FALSE);
  }
  if (result != NO_ERROR) return {};
  const auto* table = reinterpret_cast<const Table*>(buffer.data());
  const Row* first = &(table->*rows)[0];
  return std::vector<Row>(first, first + table->dwNumEntries);
}

/// The first byte in memory is the first number of the address.
struct Octets {
  explicit Octets(DWORD address) { std::memcpy(octets, &address, sizeof octets); }
  unsigned char octets[4];
};

bool IsUsable(const MIB_IPADDRROW& row) {
  constexpr auto kGone = MIB_IPADDR_DISCONNECTED | MIB_IPADDR_DELETED | MIB_IPADDR_TRANSIENT;
  return row.dwAddr != 0 && Octets(row.dwAddr).octets[0] != 127 && (row.wType & kGone) == 0;
}

std::string Dotted(DWORD address) {
  const Octets parts(address);
  std::string text;
  for (const unsigned char octet : parts.octets) {
    if (!text.empty()) text += '.';
    text += std::to_string(octet);
  }
  return text;
}

const MIB_IPFORWARDROW* DefaultRoute(std::span<const MIB_IPFORWARDROW> routes) {
  const MIB_IPFORWARDROW* best = nullptr;
  for (const MIB_IPFORWARDROW& route : routes) {
    if (route.dwForwardDest != 0 || route.dwForwardMask != 0) continue;
    if (!best || route.dwForwardMetric1 < best->dwForwardMetric1) best = &route;
  }
  return best;
}

}  // namespace

std::string ChooseLocalAddress(std::span<const MIB_IPFORWARDROW> routes,
                               std::span<const MIB_IPADDRROW> addresses) {
  const MIB_IPADDRROW* first = nullptr;
  const MIB_IPFORWARDROW* route = DefaultRoute(routes);
  for (const MIB_IPADDRROW& address : addresses) {
    if (!IsUsable(address)) continue;
    if (route && address.dwIndex == route->dwForwardIfIndex) return Dotted(address.dwAddr);
    if (!first) first = &address;
  }
  return first ? Dotted(first->dwAddr) : "127.0.0.1";
}

std::string Win32Network::LocalIP() {
  return ChooseLocalAddress(RowsOf(&GetIpForwardTable, &MIB_IPFORWARDTABLE::table),
                            RowsOf(&GetIpAddrTable, &MIB_IPADDRTABLE::table));
}

bool Win32Network::ConnectedState(std::int32_t& flags) {
  DWORD kind = 0;
  const bool connected = InternetGetConnectedState(&kind, 0) != FALSE;
  flags = static_cast<std::int32_t>(kind);
  return connected;
}

void Win32Network::GetTcpStatistics(TcpStatistics& statistics) {
  MIB_TCPSTATS counters{};
  if (::GetTcpStatistics(&counters) != NO_ERROR) return;
  statistics.inSegments = counters.dwInSegs;
  statistics.outSegments = counters.dwOutSegs;
}

}  // namespace platform::win32
