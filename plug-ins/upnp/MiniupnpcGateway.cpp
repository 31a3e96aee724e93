#include "MiniupnpcGateway.h"

#include <miniupnpc.h>
#include <upnpcommands.h>
#include <upnpreplyparse.h>

#include <array>
#include <cstdlib>
#include <utility>

#include "CallBounds.h"

namespace upnp {

namespace {

constexpr int kLowestOwnCode = UPNPCOMMAND_MEM_ALLOC_ERROR;

const char* NameOf(Protocol protocol) {
  return protocol == Protocol::kTcp ? "TCP" : "UDP";
}

/// What a router answered to an action, by the names of the standard's arguments.
class Reply {
 public:
  /// A null buffer is no reply.
  Reply(char* buffer, int size) : came_(buffer != nullptr) {
    if (came_) ParseNameValue(buffer, size, &values_);
    std::free(buffer);
  }
  ~Reply() { ClearNameValueList(&values_); }
  Reply(const Reply&) = delete;
  Reply& operator=(const Reply&) = delete;

  bool Came() const { return came_; }
  std::string Text(const char* name) {
    const char* value = GetValueFromNameValueList(&values_, name);
    return value ? value : std::string();
  }

 private:
  NameValueParserData values_ = {};
  bool came_;
};

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
  // miniupnpc has numbers just below zero for answers that make no sense; routers have some further below.
  return Answer::Refused(code > 0 || code < kLowestOwnCode ? code : error::kActionFailed);
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

/// miniupnpc's own functions for entries cut what is longer than the standard allows, or has blanks around
/// it.
Answer MiniupnpcGateway::ReadOne(const char* action, std::vector<UPNParg> arguments, EntryText text,
                                 PortMapping& mapping) {
  const Answer answer = Call([&] {
    int size = 0;
    // A null ends the list.
    arguments.push_back({nullptr, nullptr});
    char* buffer =
        simpleUPnPcommand(-1, controlUrl_.c_str(), serviceType_.c_str(), action, arguments.data(), &size);
    Reply reply(buffer, size);
    if (!reply.Came()) return UPNPCOMMAND_HTTP_ERROR;
    if (const std::string code = reply.Text("errorCode"); !code.empty()) {
      const int number = std::atoi(code.c_str());
      return number == 0 ? UPNPCOMMAND_UNKNOWN_ERROR : number;
    }
    if (text.externalPort.empty()) {
      text.externalPort = reply.Text("NewExternalPort");
      text.protocol = reply.Text("NewProtocol");
      text.remoteHost = reply.Text("NewRemoteHost");
    }
    text.client = reply.Text("NewInternalClient");
    text.internalPort = reply.Text("NewInternalPort");
    text.description = reply.Text("NewPortMappingDescription");
    text.enabled = reply.Text("NewEnabled");
    text.lease = reply.Text("NewLeaseDuration");
    const bool isEntry = !text.client.empty() || !text.internalPort.empty() || !text.enabled.empty();
    return isEntry ? UPNPCOMMAND_SUCCESS : UPNPCOMMAND_INVALID_RESPONSE;
  });
  if (answer.IsDone()) mapping = ReadEntry(text).value_or(PortMapping());
  return answer;
}

Answer MiniupnpcGateway::EntryAt(std::uint32_t index, PortMapping& mapping) {
  const std::string position = std::to_string(index);
  return ReadOne("GetGenericPortMappingEntry", {{"NewPortMappingIndex", position.c_str()}}, {}, mapping);
}

Answer MiniupnpcGateway::Entry(const PortKey& key, PortMapping& mapping) {
  EntryText text;
  text.externalPort = std::to_string(key.first);
  text.protocol = NameOf(key.second);
  return ReadOne("GetSpecificPortMappingEntry",
                 {{"NewRemoteHost", nullptr},
                  {"NewExternalPort", text.externalPort.c_str()},
                  {"NewProtocol", text.protocol.c_str()}},
                 text, mapping);
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
