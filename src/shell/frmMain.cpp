#include "shell/frmMain.h"

#include "base/Failures.h"
#include "platform/Machine.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "setup/frmWizard.h"
#include "setup/modSystem.h"
#include "shell/frmSplash.h"
#include "shell/modCommon.h"
#include "ui/MessageBox.h"
#include "ui/Toolkit.h"

namespace {

constexpr std::int32_t kPictures = 20;
constexpr std::int32_t kNotConnected = 9;
constexpr std::int32_t kNotConnectedFlash = 20;
constexpr std::int32_t kMonitorInterval = 333;
constexpr std::int16_t kTitleSeconds = 7;

}  // namespace

/// Part of the start runs before any window is there to report to; a failure in one step is told and leaves
/// the steps after it their turn, as a failed click leaves the program running.
template <typename Step>
void frmMain::Guarded(std::string_view step, Step&& run) {
  ui::EventGuard::Run(*this, step, ui::EventGuard::Repeats::kNo, std::forward<Step>(run));
}

frmMain::frmMain()
    : Form("frmMain", "Harbourline", Style{}, 8880, 5895),
      tvCategories(this, "tvCategories"),
      framConfig(this, "framConfig"),
      imgChickens(&framConfig, "imgChickens", ui::ResourcePicture("CHICKENS")),
      lblTitle(&framConfig, "lblTitle"),
      rtGeneral(&framConfig, "rtGeneral"),
      ctlHelp_(&framConfig, "ctlHelp"),
      ctlSetupWizard_(&framConfig, "ctlSetupWizard"),
      ctlAbout_(&framConfig, "ctlAbout"),
      ctlAutomatic_(&framConfig, "ctlAutomatic"),
      ctlRouterLog_(&framConfig, "ctlRouterLog"),
      ctlExport_(&framConfig, "ctlExport"),
      ctlMapProfile_(&framConfig, "ctlMapProfile"),
      ctlWinStartup(&framConfig, "ctlWinStartup"),
      ctlRouter(&framConfig, "ctlRouter"),
      ctlSysTray_(this, "ctlSysTray"),
      timerNetLights(this, "timerNetLights"),
      mnuPopUp(this, "mnuPopUp", "PopUp"),
      mnuCopyIP(&mnuPopUp, "mnuCopyIP", "&Copy IP To Clipboard"),
      mnuSpacer1(&mnuPopUp, "mnuSpacer1", "-"),
      mnuClearDMZ(&mnuPopUp, "mnuClearDMZ", "&Clear DMZ Hosting"),
      mnuSetDMZ(&mnuPopUp, "mnuSetDMZ", "&Set DMZ to This Computer"),
      mnuSpacer3(&mnuPopUp, "mnuSpacer3", "-"),
      mnuPortForwarding(&mnuPopUp, "mnuPortForwarding", "&Profiles"),
      mnuProfiles(&mnuPortForwarding, "mnuProfiles", "Profiles go here and make this big"),
      mnuFeatures(&mnuPopUp, "mnuFeatures", "&Features"),
      mnuSubFeatures(&mnuFeatures, "mnuSubFeatures", "Sub Feature"),
      mnuPortFeaturesSeperator(&mnuPopUp, "mnuPortFeaturesSeperator", "-"),
      mnuSetup(&mnuPopUp, "mnuSetup", "&Setup..."),
      mnuHelp(&mnuPopUp, "mnuHelp", "&Help..."),
      mnuExit(&mnuPopUp, "mnuExit", "&Exit"),
      mnuSpace2(&mnuPopUp, "mnuSpace2", "-"),
      mnuCancel(&mnuPopUp, "mnuCancel", "&Cancel") {
  ConnectEvents();
  LoadPictures();
  ColourPages();
  OnResize();
}

void frmMain::Initialize() {
  {
    // Several steps ask the plug-in for the same.
    const ui::EventGuard::Once once;
    Guarded("Initialize.ctlRouter", [this] { ctlRouter.Populate(); });
    Guarded("Initialize.SetMenuAccess", [this] { SetMenuAccess(); });
    Guarded("Initialize.ctlRouterLog", [this] { ctlRouterLog_.Reset(); });
    Guarded("Initialize.PopulateCategories", [this] { PopulateCategories({}); });
    Guarded("Initialize.ActivateProfiles", [this] { ActivateProfiles(true); });
  }
  initialised_ = true;
}

