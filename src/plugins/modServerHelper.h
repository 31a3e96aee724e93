#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/Variant.h"
#include "platform/LateBoundObject.h"
#include "plugins/EventHandler.h"

/// The only place that names the members of a plug-in. Each wrapper takes the plug-in, which may be empty:
/// then nothing is called, and the answer is the one told below. What fails in the plug-in goes to the
/// caller.
namespace modServerHelper {

/// "N/A" without a plug-in.
std::string ServerTitle(const platform::LateBoundRef& server);
/// Empty without a plug-in, or when it has no such object. Fails when that object lacks the events.
std::shared_ptr<::EventHandler> EventHandler(const platform::LateBoundRef& server);
/// "N/A" without a plug-in.
std::string ClassName(const platform::LateBoundRef& server);
/// Last octet of the host; 0 for none.
void SetDMZ(const platform::LateBoundRef& server, std::int32_t lHost);
/// "N/A" without a plug-in.
std::string Version(const platform::LateBoundRef& server);
/// False without a plug-in.
bool Functional(const platform::LateBoundRef& server);
/// False without a plug-in.
bool GetEnableLog(const platform::LateBoundRef& server);
void SetEnableLog(const platform::LateBoundRef& server, bool bEnable);
/// Shows the plug-in's own dialog. False is the good case, and the answer without a plug-in.
bool Configure(const platform::LateBoundRef& server);
/// "N/A" without a plug-in.
std::string WANIP(const platform::LateBoundRef& server);
/// False without a plug-in.
bool CheckForWarning(const platform::LateBoundRef& server, std::string sLocalIP);
/// True is failure. False without a plug-in.
bool SetLogging(const platform::LateBoundRef& server, std::string sLocalIP);
/// True is failure. False without a plug-in. The array may have any bounds; the plug-in gets it by reference,
/// and what it does to its elements is seen by the caller.
bool SetPortForwarding(const platform::LateBoundRef& server, const base::ArrayRef& MappingArray,
                       std::int16_t iLocalIP);
void ApplicationExiting(const platform::LateBoundRef& server, const std::string& sLocalIP);
/// Captions and identifiers in step; both hold afterwards what the plug-in left there, from its own lower
/// bound on. False, and both empty, when there are no features, and without a plug-in.
bool GetFeatures(const platform::LateBoundRef& server, std::vector<std::string>& sNames,
                 std::vector<std::int16_t>& iIdentifiers);
/// True without a plug-in.
bool ActivateFeaure(const platform::LateBoundRef& server, std::string sLocalIP, std::int16_t iIdentifier);
/// Empty when the plug-in doesn't know the port, and without a plug-in.
std::string GetPortForwardingDescription(const platform::LateBoundRef& server, std::int32_t lPort);
void SaveSettings(const platform::LateBoundRef& server);

}  // namespace modServerHelper
