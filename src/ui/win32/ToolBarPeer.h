#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <string>
#include <vector>

#include "ui/win32/ChildWindow.h"

namespace ui {
class ToolBar;
}

namespace ui::win32 {

/// The tips are the buttons' texts, so that they are read out too. The bar is one stop of the tab key; in it
/// the arrow keys go from button to button, and Enter and the blank press.
class ToolBarPeer : public ChildPeer<> {
 public:
  ToolBarPeer(ToolBar& bar, Surroundings& surroundings);

  void ScaleChanged() override;

 protected:
  void Show(Aspect aspect) override;
  void Sync() override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnCommand(WORD code, WORD id) override;
  LRESULT OnNotify(NMHDR& header) override;

 private:
  struct ImageListDeleter {
    void operator()(HIMAGELIST list) const { ImageList_Destroy(list); }
  };
  using NativeImageList = std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, ImageListDeleter>;

  int PictureSide() const;
  void SyncButtons();
  void AddButton(int position);
  bool IsEnabled(int position) const;
  /// Moves on from the position by the step to the next button that can be pressed; stays where there is
  /// none.
  void Go(int from, int step);
  void SetCurrent(int position);
  /// True when the key was one of the bar's own.
  bool OnKey(WPARAM key);
  void OnTip(const NMTBGETINFOTIPA& tip) const;
  LRESULT OnDraw(const NMTBCUSTOMDRAW& draw) const;

  ToolBar& bar_;
  NativeImageList pictures_;
  /// The keys of the buttons as the native bar shows them.
  std::vector<std::string> keys_;
  bool buttonsStale_ = true;
  /// The button that the keyboard has reached.
  int current_ = 0;
};

}  // namespace ui::win32
