#include "setup/frmWizard.h"

#include <algorithm>
#include <initializer_list>

#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "ui/MessageBox.h"
#include "ui/Toolkit.h"
#include "ui/modControlHelper.h"

namespace {

constexpr ui::Form::Style kFixedDialog{.resizable = false, .minimiseAndMaximise = false, .inTaskBar = false};
constexpr std::int16_t kTrue = -1;

constexpr std::int16_t kWelcome = 0;
constexpr std::int16_t kRouter = 1;
constexpr std::int16_t kLogging = 2;
constexpr std::int16_t kComplete = 3;
constexpr std::int16_t kClose = 4;

constexpr ui::Twips kPixel = 15;
constexpr ui::Twips kMajorWidth = 163 * kPixel;
constexpr ui::Twips kMajorHeight = 310 * kPixel;
constexpr ui::Twips kMinorSide = 61 * kPixel;
constexpr ui::Twips kButtonWidth = 1400;
constexpr ui::Twips kButtonHeight = 450;
constexpr ui::Twips kBarHeight = kButtonHeight + 2 * ui::kMargin;
constexpr ui::Twips kCheckBoxWidth = 3000;
constexpr ui::Twips kCheckBoxHeight = 330;

constexpr const char* kWelcomeText =
    "The Setup Wizard will allow you to configure Harbourline. \r\n\r\n"
    "Harbourline is a utility that helps you control and monitor your router's firewall capabilites without "
    "sacrificing protection for convenience of use.\r\n\r\n"
    "To continue, click Next.\r\n\r\n\r\n";
constexpr const char* kLoggingText =
    "Depending on your router model, Harbourline can monitor all Internet activity inbound and outbound of "
    "your router. By having the log enabled, you can see who is attempting to access your computer from the "
    "Internet as well as see whether there is any activity indicating that you might have Spyware installed "
    "on your computer.\r\n\r\n"
    "You can turn this feature on or off at anytime.";
constexpr const char* kCompleteText =
    "All essential information has been entered. \r\n\r\n"
    "Thank you for using this program. To continue, click Finish.";
constexpr const char* kCloseQuestion =
    "Setup Wizard has not completed. Are you sure you want to cancel the Setup Wizard?\r\n\r\n"
    "(You can always choose to run Setup Wizard at a later date)";

void AddHeading(ui::RichTextBox& rt, const std::string& sText) {
  modControlHelper::AddRichText(rt, sText, true, ui::kBlack);
}

void AddPlain(ui::RichTextBox& rt, const std::string& sText) {
  modControlHelper::AddRichText(rt, sText, false, ui::kBlack);
}

}  // namespace

frmWizard::frmWizard()
    : Form("frmWizard", "Harbourline - Setup Wizard", kFixedDialog, 7560, 5430),
      imgMajor(this, "imgMajor", ui::ResourcePicture("WIZARDMAJOR")),
      imgMinor(this, "imgMinor", ui::ResourcePicture("WIZARDMINOR")),
      rtInstructions(this, "rtInstructions"),
      ctlRouterConfig_(this, "ctlRouterConfig"),
      framEnableLogging(this, "framEnableLogging"),
      rtMajor(&framEnableLogging, "rtMajor"),
      chkEnableLogging(&framEnableLogging, "chkEnableLogging", "&Enable Logging"),
      framButtons(this, "framButtons"),
      cmdBack(&framButtons, "cmdBack", "< &Back"),
      cmdNext(&framButtons, "cmdNext", "&Next >"),
      cmdCancel(&framButtons, "cmdCancel", "&Cancel") {
  BackColor(ui::kWhite);
  framButtons.BackColor(ui::kWhite);
  rtInstructions.BackColor(ui::kWhite);
  rtInstructions.TabStop(false);
  rtMajor.TabStop(false);
  cmdNext.Default(true);
  cmdCancel.Cancel(true);
  ctlRouterConfig_.ChangedRouterSlected.Connect<&frmWizard::ctlRouterConfig_ChangedRouterSlected>(this);
  ctlRouterConfig_.SelectionSuccessful.Connect<&frmWizard::ctlRouterConfig_SelectionSuccessful>(this);
  chkEnableLogging.Click.Connect<&frmWizard::chkEnableLogging_Click>(this);
  cmdBack.Click.Connect<&frmWizard::cmdBack_Click>(this);
  cmdNext.Click.Connect<&frmWizard::cmdNext_Click>(this);
  cmdCancel.Click.Connect<&frmWizard::cmdCancel_Click>(this);
}

