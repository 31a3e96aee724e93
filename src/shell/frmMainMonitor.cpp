#include "platform/Machine.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "shell/frmMain.h"
#include "shell/modCommon.h"

void frmMain::timerNetLights_Timer() {
  base::Failures failures;
  m_NetLights.Flip();
  if (modCommon::IsConnected()) {
    ShowTraffic(failures);
  } else {
    ctlSysTray_.Icon(ilNetLights.Get(CheckForWarning(failures) ? "NotConnectedFlash" : "NotConnected"));
  }
  failures.Rethrow();
}

void frmMain::ShowTraffic(base::Failures& failures) {
  platform::TcpStatistics statistics;
  platform::TheMachine().network->GetTcpStatistics(statistics);
  if (!m_NetLights.Compare(statistics)) return;
  ui::PictureRef picture;
  switch (g_Registry->TrayLights) {
    case 1:
      picture = ilNetLights.Get(m_NetLights.ActivityLights(CheckForWarning(failures)));
      break;
    case 2:
      picture = ilNetLights.Get(m_NetLights.SpeedBar(CheckForWarning(failures)));
      break;
    case 3:
      picture = Icon();
      break;
    default:
      break;
  }
  ctlSysTray_.Icon(picture);
  m_NetLights.Store();
}

bool frmMain::CheckForWarning(base::Failures& failures) {
  if (!g_Registry->RouterValid()) return false;
  // The plug-in is asked on every tick, and its warning shows on every other.
  bool bWarning = false;
  failures.Run([&] { bWarning = modServerHelper::CheckForWarning(g_Registry->Router, winSock.LocalIP()); });
  return bWarning && m_NetLights.Flash();
}
