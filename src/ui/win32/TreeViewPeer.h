#pragma once

#include <windows.h>

#include <commctrl.h>

#include <map>
#include <string>
#include <vector>

#include "ui/Color.h"
#include "ui/win32/ChildWindow.h"

namespace ui {
class TreeView;
}

namespace ui::win32 {

/// The user's choice is told when the native tree is done with the key or the click that made it, so that a
/// handler may build the nodes anew.
class TreeViewPeer : public ChildPeer<> {
 public:
  TreeViewPeer(TreeView& tree, Surroundings& surroundings);

 protected:
  void Show(Aspect aspect) override;
  void Sync() override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  LRESULT OnNotify(NMHDR& header) override;
  COLORREF DefaultGround() const override { return GetSysColor(COLOR_WINDOW); }

 private:
  /// A node as the native tree shows it.
  struct Shown {
    std::string key;
    Color color;
    HTREEITEM item;
  };

  void ShowColors();
  void SyncNodes();
  void SyncSelection();
  const Shown* At(LPARAM position) const;
  HTREEITEM SelectedItem() const;
  LPARAM PositionOf(HTREEITEM item) const;
  /// The item whose picture or text lies under the place, null for none.
  HTREEITEM ItemAt(LPARAM place) const;
  LRESULT OnDraw(NMTVCUSTOMDRAW& draw) const;

  TreeView& tree_;
  /// In the order of the control's nodes; an item's own parameter is its position here.
  std::vector<Shown> shown_;
  bool nodesStale_ = true;
  bool writing_ = false;
  /// How many messages are being handled, one within the other.
  int depth_ = 0;
  bool chosen_ = false;
};

}  // namespace ui::win32
