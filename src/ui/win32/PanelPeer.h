#pragma once

#include "ui/win32/ChildWindow.h"

namespace ui::win32 {

/// A frame or a page: a ground for other controls, with a border and a caption where a frame has them. It
/// disappears a moment after its control does: what takes its place is there by then and gets the focus, and
/// one that is shown again at once doesn't flicker.
class PanelPeer : public ChildPeer<> {
 public:
  PanelPeer(Control& control, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Paint();
  void PassFocusIn() const;

  Control& control_;
  bool border_;
};

}  // namespace ui::win32
