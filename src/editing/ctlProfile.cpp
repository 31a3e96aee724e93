#include "editing/ctlProfile.h"

#include <algorithm>
#include <initializer_list>

#include "automatic/frmClassBrowser.h"
#include "automatic/modWhatsRunning.h"
#include "base/Conversions.h"
#include "shell/modCommon.h"
#include "ui/MessageBox.h"
#include "ui/PageStyle.h"
#include "ui/modControlHelper.h"

namespace {

constexpr std::int32_t kBlinkInterval = 500;
constexpr ui::Twips kLabelWidth = 1400;
constexpr ui::Twips kField = kLabelWidth + ui::kMargin;
constexpr ui::Twips kBrowseWidth = 1300;
constexpr ui::Twips kEnableWidth = 1300;
constexpr ui::Twips kMappingsWidth = 2400;
constexpr ui::Twips kButtonWidth = 1500;
constexpr ui::TextBox::Style kPlainText{.border = false};

ui::Font Bold() {
  ui::Font font = ui::BodyFont();
  font.bold = true;
  return font;
}

}  // namespace

ctlProfile::ctlProfile(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 6495, 9510),
      lblTitle(this, "lblTitle", "Profile Information"),
      lblName(this, "lblName", "Name:", ui::Alignment::kRight),
      txtName(this, "txtName"),
      lblDescription(this, "lblDescription", "Description:", ui::Alignment::kRight),
      txtDescription(this, "txtDescription"),
      framAutoActivate(this, "framAutoActivate", "Auto Activate Coniguration"),
      lblAuto(&framAutoActivate, "lblAuto", "Auto Activate Configurations"),
      lblWindowTitle(&framAutoActivate, "lblWindowTitle", "Window Title:", ui::Alignment::kRight),
      txtWindowTitle(&framAutoActivate, "txtWindowTitle", kPlainText),
      lblWindowClass(&framAutoActivate, "lblWindowClass", "Window Class:", ui::Alignment::kRight),
      txtWindowClass(&framAutoActivate, "txtWindowClass", kPlainText),
      cmdBrowse(&framAutoActivate, "cmdBrowse", "&Browse..."),
      chkEnabled(&framAutoActivate, "chkEnabled", "&Enable"),
      lblRunning(&framAutoActivate, "lblRunning", "Running", ui::Alignment::kCenter),
      cmdMappingAssignments(this, "cmdMappingAssignments", "&Mapping Assignments"),
      lblHelp(this, "lblHelp"),
      cmdAccept(this, "cmdAccept", "&Accept"),
      cmdCancel(this, "cmdCancel", "&Cancel"),
      timerBlink(this, "timerBlink"),
      ctlMappingEditor_(this, "ctlMappingEditor") {
  HelpContextID(9010);
  lblTitle.Font(ui::TitleFont());
  lblTitle.Transparent(true);
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblHelp.ForeColor(modCommon::ColorHelpText());
  framAutoActivate.Font(Bold());
  lblAuto.Font(Bold());
  lblRunning.ForeColor(ui::Rgb(0, 128, 0));
  lblRunning.Visible(false);
  for (ui::TextBox* box : {&txtName, &txtDescription, &txtWindowTitle, &txtWindowClass}) {
    box->ForeColor(modCommon::ColorNavy());
    box->Change.Connect<&ctlProfile::EnableAccept>(this);
  }
  for (ui::TextBox* box : {&txtName, &txtDescription}) {
    box->GotFocus.Connect([box] { modControlHelper::SelectAllText(*box); });
  }
  for (ui::TextBox* box : {&txtWindowTitle, &txtWindowClass}) {
    box->Locked(true);
    box->TabStop(false);
  }
  cmdAccept.Picture(ui::ResourcePicture("ACCEPT"));
  cmdAccept.Enabled(false);
  cmdCancel.Picture(ui::ResourcePicture("CANCEL"));
  chkEnabled.Click.Connect<&ctlProfile::EnableAccept>(this);
  cmdBrowse.Click.Connect<&ctlProfile::cmdBrowse_Click>(this);
  cmdMappingAssignments.Click.Connect<&ctlProfile::cmdMappingAssignments_Click>(this);
  cmdAccept.Click.Connect([this] { Accept.Raise(); });
  cmdCancel.Click.Connect([this] { Cancel.Raise(); });
  ctlMappingEditor_.Accept.Connect<&ctlProfile::ctlMappingEditor_Accept>(this);
  ctlMappingEditor_.Cancel.Connect<&ctlProfile::ctlMappingEditor_Cancel>(this);
  timerBlink.Tick.Connect<&ctlProfile::timerBlink_Timer>(this);
  timerBlink.Interval(kBlinkInterval);
  OnResize();
}

