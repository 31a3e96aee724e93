#pragma once

#include <cstdint>
#include <string_view>

#include "ui/Form.h"
#include "ui/Label.h"
#include "ui/RichTextBox.h"

/// The report of the errors that the router's plug-in told in this run. The user's close only hides it, so
/// that it keeps all lines until the program ends.
class frmErrors : public ui::Form {
 public:
  frmErrors();

  /// Adds a line with the time at the end.
  void AddErrorText(std::string_view sErrorMessage, std::int16_t iErrorNo);

  /// The one instance of the program, made at first use.
  static frmErrors& Shared();

 protected:
  void OnLoad() override;
  void OnQueryUnload(bool& cancel, ui::CloseReason reason) override;
  void OnResize() override;

 private:
  ui::Label lblHelp;
  ui::RichTextBox rtErrors;
};
