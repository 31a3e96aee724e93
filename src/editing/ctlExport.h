#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/UserControl.h"
#include "ui/ctlFileBrowseButton.h"

/// The page that writes the ticked profiles to a file, or reads profiles from one.
class ctlExport : public ui::UserControl {
 public:
  ctlExport(ui::Control* parent, std::string name);

  /// After an import.
  base::Event<> MapProfileChange;

  /// 0 for export, 1 for import; the host writes it each time before it shows the page. It is read from what
  /// the button asks for, which an export without profiles leaves as it was.
  std::int32_t TransferType() const;
  void TransferType(std::int32_t lType);

  using UserControl::BackgroundColor;
  void BackgroundColor(ui::Color color) override;

  /// Fills the list anew, without ticks.
  void Populate();

 protected:
  void OnResize() override;

 private:
  bool IsExportWithoutProfiles() const;
  void SetButton(std::int32_t lBrowseType, const char* sCaption, const char* sDialogTitle);
  void SetControlsVisible(bool bVisible);
  void UpdateButton();
  std::vector<std::string> TickedKeys() const;
  void lvProfiles_GotFocus();
  void cmdExecute_BrowseComplete();

  ui::Label lblTitle;
  ui::ListView lvProfiles;
  ui::Label lblError;
  ctlFileBrowseButton cmdExecute;
  ui::Label lblHelp;
  std::int32_t m_lTransferType = 0;
};
