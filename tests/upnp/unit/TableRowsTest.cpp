#include "rules/TableRows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace upnp {
namespace {

PortMapping Entry(std::uint16_t port, const std::string& client, const std::string& description) {
  PortMapping mapping;
  mapping.externalPort = port;
  mapping.internalPort = 80;
  mapping.client = client;
  mapping.description = description;
  return mapping;
}

TEST(TableRowsTest, TellsWhoseEachMappingIs) {
  const std::vector<TableRow> rows =
      DescribeTable({Entry(1, "192.168.1.5", "Harbourline: Web"), Entry(2, "192.168.1.5", "Torrent"),
                     Entry(3, "192.168.1.9", "Harbourline: Web"), Entry(4, "192.168.1.9", "Console")},
                    "192.168.1.5");
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0].whose, "Harbourline");
  EXPECT_EQ(rows[1].whose, "Another program on this computer");
  EXPECT_EQ(rows[2].whose, "Harbourline, for another computer");
  EXPECT_EQ(rows[3].whose, "Another computer");
  EXPECT_EQ(rows[3].target, "192.168.1.9:80");
}

TEST(TableRowsTest, StandsInTheOrderOfThePorts) {
  PortMapping udp = Entry(80, "192.168.1.5", "");
  udp.protocol = Protocol::kUdp;
  const std::vector<TableRow> rows =
      DescribeTable({Entry(443, "192.168.1.5", ""), udp, Entry(80, "192.168.1.5", "")}, "192.168.1.5");
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].port, "TCP 80");
  EXPECT_EQ(rows[1].port, "UDP 80");
  EXPECT_EQ(rows[2].port, "TCP 443");
}

TEST(TableRowsTest, TellsWhatIsUnusual) {
  PortMapping mapping = Entry(80, "192.168.1.5", "Web");
  mapping.enabled = false;
  mapping.remoteHost = "8.8.8.8";
  const std::vector<TableRow> rows = DescribeTable({mapping}, "192.168.1.5");
  EXPECT_THAT(rows.at(0).description, testing::HasSubstr("switched off"));
  EXPECT_THAT(rows.at(0).description, testing::HasSubstr("only from 8.8.8.8"));
}

}  // namespace
}  // namespace upnp
