#pragma once

#include <windows.h>

#include <optional>
#include <set>

#include "ui/Peer.h"
#include "ui/win32/ModalBlock.h"
#include "ui/win32/OwnWindow.h"
#include "ui/win32/Scale.h"

namespace ui {
class Form;
}

namespace ui::win32 {

struct Surroundings;

/// The top-level window of a form.
class FormPeer : public Peer, public OwnWindow {
 public:
  FormPeer(Form& form, Surroundings& surroundings);
  ~FormPeer() override;

  void Changed(Aspect aspect) override;
  /// Brings the window in front of all others.
  void SetFocus() override;
  void DragByMouse() override;
  float TwipsPerPixel() const override;
  std::uintptr_t Handle() const override { return reinterpret_cast<std::uintptr_t>(Window()); }

  /// The scale of the monitor that the window stands on.
  Scale GetScale() const { return scale_; }

  void Block(const ModalBlock& block);
  void Unblock(const ModalBlock& block);

 protected:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void ShowIt();
  void HideIt();
  /// Where the window stands when it is shown for the first time.
  void Place();
  void ApplyBounds();
  /// To that place of the screen, in pixels, with the form's inner size.
  void MoveTo(LONG left, LONG top, UINT flags);
  void ApplyIcon();
  void ApplyShape();
  void ApplyEnabled();
  void AttachToOwner();
  void ReleaseOwnedWindows();

  void OnSize(WPARAM kind);
  void OnMove();
  void OnScale(Scale scale, const RECT& suggested);
  void OnCommand(WPARAM wParam);
  void RestoreFocus();
  LRESULT DefaultButton() const;

  SIZE InnerSize() const;
  void TellBounds();

  Form& form_;
  Surroundings& surroundings_;
  std::optional<ModalBlock> modalBlock_;
  std::set<const ModalBlock*> blocks_;
  HWND lastFocus_ = nullptr;
  /// Inner size as the form knows it.
  SIZE size_{};
  Scale scale_ = Scale::OfScreen();
  bool placed_ = false;
  /// While the peer itself moves the window.
  bool writing_ = false;
};

}  // namespace ui::win32
