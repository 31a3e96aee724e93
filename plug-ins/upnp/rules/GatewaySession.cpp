#include "rules/GatewaySession.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>

namespace upnp {

Granted GatewaySession::Add(const PortMapping& mapping) {
  return gateway_.Add(mapping);
}

Answer GatewaySession::Delete(const PortKey& key) {
  return gateway_.Delete(key);
}

Answer GatewaySession::EntryAt(std::uint32_t index, PortMapping& mapping) {
  return gateway_.EntryAt(index, mapping);
}

Lookup GatewaySession::Entry(const PortKey& key) {
  Lookup lookup;
  lookup.answer = gateway_.Entry(key, lookup.mapping);
  return lookup;
}

/// Runs `work` for each number below `count`, on several threads, until one returns false or throws.
void GatewaySession::InLanes(std::size_t count, const GoOn& goOn,
                             const std::function<bool(std::size_t)>& work) const {
  std::atomic<std::size_t> next{0};
  std::atomic<bool> stop{false};
  const auto lane = [&] {
    try {
      for (std::size_t i = next++; i < count && !stop && goOn(); i = next++) {
        if (!work(i)) stop = true;
      }
    } catch (const std::exception&) {
      stop = true;
    }
  };
  std::vector<std::jthread> threads;
  const std::size_t lanes = std::min(static_cast<std::size_t>(abilities_.lanes), count);
  for (std::size_t i = 1; i < lanes; ++i) threads.emplace_back(lane);
  lane();
}

std::vector<Added> GatewaySession::AddAll(std::span<const PortMapping> mappings, bool readBack,
                                          const GoOn& goOn) {
  std::vector<Added> additions(mappings.size());
  InLanes(mappings.size(), goOn, [&](std::size_t i) {
    additions[i].granted = Add(mappings[i]);
    if (!additions[i].granted.answer.IsDone()) return false;
    if (readBack) additions[i].readBack = Entry(mappings[i].Key());
    return true;
  });
  return additions;
}

std::vector<Lookup> GatewaySession::Entries(std::span<const PortKey> keys, const GoOn& goOn) {
  std::vector<Lookup> lookups(keys.size());
  InLanes(keys.size(), goOn, [&](std::size_t i) {
    lookups[i] = Entry(keys[i]);
    return lookups[i].answer.IsDone() || IsMissing(lookups[i].answer);
  });
  return lookups;
}

std::vector<Answer> GatewaySession::DeleteAll(std::span<const PortKey> keys, const GoOn& goOn) {
  std::vector<Answer> answers(keys.size(), Answer::NotTried());
  InLanes(keys.size(), goOn, [&](std::size_t i) {
    answers[i] = Delete(keys[i]);
    return !answers[i].IsNoAnswer();
  });
  return answers;
}

}  // namespace upnp
