#pragma once

#include <string>

#include "ui/CheckBox.h"
#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/SocketControl.h"
#include "ui/Timer.h"
#include "ui/UserControl.h"

/// The page of the profiles that follow a program, and the engine that lets them: every two seconds it
/// compares each such profile with what runs, and sends all changes to the router at once. It works whether
/// the page shows or not.
class ctlAutomatic : public ui::UserControl {
 public:
  ctlAutomatic(ui::Control* parent, std::string name);

  /// After each change that went to the router.
  base::Event<> Activated;

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  /// Fills the page and arms the engine when automatic activation is on.
  void Populate();

 protected:
  void OnResize() override;

 private:
  void SetTimerState();
  void SetControlsVisible(bool bVisible);
  void chkEnable_Click();
  void tmAutomatic_Timer();
  bool FollowPrograms();
  void lvProfiles_BeforeLabelEdit(bool& bCancel);

  ui::Label lblTitle;
  ui::ListView lvProfiles;
  ui::Label lblHelp;
  ui::CheckBox chkEnable;
  ui::Label lblError;
  ui::Timer tmAutomatic;
  ui::SocketControl Winsock;
};
