#pragma once

#include <cstdint>

#include "ui/Form.h"
#include "ui/Timer.h"
#include "ui/ctlShapeSkin.h"

/// The title window, in the shape of its picture. It closes itself when its timer fires.
class frmSplash : public ui::Form {
 public:
  frmSplash();

  /// The window closes `iSeconds` from now. The milliseconds must fit 16 bits: 33 seconds and more are an
  /// error.
  void SetTimer(std::int16_t iSeconds);

  /// The one instance of the program, made at first use.
  static frmSplash& Shared();

 private:
  void tmSplash_Timer();

  ui::Timer tmSplash;
  ctlShapeSkin Skin;
};
