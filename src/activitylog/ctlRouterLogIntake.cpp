// The members of ctlRouterLog that listen to the router.

#include <exception>
#include <utility>

#include "activitylog/LogTime.h"
#include "activitylog/WellKnownPorts.h"
#include "activitylog/ctlRouterLog.h"
#include "base/Conversions.h"
#include "editing/modListViewHelper.h"
#include "platform/Machine.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "shell/frmErrors.h"
#include "shell/modCommon.h"

void ctlRouterLog::Reset() {
  const platform::LateBoundRef router = g_Registry->Router;
  // Another router's events end first: should the new one's not come, they would pass for its own.
  if (m_BoundRouter.lock() != router) Bind(nullptr);
  Bind(modServerHelper::EventHandler(router));
  m_BoundRouter = router;
  RefreshData();
}

void ctlRouterLog::Bind(std::shared_ptr<EventHandler> source) {
  if (m_EventHandler) {
    m_EventHandler->Error.Disconnect(this);
    m_EventHandler->IdentifyPort.Disconnect(this);
    m_EventHandler->Log.Disconnect(this);
  }
  m_EventHandler = std::move(source);
  m_BoundRouter.reset();
  if (m_EventHandler) {
    m_EventHandler->Error.Connect<&ctlRouterLog::m_EventHandler_Error>(this);
    m_EventHandler->IdentifyPort.Connect<&ctlRouterLog::m_EventHandler_IdentifyPort>(this);
    m_EventHandler->Log.Connect<&ctlRouterLog::m_EventHandler_Log>(this);
  }
}

void ctlRouterLog::m_EventHandler_Log(const std::string& sLogType, const std::string& sSourceIP,
                                      std::int32_t lSourcePort, const std::string& sDestinationURLIP,
                                      std::int32_t lDestinationPort, const std::string& sMiscellaneous) {
  AddLogRow(LogTime::RowTime(platform::TheMachine().clock->Now()), sLogType, sDestinationURLIP,
            lDestinationPort, sSourceIP, lSourcePort, sMiscellaneous);
  modListViewHelper::AutoSizeListViewColumns(lvRouterLog, true);
}

void ctlRouterLog::m_EventHandler_IdentifyPort(std::int32_t lPort, std::string& sDescription,
                                               bool& bFilterOut) {
  sDescription.clear();
  if (NameByProfiles(lPort, sDescription)) {
    bFilterOut = g_Registry->FilterOutProfiles;
    return;
  }
  bFilterOut = false;
  sDescription = modServerHelper::GetPortForwardingDescription(g_Registry->Router, lPort);
  if (!sDescription.empty()) return;
  if (!m_ccPortDefinitions) LoadPortDefinitions();
  if (const CPortDefinition* definition = m_ccPortDefinitions->TryGet(base::ToText(lPort))) {
    sDescription = definition->sDescription;
  } else {
    sDescription = WellKnownPortDescription(lPort);
  }
}

/// Appends the names of the active profiles that cover the port; false when there is none.
bool ctlRouterLog::NameByProfiles(std::int32_t lPort, std::string& sDescription) {
  bool bFound = false;
  m_PortRanges.ForEachCovering(g_Registry->ccMapProfiles(), lPort, [&](const CMapProfile& profile) {
    if (!profile.bEnabled) return;
    bFound = true;
    if (!sDescription.empty()) sDescription += '/';
    sDescription += profile.sName;
  });
  return bFound;
}

void ctlRouterLog::m_EventHandler_Error(const std::string& sErrorMessage, std::int16_t iErrorNo) {
  frmErrors& report = frmErrors::Shared();
  report.AddErrorText(sErrorMessage, iErrorNo);
  report.Show(ParentForm());
  platform::Clock& clock = *platform::TheMachine().clock;
  txtError.Text(clock.TimeText(clock.Now()) + " - " + sErrorMessage + " (" + base::ToText(iErrorNo) + ")");
}

void ctlRouterLog::LoadPortDefinitions() {
  m_ccPortDefinitions = std::make_unique<PortDefinitions>();
  try {
    ReadPortDefinitions(modCommon::MakeFullPath(g_Registry->InstallPath(), "Ports.dat"),
                        *m_ccPortDefinitions);
  } catch (const std::exception&) {
    platform::TheMachine().debug->Trace("Error occured during the loading of the Port Definitions database.");
  }
}