void ctlProfile::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  for (ui::Control* control : std::initializer_list<ui::Control*>{
           &lblTitle, &lblName, &lblDescription, &lblWindowClass, &lblWindowTitle, &framAutoActivate,
           &chkEnabled, &lblHelp, &lblRunning, &lblAuto, &txtWindowTitle, &txtWindowClass}) {
    control->BackColor(color);
  }
  ctlMappingEditor_.BackgroundColor(color);
}

void ctlProfile::Populate(const CMapProfile& MapProfile) {
  m_Profile = MapProfile.Duplicate();
  m_bPopulated = true;
  txtName.Text(m_Profile->sName);
  txtDescription.Text(m_Profile->sDescription);
  txtWindowClass.Text(m_Profile->sWindowClass);
  txtWindowTitle.Text(m_Profile->sWindowTitle);
  chkEnabled.Checked(m_Profile->bAutoActivate);
  if (!HasMoreThanTheGrid()) ctlMappingEditor_.Populate(*m_Profile);
  // Filling the boxes has enabled it.
  cmdAccept.Enabled(false);
  ShowMappings(false);
}

std::shared_ptr<CMapProfile> ctlProfile::Save() {
  m_Profile->sName = txtName.Text();
  m_Profile->sDescription = txtDescription.Text();
  m_Profile->sWindowClass = txtWindowClass.Text();
  m_Profile->sWindowTitle = txtWindowTitle.Text();
  m_Profile->bAutoActivate = chkEnabled.Checked();
  return m_Profile;
}

void ctlProfile::SetFormVisible(bool bVisible) {
  for (ui::Control* control : std::initializer_list<ui::Control*>{
           &lblTitle, &lblName, &txtName, &lblDescription, &txtDescription, &cmdMappingAssignments,
           &cmdAccept, &cmdCancel, &lblHelp, &framAutoActivate}) {
    control->Visible(bVisible);
  }
}

void ctlProfile::ShowMappings(bool bShow) {
  m_bShowMappings = bShow;
  ctlMappingEditor_.Visible(bShow);
  SetFormVisible(!bShow);
  if (m_bPopulated) timerBlink.Enabled(!bShow);
}

void ctlProfile::cmdBrowse_Click() {
  ui::ShowMessage("Make sure the application that you want to recognized is running before continuing",
                  ui::MessageIcon::kInformation);
  frmClassBrowser browser;
  browser.sWindowClass(txtWindowClass.Text());
  browser.sWindowTitle(txtWindowTitle.Text());
  browser.ShowModal(ParentForm());
  if (browser.bCancel()) return;
  txtWindowClass.Text(browser.sWindowClass());
  txtWindowTitle.Text(browser.sWindowTitle());
  chkEnabled.Checked(!browser.sWindowClass().empty() || !browser.sWindowTitle().empty());
}

bool ctlProfile::HasMoreThanTheGrid() const {
  return m_Profile->ccMappings().Count() > std::size_t{ctlMappingEditor::kRows};
}

void ctlProfile::cmdMappingAssignments_Click() {
  if (HasMoreThanTheGrid()) {
    ui::ShowMessage("This profile has " + std::to_string(m_Profile->ccMappings().Count()) +
                        " mappings, and the grid edits " + base::ToText(ctlMappingEditor::kRows) +
                        ". They all stay as they are.",
                    ui::MessageIcon::kInformation);
    return;
  }
  ShowMappings(true);
  ctlMappingEditor_.Populate(*m_Profile);
  ctlMappingEditor_.SetFocus();
}

