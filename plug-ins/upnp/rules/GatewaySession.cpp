#include "rules/GatewaySession.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <numeric>
#include <thread>
#include <utility>

namespace upnp {

GatewaySession::GatewaySession(Gateway& gateway)
    : gateway_(gateway), abilities_(gateway.Abilities()), lanes_(std::min(abilities_.lanes, kLanesUntried)) {}

bool GatewaySession::IsAlive() {
  ConnectionStatus status;
  std::string address;
  return !gateway_.Status(status).IsNoAnswer() || !gateway_.ExternalAddress(address).IsNoAnswer();
}

template <class Call>
Answer GatewaySession::Insist(const Call& call) {
  Answer answer = call();
  if (answer.IsNoAnswer()) answer = call();
  return answer.IsNoAnswer() && IsAlive() ? Answer::Refused(error::kConnectionCut) : answer;
}

Granted GatewaySession::Add(const PortMapping& mapping) {
  Granted granted;
  granted.answer = Insist([&] {
    granted = gateway_.Add(mapping);
    return granted.answer;
  });
  return granted;
}

Answer GatewaySession::Delete(const PortKey& key) {
  return Insist([&] { return gateway_.Delete(key); });
}

Answer GatewaySession::EntryAt(std::uint32_t index, PortMapping& mapping) {
  return Insist([&] { return gateway_.EntryAt(index, mapping); });
}

Lookup GatewaySession::Entry(const PortKey& key) {
  Lookup lookup;
  lookup.answer = Insist([&] { return gateway_.Entry(key, lookup.mapping); });
  return lookup;
}

/// Small routers serve few connections at once. A question that changes nothing shows whether one bears more.
void GatewaySession::TryMoreLanes() {
  triedMoreLanes_ = true;
  std::vector<std::size_t> numbers(static_cast<std::size_t>(abilities_.lanes));
  std::iota(numbers.begin(), numbers.end(), 0);
  const int before = std::exchange(lanes_, abilities_.lanes);
  std::atomic<int> answered{0};
  RunLanes(
      numbers, [] { return true; },
      [&](std::size_t) {
        ConnectionStatus status;
        if (!gateway_.Status(status).IsNoAnswer()) ++answered;
        return true;
      });
  if (answered < abilities_.lanes) lanes_ = before;
}

/// Runs `work` for each number below `count`, until one returns false. A call without an answer is tried once
/// more when all others have ended; if that one is answered, the router gets one call at a time from then on.
void GatewaySession::InLanes(std::size_t count, const GoOn& goOn,
                             const std::function<Answer&(std::size_t)>& answerOf,
                             const std::function<bool(std::size_t)>& work) {
  if (count >= kManyCalls && lanes_ > 1 && lanes_ < abilities_.lanes && !triedMoreLanes_) TryMoreLanes();
  std::vector<std::size_t> open(count);
  std::iota(open.begin(), open.end(), 0);
  while (!open.empty()) {
    std::atomic<bool> ended{false};
    RunLanes(open, goOn, [&](std::size_t i) {
      const bool goesOn = work(i);
      if (!goesOn && !answerOf(i).IsNoAnswer()) ended = true;
      return goesOn;
    });
    for (const std::size_t i : open) {
      if (!answerOf(i).IsNoAnswer() || !goOn()) continue;
      if (!work(i) && answerOf(i).IsNoAnswer()) {
        if (!IsAlive()) return;
        answerOf(i) = Answer::Refused(error::kConnectionCut);
        ended = true;
      } else {
        lanes_ = 1;
      }
    }
    const std::size_t tried = std::erase_if(open, [&](std::size_t i) { return !answerOf(i).IsNotTried(); });
    if (ended || tried == 0 || !goOn()) return;
  }
}

void GatewaySession::RunLanes(std::span<const std::size_t> numbers, const GoOn& goOn,
                              const std::function<bool(std::size_t)>& work) const {
  std::atomic<std::size_t> next{0};
  std::atomic<bool> stop{false};
  const auto lane = [&] {
    try {
      for (std::size_t i = next++; i < numbers.size() && !stop && goOn(); i = next++) {
        if (!work(numbers[i])) stop = true;
      }
    } catch (const std::exception&) {
      stop = true;
    }
  };
  std::vector<std::jthread> threads;
  const std::size_t lanes = std::min(static_cast<std::size_t>(lanes_), numbers.size());
  for (std::size_t i = 1; i < lanes; ++i) threads.emplace_back(lane);
  lane();
}

std::vector<Added> GatewaySession::AddAll(std::span<const PortMapping> mappings, bool readBack,
                                          const GoOn& goOn) {
  std::vector<Added> additions(mappings.size());
  InLanes(
      mappings.size(), goOn, [&](std::size_t i) -> Answer& { return additions[i].granted.answer; },
      [&](std::size_t i) {
        Added& added = additions[i];
        added.granted = gateway_.Add(mappings[i]);
        if (!added.granted.answer.IsDone()) return false;
        if (readBack) added.readBack.answer = gateway_.Entry(mappings[i].Key(), added.readBack.mapping);
        return !added.readBack.answer.IsNoAnswer();
      });
  return additions;
}

std::vector<Lookup> GatewaySession::Entries(std::span<const PortKey> keys,
                                            const std::function<bool(const Answer&)>& isMissing,
                                            const GoOn& goOn) {
  std::vector<Lookup> lookups(keys.size());
  InLanes(
      keys.size(), goOn, [&](std::size_t i) -> Answer& { return lookups[i].answer; },
      [&](std::size_t i) {
        lookups[i].answer = gateway_.Entry(keys[i], lookups[i].mapping);
        return lookups[i].answer.IsDone() || isMissing(lookups[i].answer);
      });
  return lookups;
}

std::vector<Answer> GatewaySession::DeleteAll(std::span<const PortKey> keys, const GoOn& goOn) {
  std::vector<Answer> answers(keys.size(), Answer::NotTried());
  InLanes(
      keys.size(), goOn, [&](std::size_t i) -> Answer& { return answers[i]; },
      [&](std::size_t i) {
        answers[i] = gateway_.Delete(keys[i]);
        return !answers[i].IsNoAnswer();
      });
  return answers;
}

}  // namespace upnp
