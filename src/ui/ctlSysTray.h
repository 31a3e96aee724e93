#pragma once

#include <memory>
#include <string>

#include "ui/Label.h"
#include "ui/UserControl.h"
#include "ui/frmSysTray.h"

/// The icon in the notification area, as a control that a window places on itself. It isn't seen at run time.
class ctlSysTray : public ui::UserControl {
 public:
  ctlSysTray(ui::Control* parent, std::string name);
  ~ctlSysTray() override;

  ui::PictureRef Icon() { return m_frmTray->TrayIcon(); }
  void Icon(ui::PictureRef icon) { m_frmTray->TrayIcon(std::move(icon)); }
  const std::string& ToolTip() const { return m_frmTray->ToolTip(); }
  void ToolTip(std::string sToolTip) { m_frmTray->ToolTip(std::move(sToolTip)); }

  base::Event<> LeftButtonClick;
  base::Event<> RightButtonClick;
  base::Event<> LeftButtonDoubleClick;
  base::Event<> RightButtonDoubleClick;

 protected:
  void OnResize() override;
  void OnEnd() override;

 private:
  void m_frmTray_LeftButtonClick() { LeftButtonClick.Raise(); }
  void m_frmTray_RightButtonClick() { RightButtonClick.Raise(); }
  void m_frmTray_LeftButtonDoubleClick() { LeftButtonDoubleClick.Raise(); }
  void m_frmTray_RightButtonDoubleClick() { RightButtonDoubleClick.Raise(); }

  ui::Label lblSysTray;
  std::unique_ptr<frmSysTray> m_frmTray;
};
