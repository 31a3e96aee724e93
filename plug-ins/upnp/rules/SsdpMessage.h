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
  std::string location;  ///< address of the description, at the sender
  std::optional<std::uint32_t> bootId;
  std::string sender;  ///< dotted address from which it came
};

/// Reads one datagram that came from `sender`. Nothing for anything else, and for what isn't about an
/// Internet gateway. The location leads to the sender, whatever host it names: a router names itself by what
/// only it knows, and anybody else would lead us away.
std::optional<SsdpMessage> ReadSsdpMessage(std::string_view datagram, const std::string& sender);

}  // namespace upnp
