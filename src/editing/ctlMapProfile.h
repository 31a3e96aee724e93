#pragma once

#include <string>

#include "editing/ctlProfile.h"
#include "ui/ImageList.h"
#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/Menu.h"
#include "ui/ToolBar.h"
#include "ui/UserControl.h"

/// The page that lists the profiles, on which they come and go. The editor of one profile takes the list's
/// place while it is open.
class ctlMapProfile : public ui::UserControl {
 public:
  ctlMapProfile(ui::Control* parent, std::string name);

  /// After any change to the set of profiles.
  base::Event<> ProfileChange;

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  /// An open editor stays open.
  void Populate();

 protected:
  void OnResize() override;

 private:
  void ConnectEvents();
  void AddToolButtons();
  /// The key of the selected row's profile, empty for none.
  std::string SelectedKey() const;
  void UpdateToolBar();
  void SetListVisible(bool bVisible);
  void ShowProfileEditor(bool bShow);
  void CloseProfileEditor();
  void mnuAddProfile_Click();
  void mnuEditProfile_Click();
  void mnuDeleteProfile_Click();
  void mnuRenameProfile_Click();
  void tbProfiles_ButtonClick(const std::string& sKey);
  void lvProfiles_KeyUp(std::int32_t iKey);
  void lvProfiles_GotFocus();
  void lvProfiles_AfterLabelEdit(bool& bCancel, const std::string& sKey, const std::string& sNewText);
  void ctlProfile_Accept();

  ui::Label lblTitle;
  ui::ToolBar tbProfiles;
  ui::ListView lvProfiles;
  ui::Label lblHelp;
  ctlProfile ctlProfile_;
  ui::ImageList ilToolBar;
  ui::Menu mnuProfile;
  ui::Menu mnuRenameProfile;
  ui::Menu mnuSpacer1;
  ui::Menu mnuAddProfile;
  ui::Menu mnuEditProfile;
  ui::Menu mnuDeleteProfile;
  /// The editor shows.
  bool m_bEditing = false;
};
