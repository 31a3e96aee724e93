#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "rules/Gateway.h"

namespace upnp {

/// The calls of one gateway, many at once where it bears that. After the first call of a batch that isn't
/// done, the rest needn't be tried.
class GatewaySession {
 public:
  /// Asked before each call of a batch, from any thread; false ends the batch.
  using GoOn = std::function<bool()>;

  explicit GatewaySession(Gateway& gateway) : gateway_(gateway), abilities_(gateway.Abilities()) {}

  const Traits& Abilities() const { return abilities_; }
  Granted Add(const PortMapping& mapping);
  Answer Delete(const PortKey& key);
  Answer EntryAt(std::uint32_t index, PortMapping& mapping);
  Lookup Entry(const PortKey& key);

  /// Each is read back when it is done, unless `readBack` is false.
  std::vector<Added> AddAll(std::span<const PortMapping> mappings, bool readBack, const GoOn& goOn);
  /// Stops at the first answer that is neither an entry nor IsMissing.
  std::vector<Lookup> Entries(std::span<const PortKey> keys, const GoOn& goOn);
  /// Stops only when the router is silent.
  std::vector<Answer> DeleteAll(std::span<const PortKey> keys, const GoOn& goOn);

 private:
  void InLanes(std::size_t count, const GoOn& goOn, const std::function<bool(std::size_t)>& work) const;

  Gateway& gateway_;
  Traits abilities_;
};

}  // namespace upnp
