#pragma once

#include <cstdint>
#include <string>

#include "plugins/ctlRouterConfig.h"
#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Form.h"
#include "ui/Frame.h"
#include "ui/Image.h"
#include "ui/RichTextBox.h"
#include "ui/SocketControl.h"

/// The Setup Wizard: it leads a new user through the choice of the router and of the activity log, in the
/// steps welcome (0), router (1), log (2) and complete (3). It keeps nothing of its own: the router goes to
/// the program and the log's switch to the plug-in at the moment of the click.
class frmWizard : public ui::Form {
 public:
  frmWizard();

  /// -1 after a confirmed Cancel, 0 after Finish.
  std::int16_t Cancelled = 0;
  /// 0 to 4; 4 closes the wizard.
  std::int16_t Step = 0;
  /// -1 from a good configuration to the next choice of a router.
  std::int16_t RouterConfigured = 0;

  /// The router's state as text, after each look at the router; the main window takes it.
  base::Event<const std::string&> RouterSelected;

  /// The one instance of the program, made at first use.
  static frmWizard& Shared();

 protected:
  void OnLoad() override;
  void OnQueryUnload(bool& cancel, ui::CloseReason reason) override;
  void OnResize() override;

 private:
  void ShowStep();
  void ShowWelcome();
  void ShowRouter();
  void ShowLogging();
  void ShowComplete();
  void Heading(const std::string& sHeading, const std::string& sInstruction);
  void Go(int iSteps);
  void CloseWith(std::int16_t iCancelled);
  void LayOutPictures(ui::Twips bottom);
  void LayOutLogging();

  void cmdBack_Click() { Go(-1); }
  void cmdNext_Click() { Go(1); }
  void cmdCancel_Click();
  void chkEnableLogging_Click();
  void ctlRouterConfig_ChangedRouterSlected(const std::string& sStatus, bool bOperational);
  void ctlRouterConfig_SelectionSuccessful();

  ui::Image imgMajor;
  ui::Image imgMinor;
  ui::RichTextBox rtInstructions;
  ctlRouterConfig ctlRouterConfig_;
  ui::Frame framEnableLogging;
  ui::RichTextBox rtMajor;
  ui::CheckBox chkEnableLogging;
  ui::Frame framButtons;
  ui::Button cmdBack;
  ui::Button cmdNext;
  ui::Button cmdCancel;
  ui::SocketControl winSock;
  /// The window sets chkEnableLogging itself; that isn't a click.
  bool m_bGuard = false;
};
