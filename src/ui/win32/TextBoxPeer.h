#pragma once

#include "ui/win32/ChildWindow.h"

namespace ui {
class TextBox;
}

namespace ui::win32 {

class TextBoxPeer : public ChildPeer<> {
 public:
  TextBoxPeer(TextBox& box, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnCommand(WORD code, WORD id) override;
  COLORREF DefaultGround() const override { return GetSysColor(COLOR_WINDOW); }

 private:
  void ShowSelection();
  void ReadSelection();
  LRESULT KeysWanted(LRESULT answer, const MSG* message) const;

  TextBox& box_;
  bool writing_ = false;
};

}  // namespace ui::win32
