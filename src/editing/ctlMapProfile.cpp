#include "editing/ctlMapProfile.h"

#include <algorithm>
#include <initializer_list>
#include <memory>

#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "ui/MessageBox.h"
#include "ui/PageStyle.h"

namespace {

constexpr std::int32_t kKeyF2 = 113;
constexpr ui::ListView::Style kProfileList{.columnHeaders = false, .labelEdit = true};

}  // namespace

ctlMapProfile::ctlMapProfile(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 8100, 6990),
      lblTitle(this, "lblTitle", "Port Forwarding Profiles"),
      tbProfiles(this, "tbProfiles"),
      lvProfiles(this, "lvProfiles", kProfileList),
      lblHelp(this, "lblHelp", "Add, Edit or Delete your profiles here."),
      ctlProfile_(this, "ctlProfile"),
      mnuProfile(this, "mnuProfile", "Profile"),
      mnuRenameProfile(&mnuProfile, "mnuRenameProfile", "&Rename Profile"),
      mnuSpacer1(&mnuProfile, "mnuSpacer1", "-"),
      mnuAddProfile(&mnuProfile, "mnuAddProfile", "&Add Profile"),
      mnuEditProfile(&mnuProfile, "mnuEditProfile", "&Edit Profile..."),
      mnuDeleteProfile(&mnuProfile, "mnuDeleteProfile", "&Delete Profile") {
  HelpContextID(9000);
  lvProfiles.HelpContextID(9000);
  lblTitle.Font(ui::TitleFont());
  lblTitle.Transparent(true);
  lblTitle.ForeColor(modCommon::ColorTitle());
  lblHelp.ForeColor(modCommon::ColorHelpText());
  lvProfiles.ForeColor(modCommon::ColorNavy());
  AddToolButtons();
  ConnectEvents();
  OnResize();
}

void ctlMapProfile::AddToolButtons() {
  ilToolBar.Add(ui::ResourcePicture("EDIT"), "Edit");
  ilToolBar.Add(ui::ResourcePicture("ADD"), "Add");
  ilToolBar.Add(ui::ResourcePicture("DELETE"), "Delete");
  for (const char* sKey : {"Add", "Delete", "Edit"}) {
    tbProfiles.AddButton(sKey, std::string(sKey) + " a Profile", ilToolBar.Get(sKey));
  }
}

void ctlMapProfile::ConnectEvents() {
  tbProfiles.ButtonClick.Connect<&ctlMapProfile::tbProfiles_ButtonClick>(this);
  lvProfiles.DblClick.Connect<&ctlMapProfile::mnuEditProfile_Click>(this);
  lvProfiles.RightButtonUp.Connect([this] { mnuProfile.ShowAsPopup(); });
  lvProfiles.KeyUp.Connect<&ctlMapProfile::lvProfiles_KeyUp>(this);
  lvProfiles.GotFocus.Connect<&ctlMapProfile::lvProfiles_GotFocus>(this);
  lvProfiles.AfterLabelEdit.Connect<&ctlMapProfile::lvProfiles_AfterLabelEdit>(this);
  mnuRenameProfile.Click.Connect<&ctlMapProfile::mnuRenameProfile_Click>(this);
  mnuAddProfile.Click.Connect<&ctlMapProfile::mnuAddProfile_Click>(this);
  mnuEditProfile.Click.Connect<&ctlMapProfile::mnuEditProfile_Click>(this);
  mnuDeleteProfile.Click.Connect<&ctlMapProfile::mnuDeleteProfile_Click>(this);
  ctlProfile_.Accept.Connect<&ctlMapProfile::ctlProfile_Accept>(this);
  ctlProfile_.Cancel.Connect<&ctlMapProfile::CloseProfileEditor>(this);
}

void ctlMapProfile::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  lblHelp.BackColor(color);
  ctlProfile_.BackgroundColor(color);
  lvProfiles.BackColor(ui::ListBackground(color));
}

void ctlMapProfile::Populate() {
  const std::string sEdited = m_bEditing ? SelectedKey() : std::string();
  g_Registry->PopulateMapProfileListView(lvProfiles, false);
  // Accept replaces the selected profile, which must still be the one in the editor.
  if (const auto row = lvProfiles.Find(sEdited)) lvProfiles.Select(*row);
  UpdateToolBar();
}

std::string ctlMapProfile::SelectedKey() const {
  const auto row = lvProfiles.SelectedRow();
  return row ? std::string(lvProfiles.Key(*row)) : std::string();
}

void ctlMapProfile::UpdateToolBar() {
  const bool bSelected = lvProfiles.SelectedRow().has_value();
  tbProfiles.ButtonEnabled("Edit", bSelected);
  tbProfiles.ButtonEnabled("Delete", bSelected);
}

