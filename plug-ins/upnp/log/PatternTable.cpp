#include "log/PatternTable.h"

namespace upnp::log {

namespace {

constexpr RouterPattern kPatterns[] = {
    // forward: in:ether5 out:ether1, src-mac 00:00:5e:00:53:01, proto TCP (SYN), 192.0.2.1:2->198.51.100.3:4,
    // len 52
    {"MikroTik",
     " in:{in} out:{out}, {skip}proto {protocol} ({skip}), "
     "{source}:{sourcePort}->{destination}:{destinationPort}"},
    {"MikroTik",
     " in:{in} out:{out}, {skip}proto {protocol}, {source}:{sourcePort}->{destination}:{destinationPort}"},
    {"MikroTik", " in:{in} out:{out}, {skip}proto {protocol} ({skip}), {source}->{destination}"},
    {"MikroTik", " in:{in} out:{out}, {skip}proto {protocol}, {source}->{destination}"},

    // Unrecognized attempt blocked from 192.0.2.1:1986 to 198.51.100.3 UDP:2463
    {"D-Link", "blocked from {source}:{sourcePort} to {destination} {protocol}:{destinationPort}"},
    // Blocked incoming TCP connection request from 192.0.2.1:2 to 198.51.100.3:4
    {"D-Link",
     "blocked {direction} {protocol} {skip}from {source}:{sourcePort} to {destination}:{destinationPort}"},
    {"D-Link", "blocked {direction} {protocol} {skip}from {source} to {destination}"},

    // [LAN access from remote] from 192.0.2.1:2 to 192.168.1.3:4, Friday, May 07,2021 00:37:22
    {"NETGEAR", "[LAN access from remote] from {source}:{sourcePort} to {destination}:{destinationPort}"},
    // UDP Packet - Source:192.0.2.1,2,WAN - Destination:198.51.100.3,4,LAN
    {"NETGEAR",
     "packet - source:{source},{sourcePort},{in} {skip}destination:{destination},{destinationPort},{out}"},
    {"NETGEAR", "packet - source:{source},{sourcePort} {skip}destination:{destination},{destinationPort}"},

    // [FILTER][Block][LAN/RT/VPN->WAN, 0:10:22 ][@S:R=2:2, 192.0.2.1:2->198.51.100.3:4][TCP][HLen=20,
    // TLen=60]
    {"DrayTek", "[@S:R={skip}, {source}:{sourcePort}->{destination}:{destinationPort}][{protocol}]"},
    {"DrayTek", "[@S:R={skip}, {source}->{destination}][{protocol}]"},
    // Local User (MAC=00-00-5E-00-53-01): 192.0.2.1:2 -> 198.51.100.3:4 (TCP) Web
    {"DrayTek", "local user{skip}: {source}:{sourcePort} -> {destination}:{destinationPort} ({protocol})"},

    // PACKET_ALERT: Dst: 192.0.2.1:2 {}, Src: 198.51.100.3:4 {} (TCP): port filter
    {"LANCOM", "dst: {destination}:{destinationPort}{skip}, src: {source}:{sourcePort}{skip} ({protocol}): "},

    // FW 192.0.2.1     :137  ->198.51.100.3     :137  |UDP|default permit:<2,0>|B
    {"ZyXEL", "fw {source} :{sourcePort} ->{destination} :{destinationPort} |{protocol}|"},

    // **SYN Flood to Host** 192.0.2.1, 2->> 198.51.100.3, 4 (from WAN Inbound)
    {"SMC, Belkin, Siemens",
     "** {source}, {sourcePort}->> {destination}, {destinationPort} (from {skip} {direction})"},

    // filterlog[123]:
    // 5,,,1000000103,em0,match,block,in,4,0x0,,64,0,0,DF,6,tcp,60,192.0.2.1,198.51.100.3,2,4,0,S
    {"pfSense, OPNsense",
     "filterlog{skip},6,tcp,{skip},{source},{destination},{sourcePort},{destinationPort},"},
    {"pfSense, OPNsense",
     "filterlog{skip},17,udp,{skip},{source},{destination},{sourcePort},{destinationPort},"},
    // filterlog: 5,,,1000000103,em0,match,block,in,6,0x00,0x00000,64,tcp,6,40,2001:db8::1,2001:db8::2,2,4,0,S
    {"pfSense, OPNsense",
     "filterlog{skip},tcp,6,{skip},{source},{destination},{sourcePort},{destinationPort},"},
    {"pfSense, OPNsense",
     "filterlog{skip},udp,17,{skip},{source},{destination},{sourcePort},{destinationPort},"},

    // %SEC-6-IPACCESSLOGP: list 101 denied tcp 192.0.2.1(2) -> 198.51.100.3(4), 1 packet
    {"Cisco", "accesslogp: {skip}ed {protocol} {source}({sourcePort}) -> {destination}({destinationPort})"},
    // Deny tcp src outside:192.0.2.1/2 dst inside:198.51.100.3/4 by access-group
    {"Cisco", "deny {protocol} src {skip}:{source}/{sourcePort} dst {skip}:{destination}/{destinationPort}"},
};

}  // namespace

std::span<const RouterPattern> PatternTable() {
  return kPatterns;
}

}  // namespace upnp::log
