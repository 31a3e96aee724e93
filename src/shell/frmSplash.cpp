#include "shell/frmSplash.h"

#include "base/Conversions.h"
#include "base/Error.h"
#include "ui/Toolkit.h"

namespace {

constexpr ui::Form::Style kTitleWindow{
    .border = false, .resizable = false, .minimiseAndMaximise = false, .inTaskBar = false};
constexpr std::int32_t kMillisecondsPerSecond = 1000;

}  // namespace

frmSplash::frmSplash()
    : Form("frmSplash", "Splash", kTitleWindow, 7485, 5625), tmSplash(this, "tmSplash"), Skin(this, "Skin") {
  Skin.ReadProperties({{"PictureSkin", ui::TheInterface().screen->Resource("TITLE")}});
  tmSplash.Tick.Connect<&frmSplash::tmSplash_Timer>(this);
}

void frmSplash::SetTimer(std::int16_t iSeconds) {
  const std::int32_t milliseconds = iSeconds * kMillisecondsPerSecond;
  if (milliseconds != static_cast<std::int16_t>(milliseconds)) throw base::Overflow(base::ToText(iSeconds));
  tmSplash.Interval(milliseconds);
  tmSplash.Enabled(true);
}

frmSplash& frmSplash::Shared() {
  static frmSplash splash;
  return splash;
}

void frmSplash::tmSplash_Timer() {
  tmSplash.Enabled(false);
  Unload();
}
