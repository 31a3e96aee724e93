#include "setup/ctlSetupWizard.h"

#include <algorithm>

#include "setup/frmWizard.h"
#include "shell/modCommon.h"
#include "ui/PageStyle.h"
#include "ui/modControlHelper.h"

namespace {

constexpr ui::Twips kButtonWidth = 3600;

}  // namespace

ctlSetupWizard::ctlSetupWizard(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 5880, 5475),
      lblTitle(this, "lblTitle", "Setup Wizard"),
      rtInfo(this, "rtInfo"),
      cmdWizard(this, "cmdWizard", "&Activate the Setup Wizard") {
  HelpContextID(3000);
  lblTitle.Font(ui::TitleFont());
  lblTitle.ForeColor(modCommon::ColorTitle());
  rtInfo.Font({"MS Sans Serif", 9.75, false});
  rtInfo.Text(std::string());
  modControlHelper::AddRichText(rtInfo,
                                "Use the Setup Wizard tool to step you through the required configuration "
                                "procedures of Harbourline. You are "
                                "only required to run the Setup Wizard once, however, there may be times "
                                "when rerunning the Setup Wizard will "
                                "cause potential configuration issues to go away.\r\n\r\n",
                                false, ui::kBlack);
  modControlHelper::AddRichText(
      rtInfo, "If you are looking for additional Profiles to import into this program, check our website.",
      false, ui::kBlack);
  cmdWizard.Picture(ui::ResourcePicture("WIZARD"));
  cmdWizard.Click.Connect<&ctlSetupWizard::cmdWizard_Click>(this);
  OnResize();
}

void ctlSetupWizard::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  lblTitle.BackColor(color);
  rtInfo.BackColor(color);
}

void ctlSetupWizard::cmdWizard_Click() {
  frmWizard::Shared().ShowModal(ParentForm());
}

void ctlSetupWizard::OnResize() {
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  cmdWizard.Move((Width() - kButtonWidth) / 2, Height() - ui::kMargin - ui::kPictureButtonHeight,
                 kButtonWidth, ui::kPictureButtonHeight);
  const ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  rtInfo.Move(ui::kMargin, top, inner, std::max(0, cmdWizard.Top() - ui::kMargin - top));
}
