#pragma once

#include <string>

#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/UserControl.h"

/// The page that lists the profiles.
class ctlMapProfile : public ui::UserControl {
 public:
  ctlMapProfile(ui::Control* parent, std::string name);

  /// After any change to the set of profiles.
  base::Event<> ProfileChange;

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  void Populate();

 protected:
  void OnResize() override;

 private:
  ui::Label lblTitle;
  ui::ListView lvProfiles;
  ui::Label lblHelp;
};
