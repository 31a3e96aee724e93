#pragma once

#include <memory>
#include <string>

#include "editing/ctlMappingEditor.h"
#include "model/CMapProfile.h"
#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Frame.h"
#include "ui/Label.h"
#include "ui/TextBox.h"
#include "ui/Timer.h"
#include "ui/UserControl.h"

/// The form of one profile. It works on a copy, so that the profile stays as it was until the host takes what
/// Save gives. The grid of the mappings takes the form's place while it is open.
class ctlProfile : public ui::UserControl {
 public:
  ctlProfile(ui::Control* parent, std::string name);

  base::Event<> Accept;
  base::Event<> Cancel;

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  void Populate(const CMapProfile& MapProfile);
  /// The copy with what the form holds. A Populate has come before.
  std::shared_ptr<CMapProfile> Save();
  /// To the first box.
  void SetFocus() { txtName.SetFocus(); }

 protected:
  void OnResize() override;

 private:
  void SetFormVisible(bool bVisible);
  void ShowMappings(bool bShow);
  void LayOutAutoActivate();
  bool HasMoreThanTheGrid() const;
  void EnableAccept() { cmdAccept.Enabled(true); }
  void cmdBrowse_Click();
  void cmdMappingAssignments_Click();
  void ctlMappingEditor_Accept();
  void ctlMappingEditor_Cancel();
  void timerBlink_Timer();

  ui::Label lblTitle;
  ui::Label lblName;
  ui::TextBox txtName;
  ui::Label lblDescription;
  ui::TextBox txtDescription;
  ui::Frame framAutoActivate;
  ui::Label lblAuto;
  ui::Label lblWindowTitle;
  ui::TextBox txtWindowTitle;
  ui::Label lblWindowClass;
  ui::TextBox txtWindowClass;
  ui::Button cmdBrowse;
  ui::CheckBox chkEnabled;
  ui::Label lblRunning;
  ui::Button cmdMappingAssignments;
  ui::Label lblHelp;
  ui::Button cmdAccept;
  ui::Button cmdCancel;
  ui::Timer timerBlink;
  ctlMappingEditor ctlMappingEditor_;

  std::shared_ptr<CMapProfile> m_Profile;
  bool m_bShowMappings = false;
  bool m_bPopulated = false;
  /// Flips at every tick.
  bool m_bBlink = false;
};
