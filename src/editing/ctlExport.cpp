#include "editing/ctlExport.h"

#include <algorithm>

#include "settings/CRegistry.h"
#include "shell/modCommon.h"

namespace {

constexpr ui::Color kListShade = ui::Rgb(10, 10, 10);
constexpr ui::Twips kTitleHeight = 600;
constexpr ui::ListView::Style kTickList{.columnHeaders = false, .checkBoxes = true};

}  // namespace

ctlExport::ctlExport(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 7770, 3615),
      lblTitle(this, "lblTitle"),
      lvProfiles(this, "lvProfiles", kTickList) {
  lblTitle.Font(ui::TitleFont());
  lblTitle.ForeColor(modCommon::ColorTitle());
  lvProfiles.ForeColor(modCommon::ColorNavy());
  OnResize();
}

void ctlExport::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  lblTitle.BackColor(color);
  lvProfiles.BackColor(color - kListShade);
}

void ctlExport::TransferType(std::int32_t type) {
  transferType_ = type;
  lblTitle.Caption(type == 0 ? "Export Profile Data" : "Import Profile Data");
  lvProfiles.Visible(type == 0);
}

void ctlExport::Populate() {
  g_Registry->PopulateMapProfileListView(lvProfiles, false);
}

void ctlExport::OnResize() {
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, kTitleHeight);
  const ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  lvProfiles.Move(ui::kMargin, top, inner, std::max(0, Height() - ui::kMargin - top));
}
