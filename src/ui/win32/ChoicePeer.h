#pragma once

#include "ui/win32/ChildWindow.h"

namespace ui {
class Choice;
}

namespace ui::win32 {

/// A combo box or a list box, which take the same calls under different numbers.
class ChoicePeer : public ChildPeer<> {
 public:
  ChoicePeer(Choice& choice, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;
  void Sync() override;
  RECT NativeBounds() const override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnCommand(WORD code, WORD id) override;
  COLORREF DefaultGround() const override { return GetSysColor(COLOR_WINDOW); }

 private:
  struct Messages;

  void ReportSelection();
  void OnDropDown(WORD code);

  Choice& choice_;
  const Messages& messages_;
  bool itemsStale_ = true;
  /// The list of the combo box is open.
  bool open_ = false;
  /// The choice in the list that is or was open has been reported.
  bool reported_ = false;
};

}  // namespace ui::win32
