#include "ui/win32/TreeViewPeer.h"

#include <windowsx.h>

#include "ui/TreeView.h"

namespace ui::win32 {
namespace {

constexpr DWORD kStyle =
    TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_DISABLEDRAGDROP;

}  // namespace

TreeViewPeer::TreeViewPeer(TreeView& tree, Surroundings& surroundings)
    : ChildPeer(tree, surroundings), tree_(tree) {
  CreateNative(WC_TREEVIEWA, kStyle, WS_EX_CLIENTEDGE, std::string());
  Send(TVM_SETEXTENDEDSTYLE, TVS_EX_DOUBLEBUFFER, TVS_EX_DOUBLEBUFFER);
  ShowColors();
  SyncLater();
}

void TreeViewPeer::Show(Aspect aspect) {
  switch (aspect) {
    case Aspect::kColors:
      ShowColors();
      break;
    case Aspect::kItems:
      nodesStale_ = true;
      SyncLater();
      break;
    case Aspect::kSelection:
      SyncLater();
      break;
    default:
      ChildPeer::Show(aspect);
      break;
  }
}

void TreeViewPeer::ShowColors() {
  Send(TVM_SETBKCOLOR, 0, static_cast<LPARAM>(Ground()));
  Send(TVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(TextColor()));
  InvalidateRect(Window(), nullptr, TRUE);
}

void TreeViewPeer::Sync() {
  const Writing writing(writing_);
  const DrawingPause pause(Window());
  if (nodesStale_) SyncNodes();
  SyncSelection();
}

void TreeViewPeer::SyncNodes() {
  nodesStale_ = false;
  Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
  shown_.clear();
  std::map<std::string, HTREEITEM, std::less<>> items;
  for (const TreeView::Node& node : tree_.Nodes()) {
    std::string text = node.text;
    TVINSERTSTRUCTA insert{};
    insert.hParent = node.parent.empty() ? TVI_ROOT : items[node.parent];
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_STATE | TVIF_PARAM;
    insert.item.pszText = text.data();
    insert.item.stateMask = TVIS_BOLD;
    insert.item.state = node.bold ? TVIS_BOLD : 0u;
    insert.item.lParam = static_cast<LPARAM>(shown_.size());
    const auto item = Send<std::intptr_t>(TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insert));
    shown_.push_back({node.key, node.color, reinterpret_cast<HTREEITEM>(item)});
    items[node.key] = shown_.back().item;
  }
  // An item opens only when it has children.
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    if (tree_.Nodes()[i].expanded) Send(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(shown_[i].item));
  }
}

void TreeViewPeer::SyncSelection() {
  HTREEITEM item = nullptr;
  for (const Shown& shown : shown_) {
    if (shown.key == tree_.SelectedKey()) item = shown.item;
  }
  Send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

const TreeViewPeer::Shown* TreeViewPeer::At(LPARAM position) const {
  const auto index = static_cast<std::size_t>(position);
  return index < shown_.size() ? &shown_[index] : nullptr;
}

HTREEITEM TreeViewPeer::SelectedItem() const {
  return reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_CARET));
}

LPARAM TreeViewPeer::PositionOf(HTREEITEM item) const {
  TVITEMA read{};
  read.mask = TVIF_PARAM;
  read.hItem = item;
  return Send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&read)) ? read.lParam : -1;
}

HTREEITEM TreeViewPeer::ItemAt(LPARAM place) const {
  TVHITTESTINFO hit{};
  hit.pt = {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
  Send(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  return (hit.flags & TVHT_ONITEM) != 0 ? hit.hItem : nullptr;
}

LRESULT TreeViewPeer::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = Window();
  // A click on the node that is selected already is a choice too, and the native tree tells nothing of it.
  if (message == WM_LBUTTONDOWN && ItemAt(lParam) && ItemAt(lParam) == SelectedItem()) chosen_ = true;
  ++depth_;
  const LRESULT result = PassOn(message, wParam, lParam);
  if (!IsAlive(window, this)) return result;
  if (--depth_ > 0 || !chosen_) return result;
  chosen_ = false;
  // A copy, since the handler may change the nodes.
  if (const Shown* shown = At(PositionOf(SelectedItem()))) tree_.UserSelect(std::string(shown->key));
  return result;
}

LRESULT TreeViewPeer::OnNotify(NMHDR& header) {
  switch (header.code) {
    case TVN_SELCHANGEDA:
      if (!writing_) chosen_ = true;
      return 0;
    case TVN_ITEMEXPANDEDA: {
      const auto& change = reinterpret_cast<const NMTREEVIEWA&>(header);
      const Shown* shown = writing_ ? nullptr : At(change.itemNew.lParam);
      if (shown) tree_.UserExpand(shown->key, (change.itemNew.state & TVIS_EXPANDED) != 0);
      return 0;
    }
    case NM_CUSTOMDRAW:
      return OnDraw(reinterpret_cast<NMTVCUSTOMDRAW&>(header));
    default:
      return 0;
  }
}

LRESULT TreeViewPeer::OnDraw(NMTVCUSTOMDRAW& draw) const {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  const Shown* shown = At(draw.nmcd.lItemlParam);
  const bool selected = (draw.nmcd.uItemState & CDIS_SELECTED) != 0;
  // A selected node keeps the machine's own pair of colours.
  if (shown && shown->color != kDefaultColor && !selected) draw.clrText = static_cast<COLORREF>(shown->color);
  return CDRF_DODEFAULT;
}

}  // namespace ui::win32
