#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "activitylog/PortDefinitions.h"
#include "model/PortRanges.h"
#include "plugins/EventHandler.h"
#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/Menu.h"
#include "ui/SocketControl.h"
#include "ui/TextBox.h"
#include "ui/UserControl.h"

/// The page of the activity log and of its switches. The rows of its list are the log: events add to them,
/// they are read from "RouterLog.dat" when the page is made and written to it when the page ends.
class ctlRouterLog : public ui::UserControl {
 public:
  ctlRouterLog(ui::Control* parent, std::string name);
  ~ctlRouterLog() override;

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  /// Takes the events of the selected router from now on, and of no other; without a router, of none. The
  /// rows stay. A router whose events can't be had is a failure; when it is the one that the page has events
  /// of, those go on, and otherwise the page is without events.
  void Reset();
  /// Shows the plug-in's and the settings' state.
  void RefreshData();
  /// Writes "RouterLog.dat" anew. When it can't be written whole, the old file stays, and only a trace says
  /// so.
  void SaveContentsToDatabase();

 protected:
  void OnResize() override;
  void OnEnd() override;

 private:
  // The rows and their file.
  void AddColumns();
  void LoadLogDatabase();
  void ReadLogDatabase();
  /// The name of a port of a stored row; empty, with a trace, when the plug-in fails.
  void Identify(std::int32_t lPort, std::string& sDescription);
  void AddLogRow(std::string_view sTime, std::string_view sLogType, std::string_view sDestinationURLIP,
                 std::int32_t lDestinationPort, std::string_view sSourceIP, std::int32_t lSourcePort,
                 std::string_view sMiscellaneous);

  // What the router tells.
  void Bind(std::shared_ptr<EventHandler> source);
  void m_EventHandler_Error(const std::string& sErrorMessage, std::int16_t iErrorNo);
  void m_EventHandler_IdentifyPort(std::int32_t lPort, std::string& sDescription, bool& bFilterOut);
  void m_EventHandler_Log(const std::string& sLogType, const std::string& sSourceIP, std::int32_t lSourcePort,
                          const std::string& sDestinationURLIP, std::int32_t lDestinationPort,
                          const std::string& sMiscellaneous);
  bool NameByProfiles(std::int32_t lPort, std::string& sDescription);
  void LoadPortDefinitions();

  // What the user does.
  void SetControlsVisible(bool bVisible);
  void ShowPopUpMenu();
  void chkEnable_Click();
  /// Shows the log as off and writes nothing to the plug-in.
  void UncheckEnable();
  void chkFilterOutProfiles_Click();
  void cmdClear_Click();
  void mnuRemove_Click();
  void lvRouterLog_BeforeLabelEdit(bool& bCancel);
  void lvRouterLog_ColumnClick(std::int32_t lColumn);
  void lvRouterLog_ItemClick();

  ui::Label lblTitle;
  ui::ListView lvRouterLog;
  ui::CheckBox chkEnable;
  ui::CheckBox chkFilterOutProfiles;
  ui::Button cmdClear;
  ui::TextBox txtError;
  ui::SocketControl winSock;
  ui::Menu mnuPopUpLog;
  ui::Menu mnuClearLog;
  ui::Menu mnuRemove;

  /// Empty while there is nothing to listen to.
  std::shared_ptr<EventHandler> m_EventHandler;
  /// The router that it belongs to.
  std::weak_ptr<platform::LateBoundObject> m_BoundRouter;
  /// What the profiles cover.
  PortRanges m_PortRanges;
  /// "Ports.dat"; null until the first port that neither a profile nor the plug-in can name.
  std::unique_ptr<PortDefinitions> m_ccPortDefinitions;
  /// How each column is sorted.
  std::vector<std::int32_t> m_SortTypes;
  /// The column that the rows were sorted by, counted from 1; 0 before the first time.
  std::int16_t m_iLastColumn = 0;
  /// Rows so far in this run; a row's key holds its number.
  std::int32_t m_lRowCounter = 0;
  /// The page sets chkEnable itself; that isn't the user's click.
  bool m_bGuard = false;
};
