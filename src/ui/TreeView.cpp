#include "ui/TreeView.h"

#include "base/Error.h"

namespace ui {

TreeView::TreeView(Control* parent, std::string name) : Control(Kind::kTreeView, parent, std::move(name)) {}

void TreeView::AddNode(Node node) {
  if (Contains(node.key)) {
    throw base::Error(base::ErrorNumber::kKeyTaken,
                      "This key is already associated with a node: \"" + node.key + "\"");
  }
  if (!node.parent.empty() && !Contains(node.parent)) {
    throw base::Error(base::ErrorNumber::kKeyUnknown,
                      "There is no node with the key \"" + node.parent + "\"");
  }
  nodes_.push_back(std::move(node));
  Notify(Aspect::kItems);
}

void TreeView::Clear() {
  nodes_.clear();
  selectedKey_.clear();
  Notify(Aspect::kItems);
}

void TreeView::SelectedKey(std::string_view key) {
  if (!Contains(key)) {
    throw base::Error(base::ErrorNumber::kKeyUnknown,
                      "There is no node with the key \"" + std::string(key) + "\"");
  }
  if (key == selectedKey_) return;
  selectedKey_ = key;
  Notify(Aspect::kSelection);
}

void TreeView::UserSelect(std::string_view key) {
  if (!Contains(key)) return;
  selectedKey_ = key;
  FromUser("NodeClick", [this] { NodeClick.Raise(); });
}

void TreeView::UserExpand(std::string_view key, bool expanded) {
  for (Node& node : nodes_) {
    if (node.key == key) node.expanded = expanded;
  }
}

const TreeView::Node* TreeView::Find(std::string_view key) const {
  for (const Node& node : nodes_) {
    if (node.key == key) return &node;
  }
  return nullptr;
}

}  // namespace ui