frmMain::~frmMain() {
  Guarded("Unload", [this] { Unload(); });
  frmWizard::Shared().RouterSelected.Disconnect(this);
}

frmMain::State::State() {
  g_Registry = std::make_unique<CRegistry>();
}

frmMain::State::~State() {
  ui::EventGuard::Run(*this, "Terminate", ui::EventGuard::Repeats::kNo, [] { g_Registry->Release(); });
  g_Registry.reset();
}

void frmMain::LoadPictures() {
  for (std::int32_t position = 1; position <= kPictures; ++position) {
    std::string number = std::to_string(position);
    if (number.size() == 1) number.insert(0, "0");
    std::string key;
    if (position == kNotConnected) key = "NotConnected";
    if (position == kNotConnectedFlash) key = "NotConnectedFlash";
    ilNetLights.Add(ui::ResourcePicture("NETLIGHT" + number), key);
  }
  ilToolbar.Add(ui::ResourcePicture("ACCEPT"), "Apply");
  ilToolbar.Add(ui::ResourcePicture("CANCEL"), "Cancel");
}

void frmMain::ConnectEvents() {
  tvCategories.NodeClick.Connect<&frmMain::tvCategories_NodeClick>(this);
  ctlRouter.ChangedRouterSlected.Connect<&frmMain::ctlRouter_ChangedRouterSlected>(this);
  ctlMapProfile_.ProfileChange.Connect<&frmMain::ctlMapProfile_ProfileChange>(this);
  ctlHelp_.Help.Connect<&frmMain::mnuHelp_Click>(this);
  frmWizard::Shared().RouterSelected.Connect<&frmMain::RouterSelected>(this);
  ctlSysTray_.RightButtonClick.Connect<&frmMain::ShowTrayMenu>(this);
  ctlSysTray_.LeftButtonDoubleClick.Connect<&frmMain::mnuSetup_Click>(this);
  ctlSysTray_.RightButtonDoubleClick.Connect<&frmMain::mnuSetup_Click>(this);
  timerNetLights.Tick.Connect<&frmMain::timerNetLights_Timer>(this);
  ui::TheInterface().help = &modSystem::ShowTopic;
  mnuCopyIP.Click.Connect<&frmMain::mnuCopyIP_Click>(this);
  mnuClearDMZ.Click.Connect<&frmMain::mnuClearDMZ_Click>(this);
  mnuSetDMZ.Click.Connect<&frmMain::mnuSetDMZ_Click>(this);
  mnuProfiles.Click.Connect<&frmMain::mnuProfiles_Click>(this);
  mnuSubFeatures.Click.Connect<&frmMain::mnuSubFeatures_Click>(this);
  mnuSetup.Click.Connect<&frmMain::mnuSetup_Click>(this);
  mnuHelp.Click.Connect<&frmMain::mnuHelp_Click>(this);
  mnuExit.Click.Connect<&frmMain::mnuExit_Click>(this);
}

void frmMain::ColourPages() {
  const ui::Color background = modCommon::ColorBackground();
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblTitle.Font(ui::TitleFont());
  lblTitle.Transparent(true);
  framConfig.BackColor(background);
  ctlRouter.BackgroundColor(background);
  ctlWinStartup.BackgroundColor(background);
  ctlMapProfile_.BackgroundColor(background);
  ctlExport_.BackgroundColor(background);
  ctlRouterLog_.BackgroundColor(background);
  ctlAutomatic_.BackgroundColor(background);
  ctlAbout_.BackgroundColor(background);
  ctlSetupWizard_.BackgroundColor(background);
  ctlHelp_.BackgroundColor(background);
  BackColor(background);
}

