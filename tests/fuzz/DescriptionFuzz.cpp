// The readers of a router's description: the answer that brings it, in pieces, and the text itself.

#include <algorithm>
#include <string>

#include "FuzzWorld.h"
#include "rules/DeviceDescription.h"
#include "rules/HttpAnswer.h"
#include "rules/TagReader.h"
#include "rules/WebAddress.h"

namespace {

void RequireOwnAddresses(std::string_view text, const std::string& location) {
  const upnp::DeviceDescription description = upnp::ReadDescription(text, location);
  const std::string host = upnp::HostOf(location);
  for (const upnp::ConnectionService& connection : description.connections) {
    fuzz::Require(upnp::HostOf(connection.controlUrl) == host, "a connection is asked at the router");
    fuzz::Require(upnp::PortOf(connection.controlUrl) != 0, "a connection has a port");
  }
  fuzz::Require(description.connections.size() <= 8, "the connections are bounded");
  fuzz::Require(description.page.find_first_of("\"' \\\r\n\t<>") == std::string::npos,
                "the page is plain for a shell");
  fuzz::Require(upnp::RouterPage(description.page, host) == description.page, "the page is the router's own");
}

}  // namespace

/// The first byte is the length of the pieces.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::Text(data, size);
  upnp::TagReader reader(text);
  while (reader.Next()) continue;
  fuzz::Require(reader.Work() <= 3 * text.size() + 3, "every character is looked at a few times");
  const std::string location = "http://192.168.1.1:5000/desc/root.xml";
  RequireOwnAddresses(text, location);

  if (text.empty()) return 0;
  const std::size_t piece = std::max<std::size_t>(1, data[0]);
  upnp::HttpAnswer answer(upnp::kLongestDescription);
  for (std::size_t at = 1; at < text.size(); at += piece) {
    if (!answer.Take(text.substr(at, piece))) break;
  }
  const std::optional<std::string> page = answer.Page();
  if (!page) return 0;
  fuzz::Require(page->size() <= upnp::kLongestDescription, "a page is bounded");
  RequireOwnAddresses(*page, location);
  return 0;
}
