#include "shell/frmErrors.h"

#include <algorithm>
#include <string>

#include "base/Conversions.h"
#include "platform/Machine.h"
#include "shell/modCommon.h"
#include "ui/modControlHelper.h"

namespace {

constexpr ui::Twips kHelpHeight = 330;

}  // namespace

frmErrors::frmErrors()
    : Form("frmErrors", "Harbourline - Error Report", Style{}, 4680, 3090),
      lblHelp(this, "lblHelp"),
      rtErrors(this, "rtErrors") {
  lblHelp.Move(0, 0, 0, kHelpHeight);
  OnResize();
}

void frmErrors::AddErrorText(std::string_view sErrorMessage, std::int16_t iErrorNo) {
  platform::Clock& clock = *platform::TheMachine().clock;
  std::string line = clock.TimeText(clock.Now()) + " - ";
  line.append(sErrorMessage).append(" (").append(base::ToText(iErrorNo)).append(")\r\n");
  modControlHelper::AddRichText(rtErrors, std::move(line), false, ui::kBlack);
}

frmErrors& frmErrors::Shared() {
  static frmErrors report;
  return report;
}

void frmErrors::OnLoad() {
  BackColor(modCommon::ColorBackground());
  lblHelp.BackColor(modCommon::ColorBackground());
  lblHelp.ForeColor(modCommon::ColorHelpText());
  lblHelp.Caption("The following errors occured during this session.");
}

void frmErrors::OnQueryUnload(bool& cancel, ui::CloseReason reason) {
  if (reason != ui::CloseReason::kUser) return;
  cancel = true;
  Hide();
}

void frmErrors::OnResize() {
  lblHelp.Move(0, 0, Width(), lblHelp.Height());
  rtErrors.Move(0, lblHelp.Bottom(), Width(), std::max(0, Height() - lblHelp.Bottom()));
}
