#pragma once

#include <string>

#include "ui/Button.h"
#include "ui/Label.h"
#include "ui/RichTextBox.h"
#include "ui/UserControl.h"

/// The page from which the Setup Wizard is started again.
class ctlSetupWizard : public ui::UserControl {
 public:
  ctlSetupWizard(ui::Control* parent, std::string name);

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

 protected:
  void OnResize() override;

 private:
  void cmdWizard_Click();

  ui::Label lblTitle;
  ui::RichTextBox rtInfo;
  ui::Button cmdWizard;
};
