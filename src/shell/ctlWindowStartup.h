#pragma once

#include <string>

#include "ui/CheckBox.h"
#include "ui/ComboBox.h"
#include "ui/Label.h"
#include "ui/UserControl.h"

/// The page of the choices how the program shows itself.
class ctlWindowStartup : public ui::UserControl {
 public:
  ctlWindowStartup(ui::Control* parent, std::string name);

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

 protected:
  void OnResize() override;

 private:
  void Initialize();
  void chkLoadOnStartup_Click();
  void chkShowSplash_Click();
  void cbSystemTray_Click();

  ui::Label lblTitle;
  ui::CheckBox chkLoadOnStartup;
  ui::CheckBox chkShowSplash;
  ui::Label lblSystemTray;
  ui::ComboBox cbSystemTray;
  /// The page fills itself; what it sets then isn't the user's choice.
  bool m_bInitializing = false;
};
