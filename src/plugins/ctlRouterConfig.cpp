#include "plugins/ctlRouterConfig.h"

#include <algorithm>
#include <initializer_list>

#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "ui/PageStyle.h"

namespace {

constexpr ui::Twips kLabelWidth = 1500;
constexpr ui::Twips kFieldWidth = 3600;
constexpr ui::Twips kButtonWidth = 1800;

constexpr const char* kNotAvailable = "N/A";
constexpr const char* kNoPlugIns =
    "No plug-ins have been installed. You need to install a plug-in for your router. Run Harbourline's Setup "
    "executable and select Modify or download a new plug-in from our website. Then rerun Setup Wizard.";

}  // namespace

ctlRouterConfig::ctlRouterConfig(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 6660, 3270),
      lblTitle(this, "lblTitle", "Router Configuration"),
      lblRouterSelection(this, "lblRouterSelection", "Your Router:", ui::Alignment::kRight),
      cbRouterSelection(this, "cbRouterSelection"),
      lblVersionLabel(this, "lblVersionLabel", "Version:", ui::Alignment::kRight),
      lblVersion(this, "lblVersion"),
      lblStatusLabel(this, "lblStatusLabel", "Status:", ui::Alignment::kRight),
      lblStatus(this, "lblStatus"),
      cmdConfigureRouter(this, "cmdConfigureRouter", "&Configure"),
      lblHelp(this, "lblHelp", "Select your router then press 'Configure'"),
      lblError(this, "lblError", "Label1") {
  HelpContextID(2000);
  lblTitle.Font(ui::TitleFont());
  lblTitle.Transparent(true);
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblHelp.ForeColor(modCommon::ColorHelpText());
  lblError.Transparent(true);
  lblError.ForeColor(modCommon::ColorDarkRed());
  cbRouterSelection.ForeColor(ui::kValueColor);
  lblVersion.ForeColor(ui::kValueColor);
  lblStatus.ForeColor(ui::kValueColor);
  cbRouterSelection.Click.Connect<&ctlRouterConfig::cbRouterSelection_Click>(this);
  cmdConfigureRouter.Picture(ui::ResourcePicture("CONFIGURE"));
  cmdConfigureRouter.Click.Connect<&ctlRouterConfig::cmdConfigureRouter_Click>(this);
  OnResize();
}

void ctlRouterConfig::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  for (ui::Label* label :
       {&lblRouterSelection, &lblStatus, &lblStatusLabel, &lblVersion, &lblVersionLabel, &lblHelp}) {
    label->BackColor(color);
  }
}

void ctlRouterConfig::Populate() {
  base::Failures failures;
  failures.Run([] { g_Registry->CheckForPlugIns(); });
  failures.Run([this] { g_Registry->PopulateRouterList(cbRouterSelection); });
  const bool bEmpty = cbRouterSelection.ListCount() == 0;
  if (bEmpty) lblError.Caption(kNoPlugIns);
  cmdConfigureRouter.Enabled(!cbRouterSelection.Text().empty());
  ShowSelection(!bEmpty);
  failures.Run([this] { UpdateStatus(); });
  failures.Rethrow();
}

void ctlRouterConfig::ShowSelection(bool bShow) {
  lblError.Visible(!bShow);
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&lblRouterSelection, &lblStatus, &lblStatusLabel, &lblVersion,
                                           &lblVersionLabel, &cmdConfigureRouter, &cbRouterSelection}) {
    control->Visible(bShow);
  }
}

void ctlRouterConfig::cbRouterSelection_Click() {
  g_Registry->RouterTitle(cbRouterSelection.Text());
  base::Failures failures;
  if (Functional(failures)) {
    failures.Run([this] { UpdateStatus(); });
  } else {
    failures.Run([this] { ClearStatus(); });
  }
  cmdConfigureRouter.Enabled(!cbRouterSelection.Text().empty());
  failures.Rethrow();
}

void ctlRouterConfig::cmdConfigureRouter_Click() {
  // A plug-in answers false when its configuration is good.
  if (modServerHelper::Configure(g_Registry->Router)) return;
  base::Failures failures;
  failures.Run([this] { UpdateStatus(); });
  failures.Run([this] { SelectionSuccessful.Raise(); });
  failures.Rethrow();
}

void ctlRouterConfig::UpdateStatus() {
  base::Failures failures;
  std::string sVersion = kNotAvailable;
  failures.Run([&] { sVersion = modServerHelper::Version(g_Registry->Router); });
  lblVersion.Caption(sVersion);
  std::string sStatus = "Not Connected to Internet";
  if (modCommon::IsConnected()) {
    std::string sAddress = kNotAvailable;
    failures.Run([&] { sAddress = modServerHelper::WANIP(g_Registry->Router); });
    sStatus = "WAN " + sAddress;
  }
  const bool bOperational = Functional(failures);
  failures.Run([&] { ChangedRouterSlected.Raise(sStatus, bOperational); });
  lblStatus.Caption(Functional(failures) ? "Online" : "Offline");
  failures.Run([this] { modServerHelper::SetLogging(g_Registry->Router, winSock.LocalIP()); });
  failures.Rethrow();
}

void ctlRouterConfig::ClearStatus() {
  base::Failures failures;
  lblVersion.Caption(kNotAvailable);
  failures.Run([this] { ChangedRouterSlected.Raise(kNotAvailable, false); });
  lblStatus.Caption("Offline");
  failures.Rethrow();
}

bool ctlRouterConfig::Functional(base::Failures& failures) const {
  bool bFunctional = false;
  failures.Run([&] { bFunctional = modServerHelper::Functional(g_Registry->Router); });
  return bFunctional;
}

void ctlRouterConfig::OnResize() {
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  const ui::Twips field = ui::kMargin + kLabelWidth + ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  lblError.Move(ui::kMargin, top, inner, 4 * ui::kLineHeight);
  lblRouterSelection.Move(ui::kMargin, top + ui::kLabelDrop, kLabelWidth, ui::kLineHeight);
  cbRouterSelection.Move(field, top, std::min(kFieldWidth, Width() - field - ui::kMargin), ui::kLineHeight);
  top = cbRouterSelection.Bottom() + ui::kMargin;
  lblVersionLabel.Move(ui::kMargin, top, kLabelWidth, ui::kLineHeight);
  lblVersion.Move(field, top, Width() - field - ui::kMargin, ui::kLineHeight);
  top = lblVersion.Bottom() + ui::kMargin;
  lblStatusLabel.Move(ui::kMargin, top, kLabelWidth, ui::kLineHeight);
  lblStatus.Move(field, top, Width() - field - ui::kMargin, ui::kLineHeight);
  cmdConfigureRouter.Move(field, lblStatus.Bottom() + ui::kMargin, kButtonWidth, ui::kPictureButtonHeight);
  lblHelp.Move(ui::kMargin, Height() - ui::kMargin - ui::kLineHeight, inner, ui::kLineHeight);
}
