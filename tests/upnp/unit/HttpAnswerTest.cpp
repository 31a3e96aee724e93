#include "rules/HttpAnswer.h"

#include <gtest/gtest.h>

namespace upnp {
namespace {

constexpr std::size_t kMost = 100;

/// The page out of an answer that comes in pieces of this length.
std::optional<std::string> PageOf(const std::string& text, std::size_t piece = 7) {
  HttpAnswer answer(kMost);
  for (std::size_t at = 0; at < text.size(); at += piece) {
    if (!answer.Take(std::string_view(text).substr(at, piece))) break;
  }
  return answer.Page();
}

TEST(HttpAnswerTest, APageEndsWithTheLengthThatWasPromised) {
  HttpAnswer answer(kMost);
  EXPECT_TRUE(answer.Take("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhel"));
  EXPECT_EQ(answer.Page(), std::nullopt);
  EXPECT_FALSE(answer.Take("lo and more"));
  EXPECT_EQ(answer.Page(), "hello");
}

TEST(HttpAnswerTest, APageWithoutALengthEndsWithTheConnection) {
  EXPECT_EQ(PageOf("HTTP/1.0 200 OK\r\n\r\nhello"), "hello");
}

TEST(HttpAnswerTest, APageInChunksIsPutTogether) {
  for (std::size_t piece = 1; piece < 90; ++piece) {
    EXPECT_EQ(
        PageOf("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nhel\r\n2;x=y\r\nlo\r\n0\r\n\r\n",
               piece),
        "hello");
  }
}

TEST(HttpAnswerTest, APromiseOfGigabytesIsRefusedAtOnce) {
  HttpAnswer answer(kMost);
  EXPECT_FALSE(answer.Take("HTTP/1.1 200 OK\r\nContent-Length: 4294967295\r\n\r\n<root>"));
  EXPECT_EQ(answer.Page(), std::nullopt);
  HttpAnswer chunks(kMost);
  EXPECT_FALSE(chunks.Take("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nffffffffffffffff\r\nx"));
  EXPECT_EQ(chunks.Page(), std::nullopt);
  EXPECT_EQ(PageOf("HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999999\r\n\r\nx"), std::nullopt);
}

TEST(HttpAnswerTest, WhatIsLongerThanTheBoundIsNoPage) {
  EXPECT_EQ(PageOf("HTTP/1.1 200 OK\r\n\r\n" + std::string(kMost, 'x')), std::string(kMost, 'x'));
  EXPECT_EQ(PageOf("HTTP/1.1 200 OK\r\n\r\n" + std::string(kMost + 1, 'x')), std::nullopt);
  EXPECT_EQ(PageOf("HTTP/1.1 200 OK\r\n\r\n" + std::string(kMost + 1, 'x'), 5000), std::nullopt);
}

TEST(HttpAnswerTest, AnythingElseIsNoPage) {
  for (const char* text : {"", "HTTP/1.1 404 Not Found\r\n\r\nno", "hello", "HTTP/1.1 302 Found\r\n\r\n",
                           "HTTP/1.1 200 OK\r\nContent-Length: 50\r\n\r\ncut"}) {
    EXPECT_EQ(PageOf(text), std::nullopt) << text;
  }
}

TEST(HttpAnswerTest, TheRequestNamesPathAndHost) {
  EXPECT_EQ(HttpRequest("http://192.168.1.1:5000/a?b"),
            "GET /a?b HTTP/1.1\r\nHOST: 192.168.1.1:5000\r\nCONNECTION: close\r\n\r\n");
}

}  // namespace
}  // namespace upnp
