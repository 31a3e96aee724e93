#include "MiniupnpcGateway.h"

#include <upnpcommands.h>

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "CallBounds.h"

namespace upnp {

namespace {

const char* NameOf(Protocol protocol) {
  return protocol == Protocol::kTcp ? "TCP" : "UDP";
}

template <class Number, std::size_t N>
bool ReadNumber(const std::array<char, N>& text, Number& number) {
  const std::string_view view(text.data());
  const auto [end, failure] = std::from_chars(view.data(), view.data() + view.size(), number);
  return failure == std::errc() && end == view.data() + view.size();
}

template <std::size_t N>
bool IsOn(const std::array<char, N>& text) {
  const std::string_view view(text.data());
  // A router that leaves it out means an entry like any other.
  return view.empty() || view == "1" || view == "yes" || view == "Yes" || view == "tru" || view == "Tru";
}

}  // namespace

MiniupnpcGateway::MiniupnpcGateway(std::string controlUrl, std::string serviceType,
                                   const std::atomic<bool>& calledOff, std::chrono::milliseconds callTime)
    : controlUrl_(std::move(controlUrl)),
      serviceType_(std::move(serviceType)),
      calledOff_(calledOff),
      callTime_(callTime) {}

Answer MiniupnpcGateway::Call(const std::function<int()>& call) const {
  const CallBounds bounds(callTime_, calledOff_);
  const int code = call();
  if (bounds.WereReached() || code == UPNPCOMMAND_HTTP_ERROR) return Answer::NoAnswer();
  if (code == UPNPCOMMAND_SUCCESS) return Answer::Done();
  // Below zero: the answer made no sense.
  return Answer::Refused(code > 0 ? code : error::kActionFailed);
}

Traits MiniupnpcGateway::Abilities() const {
  Traits traits;
  // Small routers serve few connections at once.
  traits.lanes = 3;
  return traits;
}

Granted MiniupnpcGateway::Add(const PortMapping& mapping) {
  const std::string external = std::to_string(mapping.externalPort);
  const std::string internal = std::to_string(mapping.internalPort);
  const std::string lease = std::to_string(mapping.lease);
  const Answer answer = Call([&] {
    return UPNP_AddPortMapping(controlUrl_.c_str(), serviceType_.c_str(), external.c_str(), internal.c_str(),
                               mapping.client.c_str(), mapping.description.c_str(), NameOf(mapping.protocol),
                               nullptr, lease.c_str());
  });
  return {answer, mapping.lease, mapping.externalPort};
}

Answer MiniupnpcGateway::Delete(const PortKey& key) {
  const std::string port = std::to_string(key.first);
  return Call([&] {
    return UPNP_DeletePortMapping(controlUrl_.c_str(), serviceType_.c_str(), port.c_str(), NameOf(key.second),
                                  nullptr);
  });
}

Answer MiniupnpcGateway::EntryAt(std::uint32_t index, PortMapping& mapping) {
  const std::string position = std::to_string(index);
  std::array<char, 6> external{};
  std::array<char, 16> client{};
  std::array<char, 6> internal{};
  std::array<char, 4> protocol{};
  std::array<char, 80> description{};
  std::array<char, 4> enabled{};
  std::array<char, 64> host{};
  std::array<char, 16> lease{};
  const Answer answer = Call([&] {
    return UPNP_GetGenericPortMappingEntry(controlUrl_.c_str(), serviceType_.c_str(), position.c_str(),
                                           external.data(), client.data(), internal.data(), protocol.data(),
                                           description.data(), enabled.data(), host.data(), lease.data());
  });
  if (!answer.IsDone()) return answer;
  mapping = {};
  if (!ReadNumber(external, mapping.externalPort)) return Answer::Refused(error::kActionFailed);
  ReadNumber(internal, mapping.internalPort);
  ReadNumber(lease, mapping.lease);
  mapping.protocol = std::string_view(protocol.data()) == "UDP" ? Protocol::kUdp : Protocol::kTcp;
  mapping.client = client.data();
  mapping.description = description.data();
  mapping.enabled = IsOn(enabled);
  mapping.remoteHost = host.data();
  return answer;
}

Answer MiniupnpcGateway::Entry(const PortKey& key, PortMapping& mapping) {
  const std::string port = std::to_string(key.first);
  std::array<char, 16> client{};
  std::array<char, 6> internal{};
  std::array<char, 80> description{};
  std::array<char, 4> enabled{};
  std::array<char, 16> lease{};
  const Answer answer = Call([&] {
    return UPNP_GetSpecificPortMappingEntry(controlUrl_.c_str(), serviceType_.c_str(), port.c_str(),
                                            NameOf(key.second), nullptr, client.data(), internal.data(),
                                            description.data(), enabled.data(), lease.data());
  });
  if (!answer.IsDone()) return answer;
  mapping = {};
  mapping.externalPort = key.first;
  mapping.protocol = key.second;
  ReadNumber(internal, mapping.internalPort);
  ReadNumber(lease, mapping.lease);
  mapping.client = client.data();
  mapping.description = description.data();
  mapping.enabled = IsOn(enabled);
  return answer;
}

Answer MiniupnpcGateway::ExternalAddress(std::string& address) {
  std::array<char, 16> text{};
  const Answer answer =
      Call([&] { return UPNP_GetExternalIPAddress(controlUrl_.c_str(), serviceType_.c_str(), text.data()); });
  address = text.data();
  return answer;
}

Answer MiniupnpcGateway::Status(ConnectionStatus& status) {
  std::array<char, 64> text{};
  std::array<char, 64> lastError{};
  unsigned int upTime = 0;
  const Answer answer = Call([&] {
    return UPNP_GetStatusInfo(controlUrl_.c_str(), serviceType_.c_str(), text.data(), &upTime,
                              lastError.data());
  });
  status.text = text.data();
  status.connected = status.text == "Connected" || status.text == "Up";
  status.upTime = upTime;
  return answer;
}

}  // namespace upnp