void frmMain::OnLoad() {
  Hide();
  if (exitChosen_) {
    Unload();
    return;
  }
  if (platform::TheMachine().process->EarlierInstanceRuns()) {
    ui::ShowMessage("This program is already running!", ui::MessageIcon::kInformation);
    Unload();
    return;
  }
  Guarded("Load.ctlSysTray", [this] {
    Icon(ui::ResourcePicture("HARBOURLINE"));
    ctlSysTray_.Icon(Icon());
  });
  // The shell, the wizard and the title window let clicks on the icon through, and one of them may be the
  // exit.
  if (!IsLoaded()) return;
  Guarded("Load.RunWizardIfNewVersion", [this] {
    bool bShown = false;
    RunWizardIfNewVersion(bShown);
  });
  if (!IsLoaded()) return;
  Guarded("Load.frmSplash", [this] {
    if (!g_Registry->ShowSplashOnStartup) return;
    frmSplash::Shared().SetTimer(kTitleSeconds);
    frmSplash::Shared().ShowModal(this);
  });
  if (!IsLoaded()) return;
  timerNetLights.Interval(kMonitorInterval);
  timerNetLights.Enabled(true);
}

void frmMain::RunWizardIfNewVersion(bool& bShown) {
  bShown = g_Registry->Version() != modCommon::GetVersionString();
  if (bShown) frmWizard::Shared().ShowModal(this);
}

void frmMain::OnQueryUnload(bool& cancel, ui::CloseReason reason) {
  if (reason == ui::CloseReason::kUser) {
    cancel = true;
    Hide();
  }
  if (reason == ui::CloseReason::kSessionEnds) {
    ctlRouterLog_.SaveContentsToDatabase();
    g_Registry->Save();
  }
}

void frmMain::EndSession() {
  if (IsLoaded()) return;
  // The session ends while the start still shows a box: the window that would be asked isn't loaded yet.
  Guarded("QueryUnload", [this] {
    bool cancel = false;
    OnQueryUnload(cancel, ui::CloseReason::kSessionEnds);
  });
  Guarded("Unload", [this] { OnUnload(); });
}

void frmMain::OnUnload() {
  if (g_Registry->RouterValid()) modServerHelper::ApplicationExiting(g_Registry->Router, winSock.LocalIP());
}

void frmMain::SetMenuAccess() {
  const bool bRouter = g_Registry->RouterValid();
  mnuClearDMZ.Enabled(bRouter);
  mnuCopyIP.Enabled(bRouter);
  mnuSetDMZ.Enabled(bRouter);
  SetProfileMenuVisibility();
}

void frmMain::RouterSelected(const std::string& sRouterTitle) {
  base::Failures failures;
  SetMenuAccess();
  failures.Run([this] { ctlRouterLog_.Reset(); });
  ctlSysTray_.ToolTip(sRouterTitle);
  failures.Rethrow();
}

void frmMain::ActivateProfiles(bool bReset) {
  bool bSuccess = false;
  g_Registry->ActivatePortForwarding(modCommon::GetLastOctet(winSock.LocalIP()), bReset, bSuccess);
  // The plug-in answers true when it failed.
  if (bSuccess) {
    ui::ShowMessage(
        "An error occurred during profile activation.\r\n"
        "\r\n"
        "Possible causes: \r\n"
        "\r\n"
        "   1) Router exceeded the maximum number of port forwarding mappings.\r\n"
        "   2) A Network communication error. \r\n"
        "   3) Router too busy to handle the request. \r\n"
        "   4) Plug-in you are using is not compatable with your router.\r\n"
        "   5) Router has not been setup. Need to run Setup Wizard again.",
        ui::MessageIcon::kWarning);
  } else {
    ctlAutomatic_.Populate();
  }
}

void frmMain::ctlRouter_ChangedRouterSlected(const std::string& sStatus, bool) {
  RouterSelected(sStatus);
}

void frmMain::ctlMapProfile_ProfileChange() {
  SetMenuAccess();
}

void frmMain::mnuSetup_Click() {
  // To show the window loads it, and while the start shows a box it is too early for that.
  if (initialised_) Show();
}

void frmMain::mnuHelp_Click() {
  modSystem::ShowHelp(Handle(), 0);
}

void frmMain::mnuExit_Click() {
  const auto answer = ui::ShowMessage("Are you sure you want to exit Harbourline?",
                                      ui::MessageIcon::kQuestion, ui::MessageButtons::kYesNo);
  if (answer != ui::MessageResult::kYes) return;
  exitChosen_ = true;
  Unload();
}
