#include "platform/Machine.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "shell/frmMain.h"
#include "shell/modCommon.h"

void frmMain::timerNetLights_Timer() {
  m_NetLights.Flip();
  if (!modCommon::IsConnected()) {
    ctlSysTray_.Icon(ilNetLights.Get(CheckForWarning() ? "NotConnectedFlash" : "NotConnected"));
    return;
  }
  platform::TcpStatistics statistics;
  platform::TheMachine().network->GetTcpStatistics(statistics);
  if (!m_NetLights.Compare(statistics)) return;
  ui::PictureRef picture;
  switch (g_Registry->TrayLights) {
    case 1:
      picture = ilNetLights.Get(m_NetLights.ActivityLights(CheckForWarning()));
      break;
    case 2:
      picture = ilNetLights.Get(m_NetLights.SpeedBar(CheckForWarning()));
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

bool frmMain::CheckForWarning() {
  // The plug-in is asked on every tick, and its warning shows on every other.
  return modServerHelper::CheckForWarning(g_Registry->Router, winSock.LocalIP()) && m_NetLights.Flash();
}