void ctlMapProfile::SetListVisible(bool bVisible) {
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&tbProfiles, &lvProfiles, &lblHelp, &lblTitle}) {
    control->Visible(bVisible);
  }
}

void ctlMapProfile::ShowProfileEditor(bool bShow) {
  m_bEditing = bShow;
  ctlProfile_.Visible(bShow);
  SetListVisible(!bShow);
}

void ctlMapProfile::CloseProfileEditor() {
  ShowProfileEditor(false);
  lvProfiles.SetFocus();
}

void ctlMapProfile::mnuAddProfile_Click() {
  const auto profile = std::make_shared<CMapProfile>();
  profile->sName = "New Profile";
  g_Registry->AddMapProfile(profile, &lvProfiles);
  ProfileChange.Raise();
  UpdateToolBar();
  mnuEditProfile_Click();
}

void ctlMapProfile::mnuEditProfile_Click() {
  const std::string sKey = SelectedKey();
  if (sKey.empty()) return;
  ctlProfile_.Populate(*g_Registry->GetMapProfileByKey(sKey));
  ShowProfileEditor(true);
  ctlProfile_.SetFocus();
}

void ctlMapProfile::ctlProfile_Accept() {
  const std::string sKey = SelectedKey();
  if (sKey.empty()) return;
  const auto stored = g_Registry->GetMapProfileByKey(sKey);
  const auto edited = ctlProfile_.Save();
  g_Registry->RemoveMapProfile(stored->sKey(), &lvProfiles);
  g_Registry->AddMapProfile(edited, &lvProfiles);
  if (const auto row = lvProfiles.SelectedRow()) lvProfiles.Text(*row, 0, edited->sName);
  CloseProfileEditor();
  ProfileChange.Raise();
}

void ctlMapProfile::mnuDeleteProfile_Click() {
  const auto row = lvProfiles.SelectedRow();
  if (!row) return;
  const std::string sKey = SelectedKey();
  const auto answer =
      ui::ShowMessage("Are you sure you want to delete \"" + ui::ForMessage(lvProfiles.Text(*row)) + "\"",
                      ui::MessageIcon::kWarning, ui::MessageButtons::kYesNo);
  if (answer != ui::MessageResult::kYes) return;
  g_Registry->RemoveMapProfile(sKey, &lvProfiles);
  // The row that took the place is at hand for the next command.
  if (lvProfiles.RowCount() > 0) lvProfiles.Select(std::min(*row, lvProfiles.RowCount() - 1));
  ProfileChange.Raise();
  UpdateToolBar();
}

void ctlMapProfile::mnuRenameProfile_Click() {
  if (const auto row = lvProfiles.SelectedRow()) lvProfiles.StartLabelEdit(*row);
}

void ctlMapProfile::lvProfiles_AfterLabelEdit(bool&, const std::string& sKey, const std::string& sNewText) {
  const auto profile = g_Registry->GetMapProfileByKey(sKey);
  profile->sName = sNewText;
  g_Registry->RemoveMapProfile(sKey, nullptr);
  g_Registry->AddMapProfile(profile, nullptr);
  ProfileChange.Raise();
}

void ctlMapProfile::tbProfiles_ButtonClick(const std::string& sKey) {
  if (sKey == "Add") {
    mnuAddProfile_Click();
  } else if (sKey == "Delete") {
    mnuDeleteProfile_Click();
  } else if (sKey == "Edit") {
    mnuEditProfile_Click();
  }
}

void ctlMapProfile::lvProfiles_KeyUp(std::int32_t iKey) {
  if (iKey == kKeyF2) mnuRenameProfile_Click();
}

void ctlMapProfile::lvProfiles_GotFocus() {
  if (const auto row = lvProfiles.SelectedRow()) lvProfiles.EnsureVisible(*row);
}

void ctlMapProfile::OnResize() {
  SetListVisible(false);
  ctlProfile_.Visible(false);
  ctlProfile_.Move(0, 0, Width(), Height());
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, inner, ui::kTitleHeight);
  tbProfiles.Move(ui::kMargin, lblTitle.Bottom() + ui::kMargin, inner, ui::kButtonHeight);
  lblHelp.Move(ui::kMargin, Height() - ui::kMargin - ui::kLineHeight, inner, ui::kLineHeight);
  const ui::Twips top = tbProfiles.Bottom() + ui::kMargin;
  lvProfiles.Move(ui::kMargin, top, inner, lblHelp.Top() - ui::kMargin - top);
  ShowProfileEditor(m_bEditing);
}