frmWizard& frmWizard::Shared() {
  static frmWizard wizard;
  return wizard;
}

void frmWizard::OnLoad() {
  Cancelled = 0;
  Step = kWelcome;
  RouterConfigured = 0;
  ShowStep();
  // A plug-in that fails is told, and the user can still choose another one.
  ui::EventGuard::Run(*this, "Load.ctlRouterConfig", ui::EventGuard::Repeats::kNo,
                      [this] { ctlRouterConfig_.Populate(); });
  const ui::Color background = modCommon::ColorBackground();
  ctlRouterConfig_.BackgroundColor(background);
  chkEnableLogging.BackColor(background);
  framEnableLogging.BackColor(background);
  rtMajor.BackColor(background);
  // What an earlier run left in the box is no click of this one.
  m_bGuard = true;
  chkEnableLogging.Checked(false);
  m_bGuard = false;
  ui::EventGuard::Run(*this, "Load.chkEnableLogging", ui::EventGuard::Repeats::kNo, [this] {
    chkEnableLogging.Checked(modServerHelper::GetEnableLog(g_Registry->Router));
  });
}

void frmWizard::ShowStep() {
  for (ui::Control* control : std::initializer_list<ui::Control*>{&rtInstructions, &imgMajor, &imgMinor,
                                                                  &ctlRouterConfig_, &framEnableLogging}) {
    control->Visible(false);
  }
  switch (Step) {
    case kWelcome:
      ShowWelcome();
      break;
    case kRouter:
      ShowRouter();
      break;
    case kLogging:
      ShowLogging();
      break;
    case kComplete:
      ShowComplete();
      break;
    case kClose:
      CloseWith(0);
      break;
    default:
      break;
  }
  OnResize();
  cmdBack.Enabled(Step > kWelcome);
  cmdNext.Enabled(Step != kRouter || RouterConfigured != 0);
  cmdNext.Caption(Step == kComplete ? "&Finish" : "&Next >");
}

void frmWizard::ShowWelcome() {
  rtInstructions.Text(std::string());
  AddHeading(rtInstructions, "Welcome to the Setup Wizard for Harbourline\r\n\r\n");
  AddPlain(rtInstructions, kWelcomeText);
  imgMajor.Visible(true);
  rtInstructions.Visible(true);
}

void frmWizard::ShowRouter() {
  Heading("Select Your Router", "Select your router model from the list, then press Configure.");
  ctlRouterConfig_.Visible(true);
}

void frmWizard::ShowLogging() {
  Heading("Enable Logging", "Monitoring of incoming and outgoing Internet access.");
  rtMajor.Text(std::string());
  AddPlain(rtMajor, kLoggingText);
  framEnableLogging.Visible(true);
}

void frmWizard::ShowComplete() {
  Heading("Setup Complete", "You have completed Harbourline Setup Wizard.");
  rtMajor.Text(std::string());
  AddPlain(rtMajor, kCompleteText);
  framEnableLogging.Visible(true);
}

void frmWizard::Heading(const std::string& sHeading, const std::string& sInstruction) {
  rtInstructions.Text(std::string());
  AddHeading(rtInstructions, sHeading + "\r\n");
  AddPlain(rtInstructions, "\t" + sInstruction);
  imgMinor.Visible(true);
  rtInstructions.Visible(true);
}

