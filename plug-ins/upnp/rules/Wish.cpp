#include "rules/Wish.h"

#include <map>
#include <string_view>

#include "rules/Addresses.h"

namespace upnp {

namespace {

constexpr std::size_t kLongestDescription = 60;
constexpr std::int32_t kHighestPort = 65535;

class Expansion {
 public:
  Expansion(const Wish& wish, const std::string& localAddress) : wish_(wish), localAddress_(localAddress) {}

  WantedState Make() {
    for (const WishedMapping& mapping : wish_.mappings) {
      total_ += Count(mapping);
    }
    for (const WishedMapping& mapping : wish_.mappings) {
      if (mapping.tcp) Take(mapping, Protocol::kTcp);
      if (mapping.udp) Take(mapping, Protocol::kUdp);
    }
    return std::move(state_);
  }

 private:
  static bool IsRange(const WishedMapping& mapping) {
    return mapping.beginPort >= 1 && mapping.beginPort <= mapping.endPort && mapping.endPort <= kHighestPort;
  }
  static int Count(const WishedMapping& mapping) {
    if (!IsRange(mapping)) return 0;
    return (mapping.endPort - mapping.beginPort + 1) *
           (static_cast<int>(mapping.tcp) + static_cast<int>(mapping.udp));
  }

  std::string ClientOf(const WishedMapping& mapping) const {
    // The router may know this computer by another address than the program does.
    return mapping.lastOctet == wish_.localOctet ? localAddress_
                                                 : NeighbourAddress(localAddress_, mapping.lastOctet);
  }

  void Tell(Trouble trouble, const WishedMapping& mapping, Protocol protocol, int code = 0) {
    state_.problems.push_back({trouble, mapping.beginPort, mapping.endPort, protocol, {}, code});
  }

  void Take(const WishedMapping& mapping, Protocol protocol) {
    if (!IsRange(mapping)) return Tell(Trouble::kBadPort, mapping, protocol);
    const std::string client = ClientOf(mapping);
    if (client.empty()) return Tell(Trouble::kBadHost, mapping, protocol);
    const int count = mapping.endPort - mapping.beginPort + 1;
    if (static_cast<int>(state_.ports.size()) + count > kMostPorts) {
      return Tell(Trouble::kTooManyPorts, mapping, protocol, total_);
    }
    // Two profiles may want the same; two computers can't have it.
    for (std::int32_t port = mapping.beginPort; port <= mapping.endPort; ++port) {
      const auto taken = clients_.find({static_cast<std::uint16_t>(port), protocol});
      if (taken != clients_.end() && taken->second != client) return Tell(Trouble::kClash, mapping, protocol);
    }
    PortMapping single;
    single.protocol = protocol;
    single.client = client;
    single.description = MarkedDescription(mapping.description);
    state_.ranges.push_back({mapping.beginPort, mapping.endPort, protocol});
    for (std::int32_t port = mapping.beginPort; port <= mapping.endPort; ++port) {
      if (!clients_.emplace(PortKey(static_cast<std::uint16_t>(port), protocol), client).second) continue;
      single.externalPort = single.internalPort = static_cast<std::uint16_t>(port);
      state_.ports.push_back({single, state_.ranges.size() - 1});
    }
  }

  const Wish& wish_;
  const std::string& localAddress_;
  WantedState state_;
  std::map<PortKey, std::string> clients_;
  int total_ = 0;
};

bool IsSameRule(const WishedMapping& a, const WishedMapping& b) {
  return a.beginPort == b.beginPort && a.endPort == b.endPort && a.tcp == b.tcp && a.udp == b.udp &&
         a.lastOctet == b.lastOctet;
}

}  // namespace

Wish WishMemory::Take(const Wish& request) {
  Wish whole;
  whole.localOctet = request.localOctet;
  std::erase_if(others_, [&](const WishedMapping& other) { return other.lastOctet == request.localOctet; });
  for (const WishedMapping& mapping : request.mappings) {
    std::erase_if(others_, [&](const WishedMapping& other) { return IsSameRule(other, mapping); });
  }
  for (const WishedMapping& mapping : request.mappings) {
    if (mapping.clear) continue;
    if (mapping.lastOctet == request.localOctet) {
      whole.mappings.push_back(mapping);
    } else {
      others_.push_back(mapping);
    }
  }
  whole.mappings.insert(whole.mappings.end(), others_.begin(), others_.end());
  return whole;
}

WantedState Expand(const Wish& wish, const std::string& localAddress) {
  return Expansion(wish, localAddress).Make();
}

std::string MarkedDescription(const std::string& description) {
  // What isn't a plain sign could break the call, or the pages of the router.
  constexpr std::string_view kPlain = " -_.,:()+/#";
  std::string marked = kOurMark;
  for (const char sign : description) {
    const bool letter =
        (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z') || (sign >= '0' && sign <= '9');
    marked += letter || kPlain.find(sign) != std::string_view::npos ? sign : ' ';
    if (marked.size() == kLongestDescription) break;
  }
  while (marked.back() == ' ') marked.pop_back();
  return marked;
}

bool BearsOurMark(const std::string& description) {
  // Without a text of the user's the mark has lost its blank.
  const std::string_view word = std::string_view(kOurMark).substr(0, sizeof kOurMark - 2);
  return description.compare(0, word.size(), word) == 0;
}

}  // namespace upnp
