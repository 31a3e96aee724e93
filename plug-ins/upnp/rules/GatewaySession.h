#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "rules/Gateway.h"

namespace upnp {

/// The calls of one gateway, many at once where it bears that. After the first call of a batch that isn't
/// done, the rest needn't be tried.
///
/// Some routers cut the connection at an action that they lack, or serve one connection at a time. So a call
/// without an answer is tried once more by itself; if the router then answers another question, it counts as
/// refused.
class GatewaySession {
 public:
  /// Asked before each call of a batch, from any thread; false ends the batch.
  using GoOn = std::function<bool()>;

  explicit GatewaySession(Gateway& gateway);

  const Traits& Abilities() const { return abilities_; }
  Granted Add(const PortMapping& mapping);
  Answer Delete(const PortKey& key);
  Answer EntryAt(std::uint32_t index, PortMapping& mapping);
  Lookup Entry(const PortKey& key);
  /// How many calls are made at once by now.
  int Lanes() const { return lanes_; }

  /// Each is read back when it is done, unless `readBack` is false.
  std::vector<Added> AddAll(std::span<const PortMapping> mappings, bool readBack, const GoOn& goOn);
  /// Stops at the first answer that is neither an entry nor one that `isMissing` knows.
  std::vector<Lookup> Entries(std::span<const PortKey> keys,
                              const std::function<bool(const Answer&)>& isMissing, const GoOn& goOn);
  /// Stops only when the router is silent.
  std::vector<Answer> DeleteAll(std::span<const PortKey> keys, const GoOn& goOn);

 private:
  /// A batch of so many calls is worth the question how many the router bears at once.
  static constexpr std::size_t kManyCalls = 12;
  static constexpr int kLanesUntried = 2;

  bool IsAlive();
  template <class Call>
  Answer Insist(const Call& call);
  void TryMoreLanes();
  void InLanes(std::size_t count, const GoOn& goOn, const std::function<Answer&(std::size_t)>& answerOf,
               const std::function<bool(std::size_t)>& work);
  void RunLanes(std::span<const std::size_t> numbers, const GoOn& goOn,
                const std::function<bool(std::size_t)>& work) const;

  Gateway& gateway_;
  Traits abilities_;
  int lanes_;  ///< calls at once that the router bears, as far as is known
  bool triedMoreLanes_ = false;
};

}  // namespace upnp
