#include "log/LineReader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>

namespace upnp::log {
namespace {

class LineReaderTest : public testing::Test {
 protected:
  LineReaderTest() {
    sides.lan = {{*ReadAddress("192.168.1.0"), 24}};
    sides.wanAddress = ReadAddress("198.51.100.7");
  }

  /// "in TCP 203.0.113.9:38788 > 192.168.1.2:8080", or "" without a packet.
  std::string Read(std::string_view line) {
    const auto packet = reader.Read(line, sides);
    if (!packet) return {};
    return std::string(packet->direction == Direction::kIn ? "in " : "out ") + packet->protocol + " " +
           packet->sourceAddress + ":" + std::to_string(packet->sourcePort) + " > " +
           packet->destinationAddress + ":" + std::to_string(packet->destinationPort);
  }

  Sides sides;
  LineReader reader;
};

TEST_F(LineReaderTest, ReadsALineOfThePacketFilterWithPriorityTimeAndHost) {
  EXPECT_EQ(
      Read("<134>Nov 20 23:22:22 router ulogd[24782]: FW ACCEPT IN:  IN=wan0 OUT=br-lan "
           "MAC=02:00:00:00:00:01:02:00:00:00:00:02:08:00 SRC=203.0.113.99 DST=192.168.1.2 LEN=60 TOS=00 "
           "PREC=0x00 TTL=63 ID=17920 DF PROTO=TCP SPT=38788 DPT=8080 SEQ=1 ACK=0 WINDOW=64240 SYN URGP=0 "
           "MARK=0"),
      "in TCP 203.0.113.99:38788 > 192.168.1.2:8080");
}

TEST_F(LineReaderTest, ReadsABareLineOfThePacketFilter) {
  EXPECT_EQ(Read("IN=eth1 OUT= SRC=203.0.113.9 DST=198.51.100.7 PROTO=TCP SPT=12345 DPT=22"),
            "in TCP 203.0.113.9:12345 > 198.51.100.7:22");
}

TEST_F(LineReaderTest, ReadsALineWithTheKernelsTime) {
  EXPECT_EQ(Read("Mon Mar 23 13:16:49 2026 kern.warn kernel: [311423.870453] reject wan in: IN=eth1 OUT= "
                 "SRC=203.0.113.39 DST=198.51.100.7 PROTO=TCP SPT=12345 DPT=22"),
            "in TCP 203.0.113.39:12345 > 198.51.100.7:22");
}

TEST_F(LineReaderTest, ReadsALineWithALengthOfTheDatagramToo) {
  EXPECT_EQ(Read("kernel: DROP IN=ppp0 OUT= MAC= SRC=203.0.113.4 DST=198.51.100.7 LEN=131 TOS=0x00 PREC=0x00 "
                 "TTL=110 "
                 "ID=4711 PROTO=UDP SPT=6881 DPT=51413 LEN=111"),
            "in UDP 203.0.113.4:6881 > 198.51.100.7:51413");
}

TEST_F(LineReaderTest, TakesAnyPrefixEvenOneThatTouchesTheLine) {
  EXPECT_EQ(Read("[WAN_LOCAL-default-D]IN=wan8 OUT= SRC=192.168.1.9 DST=198.51.100.7 PROTO=TCP SPT=1 DPT=2"),
            "in TCP 192.168.1.9:1 > 198.51.100.7:2");
  EXPECT_EQ(Read("DROPIN=wan8 OUT= SRC=192.168.1.9 DST=198.51.100.7 PROTO=TCP SPT=1 DPT=2"),
            "in TCP 192.168.1.9:1 > 198.51.100.7:2");
  EXPECT_EQ(Read("rule=7 x= == IN=br0 OUT=eth1 SRC=192.168.1.9 DST=203.0.113.4 PROTO=TCP SPT=1 DPT=2"),
            "out TCP 192.168.1.9:1 > 203.0.113.4:2");
}

TEST_F(LineReaderTest, TakesTheOuterPacketOfAnIcmpMessage) {
  EXPECT_EQ(Read("IN=eth1 OUT= SRC=203.0.113.9 DST=198.51.100.7 LEN=88 PROTO=ICMP TYPE=3 CODE=3 "
                 "[SRC=198.51.100.7 DST=203.0.113.9 LEN=60 PROTO=UDP SPT=5353 DPT=53 LEN=40 ]"),
            "in ICMP 203.0.113.9:0 > 198.51.100.7:0");
}

TEST_F(LineReaderTest, ReadsAddressesOfIPv6) {
  EXPECT_EQ(
      Read("IN=wan OUT=br-lan SRC=2001:0db8:0000:0000:0000:0000:0000:0001 "
           "DST=2001:0db8:0000:0001:0000:0000:0000:0002 LEN=80 TC=0 HOPLIMIT=57 FLOWLBL=0 PROTO=TCP SPT=4000 "
           "DPT=443"),
      "in TCP 2001:0db8:0000:0000:0000:0000:0000:0001:4000 > 2001:0db8:0000:0001:0000:0000:0000:0002:443");
}

TEST_F(LineReaderTest, ReadsTheForwardLines) {
  EXPECT_EQ(Read("firewall,info forward: in:ether5 out:ether1, src-mac 02:00:00:00:00:01, proto TCP (SYN), "
                 "192.168.1.76:61127->203.0.113.237:443, NAT (192.168.1.76:61127->198.51.100.7:61127)->"
                 "203.0.113.237:443, len 52"),
            "out TCP 192.168.1.76:61127 > 203.0.113.237:443");
  EXPECT_EQ(
      Read("firewall,info DROP input: in:pppoe-out1 out:(unknown 0), connection-state:new proto TCP (SYN), "
           "203.0.113.5:4444->198.51.100.7:23, len 40"),
      "in TCP 203.0.113.5:4444 > 198.51.100.7:23");
  EXPECT_EQ(Read("forward: in:ether1 out:bridge, proto UDP, 203.0.113.5:53->192.168.1.2:5353, len 70"),
            "in UDP 203.0.113.5:53 > 192.168.1.2:5353");
  EXPECT_EQ(
      Read("firewall,info output: in:(none) out:ether1, proto ICMP (type 8, code 0), 10.9.9.9->203.0.113.1, "
           "len 84"),
      "out ICMP 10.9.9.9:0 > 203.0.113.1:0");
  EXPECT_EQ(
      Read(
          "forward: in:bridge out:ether1, proto TCP (SYN), [2001:db8::2]:50000->[2001:db8:1::1]:443, len 80"),
      "out TCP 2001:db8::2:50000 > 2001:db8:1::1:443");
}

TEST_F(LineReaderTest, ReadsTheBlockedLines) {
  EXPECT_EQ(Read("Apr 10 04:13:25 di604 Unrecognized attempt blocked from 203.0.113.198:1986 to 198.51.100.7 "
                 "UDP:2463\r"),
            "in UDP 203.0.113.198:1986 > 198.51.100.7:2463");
  EXPECT_EQ(Read("Blocked incoming TCP connection request from 203.0.113.198:1986 to 198.51.100.7:80"),
            "in TCP 203.0.113.198:1986 > 198.51.100.7:80");
  EXPECT_EQ(Read("Blocked outgoing ICMP packet (ICMP type 8) from 192.168.1.2 to 203.0.113.1"),
            "out ICMP 192.168.1.2:0 > 203.0.113.1:0");
}

TEST_F(LineReaderTest, ReadsWhatFurtherRoutersWrite) {
  const struct {
    const char* line;
    const char* packet;
  } lines[] = {
      {"[LAN access from remote] from 203.0.113.123:40216 to 192.168.1.100:59018, Friday, May 07,2021 "
       "00:37:22",
       "in  203.0.113.123:40216 > 192.168.1.100:59018"},
      {"TCP Packet - Source:192.168.1.2,1056,LAN - Destination:203.0.113.24,80,WAN [Forward] - [ANY rule "
       "match]",
       "out  192.168.1.2:1056 > 203.0.113.24:80"},
      {"UDP Packet - Source:203.0.113.24,53,WAN - Destination:198.51.100.7,4321,LAN [Drop]",
       "in  203.0.113.24:53 > 198.51.100.7:4321"},
      {"DrayTek [FILTER][Block][LAN/RT/VPN->WAN, 0:10:22 ][@S:R=2:2, "
       "192.168.1.11:123->203.0.113.8:53][UDP][HLen=20, "
       "TLen=60]",
       "out UDP 192.168.1.11:123 > 203.0.113.8:53"},
      {"DrayTek [FILTER][Block][LAN/RT/VPN->WAN, 0:10:22 ][@S:R=2:2, "
       "192.168.1.11->203.0.113.8][ICMP][HLen=20, "
       "TLen=60, Type=8, Code=0]",
       "out ICMP 192.168.1.11:0 > 203.0.113.8:0"},
      {"Local User (MAC=02-00-00-00-00-01): 192.168.1.11:11073 -> 203.0.113.125:80 (TCP) Web",
       "out TCP 192.168.1.11:11073 > 203.0.113.125:80"},
      {"PACKET_ALERT: Dst: 192.168.1.10:80 {}, Src: 203.0.113.37:4353 {} (TCP): port filter",
       "in TCP 203.0.113.37:4353 > 192.168.1.10:80"},
      {"RAS: FW 192.168.1.80     :137  ->203.0.113.80    :137  |UDP|default permit:<2,0>|B",
       "out UDP 192.168.1.80:137 > 203.0.113.80:137"},
      {"src=\"203.0.113.40:53201\" dst=\"192.168.1.33:53\" msg=\"Match default rule, DROP\" note=\"ACCESS "
       "BLOCK\"",
       "in  203.0.113.40:53201 > 192.168.1.33:53"},
      {"id=firewall sn=1 time=\"2026-01-02 03:04:05\" src=203.0.113.40:53201:X1 dst=192.168.1.33:53:X0 "
       "proto=udp/dns",
       "in UDP 203.0.113.40:53201 > 192.168.1.33:53"},
      {"CEF:0|Maker|Network|9|201|Blocked|4|src=203.0.113.40 spt=53201 dst=192.168.1.33 dpt=53 proto=UDP "
       "act=blocked",
       "in UDP 203.0.113.40:53201 > 192.168.1.33:53"},
      {"type=traffic srcip=192.168.1.3 srcport=1025 dstip=203.0.113.9 dstport=443 proto=6 action=deny",
       "out TCP 192.168.1.3:1025 > 203.0.113.9:443"},
      {"**SYN Flood to Host** 192.168.1.3, 4662->> 203.0.113.1, 80 (from PPPoE1 Outbound)",
       "out  192.168.1.3:4662 > 203.0.113.1:80"},
      {"filterlog[81]: "
       "5,,,1000000103,em0,match,block,in,4,0x0,,64,0,0,DF,6,tcp,60,203.0.113.1,198.51.100.7,2,22,0,S",
       "in  203.0.113.1:2 > 198.51.100.7:22"},
      {"filterlog: "
       "5,,,1000000103,em0,match,block,in,6,0x00,0x0,64,udp,17,48,2001:db8::1,2001:db8:1::2,546,547,48",
       "in  2001:db8::1:546 > 2001:db8:1::2:547"},
      {"%SEC-6-IPACCESSLOGP: list 101 denied tcp 203.0.113.1(1234) -> 198.51.100.7(80), 1 packet",
       "in TCP 203.0.113.1:1234 > 198.51.100.7:80"},
      {"%ASA-4-106023: Deny tcp src outside:203.0.113.1/1234 dst inside:192.168.1.7/80 by access-group \"x\"",
       "in TCP 203.0.113.1:1234 > 192.168.1.7:80"},
  };
  for (const auto& [line, packet] : lines) EXPECT_EQ(Read(line), packet) << line;
}

TEST_F(LineReaderTest, PassesOverLinesWithoutAPacket) {
  for (const char* line :
       {"", " ", "<", "<134>", "dnsmasq-dhcp[5]: DHCPACK(br0) 192.168.1.5 02:00:00:00:00:01 laptop",
        "user admin logged in from 192.168.1.5", "src=192.168.1.5 dst=203.0.113.1", "SRC= DST= PROTO=TCP",
        "SRC=300.1.1.1 DST=192.168.1.2 PROTO=TCP SPT=1 DPT=2",
        "SRC=1.2.3.4 DST=192.168.1 PROTO=TCP SPT=1 DPT=2", "SRC=203.0.113.1 PROTO=TCP SPT=1 DPT=2",
        "SRC=203.0.113.1 DST=192.168.1.2 PROTO=TCP SPT=1 DPT=65536",
        "SRC=203.0.113.1 DST=192.168.1.2 PROTO=TCP SPT=-1 DPT=2",
        "SRC=203.0.113.1 DST=192.168.1.2 PROTO=TCP SPT=1 DPT=2x",
        "blocked from 203.0.113.1 to 192.168.1.2 UDP:53",
        "blocked from 203.0.113.1:70000 to 192.168.1.2 UDP:53", "Blocked incoming", "in: out: proto",
        "forward: in:ether1 out:bridge, proto TCP (SYN), nothing->nothing"}) {
    EXPECT_EQ(Read(line), "") << line;
  }
}

TEST_F(LineReaderTest, TakesPortsUpToTheLast) {
  EXPECT_EQ(Read("SRC=203.0.113.1 DST=192.168.1.2 PROTO=UDP SPT=0 DPT=65535"),
            "in UDP 203.0.113.1:0 > 192.168.1.2:65535");
}

TEST_F(LineReaderTest, IsInWhenThePacketComesFromTheWanSide) {
  const struct {
    const char* what;
    const char* line;
    bool in;
  } lines[] = {
      {"from the Internet to the router", "IN=eth1 OUT= SRC=203.0.113.9 DST=198.51.100.7", true},
      {"forwarded to this network", "IN=eth1 OUT=eth0 SRC=203.0.113.9 DST=192.168.1.2", true},
      {"from this network", "IN=eth0 OUT=eth1 SRC=192.168.1.2 DST=203.0.113.9", false},
      {"inside this network", "IN=eth0 OUT= SRC=192.168.1.2 DST=192.168.1.1", false},
      {"from the router itself", "IN= OUT=eth1 SRC=198.51.100.7 DST=203.0.113.9", false},
      {"from the router itself, without its address", "IN= OUT=eth1 SRC=10.0.0.2 DST=10.0.0.1", false},
      {"from the router itself, on its way between two interfaces",
       "IN=eth9 OUT=eth1 SRC=198.51.100.7 DST=203.0.113.9", false},
      {"from a router before this one to this one", "IN=eth1 OUT= SRC=10.0.0.9 DST=198.51.100.7", true},
      {"from the network for guests", "IN=eth2 OUT=eth1 SRC=192.168.50.2 DST=203.0.113.9", false},
      {"from a router before this one", "IN=eth1 OUT=eth0 SRC=10.0.0.9 DST=192.168.1.2", true},
      {"from a forged address, told by the interface", "IN=ppp0 OUT= SRC=192.168.1.9 DST=198.51.100.7", true},
      {"out through a named interface", "IN=eth3 OUT=pppoe-wan SRC=203.0.113.77 DST=203.0.113.9", false},
      {"in by the wireless network", "IN=wlan0 OUT=eth1 SRC=203.0.113.77 DST=203.0.113.9", false},
  };
  for (const auto& [what, line, in] : lines) {
    const auto packet = reader.Read(std::string(line) + " PROTO=TCP SPT=1 DPT=2", sides);
    ASSERT_TRUE(packet) << what;
    EXPECT_EQ(packet->direction == Direction::kIn, in) << what;
  }
}

TEST_F(LineReaderTest, GoesByPrivateAddressesWhereTheNetworkIsUnknown) {
  sides = {};
  EXPECT_EQ(Read("SRC=192.168.7.1 DST=203.0.113.9 PROTO=TCP SPT=1 DPT=2"),
            "out TCP 192.168.7.1:1 > 203.0.113.9:2");
  EXPECT_EQ(Read("SRC=192.168.7.1 DST=192.168.7.2 PROTO=TCP SPT=1 DPT=2"),
            "out TCP 192.168.7.1:1 > 192.168.7.2:2");
  EXPECT_EQ(Read("SRC=203.0.113.9 DST=192.168.7.1 PROTO=TCP SPT=1 DPT=2"),
            "in TCP 203.0.113.9:1 > 192.168.7.1:2");
}

TEST_F(LineReaderTest, FindsThePacketsOfADatagramWithSeveralLines) {
  const std::string line = "SRC=203.0.113.1 DST=192.168.1.2 PROTO=UDP SPT=7 DPT=9";
  EXPECT_EQ(reader.ReadDatagram(line + "\r\njunk\n\n" + line + "\n", sides).size(), 2u);
  EXPECT_TRUE(reader.ReadDatagram("", sides).empty());
  EXPECT_TRUE(reader.ReadDatagram("\n\n\n", sides).empty());
}

TEST_F(LineReaderTest, TakesZeroBytesAndAnyOthersAsText) {
  const std::string line = "SRC=203.0.113.1 DST=192.168.1.2 PROTO=TCP SPT=7 DPT=9";
  const std::string junk("\0\xFF\0=\x80", 5);
  EXPECT_EQ(Read(junk + " " + line + junk), "in TCP 203.0.113.1:7 > 192.168.1.2:9");
  EXPECT_EQ(Read("SRC=203.0.113.1" + junk + " DST=192.168.1.2 PROTO=TCP SPT=7 DPT=" + junk), "");
  EXPECT_EQ(Read("[LAN access from remote] from 203.0.113.1:7 to 192.168.1.2:9" + junk),
            "in  203.0.113.1:7 > 192.168.1.2:9");
}

TEST_F(LineReaderTest, FindsNothingInJunk) {
  std::mt19937 random(7);
  for (int i = 0; i < 2000; ++i) {
    std::string line(random() % 300, '\0');
    for (char& c : line) c = static_cast<char>(random());
    EXPECT_FALSE(reader.Read(line, sides));
  }
}

/// Lines that would take minutes if anything were searched again and again.
TEST_F(LineReaderTest, ReadsLinesOf64KilobytesInTimeThatGrowsWithTheirLength) {
  constexpr std::size_t kLength = 64 * 1024;
  const auto start = std::chrono::steady_clock::now();
  for (const char* piece : {"=",
                            "SRC=",
                            "IN=",
                            "a",
                            "1.",
                            ":",
                            "[",
                            "[SRC=",
                            " in:a out:b, ",
                            "blocked from ",
                            "proto ",
                            "** ",
                            "fw 1.2.3.4 ",
                            "filterlog,6,tcp,",
                            "packet - source:1.2.3.4,5,x ",
                            "dst: 1.2.3.4:5 ",
                            "  ",
                            "local user: ",
                            "src=\"",
                            "DST=1.2.3.4 ",
                            "deny tcp src a:",
                            "blocked in tcp ",
                            "x_",
                            "\""}) {
    std::string line;
    while (line.size() < kLength) line += piece;
    EXPECT_FALSE(reader.Read(line, sides)) << piece;
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST_F(LineReaderTest, FindsThePacketBehindALongPrefix) {
  EXPECT_EQ(Read(std::string(60'000, 'x') + " SRC=203.0.113.1 DST=192.168.1.2 PROTO=UDP SPT=7 DPT=9"),
            "in UDP 203.0.113.1:7 > 192.168.1.2:9");
}

}  // namespace
}  // namespace upnp::log
