#include "ui/TreeView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/RecordingToolkit.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UiTreeView : public support::InterfaceTest {
 protected:
  UiTreeView() : tree(nullptr, "tvTest") {
    tree.AddNode({"Group", "The group", "", true, true, ui::Rgb(51, 153, 102)});
    tree.AddNode({"Page", "A page", "Group"});
    tree.NodeClick.Connect([this] { clicks.push_back(tree.SelectedKey()); });
  }

  ui::TreeView tree;
  /// The selected key at each NodeClick.
  std::vector<std::string> clicks;
};

TEST_F(UiTreeView, KeepsItsNodesInOrder) {
  ASSERT_EQ(tree.Nodes().size(), 2u);
  EXPECT_EQ(tree.Nodes()[0].text, "The group");
  EXPECT_TRUE(tree.Nodes()[0].bold);
  EXPECT_EQ(tree.Nodes()[0].color, ui::Rgb(51, 153, 102));
  EXPECT_EQ(tree.Nodes()[1].parent, "Group");
  EXPECT_FALSE(tree.Nodes()[1].bold);
  EXPECT_TRUE(tree.Contains("Page"));
  EXPECT_FALSE(tree.Contains("page"));
}

TEST_F(UiTreeView, RefusesATakenKeyAndAnUnknownParent) {
  EXPECT_EQ(support::ErrorOf([&] { tree.AddNode({"Page", "Again", ""}); }), base::ErrorNumber::kKeyTaken);
  EXPECT_EQ(support::ErrorOf([&] {
              tree.AddNode({"New", "New", "Nowhere"});
            }),
            base::ErrorNumber::kKeyUnknown);
  EXPECT_EQ(tree.Nodes().size(), 2u);
}

TEST_F(UiTreeView, SelectingByCodeIsNoClick) {
  EXPECT_EQ(tree.SelectedKey(), "");
  tree.SelectedKey("Page");
  EXPECT_EQ(tree.SelectedKey(), "Page");
  EXPECT_THAT(clicks, IsEmpty());
}

TEST_F(UiTreeView, AnUnknownNodeCanNotBeSelected) {
  EXPECT_EQ(support::ErrorTextOf([&] { tree.SelectedKey("Nowhere"); }),
            "There is no node with the key \"Nowhere\"");
  EXPECT_EQ(tree.SelectedKey(), "");
}

TEST_F(UiTreeView, TheUsersChoiceIsAClickEachTime) {
  tree.UserSelect("Page");
  tree.UserSelect("Group");
  tree.UserSelect("Group");
  EXPECT_THAT(clicks, ElementsAre("Page", "Group", "Group"));
}

TEST_F(UiTreeView, AReportOfANodeThatHasGoneIsIgnored) {
  tree.Clear();
  tree.UserSelect("Page");
  tree.UserExpand("Page", true);
  EXPECT_EQ(tree.SelectedKey(), "");
  EXPECT_THAT(clicks, IsEmpty());
}

TEST_F(UiTreeView, RemembersWhatTheUserExpands) {
  tree.UserExpand("Group", false);
  EXPECT_FALSE(tree.Nodes()[0].expanded);
  tree.UserExpand("Group", true);
  EXPECT_TRUE(tree.Nodes()[0].expanded);
}

TEST_F(UiTreeView, ClearingForgetsTheSelection) {
  tree.SelectedKey("Page");
  tree.Clear();
  EXPECT_THAT(tree.Nodes(), IsEmpty());
  EXPECT_EQ(tree.SelectedKey(), "");
  tree.AddNode({"Page", "A page", ""});
  EXPECT_EQ(tree.SelectedKey(), "");
}

TEST_F(UiTreeView, MayBeRebuiltInAClick) {
  tree.NodeClick.Connect([this] {
    tree.Clear();
    tree.AddNode({"New", "New", ""});
    tree.SelectedKey("New");
  });
  tree.UserSelect(tree.Nodes()[1].key);
  EXPECT_EQ(tree.SelectedKey(), "New");
  EXPECT_THAT(clicks, ElementsAre("Page"));
}

TEST_F(UiTreeView, AFailingClickIsTold) {
  tree.NodeClick.Connect([] { throw base::Error(5, "No"); });
  tree.UserSelect("Page");
  EXPECT_THAT(Messages(), ElementsAre("No (5)"));
  EXPECT_EQ(tree.SelectedKey(), "Page");
}

}  // namespace
