#pragma once

#include <string>

#include "ui/Button.h"
#include "ui/Image.h"
#include "ui/Label.h"
#include "ui/RichTextBox.h"
#include "ui/UserControl.h"

/// The page that says which version of the program this is and where to find its makers.
class ctlAbout : public ui::UserControl {
 public:
  ctlAbout(ui::Control* parent, std::string name);

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

 protected:
  void OnResize() override;

 private:
  ui::Image imgLogo;
  ui::Label lblTitle;
  ui::RichTextBox rtInfo;
  ui::Button cmdGoToWebSite;
};
