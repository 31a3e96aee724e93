#include "shell/ctlWindowStartup.h"

#include <algorithm>

#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "ui/PageStyle.h"
#include "ui/modControlHelper.h"

namespace {

constexpr ui::Twips kLabelWidth = 1400;
constexpr ui::Twips kFieldWidth = 3000;

constexpr std::int32_t kActivityLights = 1;
constexpr std::int32_t kSpeedBar = 2;
constexpr std::int32_t kLogo = 3;

}  // namespace

ctlWindowStartup::ctlWindowStartup(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 7140, 3600),
      lblTitle(this, "lblTitle", "Windows Configuration"),
      chkLoadOnStartup(this, "chkLoadOnStartup", "&Load on Startup"),
      chkShowSplash(this, "chkShowSplash", "&Show Title Window on Startup"),
      lblSystemTray(this, "lblSystemTray", "System Tray:"),
      cbSystemTray(this, "cbSystemTray") {
  HelpContextID(4000);
  lblTitle.Font(ui::TitleFont());
  lblTitle.Transparent(true);
  lblSystemTray.Transparent(true);
  cbSystemTray.ForeColor(ui::kValueColor);
  chkLoadOnStartup.Click.Connect<&ctlWindowStartup::chkLoadOnStartup_Click>(this);
  chkShowSplash.Click.Connect<&ctlWindowStartup::chkShowSplash_Click>(this);
  cbSystemTray.Click.Connect<&ctlWindowStartup::cbSystemTray_Click>(this);
  Initialize();
  lblTitle.ForeColor(modCommon::ColorTitle());
  OnResize();
}

void ctlWindowStartup::Initialize() {
  m_bInitializing = true;
  chkLoadOnStartup.Checked(g_Registry->LoadOnStartup);
  chkShowSplash.Checked(g_Registry->ShowSplashOnStartup);
  cbSystemTray.Clear();
  modControlHelper::AddComboItem(cbSystemTray, "Activity Lights", kActivityLights);
  modControlHelper::AddComboItem(cbSystemTray, "Speed Bar", kSpeedBar);
  modControlHelper::AddComboItem(cbSystemTray, "Logo (nothing blinks)", kLogo);
  modControlHelper::SelectComboItemData(cbSystemTray, g_Registry->TrayLights);
  m_bInitializing = false;
}

void ctlWindowStartup::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  chkLoadOnStartup.BackColor(color);
  chkShowSplash.BackColor(color);
}

void ctlWindowStartup::chkLoadOnStartup_Click() {
  g_Registry->LoadOnStartup = chkLoadOnStartup.Checked();
}

void ctlWindowStartup::chkShowSplash_Click() {
  g_Registry->ShowSplashOnStartup = chkShowSplash.Checked();
}

void ctlWindowStartup::cbSystemTray_Click() {
  if (m_bInitializing) return;
  g_Registry->TrayLights = static_cast<std::int16_t>(modControlHelper::GetComboItemData(cbSystemTray));
}

void ctlWindowStartup::OnResize() {
  const ui::Twips inner = Width() - 2 * ui::kMargin;
  lblTitle.Move(ui::kMargin, ui::kMargin, Width() - ui::kMargin, ui::kTitleHeight);
  chkLoadOnStartup.Move(ui::kMargin, lblTitle.Bottom() + ui::kMargin, inner, ui::kLineHeight);
  chkShowSplash.Move(ui::kMargin, chkLoadOnStartup.Bottom() + ui::kMargin, inner, ui::kLineHeight);
  const ui::Twips top = chkShowSplash.Bottom() + ui::kMargin;
  lblSystemTray.Move(ui::kMargin, top, kLabelWidth, ui::kLineHeight);
  const ui::Twips field = lblSystemTray.Right() + ui::kMargin;
  cbSystemTray.Move(field, top, std::min(kFieldWidth, Width() - field - ui::kMargin), ui::kLineHeight);
}
