#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace upnp {

/// Discovery: the group and the port to which searches and announcements go.
inline constexpr char kSsdpGroup[] = "239.255.255.250";
inline constexpr std::uint16_t kSsdpPort = 1900;

/// A search for devices or services of one type; they wait up to `seconds` before they answer.
std::string SearchRequest(std::string_view type, int seconds);

/// What is searched for, one request each. Between them every Internet gateway answers.
inline constexpr std::string_view kSearchTypes[] = {"urn:schemas-upnp-org:device:InternetGatewayDevice:1",
                                                    "urn:schemas-upnp-org:device:InternetGatewayDevice:2",
                                                    "urn:schemas-upnp-org:service:WANIPConnection:1",
                                                    "urn:schemas-upnp-org:service:WANPPPConnection:1"};

/// An answer to a search, or an announcement.
struct SsdpMessage {
  enum class Kind { kAnswer, kAlive, kGone };
  Kind kind = Kind::kAnswer;
  std::string type;      ///< of the device or service
  std::string device;    ///< the identifier, "uuid:...", without what follows it
  std::string location;  ///< address of the description
  std::optional<std::uint32_t> bootId;
};

/// Reads one datagram. Nothing for anything else, and for what isn't about an Internet gateway.
std::optional<SsdpMessage> ReadSsdpMessage(std::string_view datagram);

/// The host of "http://host:port/path". Empty for any other text.
std::string HostOf(std::string_view url);
/// The port of such an address; 80 when it has none, 0 when the text is no such address.
std::uint16_t PortOf(std::string_view url);

}  // namespace upnp
