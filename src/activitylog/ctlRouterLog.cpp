#include "activitylog/ctlRouterLog.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "base/Conversions.h"
#include "base/Failures.h"
#include "editing/modListViewHelper.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "ui/MessageBox.h"
#include "ui/PageStyle.h"
#include "ui/Toolkit.h"

namespace {

constexpr ui::Twips kErrorHeight = 2 * ui::kLineHeight;
constexpr ui::Twips kClearWidth = 1500;

constexpr ui::ListView::Style kLogList{.multiSelect = true, .labelEdit = true};
constexpr ui::TextBox::Style kErrorBox{.multiLine = true, .verticalScrollBar = true};

struct Column {
  const char* sCaption;
  ui::Twips lWidth;
  std::int32_t eSortType;
};

constexpr std::array<Column, 7> kColumns{{{"Time", 1000, SortType::kDateTime},
                                          {"Type", 500, SortType::kText},
                                          {"Dest URL/IP", 1000, SortType::kText},
                                          {"Dest Port", 500, SortType::kDigits},
                                          {"Source", 1000, SortType::kText},
                                          {"Src Port", 500, SortType::kDigits},
                                          {"Misc.", 2000, SortType::kText}}};
constexpr std::int16_t kTimeColumn = 1;

}  // namespace

ctlRouterLog::ctlRouterLog(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 6810, 5850),
      lblTitle(this, "lblTitle", "Activity Log"),
      lvRouterLog(this, "lvRouterLog", kLogList),
      chkEnable(this, "chkEnable", "&Enable"),
      chkFilterOutProfiles(this, "chkFilterOutProfiles", "&Filter out Profiles"),
      cmdClear(this, "cmdClear", "&Clear Log"),
      txtError(this, "txtError", kErrorBox),
      mnuPopUpLog(this, "mnuPopUpLog", "Log"),
      mnuClearLog(&mnuPopUpLog, "mnuClearLog", "Clear Log"),
      mnuRemove(&mnuPopUpLog, "mnuRemove", "Remove") {
  HelpContextID(1000);
  lvRouterLog.HelpContextID(1000);
  lblTitle.Font(ui::TitleFont());
  lblTitle.ForeColor(modCommon::ColorTitle());
  txtError.ForeColor(modCommon::ColorDarkRed());
  txtError.Locked(true);
  cmdClear.Enabled(false);
  chkEnable.Click.Connect<&ctlRouterLog::chkEnable_Click>(this);
  chkFilterOutProfiles.Click.Connect<&ctlRouterLog::chkFilterOutProfiles_Click>(this);
  cmdClear.Click.Connect<&ctlRouterLog::cmdClear_Click>(this);
  mnuClearLog.Click.Connect<&ctlRouterLog::cmdClear_Click>(this);
  mnuRemove.Click.Connect<&ctlRouterLog::mnuRemove_Click>(this);
  lvRouterLog.BeforeLabelEdit.Connect<&ctlRouterLog::lvRouterLog_BeforeLabelEdit>(this);
  lvRouterLog.ColumnClick.Connect<&ctlRouterLog::lvRouterLog_ColumnClick>(this);
  lvRouterLog.ItemClick.Connect<&ctlRouterLog::lvRouterLog_ItemClick>(this);
  lvRouterLog.RightButtonUp.Connect<&ctlRouterLog::ShowPopUpMenu>(this);
  OnResize();
  AddColumns();
  LoadLogDatabase();
  modListViewHelper::AutoSizeListViewColumns(lvRouterLog, true);
}

ctlRouterLog::~ctlRouterLog() {
  Bind(nullptr);
}

void ctlRouterLog::AddColumns() {
  std::vector<std::string> subItemKeys;
  for (const Column& column : kColumns) {
    modListViewHelper::AddListViewColumn(lvRouterLog, column.sCaption, column.sCaption, false, column.lWidth);
    m_SortTypes.push_back(column.eSortType);
    if (m_SortTypes.size() > 1) subItemKeys.emplace_back(column.sCaption);
  }
  lvRouterLog.SubItemKeys(std::move(subItemKeys));
}

void ctlRouterLog::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&lblTitle, &chkEnable, &chkFilterOutProfiles, &txtError}) {
    control->BackColor(color);
  }
  lvRouterLog.BackColor(ui::ListBackground(color));
}

