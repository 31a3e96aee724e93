#pragma once

#include <string>

#include "base/Failures.h"
#include "ui/Button.h"
#include "ui/ComboBox.h"
#include "ui/Label.h"
#include "ui/SocketControl.h"
#include "ui/UserControl.h"

/// The page on which the user selects the router's plug-in and opens its configuration. It stands on the main
/// window and in the wizard, and tells its host what happened.
class ctlRouterConfig : public ui::UserControl {
 public:
  ctlRouterConfig(ui::Control* parent, std::string name);

  /// The router's state as text, and whether the router works; after each look at the router.
  base::Event<const std::string&, bool> ChangedRouterSlected;
  /// After a configuration that the plug-in reports as good.
  base::Event<> SelectionSuccessful;

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  /// Takes up waiting plug-ins and fills the page; the host calls it when the page comes up.
  void Populate();
  void UpdateStatus();
  void ClearStatus();

 protected:
  void OnResize() override;

 private:
  void cbRouterSelection_Click();
  void cmdConfigureRouter_Click();
  void ShowSelection(bool bShow);
  /// False when the plug-in fails.
  bool Functional(base::Failures& failures) const;

  ui::Label lblTitle;
  ui::Label lblRouterSelection;
  ui::ComboBox cbRouterSelection;
  ui::Label lblVersionLabel;
  ui::Label lblVersion;
  ui::Label lblStatusLabel;
  ui::Label lblStatus;
  ui::Button cmdConfigureRouter;
  ui::Label lblHelp;
  ui::Label lblError;
  ui::SocketControl winSock;
};
