#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace upnp {

/// A dotted IPv4 address as a number, the first octet in the highest byte. Nothing for any other text.
std::optional<std::uint32_t> ParseAddress(std::string_view text);

/// True when the Internet can reach the address: not one of those set apart for home networks, providers'
/// own networks, documentation, multicast and the like.
bool IsPublicAddress(std::string_view text);

/// True for the addresses that no router forwards into the Internet: of home networks, of providers' own
/// networks, link-local ones and this computer itself.
bool IsPrivateAddress(std::uint32_t address);

/// The computer with that last octet in the network of `address`. Empty when `address` is no address, or the
/// octet isn't from 1 to 254.
std::string NeighbourAddress(std::string_view address, int lastOctet);

}  // namespace upnp