void ctlRouterLog::RefreshData() {
  base::Failures failures;
  const bool bAsked =
      failures.Run([this] { chkEnable.Checked(modServerHelper::GetEnableLog(g_Registry->Router)); });
  // A plug-in that can't tell is shown as off, without being switched off.
  if (!bAsked) UncheckEnable();
  chkFilterOutProfiles.Checked(g_Registry->FilterOutProfiles);
  failures.Rethrow();
}

void ctlRouterLog::chkEnable_Click() {
  if (m_bGuard) return;
  modServerHelper::SetEnableLog(g_Registry->Router, chkEnable.Checked());
  // The plug-in answers true when it failed.
  if (modServerHelper::SetLogging(g_Registry->Router, winSock.LocalIP())) UncheckEnable();
}

void ctlRouterLog::UncheckEnable() {
  m_bGuard = true;
  chkEnable.Checked(false);
  m_bGuard = false;
}

void ctlRouterLog::chkFilterOutProfiles_Click() {
  g_Registry->FilterOutProfiles = chkFilterOutProfiles.Checked();
}

void ctlRouterLog::cmdClear_Click() {
  const auto answer = ui::ShowMessage("Are you sure you want to clear the log?", ui::MessageIcon::kWarning,
                                      ui::MessageButtons::kYesNo);
  if (answer != ui::MessageResult::kYes) return;
  lvRouterLog.ClearRows();
  cmdClear.Enabled(false);
}

void ctlRouterLog::mnuRemove_Click() {
  lvRouterLog.Visible(false);
  lvRouterLog.RemoveSelected();
  lvRouterLog.Visible(true);
}

void ctlRouterLog::lvRouterLog_BeforeLabelEdit(bool& bCancel) {
  bCancel = true;
}

void ctlRouterLog::lvRouterLog_ColumnClick(std::int32_t lColumn) {
  modListViewHelper::SortOnColumnClick(lvRouterLog, lColumn, m_SortTypes, m_iLastColumn, kTimeColumn,
                                       SortType::kDateTime);
}

void ctlRouterLog::lvRouterLog_ItemClick() {
  if (const auto row = lvRouterLog.SelectedRow()) lvRouterLog.EnsureVisible(*row);
}

void ctlRouterLog::ShowPopUpMenu() {
  const auto lSelected = static_cast<std::int32_t>(lvRouterLog.SelectedCount());
  mnuRemove.Caption(lSelected > 1 ? "Remove " + base::ToText(lSelected) + " selected items from log"
                                  : "Remove selected item from log");
  mnuRemove.Enabled(lSelected > 0);
  mnuClearLog.Enabled(lSelected > 0);
  ui::TheInterface().toolkit->ProcessPendingEvents();
  mnuPopUpLog.ShowAsPopup();
}

void ctlRouterLog::SetControlsVisible(bool bVisible) {
  for (ui::Control* control : std::initializer_list<ui::Control*>{
           &lblTitle, &chkEnable, &chkFilterOutProfiles, &cmdClear, &txtError, &lvRouterLog}) {
    control->Visible(bVisible);
  }
}

void ctlRouterLog::OnResize() {
  SetControlsVisible(false);
  const ui::Twips inner = std::max(0, Width() - 2 * ui::kMargin);
  const ui::Twips check = std::max(0, (inner - kClearWidth - 2 * ui::kMargin) / 2);
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  txtError.Move(ui::kMargin, Height() - ui::kMargin - kErrorHeight, inner, kErrorHeight);
  const ui::Twips switches = txtError.Top() - ui::kMargin - ui::kLineHeight;
  chkEnable.Move(ui::kMargin, switches, check, ui::kLineHeight);
  chkFilterOutProfiles.Move(chkEnable.Right() + ui::kMargin, switches, check, ui::kLineHeight);
  cmdClear.Move(chkFilterOutProfiles.Right() + ui::kMargin, switches, kClearWidth, ui::kLineHeight);
  const ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  lvRouterLog.Move(ui::kMargin, top, inner, std::max(0, switches - ui::kMargin - top));
  SetControlsVisible(true);
}

void ctlRouterLog::OnEnd() {
  SaveContentsToDatabase();
  m_ccPortDefinitions.reset();
  Bind(nullptr);
}
