#pragma once

#include <cstdint>

#include "ui/Form.h"
#include "ui/Timer.h"

/// The title window. It closes itself when its timer fires.
class frmSplash : public ui::Form {
 public:
  frmSplash();

  /// The window closes `iSeconds` from now. The milliseconds must fit 16 bits: 33 seconds and more are an
  /// error.
  void SetTimer(std::int16_t iSeconds);

  /// The one instance of the program, made at first use.
  static frmSplash& Shared();

 protected:
  void OnLoad() override;

 private:
  void tmSplash_Timer();

  ui::Timer tmSplash;
};
