#pragma once

#include <string>

#include "platform/NotificationArea.h"
#include "ui/Form.h"

/// The hidden window behind the icon in the notification area: it holds the area's record, and turns the
/// area's callback into four events. The window's own icon is the icon of the area.
class frmSysTray : public ui::Form {
 public:
  frmSysTray();

  /// Puts the picture into the notification area; the first one adds the icon.
  void TrayIcon(ui::PictureRef icon);
  /// Always an empty picture: only the writing side is of use.
  ui::PictureRef TrayIcon();
  const std::string& ToolTip() const { return sToolTip_; }
  /// The area shows the first 64 characters.
  void ToolTip(std::string sToolTip);

  base::Event<> LeftButtonClick;
  base::Event<> RightButtonClick;
  base::Event<> LeftButtonDoubleClick;
  base::Event<> RightButtonDoubleClick;

 protected:
  void OnLoad() override;
  void OnUnload() override;

 private:
  void Update();
  void Remove();
  void Callback(float x, float y);
  void AddAgain();

  platform::NotifyIconData record_;
  std::string sToolTip_;
  bool added_ = false;
};
