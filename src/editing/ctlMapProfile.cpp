#include "editing/ctlMapProfile.h"

#include <algorithm>

#include "settings/CRegistry.h"
#include "shell/modCommon.h"

namespace {

constexpr ui::Color kListShade = ui::Rgb(10, 10, 10);
constexpr ui::Twips kTitleHeight = 600;
constexpr ui::Twips kLineHeight = 330;
constexpr ui::ListView::Style kPlainList{.columnHeaders = false};

}  // namespace

ctlMapProfile::ctlMapProfile(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 8100, 6990),
      lblTitle(this, "lblTitle", "Port Forwarding Profiles"),
      lvProfiles(this, "lvProfiles", kPlainList),
      lblHelp(this, "lblHelp", "Add, Edit or Delete your profiles here.") {
  HelpContextID(9000);
  lvProfiles.HelpContextID(9000);
  lblTitle.Font(ui::TitleFont());
  lblTitle.Transparent(true);
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblHelp.ForeColor(modCommon::ColorHelpText());
  lvProfiles.ForeColor(modCommon::ColorNavy());
  OnResize();
}

void ctlMapProfile::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  lblHelp.BackColor(color);
  lvProfiles.BackColor(color - kListShade);
}

void ctlMapProfile::Populate() {
  g_Registry->PopulateMapProfileListView(lvProfiles, false);
}

void ctlMapProfile::OnResize() {
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, kTitleHeight);
  lblHelp.Move(ui::kMargin, Height() - ui::kMargin - kLineHeight, inner, kLineHeight);
  const ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  lvProfiles.Move(ui::kMargin, top, inner, std::max(0, lblHelp.Top() - ui::kMargin - top));
}
