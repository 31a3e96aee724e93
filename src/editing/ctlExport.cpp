#include "editing/ctlExport.h"

#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "ui/MessageBox.h"
#include "ui/PageStyle.h"

namespace {

constexpr std::int32_t kExport = 0;
constexpr std::int32_t kImport = 1;
constexpr std::int32_t kExportTopic = 7000;
constexpr std::int32_t kImportTopic = 8000;
constexpr ui::Twips kButtonWidth = 1800;
constexpr ui::ListView::Style kTickList{.columnHeaders = false, .checkBoxes = true};

}  // namespace

ctlExport::ctlExport(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 7770, 3615),
      lblTitle(this, "lblTitle", "Title"),
      lvProfiles(this, "lvProfiles", kTickList),
      lblError(this, "lblError"),
      cmdExecute(this, "cmdExecute"),
      lblHelp(this, "lblHelp") {
  HelpContextID(kExportTopic);
  lblTitle.Font(ui::TitleFont());
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblHelp.ForeColor(modCommon::ColorHelpText());
  lblError.ForeColor(modCommon::ColorDarkRed());
  lvProfiles.ForeColor(modCommon::ColorNavy());
  cmdExecute.ReadProperties({{"Caption", "&Browse..."},
                             {"Filter", "All Files (*.*)|*.*|Profile (*.prf)|*.prf"},
                             {"FilterIndex", std::int16_t{2}}});
  // A name that the user types without an extension stays so.
  cmdExecute.DefaultExt(std::string());
  cmdExecute.Enabled(false);
  lvProfiles.ItemCheck.Connect<&ctlExport::UpdateButton>(this);
  lvProfiles.GotFocus.Connect<&ctlExport::lvProfiles_GotFocus>(this);
  cmdExecute.BrowseComplete.Connect<&ctlExport::cmdExecute_BrowseComplete>(this);
  OnResize();
}

void ctlExport::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  for (ui::Label* label : {&lblTitle, &lblHelp, &lblError}) label->BackColor(color);
  lvProfiles.BackColor(ui::ListBackground(color));
}

std::int32_t ctlExport::TransferType() const {
  return cmdExecute.BrowseType() == ctlFileBrowseButton::kOpen ? kImport : kExport;
}

bool ctlExport::IsExportWithoutProfiles() const {
  return m_lTransferType == kExport && g_Registry->ccMapProfiles().IsEmpty();
}

void ctlExport::TransferType(std::int32_t lType) {
  m_lTransferType = lType;
  if (lType == kExport) {
    lblTitle.Caption("Export Profile Data");
    if (IsExportWithoutProfiles()) {
      lblError.Caption("No profiles are available for exporting.");
    } else {
      SetButton(ctlFileBrowseButton::kSave, "&Export...", "Select Export Output File");
      lblHelp.Caption("Select profiles then press 'Export'.");
    }
  } else if (lType == kImport) {
    lblTitle.Caption("Import Profile Data");
    // The ready-made profiles lie beside the program.
    cmdExecute.InitialFolder(modCommon::MakeFullPath(g_Registry->InstallPath(), "Profiles"));
    SetButton(ctlFileBrowseButton::kOpen, "&Import...", "Select Import Source File");
    lblHelp.Caption("To begin the import select 'Import'.");
  }
  const std::int32_t lTopic = lType == kImport ? kImportTopic : kExportTopic;
  lvProfiles.HelpContextID(lTopic);
  cmdExecute.HelpContextID(lTopic);
  SetControlsVisible(true);
}

void ctlExport::SetButton(std::int32_t lBrowseType, const char* sCaption, const char* sDialogTitle) {
  cmdExecute.BrowseType(lBrowseType);
  cmdExecute.Caption(sCaption);
  cmdExecute.DialogTitle(sDialogTitle);
}

void ctlExport::SetControlsVisible(bool bVisible) {
  const bool bWithout = IsExportWithoutProfiles();
  lblTitle.Visible(bVisible);
  cmdExecute.Visible(bVisible && !bWithout);
  lvProfiles.Visible(bVisible && !bWithout && m_lTransferType == kExport);
  lblHelp.Visible(bVisible && !bWithout);
  lblError.Visible(bVisible && bWithout);
}

void ctlExport::Populate() {
  g_Registry->PopulateMapProfileListView(lvProfiles, false);
  UpdateButton();
}

std::vector<std::string> ctlExport::TickedKeys() const {
  std::vector<std::string> sKeys;
  for (std::size_t row = 0; row < lvProfiles.RowCount(); ++row) {
    if (lvProfiles.Checked(row)) sKeys.emplace_back(lvProfiles.Key(row));
  }
  return sKeys;
}

void ctlExport::UpdateButton() {
  cmdExecute.Enabled(cmdExecute.BrowseType() != ctlFileBrowseButton::kSave || !TickedKeys().empty());
}

void ctlExport::lvProfiles_GotFocus() {
  if (const auto row = lvProfiles.SelectedRow()) lvProfiles.EnsureVisible(*row);
}

void ctlExport::cmdExecute_BrowseComplete() {
  if (cmdExecute.BrowseType() == ctlFileBrowseButton::kOpen) {
    g_Registry->Import(cmdExecute.FullPathName());
    MapProfileChange.Raise();
    return;
  }
  const std::vector<std::string> sKeys = TickedKeys();
  if (sKeys.empty()) {
    ui::ShowMessage("No items selected. Processes aborted", ui::MessageIcon::kWarning);
    return;
  }
  g_Registry->ExportByKeys(cmdExecute.FullPathName(), sKeys);
}

void ctlExport::OnResize() {
  SetControlsVisible(false);
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  const ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  lblHelp.Move(ui::kMargin, Height() - ui::kMargin - ui::kLineHeight, inner, ui::kLineHeight);
  cmdExecute.Move(ui::kMargin, lblHelp.Top() - ui::kMargin - ui::kButtonHeight, kButtonWidth,
                  ui::kButtonHeight);
  lvProfiles.Move(ui::kMargin, top, inner, cmdExecute.Top() - ui::kMargin - top);
  lblError.Move(ui::kMargin, top, inner, ui::kLineHeight);
  SetControlsVisible(true);
}
