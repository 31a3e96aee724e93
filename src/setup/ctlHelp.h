#pragma once

#include <string>

#include "ui/Button.h"
#include "ui/Label.h"
#include "ui/UserControl.h"

/// The page that leads to the help.
class ctlHelp : public ui::UserControl {
 public:
  ctlHelp(ui::Control* parent, std::string name);

  /// The user asks for the help's contents page.
  base::Event<> Help;

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

 protected:
  void OnResize() override;

 private:
  ui::Label lblTitle;
  ui::Label lblHelp;
  ui::Button cmdHelp;
};
