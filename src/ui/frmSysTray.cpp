#include "ui/frmSysTray.h"

#include <algorithm>
#include <utility>

#include "platform/Machine.h"
#include "ui/Toolkit.h"

namespace {

// The area's record says which of its fields count and which message reports the mouse. The message is the
// one of an ordinary mouse move, which brings the mouse's action as the x coordinate.
constexpr std::uint32_t kRecordSize = 88;
constexpr std::uint32_t kMessageIconAndTip = 1 | 2 | 4;
constexpr std::uint32_t kMouseMove = 0x200;

constexpr float kLeftButtonUp = 514;
constexpr float kLeftButtonDoubleClick = 515;
constexpr float kRightButtonUp = 517;
constexpr float kRightButtonDoubleClick = 518;

constexpr ui::Form::Style kHiddenWindow{.minimiseAndMaximise = false, .inTaskBar = false};

}  // namespace

frmSysTray::frmSysTray() : Form("frmSysTray", "Form1", kHiddenWindow, 4680, 3090) {
  MouseMove.Connect<&frmSysTray::Callback>(this);
  ShellRestarted.Connect<&frmSysTray::AddAgain>(this);
}

void frmSysTray::TrayIcon(ui::PictureRef icon) {
  Icon(std::move(icon));
  Update();
}

ui::PictureRef frmSysTray::TrayIcon() {
  Icon(Icon());
  return nullptr;
}

void frmSysTray::ToolTip(std::string sToolTip) {
  sToolTip_ = std::move(sToolTip);
  Update();
}

void frmSysTray::OnLoad() {
  Hide();
}

void frmSysTray::OnUnload() {
  Remove();
}

void frmSysTray::Update() {
  Load();
  record_.hWnd = Handle();
  record_.uID = 0;
  record_.uFlags = kMessageIconAndTip;
  record_.uCallbackMessage = kMouseMove;
  record_.hIcon = ui::TheInterface().screen->SmallIcon(Icon());
  // The tip and its terminator, padded with blanks; a longer tip fills the field and has no terminator.
  record_.szTip.fill(' ');
  std::copy_n(sToolTip_.c_str(), std::min(sToolTip_.size() + 1, record_.szTip.size()), record_.szTip.begin());
  record_.cbSize = kRecordSize;
  // Noted before the call: the shell lets a click through meanwhile, and that click may end the program.
  const bool known = std::exchange(added_, true);
  platform::TheMachine().notificationArea->ShellNotifyIcon(
      known ? platform::NotifyIconMessage::kModify : platform::NotifyIconMessage::kAdd, record_);
}

void frmSysTray::Remove() {
  if (!added_) return;
  platform::TheMachine().notificationArea->ShellNotifyIcon(platform::NotifyIconMessage::kDelete, record_);
  added_ = false;
}

void frmSysTray::Callback(float x, float) {
  const float message = x / ui::TheInterface().screen->TwipsPerPixelX();
  if (message == kLeftButtonUp) LeftButtonClick.Raise();
  if (message == kLeftButtonDoubleClick) LeftButtonDoubleClick.Raise();
  if (message == kRightButtonUp) RightButtonClick.Raise();
  if (message == kRightButtonDoubleClick) RightButtonDoubleClick.Raise();
}

void frmSysTray::AddAgain() {
  // The shell has restarted and knows nothing of the icon that it showed.
  if (!added_) return;
  added_ = false;
  Update();
}
