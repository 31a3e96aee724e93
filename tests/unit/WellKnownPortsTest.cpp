#include "activitylog/WellKnownPorts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

namespace {

// Written from the list of services itself, and from nothing of the program's.
const std::map<std::int32_t, std::string> kServices = {
    {7, "echo"},
    {9, "discard"},
    {11, "systat"},
    {13, "daytime"},
    {15, "netstat"},
    {17, "qotd"},
    {19, "chargen"},
    {20, "ftp-data"},
    {21, "ftp"},
    {23, "telnet"},
    {25, "smtp"},
    {37, "time"},
    {39, "rlp"},
    {42, "name"},
    {43, "whois"},
    {53, "domain"},
    {57, "mtp"},
    {67, "bootp"},
    {69, "tftp"},
    {77, "rje"},
    {79, "finger"},
    {80, "http"},
    {87, "link"},
    {95, "supdup"},
    {101, "hostnames"},
    {102, "iso-tsap"},
    {103, "dictionary"},
    {104, "x400-snd"},
    {105, "csnet-ns"},
    {109, "pop"},
    {110, "pop3"},
    {111, "portmap"},
    {113, "auth"},
    {115, "ftp"},
    {117, "Path"},
    {119, "nntp"},
    {123, "ntp"},
    {137, "nbname"},
    {138, "nbdatagram"},
    {139, "nbsession"},
    {144, "NeWS"},
    {153, "sgmp"},
    {158, "tcprepo"},
    {161, "snmp"},
    {162, "snmp-trap"},
    {170, "Print-srv"},
    {175, "vmnet"},
    {315, "Load"},
    {400, "vmnet0"},
    {443, "https"},
    {500, "sytek"},
    {512, "Exec/biff"},
    {513, "login"},
    {514, "Shell"},
    {515, "Printer"},
    {517, "talk"},
    {518, "ntalk"},
    {520, "efs"},
    {525, "timed"},
    {526, "tempo"},
    {530, "courier"},
    {531, "conference"},
    {532, "netnews"},
    {533, "netwall"},
    {540, "uucp"},
    {543, "klogin"},
    {544, "kshell"},
    {550, "new-rwho"},
    {556, "remotefs"},
    {560, "rmonitor"},
    {561, "monitor"},
    {600, "garcon"},
    {601, "maitrd"},
    {602, "busboy"},
    {700, "acctmaster"},
    {701, "acctslave"},
    {702, "acct"},
    {703, "acctlogin"},
    {704, "acctprinter"},
    {705, "acctinfo"},
    {706, "acctslave2"},
    {707, "acctdisk"},
    {750, "kerberos"},
    {751, "kerberos_master"},
    {752, "passwd_server"},
    {753, "userreg_server"},
    {754, "krb_prop"},
    {888, "erlogin"},
    {1080, "SOCKS Proxy"},
    {1359, "FTSRV"},
    {1433, "MS SQL"},
    {1434, "MS SQL Monitor"},
};

TEST(WellKnownPortsTest, EveryPortHasTheNameOfTheListAndEveryOtherNone) {
  ASSERT_EQ(kServices.size(), 92U);
  for (std::int32_t port = -1; port <= 65'536; ++port) {
    const auto service = kServices.find(port);
    EXPECT_EQ(WellKnownPortDescription(port), service == kServices.end() ? "" : service->second) << port;
  }
}

}  // namespace
