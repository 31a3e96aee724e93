#include "setup/ctlHelp.h"

#include <algorithm>

#include "platform/Machine.h"
#include "shell/modCommon.h"
#include "ui/PageStyle.h"

namespace {

constexpr ui::Twips kButtonWidth = 1800;

std::string HelpText() {
  return "You can press the 'F1' key at anytime to bring up context sensitive help for that subject. By "
         "pressing the \"Help" +
         platform::TheMachine().codePage->FromUtf16(u"\u2026") +
         "\" button below, you will be taken to the help menu.";
}

}  // namespace

ctlHelp::ctlHelp(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 4800, 3600),
      lblTitle(this, "lblTitle", "Help"),
      lblHelp(this, "lblHelp", HelpText()),
      cmdHelp(this, "cmdHelp", "&Help...") {
  lblTitle.Font(ui::TitleFont());
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblHelp.ForeColor(modCommon::ColorHelpText());
  cmdHelp.Picture(ui::ResourcePicture("LIFEBUOY"));
  cmdHelp.Click.Connect([this] { Help.Raise(); });
  OnResize();
}

void ctlHelp::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  lblTitle.BackColor(color);
  lblHelp.BackColor(color);
}

void ctlHelp::OnResize() {
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  cmdHelp.Move((Width() - kButtonWidth) / 2, Height() - ui::kMargin - ui::kPictureButtonHeight, kButtonWidth,
               ui::kPictureButtonHeight);
  const ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  lblHelp.Move(ui::kMargin, top, inner, std::max(0, cmdHelp.Top() - ui::kMargin - top));
}
