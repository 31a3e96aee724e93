#include "setup/ctlAbout.h"

#include <algorithm>

#include "base/Conversions.h"
#include "setup/modSystem.h"
#include "shell/modCommon.h"
#include "ui/PageStyle.h"
#include "ui/modControlHelper.h"

namespace {

constexpr const char* kWebSite = "https://harbourline.example/";
constexpr const char* kContact =
    "\r\nQuestions, ideas and plug-ins are "
    "welcome:\r\nhttps://harbourline.example/\r\nhello@harbourline.example\r\n";

constexpr ui::Twips kLogo = 480;
constexpr ui::Twips kButtonWidth = 2400;
constexpr ui::Twips kButtonHeight = 450;

}  // namespace

ctlAbout::ctlAbout(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 8145, 5700),
      imgLogo(this, "imgLogo", ui::ResourcePicture("HARBOURLINE")),
      lblTitle(this, "lblTitle", "About"),
      rtInfo(this, "rtInfo"),
      cmdGoToWebSite(this, "cmdGoToWebSite", "&Go to Website") {
  lblTitle.Font(ui::TitleFont());
  lblTitle.ForeColor(modCommon::ColorTitle());
  rtInfo.Font({"MS Sans Serif", 9.75, false});
  rtInfo.Text(std::string());
  modControlHelper::AddRichText(rtInfo, "Harbourline", true, ui::kBlack);
  modControlHelper::AddRichText(rtInfo,
                                " Version " + base::ToText(modCommon::MajorVersion()) + "." +
                                    base::ToText(modCommon::MinorVersion()) + "\r\n",
                                false, ui::kBlack);
  modControlHelper::AddRichText(rtInfo, kContact, false, ui::kBlack);
  cmdGoToWebSite.Click.Connect([] { modSystem::OpenWebAddress(kWebSite); });
  OnResize();
}

void ctlAbout::BackgroundColor(ui::Color color) {
  UserControl::BackgroundColor(color);
  lblTitle.BackColor(color);
  rtInfo.BackColor(color);
}

void ctlAbout::OnResize() {
  imgLogo.Move(ui::kMargin, ui::kMargin, kLogo, kLogo);
  const ui::Twips left = imgLogo.Right() + ui::kMargin;
  lblTitle.Move(left, ui::kMargin, Width() - left - ui::kMargin, ui::kTitleHeight);
  cmdGoToWebSite.Move((Width() - kButtonWidth) / 2, Height() - ui::kMargin - kButtonHeight, kButtonWidth,
                      kButtonHeight);
  const ui::Twips top = lblTitle.Bottom() + ui::kMargin;
  rtInfo.Move(ui::kMargin, top, Width() - 2 * ui::kMargin,
              std::max(0, cmdGoToWebSite.Top() - ui::kMargin - top));
}