void ctlProfile::ctlMappingEditor_Accept() {
  ShowMappings(false);
  ctlMappingEditor_.Save(*m_Profile);
  cmdAccept.Enabled(true);
  cmdMappingAssignments.SetFocus();
}

void ctlProfile::ctlMappingEditor_Cancel() {
  ShowMappings(false);
  cmdMappingAssignments.SetFocus();
}

void ctlProfile::timerBlink_Timer() {
  m_bBlink = !m_bBlink;
  lblRunning.Visible(m_bBlink &&
                     modWhatsRunning::IsProgramRunning(txtWindowClass.Text(), txtWindowTitle.Text()));
}

void ctlProfile::LayOutAutoActivate() {
  const ui::Twips field = framAutoActivate.Width() - kField - ui::kMargin;
  lblAuto.Move(0, 0, framAutoActivate.Width(), ui::kLineHeight);
  // Boxes without a border have their text where a label has its own.
  txtWindowTitle.Move(kField, lblAuto.Bottom() + ui::kMargin, field, ui::kLineHeight);
  lblWindowTitle.Move(0, txtWindowTitle.Top(), kLabelWidth, ui::kLineHeight);
  txtWindowClass.Move(kField, txtWindowTitle.Bottom() + ui::kMargin, field, ui::kLineHeight);
  lblWindowClass.Move(0, txtWindowClass.Top(), kLabelWidth, ui::kLineHeight);
  cmdBrowse.Move(kField, txtWindowClass.Bottom() + ui::kMargin, kBrowseWidth, ui::kButtonHeight);
  const ui::Twips middle = cmdBrowse.Top() + (ui::kButtonHeight - ui::kLineHeight) / 2;
  chkEnabled.Move(cmdBrowse.Right() + ui::kMargin, middle, kEnableWidth, ui::kLineHeight);
  lblRunning.Move(chkEnabled.Right() + ui::kMargin, middle + ui::kLabelDrop,
                  framAutoActivate.Width() - chkEnabled.Right() - 2 * ui::kMargin, ui::kLineHeight);
}

void ctlProfile::OnResize() {
  SetFormVisible(false);
  ctlMappingEditor_.Visible(false);
  ctlMappingEditor_.Move(0, 0, Width(), Height());
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  const ui::Twips field = ui::kMargin + kField;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  txtName.Move(field, lblTitle.Bottom() + ui::kMargin, Width() - field - ui::kMargin, ui::kLineHeight);
  lblName.Move(ui::kMargin, txtName.Top() + ui::kLabelDrop, kLabelWidth, ui::kLineHeight);
  txtDescription.Move(field, txtName.Bottom() + ui::kMargin, txtName.Width(), ui::kLineHeight);
  lblDescription.Move(ui::kMargin, txtDescription.Top() + ui::kLabelDrop, kLabelWidth, ui::kLineHeight);
  framAutoActivate.Move(ui::kMargin, txtDescription.Bottom() + ui::kMargin, inner + ui::kMargin,
                        3 * (ui::kLineHeight + ui::kMargin) + ui::kButtonHeight);
  LayOutAutoActivate();
  cmdMappingAssignments.Move(field, framAutoActivate.Bottom() + ui::kMargin, kMappingsWidth,
                             ui::kButtonHeight);
  const ui::Twips buttons = std::max(cmdMappingAssignments.Bottom() + ui::kMargin,
                                     Height() - ui::kMargin - ui::kPictureButtonHeight);
  cmdCancel.Move(Width() - ui::kMargin - kButtonWidth, buttons, kButtonWidth, ui::kPictureButtonHeight);
  cmdAccept.Move(cmdCancel.Left() - ui::kMargin - kButtonWidth, buttons, kButtonWidth,
                 ui::kPictureButtonHeight);
  lblHelp.Move(ui::kMargin, buttons, cmdAccept.Left() - 2 * ui::kMargin, ui::kPictureButtonHeight);
  ShowMappings(m_bShowMappings);
}