void frmWizard::Go(int iSteps) {
  Step = static_cast<std::int16_t>(Step + iSteps);
  ShowStep();
}

void frmWizard::CloseWith(std::int16_t iCancelled) {
  Cancelled = iCancelled;
  Unload();
  ui::TheInterface().toolkit->ProcessPendingEvents();
}

void frmWizard::OnQueryUnload(bool& cancel, ui::CloseReason reason) {
  if (reason != ui::CloseReason::kUser) return;
  const ui::MessageResult answer =
      ui::ShowMessage(kCloseQuestion, ui::MessageIcon::kWarning, ui::MessageButtons::kYesNo);
  if (answer == ui::MessageResult::kNo) cancel = true;
}

void frmWizard::cmdCancel_Click() {
  bool bCancel = false;
  OnQueryUnload(bCancel, ui::CloseReason::kUser);
  if (!bCancel) CloseWith(kTrue);
}

void frmWizard::chkEnableLogging_Click() {
  if (m_bGuard) return;
  modServerHelper::SetEnableLog(g_Registry->Router, chkEnableLogging.Checked());
  modServerHelper::SetLogging(g_Registry->Router, winSock.LocalIP());
}

void frmWizard::ctlRouterConfig_ChangedRouterSlected(const std::string& sStatus, bool) {
  RouterConfigured = 0;
  ShowStep();
  RouterSelected.Raise(sStatus);
}

void frmWizard::ctlRouterConfig_SelectionSuccessful() {
  Step = static_cast<std::int16_t>(Step + 1);
  RouterConfigured = kTrue;
  ShowStep();
}

void frmWizard::OnResize() {
  framButtons.Move(0, Height() - kBarHeight, Width(), kBarHeight);
  cmdCancel.Move(Width() - ui::kMargin - kButtonWidth, ui::kMargin, kButtonWidth, kButtonHeight);
  cmdNext.Move(cmdCancel.Left() - 2 * ui::kMargin - kButtonWidth, ui::kMargin, kButtonWidth, kButtonHeight);
  cmdBack.Move(cmdNext.Left() - ui::kMargin - kButtonWidth, ui::kMargin, kButtonWidth, kButtonHeight);
  LayOutPictures(framButtons.Top());
  LayOutLogging();
}

void frmWizard::LayOutPictures(ui::Twips bottom) {
  imgMajor.Move(0, 0, kMajorWidth, kMajorHeight);
  imgMinor.Move(Width() - kMinorSide, 0, kMinorSide, kMinorSide);
  if (Step == kWelcome) {
    const ui::Twips left = imgMajor.Right() + ui::kMargin;
    rtInstructions.Move(left, ui::kMargin, Width() - left - ui::kMargin, bottom - 2 * ui::kMargin);
  } else {
    rtInstructions.Move(ui::kMargin, ui::kMargin, imgMinor.Left() - 2 * ui::kMargin,
                        kMinorSide - 2 * ui::kMargin);
  }
  ctlRouterConfig_.Move(0, kMinorSide, Width(), bottom - kMinorSide);
  framEnableLogging.Move(0, kMinorSide, Width(), bottom - kMinorSide);
}

void frmWizard::LayOutLogging() {
  const ui::Twips width = framEnableLogging.Width() - 2 * ui::kMargin;
  ui::Twips end = framEnableLogging.Height() - ui::kMargin;
  // Only the log's own step has room for its switch.
  chkEnableLogging.Visible(Step == kLogging);
  if (Step == kLogging) {
    chkEnableLogging.Move(ui::kMargin, end - kCheckBoxHeight, kCheckBoxWidth, kCheckBoxHeight);
    end = chkEnableLogging.Top() - ui::kMargin;
  }
  rtMajor.Move(ui::kMargin, ui::kMargin, width, end - ui::kMargin);
}
