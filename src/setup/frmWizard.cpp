#include "setup/frmWizard.h"

namespace {

constexpr ui::Form::Style kFixedDialog{.resizable = false, .minimiseAndMaximise = false, .inTaskBar = false};

}  // namespace

frmWizard::frmWizard() : Form("frmWizard", "Harbourline - Setup Wizard", kFixedDialog, 7560, 5430) {
  BackColor(ui::kWhite);
}

frmWizard& frmWizard::Shared() {
  static frmWizard wizard;
  return wizard;
}

void frmWizard::OnLoad() {
  // The wizard's steps aren't built yet: it ends as if the user had walked through them and changed nothing.
  Unload();
}
