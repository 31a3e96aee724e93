#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "activitylog/ctlRouterLog.h"
#include "automatic/ctlAutomatic.h"
#include "base/Failures.h"
#include "editing/ctlExport.h"
#include "editing/ctlMapProfile.h"
#include "plugins/ctlRouterConfig.h"
#include "setup/ctlAbout.h"
#include "setup/ctlHelp.h"
#include "setup/ctlSetupWizard.h"
#include "shell/NetLights.h"
#include "shell/ctlWindowStartup.h"
#include "ui/Form.h"
#include "ui/Frame.h"
#include "ui/Image.h"
#include "ui/ImageList.h"
#include "ui/Label.h"
#include "ui/Menu.h"
#include "ui/RichTextBox.h"
#include "ui/SocketControl.h"
#include "ui/Timer.h"
#include "ui/TreeView.h"
#include "ui/ctlSysTray.h"

/// The main window and the entry of the program. Its construction loads the state; Initialize fills the pages
/// and sends the active profiles to the router; its load puts the program into the notification area, where
/// it stays with the window hidden; its destruction saves the state.
class frmMain : public ui::Form {
 public:
  /// Throws when the state can't be loaded; nothing is saved then.
  frmMain();
  ~frmMain() override;

  /// The first step after the construction, so that the owner holds the window while plug-ins are called and
  /// boxes are shown: the session may end meanwhile.
  void Initialize();
  /// The session has ended. A window that isn't loaded yet saves and reports the end to the plug-in here; a
  /// loaded one was asked before.
  void EndSession();

  /// Enables what needs a router, and shows the profiles in the menu when there are any.
  void SetMenuAccess();
  /// Takes the router's state as text: binds the log to the router and shows the text as the icon's tip.
  void RouterSelected(const std::string& sRouterTitle);
  /// Sends the profiles to the router and tells the user when that fails.
  void ActivateProfiles(bool bReset);
  /// Shows the wizard when another version of the program wrote the settings; `bShown` tells whether it did.
  void RunWizardIfNewVersion(bool& bShown);
  /// Builds the tree and opens a page; an empty key means the one that was open last.
  void PopulateCategories(const std::string& sNodeKey);

 protected:
  void OnLoad() override;
  void OnQueryUnload(bool& cancel, ui::CloseReason reason) override;
  void OnUnload() override;
  void OnResize() override;

 private:
  /// Makes the state before any page is there and releases it when all pages are gone.
  struct State {
    State();
    ~State();
    std::string Path() const { return "frmMain"; }
  };

  // Start and end.
  void LoadPictures();
  void ConnectEvents();
  void ColourPages();
  template <typename Step>
  void Guarded(std::string_view step, Step&& run);
  void ctlRouter_ChangedRouterSlected(const std::string& sStatus, bool bOperational);
  void ctlMapProfile_ProfileChange();
  void mnuSetup_Click();
  void mnuHelp_Click();
  void mnuExit_Click();

  // Connection and traffic.
  void timerNetLights_Timer();
  void ShowTraffic(base::Failures& failures);
  /// A plug-in that fails has no warning.
  bool CheckForWarning(base::Failures& failures);

  // The menu of the notification area.
  void ShowTrayMenu();
  void PopulateTrayMenu();
  void PopulateProfileEntries();
  void PopulateFeatureEntries();
  void SetProfileMenuVisibility();
  void mnuCopyIP_Click();
  void mnuClearDMZ_Click();
  void mnuSetDMZ_Click();
  void mnuProfiles_Click(std::int32_t iIndex);
  void mnuSubFeatures_Click(std::int32_t iIndex);

  // The tree and its pages.
  void tvCategories_NodeClick();
  void HidePages();
  void ShowPage(std::string_view sNodeKey);
  void ShowText(std::string_view sNodeKey);
  void ShowLicense();

  State m_State;
  ui::TreeView tvCategories;
  ui::Frame framConfig;
  // Before the title, which fills the frame: of two that overlap, the first one is in front.
  ui::Image imgChickens;
  ui::Label lblTitle;
  ui::RichTextBox rtGeneral;
  ctlHelp ctlHelp_;
  ctlSetupWizard ctlSetupWizard_;
  ctlAbout ctlAbout_;
  ctlAutomatic ctlAutomatic_;
  ctlRouterLog ctlRouterLog_;
  ctlExport ctlExport_;
  ctlMapProfile ctlMapProfile_;
  ctlWindowStartup ctlWinStartup;
  ctlRouterConfig ctlRouter;
  ctlSysTray ctlSysTray_;
  ui::Timer timerNetLights;
  ui::SocketControl winSock;
  ui::ImageList ilToolbar;
  ui::ImageList ilNetLights;
  NetLights m_NetLights;

  ui::Menu mnuPopUp;
  ui::Menu mnuCopyIP;
  ui::Menu mnuSpacer1;
  ui::Menu mnuClearDMZ;
  ui::Menu mnuSetDMZ;
  ui::Menu mnuSpacer3;
  ui::Menu mnuPortForwarding;
  ui::MenuArray mnuProfiles;
  ui::Menu mnuFeatures;
  ui::MenuArray mnuSubFeatures;
  ui::Menu mnuPortFeaturesSeperator;
  ui::Menu mnuSetup;
  ui::Menu mnuHelp;
  ui::Menu mnuExit;
  ui::Menu mnuSpace2;
  ui::Menu mnuCancel;
  /// The key of the profile behind each entry of mnuProfiles; the first three are none.
  std::vector<std::string> m_sProfileKeys;
  /// The feature behind each entry of mnuSubFeatures; index 0 is none.
  std::vector<std::int16_t> m_iFeatureIDs;
  bool m_bHasFeatures = false;
  bool initialised_ = false;
  /// "Exit" was chosen and confirmed, which can happen before the window is loaded.
  bool exitChosen_ = false;
};
