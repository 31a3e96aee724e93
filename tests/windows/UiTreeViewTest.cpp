#include "ui/TreeView.h"

#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>

#include <cstring>

#include "support/Ui.h"
#include "ui/TextBox.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ui::Color kCream = ui::Rgb(253, 235, 200);
constexpr ui::Color kGreen = ui::Rgb(51, 153, 102);

class UiTreeViewTest : public support::UiTest {
 protected:
  UiTreeViewTest() {
    tree_.Move(100, 100, 2400, 4000);
    other_.Move(3000, 100, 1500, 330);
    Fill();
    tree_.SelectedKey("Router");
    tree_.NodeClick.Connect([this] { clicks_.push_back(tree_.SelectedKey()); });
    form_.Show();
    tree_.SetFocus();
    RunUntil([this] { return tree_.HasFocus(); });
  }

  void Fill(const std::string& pageText = "Router") {
    tree_.AddNode({"Windows", "Configuration", "", true, true, kGreen});
    tree_.AddNode({"Router", pageText, "Windows"});
    tree_.AddNode({"Log", "Activity Log", "", true, false, kGreen});
    tree_.AddNode({"Entries", "Entries", "Log"});
  }

  HWND Native() const { return reinterpret_cast<HWND>(tree_.GetPeer()->Handle()); }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(Native(), message, wParam, lParam);
  }
  HTREEITEM Next(UINT relation, HTREEITEM item = nullptr) const {
    return reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
  }
  struct Shown {
    std::string text;
    UINT state = 0;
  };
  Shown Read(HTREEITEM item) const {
    char text[64] = "";
    TVITEMA read{};
    read.mask = TVIF_TEXT | TVIF_STATE;
    read.hItem = item;
    read.stateMask = TVIS_BOLD | TVIS_EXPANDED | TVIS_SELECTED;
    read.pszText = text;
    read.cchTextMax = sizeof text;
    Send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&read));
    return {text, read.state};
  }
  std::string SelectedText() const { return Read(Next(TVGN_CARET)).text; }
  RECT TextPlace(HTREEITEM item) const {
    RECT place{};
    // The call takes the item in the room of its answer.
    std::memcpy(&place, &item, sizeof item);
    Send(TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place));
    return place;
  }
  void Click(HTREEITEM item) const {
    const RECT place = TextPlace(item);
    POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    ClientToScreen(Native(), &middle);
    support::ClickAt(middle.x, middle.y);
  }
  void PressKeyInTree(WPARAM key) const {
    PostMessageA(Native(), WM_KEYDOWN, key, 1);
    PostMessageA(Native(), WM_KEYUP, key, 0xC0000001);
    ui::TheInterface().toolkit->ProcessPendingEvents();
  }
  bool HasPixel(const RECT& place, COLORREF color) const {
    RedrawWindow(Native(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    const HDC context = GetDC(Native());
    bool found = false;
    for (LONG y = place.top; y < place.bottom && !found; ++y) {
      for (LONG x = place.left; x < place.right && !found; ++x) found = GetPixel(context, x, y) == color;
    }
    ReleaseDC(Native(), context);
    return found;
  }

  support::TestForm form_{"frmTest", {}, 7500, 6000};
  ui::TreeView tree_{&form_, "tvCategories"};
  ui::TextBox other_{&form_, "txtOther"};
  /// The selected key at each NodeClick.
  std::vector<std::string> clicks_;
};

TEST_F(UiTreeViewTest, ShowsTheNodesUnderTheirParentsWithWeightAndExpansion) {
  const HTREEITEM windows = Next(TVGN_ROOT);
  const HTREEITEM router = Next(TVGN_CHILD, windows);
  const HTREEITEM log = Next(TVGN_NEXT, windows);
  EXPECT_EQ(Read(windows).text, "Configuration");
  EXPECT_EQ(Read(windows).state & (TVIS_BOLD | TVIS_EXPANDED), TVIS_BOLD | TVIS_EXPANDED);
  EXPECT_EQ(Read(router).text, "Router");
  EXPECT_EQ(Read(router).state & TVIS_BOLD, 0u);
  EXPECT_EQ(Next(TVGN_PARENT, router), windows);
  EXPECT_EQ(Read(log).text, "Activity Log");
  EXPECT_EQ(Read(log).state & (TVIS_BOLD | TVIS_EXPANDED), static_cast<UINT>(TVIS_BOLD));
  EXPECT_EQ(Read(Next(TVGN_CHILD, log)).text, "Entries");
  EXPECT_EQ(Send(TVM_GETCOUNT), 4);
  EXPECT_EQ(support::ControlNameOf(Native()), "tvCategories");
}

TEST_F(UiTreeViewTest, NodesThatAreBuiltAnewReplaceTheOthers) {
  tree_.Clear();
  EXPECT_EQ(Send(TVM_GETCOUNT), 0);
  Fill("The router");
  EXPECT_EQ(Send(TVM_GETCOUNT), 4);
  EXPECT_EQ(Read(Next(TVGN_CHILD, Next(TVGN_ROOT))).text, "The router");
  EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(UiTreeViewTest, ASelectionByCodeIsShownAndIsNoClick) {
  tree_.SelectedKey("Entries");
  EXPECT_EQ(SelectedText(), "Entries");
  EXPECT_NE(Read(Next(TVGN_NEXT, Next(TVGN_ROOT))).state & TVIS_EXPANDED, 0u) << "it must be seen";
  tree_.SelectedKey("Router");
  EXPECT_EQ(SelectedText(), "Router");
  tree_.Clear();
  EXPECT_EQ(Next(TVGN_CARET), nullptr);
  ui::TheInterface().toolkit->ProcessPendingEvents();
  EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(UiTreeViewTest, AClickOfTheMouseIsOneNodeClick) {
  tree_.SelectedKey("Windows");
  Click(Next(TVGN_CHILD, Next(TVGN_ROOT)));
  EXPECT_TRUE(RunUntil([this] { return !clicks_.empty(); }));
  RunFor(100);
  EXPECT_THAT(clicks_, ElementsAre("Router"));
  EXPECT_EQ(SelectedText(), "Router");
}

TEST_F(UiTreeViewTest, AClickOnTheSelectedNodeIsANodeClickToo) {
  tree_.SelectedKey("Router");
  Click(Next(TVGN_CARET));
  EXPECT_TRUE(RunUntil([this] { return !clicks_.empty(); }));
  RunFor(100);
  EXPECT_THAT(clicks_, ElementsAre("Router"));
}

TEST_F(UiTreeViewTest, TheArrowKeysChooseOneNodeEach) {
  tree_.SelectedKey("Windows");
  PressKeyInTree(VK_DOWN);
  PressKeyInTree(VK_DOWN);
  PressKeyInTree(VK_DOWN);
  EXPECT_THAT(clicks_, ElementsAre("Router", "Log")) << "the closed node hides the last one";
  EXPECT_EQ(SelectedText(), "Activity Log");
}

TEST_F(UiTreeViewTest, WhatTheUserOpensAndClosesIsRemembered) {
  tree_.SelectedKey("Log");
  PressKeyInTree(VK_RIGHT);
  EXPECT_TRUE(tree_.Nodes()[2].expanded);
  PressKeyInTree(VK_LEFT);
  EXPECT_FALSE(tree_.Nodes()[2].expanded);
  EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(UiTreeViewTest, AHandlerMayBuildTheNodesAnew) {
  tree_.SelectedKey("Windows");
  tree_.NodeClick.Connect([this] {
    tree_.Clear();
    Fill("Built anew");
    tree_.SelectedKey("Router");
  });
  PressKeyInTree(VK_DOWN);
  RunFor(50);
  EXPECT_THAT(clicks_, ElementsAre("Router"));
  EXPECT_EQ(SelectedText(), "Built anew");
}

TEST_F(UiTreeViewTest, AHandlerMayUnloadTheWindow) {
  tree_.NodeClick.Connect([this] { form_.Unload(); });
  Click(Next(TVGN_CHILD, Next(TVGN_ROOT)));
  EXPECT_TRUE(RunUntil([this] { return !form_.IsLoaded(); }));
}

TEST_F(UiTreeViewTest, HasTheColoursOfTheControlAndOfItsNodes) {
  tree_.BackColor(kCream);
  const SIZE inner = support::InnerSize(Native());
  const RECT corner{inner.cx - 3, inner.cy - 3, inner.cx, inner.cy};
  EXPECT_TRUE(HasPixel(corner, static_cast<COLORREF>(kCream)));
  EXPECT_TRUE(HasPixel(TextPlace(Next(TVGN_ROOT)), static_cast<COLORREF>(kGreen)));
  EXPECT_FALSE(HasPixel(TextPlace(Next(TVGN_CHILD, Next(TVGN_ROOT))), static_cast<COLORREF>(kGreen)));
  tree_.BackColor(ui::kDefaultColor);
  EXPECT_TRUE(HasPixel(corner, GetSysColor(COLOR_WINDOW)));
}

TEST_F(UiTreeViewTest, ATreeThatIsLoadedAgainShowsWhatItHolds) {
  tree_.SelectedKey("Router");
  form_.Unload();
  form_.Show();
  EXPECT_EQ(Send(TVM_GETCOUNT), 4);
  EXPECT_EQ(SelectedText(), "Router");
  EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(UiTreeViewTest, WhatTheNativeTreeChoosesWhenTheFocusComesIsHeldToo) {
  other_.SetFocus();
  tree_.Clear();
  Fill();
  tree_.SetFocus();
  ASSERT_TRUE(RunUntil([this] { return tree_.HasFocus(); }));
  EXPECT_EQ(SelectedText(), "Configuration");
  EXPECT_EQ(tree_.SelectedKey(), "Windows");
}

TEST_F(UiTreeViewTest, TabLeavesTheTree) {
  PressKeyInTree(VK_TAB);
  EXPECT_TRUE(other_.HasFocus());
  EXPECT_FALSE(tree_.HasFocus());
}

}  // namespace
