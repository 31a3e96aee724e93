#pragma once

/// The network of scripts/own-network, in which a test may do what it likes.
namespace network {

/// True when this process runs in such a network.
bool IsOwn();
/// Takes the default route away, or puts it back; false when that can't be done.
bool Connect(bool connected);

/// So many segments arrive, and none is answered. False when that can't be done.
bool Receive(int segments);
/// So many segments leave for an address that never answers. False when that can't be done.
bool Send(int segments);

}  // namespace network
