#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ui/Control.h"

namespace ui {

/// Nodes of two or more levels, each found by its key. Choosing a node raises NodeClick only when the user
/// does it.
class TreeView : public Control {
 public:
  struct Node {
    std::string key;
    std::string text;
    /// Key of the node above it, empty at the root.
    std::string parent;
    bool bold = false;
    bool expanded = false;
    Color color = kDefaultColor;
  };

  TreeView(Control* parent, std::string name);

  /// A taken key and an unknown parent are failures.
  void AddNode(Node node);
  void Clear();
  const std::vector<Node>& Nodes() const { return nodes_; }
  bool Contains(std::string_view key) const { return Find(key) != nullptr; }
  /// The selected node's key, empty for none.
  const std::string& SelectedKey() const { return selectedKey_; }
  /// An unknown key is a failure.
  void SelectedKey(std::string_view key);

  base::Event<> NodeClick;

  void UserSelect(std::string_view key);
  void UserExpand(std::string_view key, bool expanded);

 private:
  const Node* Find(std::string_view key) const;

  std::vector<Node> nodes_;
  std::string selectedKey_;
};

}  // namespace ui
