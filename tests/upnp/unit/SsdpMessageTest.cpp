#include "rules/SsdpMessage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace upnp {
namespace {

constexpr char kAnswer[] =
    "HTTP/1.1 200 OK\r\nCACHE-CONTROL: max-age=120\r\nST: "
    "urn:schemas-upnp-org:device:InternetGatewayDevice:1\r\n"
    "USN: uuid:0000-1::urn:schemas-upnp-org:device:InternetGatewayDevice:1\r\nEXT:\r\n"
    "Location:http://192.168.1.1:5000/rootDesc.xml\r\nBOOTID.UPNP.ORG: 1700000000\r\n\r\n";

TEST(SsdpMessageTest, ReadsAnAnswer) {
  const auto message = ReadSsdpMessage(kAnswer, "192.168.1.1");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->kind, SsdpMessage::Kind::kAnswer);
  EXPECT_EQ(message->device, "uuid:0000-1");
  EXPECT_EQ(message->location, "http://192.168.1.1:5000/rootDesc.xml");
  EXPECT_EQ(message->bootId, 1700000000u);
}

TEST(SsdpMessageTest, ReadsAnAnnouncementAndALeave) {
  const std::string rest =
      "NT: urn:schemas-upnp-org:service:WANIPConnection:1\r\nusn: uuid:1::x\r\nLOCATION: "
      "http://10.0.0.1/d\r\n";
  const auto alive = ReadSsdpMessage("NOTIFY * HTTP/1.1\r\nNTS: ssdp:alive\r\n" + rest, "10.0.0.1");
  ASSERT_TRUE(alive);
  EXPECT_EQ(alive->kind, SsdpMessage::Kind::kAlive);
  EXPECT_EQ(alive->bootId, std::nullopt);
  const auto gone = ReadSsdpMessage("NOTIFY * HTTP/1.1\r\nNTS: ssdp:byebye\r\n" + rest, "10.0.0.1");
  ASSERT_TRUE(gone);
  EXPECT_EQ(gone->kind, SsdpMessage::Kind::kGone);
}

TEST(SsdpMessageTest, ALocationOnAnotherHostLeadsToTheSender) {
  for (const char* host : {"router.lan", "10.9.8.7", "[fe80::1]"}) {
    const auto message = ReadSsdpMessage(
        std::string("HTTP/1.1 200 OK\r\nST: urn:x:device:InternetGatewayDevice:1\r\nUSN: uuid:1\r\nLOCATION: "
                    "http://") +
            host + ":49000/a/b.xml\r\n\r\n",
        "192.168.1.1");
    ASSERT_TRUE(message) << host;
    EXPECT_EQ(message->location, "http://192.168.1.1:49000/a/b.xml");
    EXPECT_EQ(message->sender, "192.168.1.1");
  }
}

TEST(SsdpMessageTest, TakesNothingElse) {
  const std::string zeros(2000, '\0');
  for (const std::string& text :
       {std::string(), std::string("HTTP/1.1 404 Not Found\r\n\r\n"),
        std::string("M-SEARCH * HTTP/1.1\r\n\r\n"), zeros,
        std::string("HTTP/1.1 200 OK\r\nST: urn:x:device:MediaServer:1\r\nUSN: uuid:1\r\nLOCATION: "
                    "http://a/b\r\n\r\n"),
        std::string("HTTP/1.1 200 OK\r\nST: urn:x:device:InternetGatewayDevice:1\r\nUSN: uuid:1\r\n"
                    "LOCATION: file:///c/windows\r\n\r\n"),
        std::string(
            "HTTP/1.1 200 OK\r\nST: urn:x:device:InternetGatewayDevice:1\r\nLOCATION: http://a/b\r\n\r\n")}) {
    EXPECT_FALSE(ReadSsdpMessage(text, "192.168.1.1")) << text;
  }
}

TEST(SsdpMessageTest, ASearchHasWhatTheProtocolAsksFor) {
  const std::string search = SearchRequest("urn:x", 2);
  EXPECT_THAT(search, testing::StartsWith("M-SEARCH * HTTP/1.1\r\n"));
  for (const char* line :
       {"HOST: 239.255.255.250:1900\r\n", "MAN: \"ssdp:discover\"\r\n", "MX: 2\r\n", "ST: urn:x\r\n"}) {
    EXPECT_THAT(search, testing::HasSubstr(line));
  }
  EXPECT_THAT(search, testing::EndsWith("\r\n\r\n"));
}

}  // namespace
}  // namespace upnp
