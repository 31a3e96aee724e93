#include "rules/TracingGateway.h"

#include <utility>

namespace upnp {

namespace {

std::string TextOf(const Answer& answer) {
  if (answer.IsDone()) return "done";
  if (answer.IsNoAnswer()) return "no answer";
  if (answer.IsNotTried()) return "not tried";
  return "error " + std::to_string(answer.Code());
}

std::string TextOf(const PortKey& key) {
  return std::string(key.second == Protocol::kTcp ? "TCP " : "UDP ") + std::to_string(key.first);
}

std::string TextOf(const PortMapping& mapping) {
  return TextOf(mapping.Key()) + " to " + mapping.client + ":" + std::to_string(mapping.internalPort) +
         " for " + std::to_string(mapping.lease) + " s, \"" + mapping.description + "\"" +
         (mapping.enabled ? "" : ", disabled") +
         (mapping.remoteHost.empty() ? "" : ", from " + mapping.remoteHost);
}

}  // namespace

TracingGateway::TracingGateway(std::unique_ptr<Gateway> gateway, Trace& trace, const Clock& clock)
    : gateway_(std::move(gateway)), trace_(trace), clock_(clock) {}

Granted TracingGateway::Add(const PortMapping& mapping) {
  const Moment begin = clock_.Now();
  const Granted granted = gateway_->Add(mapping);
  Write("add " + TextOf(mapping), begin, granted.answer, "for " + std::to_string(granted.lease) + " s");
  return granted;
}

Answer TracingGateway::Delete(const PortKey& key) {
  const Moment begin = clock_.Now();
  const Answer answer = gateway_->Delete(key);
  Write("delete " + TextOf(key), begin, answer, {});
  return answer;
}

Answer TracingGateway::EntryAt(std::uint32_t index, PortMapping& mapping) {
  const Moment begin = clock_.Now();
  const Answer answer = gateway_->EntryAt(index, mapping);
  Write("entry " + std::to_string(index), begin, answer, answer.IsDone() ? TextOf(mapping) : std::string());
  return answer;
}

Answer TracingGateway::Entry(const PortKey& key, PortMapping& mapping) {
  const Moment begin = clock_.Now();
  const Answer answer = gateway_->Entry(key, mapping);
  Write("entry of " + TextOf(key), begin, answer, answer.IsDone() ? TextOf(mapping) : std::string());
  return answer;
}

Answer TracingGateway::ExternalAddress(std::string& address) {
  const Moment begin = clock_.Now();
  const Answer answer = gateway_->ExternalAddress(address);
  Write("WAN address", begin, answer, address);
  return answer;
}

Answer TracingGateway::Status(ConnectionStatus& status) {
  const Moment begin = clock_.Now();
  const Answer answer = gateway_->Status(status);
  Write("status", begin, answer, status.text + ", up " + std::to_string(status.upTime) + " s");
  return answer;
}

void TracingGateway::Write(const std::string& call, Moment begin, const Answer& answer,
                           const std::string& content) {
  trace_.Line(call + ": " + TextOf(answer) + (answer.IsDone() && !content.empty() ? ", " + content : "") +
              " (" + std::to_string((clock_.Now() - begin).count()) + " ms)");
}

}  // namespace upnp
