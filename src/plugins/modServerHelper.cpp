#include "plugins/modServerHelper.h"

#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "base/Error.h"

namespace modServerHelper {
namespace {

constexpr std::string_view kNotAvailable = "N/A";

platform::Argument ByValue(base::Variant value) {
  return {std::move(value), false};
}

platform::Argument ByReference(base::Variant value) {
  return {std::move(value), true};
}

template <std::size_t count>
base::Variant Call(const platform::LateBoundRef& server, std::string_view member,
                   std::array<platform::Argument, count> arguments) {
  return server->Call(member, arguments);
}

std::string ReadText(const platform::LateBoundRef& server, std::string_view member) {
  return server ? base::ToText(server->Get(member)) : std::string(kNotAvailable);
}

bool ReadBoolean(const platform::LateBoundRef& server, std::string_view member) {
  return server && base::ToBoolean(server->Get(member));
}

template <typename Item>
base::ArrayRef ToArray(base::ElementType type, const std::vector<Item>& items) {
  return base::MakeArray(type, 0, std::vector<base::Variant>(items.begin(), items.end()));
}

/// The array that stands in the argument now. A plug-in may have erased it, which leaves it without elements.
const std::vector<base::Variant>& Elements(const platform::Argument& argument) {
  static const std::vector<base::Variant> none;
  if (!argument.value.IsArray()) throw base::TypeMismatch("array");
  const auto& array = std::get<base::ArrayRef>(argument.value.Get());
  return array ? array->elements : none;
}

}  // namespace

std::string ServerTitle(const platform::LateBoundRef& server) {
  return ReadText(server, "IServer_ServerTitle");
}

std::shared_ptr<::EventHandler> EventHandler(const platform::LateBoundRef& server) {
  if (!server) return nullptr;
  const base::ObjectRef object = base::ToObject(server->Get("IServer_EventHandler"));
  if (!object) return nullptr;
  auto source = std::dynamic_pointer_cast<platform::LateBoundObject>(object);
  if (!source) throw base::TypeMismatch("IServer_EventHandler");
  return ::EventHandler::Connect(std::move(source));
}

std::string ClassName(const platform::LateBoundRef& server) {
  return ReadText(server, "IServer_ClassName");
}

void SetDMZ(const platform::LateBoundRef& server, std::int32_t lHost) {
  if (server) server->Put("IServer_DMZ", lHost);
}

std::string Version(const platform::LateBoundRef& server) {
  return ReadText(server, "IServer_Version");
}

bool Functional(const platform::LateBoundRef& server) {
  return ReadBoolean(server, "IServer_Functional");
}

bool GetEnableLog(const platform::LateBoundRef& server) {
  return ReadBoolean(server, "IServer_EnableLog");
}

void SetEnableLog(const platform::LateBoundRef& server, bool bEnable) {
  if (server) server->Put("IServer_EnableLog", bEnable);
}

bool Configure(const platform::LateBoundRef& server) {
  return server && base::ToBoolean(server->Call("IServer_Configure", {}));
}

std::string WANIP(const platform::LateBoundRef& server) {
  return ReadText(server, "IServer_WANIP");
}

bool CheckForWarning(const platform::LateBoundRef& server, std::string sLocalIP) {
  if (!server) return false;
  return base::ToBoolean(Call<1>(server, "IServer_CheckForWarning", {ByReference(std::move(sLocalIP))}));
}

bool SetLogging(const platform::LateBoundRef& server, std::string sLocalIP) {
  if (!server) return false;
  return base::ToBoolean(Call<1>(server, "IServer_SetLogging", {ByReference(std::move(sLocalIP))}));
}

bool SetPortForwarding(const platform::LateBoundRef& server, const base::ArrayRef& MappingArray,
                       std::int16_t iLocalIP) {
  if (!server) return false;
  return base::ToBoolean(
      Call<2>(server, "IServer_SetPortForwarding", {ByReference(MappingArray), ByReference(iLocalIP)}));
}

void ApplicationExiting(const platform::LateBoundRef& server, const std::string& sLocalIP) {
  if (server) Call<1>(server, "IServer_ApplicationExiting", {ByValue(sLocalIP)});
}

bool GetFeatures(const platform::LateBoundRef& server, std::vector<std::string>& sNames,
                 std::vector<std::int16_t>& iIdentifiers) {
  if (!server) return false;
  std::array arguments{ByReference(ToArray(base::ElementType::kText, sNames)),
                       ByReference(ToArray(base::ElementType::kInt16, iIdentifiers))};
  const bool bHasFeatures = base::ToBoolean(server->Call("IServer_GetFeatures", arguments));
  sNames.clear();
  iIdentifiers.clear();
  // What the arrays hold counts only then, and needn't be convertible.
  if (!bHasFeatures) return false;
  for (const base::Variant& name : Elements(arguments[0])) sNames.push_back(base::ToText(name));
  for (const base::Variant& identifier : Elements(arguments[1]))
    iIdentifiers.push_back(base::ToInt16(identifier));
  return true;
}

bool ActivateFeaure(const platform::LateBoundRef& server, std::string sLocalIP, std::int16_t iIdentifier) {
  if (!server) return true;
  return base::ToBoolean(Call<2>(server, "IServer_ActivateFeaure",
                                 {ByReference(std::move(sLocalIP)), ByReference(iIdentifier)}));
}

std::string GetPortForwardingDescription(const platform::LateBoundRef& server, std::int32_t lPort) {
  if (!server) return {};
  return base::ToText(Call<1>(server, "IServer_GetPortForwardingDescription", {ByReference(lPort)}));
}

void SaveSettings(const platform::LateBoundRef& server) {
  if (server) server->Call("IServer_SaveSettings", {});
}

}  // namespace modServerHelper
