#pragma once

#include "ui/Form.h"

/// The Setup Wizard: it leads a new user through the choice of the router and of the activity log.
class frmWizard : public ui::Form {
 public:
  frmWizard();

  /// The one instance of the program, made at first use.
  static frmWizard& Shared();

 protected:
  void OnLoad() override;
};
