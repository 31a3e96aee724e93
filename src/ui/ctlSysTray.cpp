#include "ui/ctlSysTray.h"

ctlSysTray::ctlSysTray(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 4800, 3600),
      lblSysTray(this, "lblSysTray", "SysTray", ui::Alignment::kCenter),
      m_frmTray(std::make_unique<frmSysTray>()) {
  Visible(false);
  OnResize();
  m_frmTray->LeftButtonClick.Connect<&ctlSysTray::m_frmTray_LeftButtonClick>(this);
  m_frmTray->RightButtonClick.Connect<&ctlSysTray::m_frmTray_RightButtonClick>(this);
  m_frmTray->LeftButtonDoubleClick.Connect<&ctlSysTray::m_frmTray_LeftButtonDoubleClick>(this);
  m_frmTray->RightButtonDoubleClick.Connect<&ctlSysTray::m_frmTray_RightButtonDoubleClick>(this);
}

ctlSysTray::~ctlSysTray() {
  OnEnd();
}

void ctlSysTray::OnResize() {
  lblSysTray.Move(0, 0, Width(), Height());
}

void ctlSysTray::OnEnd() {
  if (m_frmTray) m_frmTray->Unload();
}
