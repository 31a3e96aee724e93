#include "automatic/ctlAutomatic.h"

#include <algorithm>
#include <initializer_list>

#include "automatic/modWhatsRunning.h"
#include "base/Failures.h"
#include "platform/Machine.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "ui/PageStyle.h"

namespace {

constexpr std::int32_t kInterval = 2000;

constexpr ui::ListView::Style kPlainList{.columnHeaders = false};

void Trace(const char* what, const CMapProfile& profile) {
  platform::TheMachine().debug->Trace(what + ("\"" + profile.sName + "\""));
}

}  // namespace

ctlAutomatic::ctlAutomatic(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 7605, 4230),
      lblTitle(this, "lblTitle", "Automatic Profile Activation"),
      lvProfiles(this, "lvProfiles", kPlainList),
      lblHelp(this, "lblHelp", "The above profiles are set for automatic activation"),
      chkEnable(this, "chkEnable", "&Enable Automatic Activation"),
      lblError(this, "lblError"),
      tmAutomatic(this, "tmAutomatic") {
  HelpContextID(6000);
  lblTitle.Font(ui::TitleFont());
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblHelp.ForeColor(modCommon::ColorHelpText());
  lblError.ForeColor(modCommon::ColorDarkRed());
  chkEnable.Click.Connect<&ctlAutomatic::chkEnable_Click>(this);
  tmAutomatic.Tick.Connect<&ctlAutomatic::tmAutomatic_Timer>(this);
  lvProfiles.BeforeLabelEdit.Connect<&ctlAutomatic::lvProfiles_BeforeLabelEdit>(this);
  OnResize();
}

void ctlAutomatic::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&lblTitle, &lblHelp, &chkEnable, &lblError}) {
    control->BackColor(color);
  }
  lvProfiles.BackColor(ui::ListBackground(color));
}

void ctlAutomatic::Populate() {
  g_Registry->PopulateMapProfileListView(lvProfiles, true);
  chkEnable.Checked(g_Registry->AutomaticActivation);
  SetTimerState();
}

void ctlAutomatic::SetTimerState() {
  tmAutomatic.Interval(kInterval);
  tmAutomatic.Enabled(g_Registry->AutomaticActivation);
}

void ctlAutomatic::SetControlsVisible(bool bVisible) {
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&lblTitle, &lvProfiles, &lblHelp, &chkEnable, &lblError}) {
    control->Visible(bVisible);
  }
}

void ctlAutomatic::chkEnable_Click() {
  g_Registry->AutomaticActivation = chkEnable.Checked();
  SetTimerState();
}

void ctlAutomatic::tmAutomatic_Timer() {
  if (!FollowPrograms()) return;
  base::Failures failures;
  // The plug-in returns true when it failed.
  bool bSuccess = true;
  failures.Run([&] {
    g_Registry->ActivatePortForwarding(modCommon::GetLastOctet(Winsock.LocalIP()), false, bSuccess);
  });
  lblError.Caption(bSuccess ? "Too many mappings/Network error/Router busy" : "");
  failures.Run([this] { Activated.Raise(); });
  Populate();
  failures.Rethrow();
}

bool ctlAutomatic::FollowPrograms() {
  bool bChanged = false;
  for (const auto& profile : g_Registry->ccMapProfiles()) {
    if (!profile->bAutoActivate) continue;
    const bool bFound = modWhatsRunning::IsProgramRunning(profile->sWindowClass, profile->sWindowTitle);
    if (bFound == profile->bEnabled) continue;
    profile->bEnabled = bFound;
    bChanged = true;
    Trace(bFound ? "Auto load profile " : "Auto unload profile ", *profile);
  }
  return bChanged;
}

void ctlAutomatic::lvProfiles_BeforeLabelEdit(bool& bCancel) {
  bCancel = true;
}

void ctlAutomatic::OnResize() {
  SetControlsVisible(false);
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  lblError.Move(ui::kMargin, Height() - ui::kMargin - ui::kLineHeight, inner, ui::kLineHeight);
  chkEnable.Move(ui::kMargin, lblError.Top() - ui::kMargin - ui::kLineHeight, inner, ui::kLineHeight);
  lblHelp.Move(ui::kMargin, chkEnable.Top() - ui::kMargin - ui::kLineHeight, inner, ui::kLineHeight);
  const ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  lvProfiles.Move(ui::kMargin, top, inner, std::max(0, lblHelp.Top() - ui::kMargin - top));
  SetControlsVisible(true);
}
